#pragma once

#include "Graphics/Export.h"
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

    // Light numbers count from GL_LIGHT0. Nothing is sent on a core profile, and nothing is made current.

    /** Loads light @p i as a directional one from @p direction in the port's current matrix, and enables it. */
    void setDefaultLight(short i, const T4dDblVector& direction);
    /** Loads light @p i with all of this light's fields, placed by @p m on OpenGL's matrix, and enables it. */
    void setLight(short i, const T4dDblMatrix& m);
    /** Disables light @p i and makes it a plain one without attenuation. */
    void unbind(short i);
    /** Sends the colour as GL_DIFFUSE of light @p i. */
    void setColor(short i);
    /** Sends the ambient colour as GL_AMBIENT of light @p i. */
    void setAmbientColor(short i);

    T3dPort* fPort = nullptr;      ///< the port that owns the light, if any
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
