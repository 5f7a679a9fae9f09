#include "Graphics/3dPort/T3dPortOpenGLInfo.h"

#include <GL/gl.h>

#include <cstdio>

bool T3dPortOpenGLInfo::fsOpenGLVersionFilled = false;
unsigned T3dPortOpenGLInfo::fsOpenGLVersionMajor = 0;
unsigned T3dPortOpenGLInfo::fsOpenGLVersionMinor = 0;
bool T3dPortOpenGLInfo::fsOpenGLCoreProfile = false;

void T3dPortOpenGLInfo::fillGLVersionInfo(bool coreProfile)
{
    fsOpenGLCoreProfile = coreProfile;
    if (fsOpenGLVersionFilled)
        return;
    fsOpenGLVersionFilled = true;
    const auto* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    unsigned major = 0;
    unsigned minor = 0;
    if (version && std::sscanf(version, "%u.%u", &major, &minor) == 2) {
        fsOpenGLVersionMajor = major;
        fsOpenGLVersionMinor = minor;
    }
}

bool T3dPortOpenGLInfo::isOpenGLVersionSupported(unsigned major, unsigned minor)
{
    if (!fsOpenGLVersionFilled)
        return false;
    if (fsOpenGLVersionMajor != major)
        return fsOpenGLVersionMajor > major;
    return fsOpenGLVersionMinor >= minor;
}
