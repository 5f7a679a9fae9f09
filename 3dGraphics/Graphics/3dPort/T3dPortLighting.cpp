// Lighting and materials.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/TglLight.h"
#include "QtExtensions/Q3dPort.h"

#include <algorithm>

namespace {

constexpr int kDefaultLightCount = 8;
constexpr double kMaxShininess = 128.0;
constexpr TportColor kDefaultAmbientMaterial{0.2f, 0.2f, 0.2f, 1.0f};
constexpr TportColor kUnknownColor{-1.0f, -1.0f, -1.0f, -1.0f};

GLint hardwareLightCount()
{
    GLint count = kDefaultLightCount;
    glGetIntegerv(GL_MAX_LIGHTS, &count);
    return count;
}

} // namespace

void T3dPort::setLightColor(const TportColor& c)
{
    fDefaultLight->fColor = c;
}

void T3dPort::setDefaultLight(short i, const T4dDblVector& direction)
{
    setCurrentContext();
    fDefaultLight->setDefaultLight(i, direction);
}

unsigned short T3dPort::maxNumberOfHwLights()
{
    return static_cast<unsigned short>(Q3dPort::enableGLCoreProfile() ? kDefaultLightCount : hardwareLightCount());
}

void T3dPort::enableLighting()
{
    if (!fContext || fPortFlags.test(kPortNoLighting))
        return;
    setCurrentContext();
    if (!fContext->fDirtyBits.test(TglContext::kLightingOn) || fContext->fValidBits.test(TglContext::kResendLighting)) {
        fContext->fDirtyBits.set(TglContext::kLightingOn);
        fContext->fValidBits.clear(TglContext::kResendLighting);
        glEnable(GL_LIGHTING);
    }
    if (fsUseSeparateSpecularColor)
        glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SEPARATE_SPECULAR_COLOR);
    fPortFlags.set(kPortLightingOn);
}

void T3dPort::disableLighting()
{
    if (!fContext)
        return;
    setCurrentContext();
    if (fsUseSeparateSpecularColor)
        glLightModeli(GL_LIGHT_MODEL_COLOR_CONTROL, GL_SINGLE_COLOR);
    if (fContext->fDirtyBits.test(TglContext::kLightingOn) || fContext->fValidBits.test(TglContext::kResendLighting)) {
        fContext->fDirtyBits.clear(TglContext::kLightingOn);
        fContext->fValidBits.clear(TglContext::kResendLighting);
        glDisable(GL_LIGHTING);
    }
    fPortFlags.clear(kPortLightingOn);
}

void T3dPort::setLighting(bool on)
{
    if (on && !fPortFlags.test(kPortNoLighting))
        enableLighting();
    else
        disableLighting();
}

void T3dPort::setLightingModel()
{
    setCurrentContext();
    enableLighting();
    if (!fContext)
        return;
    if (fContext->fLightModelAmbient != fGlobalAmbient) {
        fContext->fLightModelAmbient = fGlobalAmbient;
        glLightModelfv(GL_LIGHT_MODEL_AMBIENT, &fGlobalAmbient.r);
    }
    if (fContext->fLocalViewer != fLocalViewer) {
        fContext->fLocalViewer = fLocalViewer;
        glLightModelf(GL_LIGHT_MODEL_LOCAL_VIEWER, fLocalViewer ? 1.0f : 0.0f);
    }
    if (fContext->fDirtyBits.test(TglContext::kTwoSidedOn) == fTwoSidedLighting &&
        !fContext->fValidBits.test(TglContext::kResendTwoSided))
        return;
    fContext->fDirtyBits.assign(TglContext::kTwoSidedOn, fTwoSidedLighting);
    fContext->fValidBits.clear(TglContext::kResendTwoSided);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, fTwoSidedLighting ? 1.0f : 0.0f);
}

void T3dPort::settleLightEnables()
{
    if (!fContext || !fContext->fValidBits.test(TglContext::kLightEnablesUnknown))
        return;
    const GLint count = hardwareLightCount();
    for (GLint i = 0; i < count; ++i)
        glDisable(GL_LIGHT0 + static_cast<GLenum>(i));
    fContext->fValidBits.clear(TglContext::kLightEnablesUnknown);
}

void T3dPort::enableLight(short i)
{
    setCurrentContext();
    settleLightEnables();
    glEnable(GL_LIGHT0 + static_cast<GLenum>(i));
}

void T3dPort::disableLight(short i)
{
    setCurrentContext();
    settleLightEnables();
    glDisable(GL_LIGHT0 + static_cast<GLenum>(i));
}

