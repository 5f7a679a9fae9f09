#pragma once

#include "Export.h"
#include "foundation/T4dDblMatrix.h"
#include "foundation/T4dDblVector.h"
#include "foundation/TportColor.h"

#include <cstdint>

class T3dPort;

/** One light of the fixed-function pipeline, as it is loaded into an OpenGL light. */
class LIRN_3DGRAPHICS_EXPORT TglLight
{
public:
    enum TglLightType : std::uint32_t {
        kSpot = 0,             ///< positional at the local origin, shining along -Z
        kDirectional = 1,      ///< along +Z
        kPoint = 2,            ///< positional at the local origin
        kDirectionalBehind = 3 ///< along -Z
    };

    explicit TglLight(TglLightType type) : fType(type) {}

    T3dPort* fPort = nullptr; ///< the port that owns the light, if any
    TportColor fColor{1, 1, 1, 1}; ///< GL_DIFFUSE and GL_SPECULAR
    TportColor fAmbientColor{0, 0, 0, 1};
    T4dDblVector fDirection{0, 0, 1};
    T4dDblMatrix fPlacement;
    float fSpotCutoff = 180.0f; ///< degrees; 180 is no spot
    float fSpotExponent = 0.0f;
    float fConstantAttenuation = 1.0f;
    float fLinearAttenuation = 0.0f;
    float fQuadraticAttenuation = 0.0f;
    TglLightType fType;
};
