#include "Graphics/3dPort/TglLight.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"

#include <GL/gl.h>

namespace {

constexpr float kNoSpot = 180.0f;

/** GL_POSITION by type. */
constexpr float kPositions[][4] = {
    /* kSpot */ {0, 0, 0, 1},
    /* kDirectional */ {0, 0, 1, 0},
    /* kPoint */ {0, 0, 0, 1},
    /* kDirectionalBehind */ {0, 0, -1, 0},
};

GLenum lightName(short i)
{
    return GL_LIGHT0 + static_cast<GLenum>(i);
}

void sendAttenuation(GLenum light, float constant, float linear, float quadratic)
{
    glLightf(light, GL_CONSTANT_ATTENUATION, constant);
    glLightf(light, GL_LINEAR_ATTENUATION, linear);
    glLightf(light, GL_QUADRATIC_ATTENUATION, quadratic);
}

} // namespace

void TglLight::setDefaultLight(short i, const T4dDblVector& direction)
{
    if (Q3dPort::enableGLCoreProfile())
        return;
    fDirection = direction;
    if (fPort)
        fPort->getMatrix(fPlacement);

    const GLenum light = lightName(i);
    glLightfv(light, GL_DIFFUSE, &fColor.r);
    glLightfv(light, GL_SPECULAR, &fColor.r);
    glLightfv(light, GL_AMBIENT, &kCblack.r);
    sendAttenuation(light, 1, 0, 0);
    glLightf(light, GL_SPOT_CUTOFF, kNoSpot);
    glLightf(light, GL_SPOT_EXPONENT, 0);
    glPushMatrix();
    glLoadMatrixd(fPlacement.data());
    const float position[] = {static_cast<float>(direction.x), static_cast<float>(direction.y),
                              static_cast<float>(direction.z), 0};
    glLightfv(light, GL_POSITION, position);
    glEnable(light);
    glPopMatrix();
}

void TglLight::setLight(short i, const T4dDblMatrix& m)
{
    if (Q3dPort::enableGLCoreProfile())
        return;
    const GLenum light = lightName(i);
    glLightfv(light, GL_DIFFUSE, &fColor.r);
    glLightfv(light, GL_SPECULAR, &fColor.r);
    glLightfv(light, GL_AMBIENT, &fAmbientColor.r);
    sendAttenuation(light, fConstantAttenuation, fLinearAttenuation, fQuadraticAttenuation);
    glPushMatrix();
    glMultMatrixd(m.data());
    if (fType == kSpot) {
        constexpr float kSpotDirection[] = {0, 0, -1, 0};
        glLightf(light, GL_SPOT_CUTOFF, fSpotCutoff);
        glLightf(light, GL_SPOT_EXPONENT, fSpotExponent);
        glLightfv(light, GL_SPOT_DIRECTION, kSpotDirection);
    } else {
        glLightf(light, GL_SPOT_CUTOFF, kNoSpot);
    }
    glLightfv(light, GL_POSITION, kPositions[fType <= kDirectionalBehind ? fType : kSpot]);
    glEnable(light);
    glPopMatrix();
}

void TglLight::unbind(short i)
{
    if (Q3dPort::enableGLCoreProfile())
        return;
    const GLenum light = lightName(i);
    if (fPort)
        fPort->disableLight(i);
    else
        glDisable(light);
    glLightf(light, GL_SPOT_CUTOFF, kNoSpot);
    glLightf(light, GL_SPOT_EXPONENT, 0);
    sendAttenuation(light, 1, 0, 0);
}

void TglLight::setColor(short i)
{
    if (!Q3dPort::enableGLCoreProfile())
        glLightfv(lightName(i), GL_DIFFUSE, &fColor.r);
}

void TglLight::setAmbientColor(short i)
{
    if (!Q3dPort::enableGLCoreProfile())
        glLightfv(lightName(i), GL_AMBIENT, &fAmbientColor.r);
}