void T3dPort::disableAllLights()
{
    setCurrentContext();
    for (short i = 0; i < kDefaultLightCount; ++i) {
        settleLightEnables();
        glDisable(GL_LIGHT0 + static_cast<GLenum>(i));
    }
}

void T3dPort::setShininess(double s)
{
    if (!fContext || s == fContext->fMaterialShininess)
        return;
    const double clamped = std::clamp(s, 0.0, kMaxShininess);
    setCurrentContext();
    fContext->fMaterialShininess = clamped;
    glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, static_cast<float>(clamped));
}

void T3dPort::setMaterialColor(TportColor TglContext::*recorded, TmaterialChannel channel, const TportColor& c,
                               bool withAlpha)
{
    if (!fContext || fContext->*recorded == c)
        return;
    setCurrentContext();
    fContext->*recorded = c;
    // Specular and emission leave the recorded colour as it was, though glColor changes OpenGL's.
    fContext->fColorDisturbed = channel == kMaterialSpecular || channel == kMaterialEmission;
    if (!fContext->fColorDisturbed)
        fContext->fColor = c;
    fContext->fHardwareIndex = TglContext::kUnknownIndex;
    glColorMaterial(GL_FRONT_AND_BACK, channel);
    glEnable(GL_COLOR_MATERIAL);
    if (withAlpha)
        glColor4fv(&c.r);
    else
        glColor3fv(&c.r);
    glDisable(GL_COLOR_MATERIAL);
}

void T3dPort::setAmbientMaterialColor(const TportColor& c)
{
    setMaterialColor(&TglContext::fMaterialAmbient, kMaterialAmbient, c, false);
}

void T3dPort::setDiffuseColor(const TportColor& c)
{
    setMaterialColor(&TglContext::fMaterialDiffuse, kMaterialDiffuse, c, false);
}

void T3dPort::setDiffuseColor(const TportColor& c, float alpha)
{
    setMaterialColor(&TglContext::fMaterialDiffuse, kMaterialDiffuse, TportColor(c.r, c.g, c.b, alpha), true);
}

void T3dPort::setEmissionColor(const TportColor& c)
{
    setMaterialColor(&TglContext::fMaterialEmission, kMaterialEmission, c, false);
}

void T3dPort::setSpecularColor(const TportColor& c)
{
    setMaterialColor(&TglContext::fMaterialSpecular, kMaterialSpecular, c, false);
}

TportColor& T3dPort::enableColorMaterial(TpolygonFace face, TmaterialChannel channel, bool transparent)
{
    static TportColor nowhere;
    setCurrentContext();
    glColorMaterial(face, channel);
    glEnable(GL_COLOR_MATERIAL);
    if (!fContext)
        return nowhere;
    if (transparent) {
        blendFunc(kBlendSrcAlpha, kBlendOneMinusSrcAlpha);
        blending(true);
        if (!fPortFlags.test(fNoAutoDepthTest))
            depthTest(true);
    }
    switch (channel) {
    case kMaterialSpecular:
        return fContext->fMaterialSpecular;
    case kMaterialAmbient:
    case kMaterialAmbientAndDiffuse:
        return fContext->fMaterialAmbient;
    case kMaterialEmission:
        return fContext->fMaterialEmission;
    default:
        return fContext->fMaterialDiffuse;
    }
}

void T3dPort::disableColorMaterial(TmaterialChannel channel, bool transparent)
{
    setCurrentContext();
    if (!fContext) {
        glDisable(GL_COLOR_MATERIAL);
        return;
    }
    switch (channel) {
    case kMaterialAmbientAndDiffuse:
        fContext->fMaterialDiffuse = kUnknownColor;
        [[fallthrough]];
    case kMaterialAmbient:
        fContext->fMaterialAmbient = kUnknownColor;
        fContext->fColor = kUnknownColor;
        break;
    case kMaterialDiffuse:
        fContext->fMaterialDiffuse = kUnknownColor;
        fContext->fColor = kUnknownColor;
        break;
    case kMaterialSpecular:
        fContext->fMaterialSpecular = kUnknownColor;
        break;
    case kMaterialEmission:
        fContext->fMaterialEmission = kUnknownColor;
        break;
    }
    fContext->fHardwareIndex = TglContext::kUnknownIndex;
    setAmbientMaterialColor(kDefaultAmbientMaterial);
    if (transparent)
        blending(false);
    glDisable(GL_COLOR_MATERIAL);
}
