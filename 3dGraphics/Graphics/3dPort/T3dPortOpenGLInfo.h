#pragma once

#include "Graphics/Export.h"

/** The OpenGL version of the process, read once, from the first context that asks. */
class LIRN_3DGRAPHICS_EXPORT T3dPortOpenGLInfo
{
public:
    /**
     * Notes @p coreProfile, and at the first call the version that the current context reports (GL_VERSION). A version
     * that cannot be read stays 0.0 and counts as read.
     */
    static void fillGLVersionInfo(bool coreProfile);
    /** True when the version read is at least @p major.@p minor; false before any was read. */
    static bool isOpenGLVersionSupported(unsigned major, unsigned minor);

    static bool fsOpenGLVersionFilled;
    static unsigned fsOpenGLVersionMajor;
    static unsigned fsOpenGLVersionMinor;
    static bool fsOpenGLCoreProfile;
};
