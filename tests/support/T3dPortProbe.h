#pragma once

#include "Graphics/3dPort/T3dPort.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/** Reads, and where a test needs it sets, what a port keeps to itself. */
struct T3dPortProbe
{
    static TglContext* context(const T3dPort& p) { return p.fContext; }
    static const TglColorTable* activeColorTable(const T3dPort& p) { return p.fActiveColorTable; }

    static void setFlag(T3dPort& p, T3dPort::TportFlags flag, bool on) { p.fPortFlags.assign(flag, on); }
    static void setSelectMatrix(T3dPort& p, const T4dDblMatrix& m) { p.fSelectMatrix = m; }

    static void setCanLookUpEntryPoints(bool can) { T3dPort::fsCanLookUpEntryPoints = can; }

    struct Member
    {
        const char* name;
        std::ptrdiff_t offset;
    };

    /** The fields of a port whose order is fixed, in that order. */
    static std::vector<Member> fields(const T3dPort& p)
    {
        const auto at = [&p](const char* name, const void* field) {
            return Member{name, static_cast<const char*>(field) - reinterpret_cast<const char*>(&p)};
        };
#define FIELD(name) at(#name, &p.name)
        return {
            FIELD(fPointerCommandsEnabled),
            FIELD(fKeyCommandsEnabled),
            FIELD(fPortFlags),
            FIELD(fQ3dPort),
            FIELD(fSharedHandle),
            FIELD(fDrawingPlanes),
            FIELD(fFont),
            FIELD(fFogSource),
            FIELD(fFogMode),
            FIELD(fFogDensity),
            FIELD(fFogStart),
            FIELD(fFogEnd),
            FIELD(fFogColor),
            FIELD(fFogParametersSent),
            FIELD(fModelViewStack),
            FIELD(fProjectionStack),
            FIELD(fViewportStack),
            FIELD(fModelViewMatrix),
            FIELD(fProjectionMatrix),
            FIELD(fViewport),
            FIELD(fSelectMatrix),
            FIELD(fTransformMatrix),
            FIELD(fInverseTransformMatrix),
            FIELD(fMatrixValid),
            FIELD(fMatrixMode),
            FIELD(fProjOverrideMatrix),
            FIELD(fProjOverrideActive),
            FIELD(fPrimaryContext),
            FIELD(fContext),
            FIELD(fRequestedColorTable),
            FIELD(fActiveColorTable),
            FIELD(fColorIndexSpan),
            FIELD(fDoubleBuffered),
            FIELD(fPortRect),
            FIELD(fPlayblastRect),
            FIELD(fGlobalAmbient),
            FIELD(fTwoSidedLighting),
            FIELD(fPolygonOffsetFillOn),
            FIELD(fDefaultLight),
            FIELD(fReserved1),
            FIELD(fPortRectStack),
            FIELD(fDoubleClickCommand),
            FIELD(fKeyPressCommand),
            FIELD(fKeyReleaseCommand),
            FIELD(fKeyRepeatCommand),
            FIELD(fPtrMovedCommand),
            FIELD(fUpdateCommand),
            FIELD(fSnapShotMode),
            FIELD(fNoStipple),
            FIELD(fNoTextureMatrix),
            FIELD(fDebugPorts),
            FIELD(fDebugMatrices),
            FIELD(fNoPolygonOffset),
            FIELD(fUpdateOnMove),
            FIELD(fGeometryStats),
            FIELD(fGeometryStatsEnabled),
            FIELD(fRendererName),
            FIELD(fReserved2),
            FIELD(fReservedName),
        };
#undef FIELD
    }
};
