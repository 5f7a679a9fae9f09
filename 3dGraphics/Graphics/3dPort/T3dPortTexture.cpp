// Texture state, texture units and the texture matrix.

#include <QWidget>

#include "Graphics/3dPort/T3dPort.h"

#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "QtExtensions/QlirnX11.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/T4dFltMatrix.h"

#include <GL/glext.h>

TglContext::TtextureEnv T3dPort::fsTextureEnv = TglContext::kEnvModulate;
TglContext::TtextureFilter T3dPort::fsTextureMinFilter = TglContext::kLinear;
TglContext::TtextureFilter T3dPort::fsTextureMagFilter = TglContext::kLinear;
bool T3dPort::fsTextureFilterAnisotropic = false;

namespace {

bool isUnitFree(TglContext::TtextureUnit unit)
{
    return T3dPort::fsHasMultiTexture && !TglContext::fsTextureUnits.isUnitLocked(unit - GL_TEXTURE0);
}

} // namespace

void T3dPort::textureCombineBlend(TglContext::TtexEnvCombineParam& param, TglContext::TtexEnvCombine& value) const
{
    if (!fContext)
        return;
    param = fContext->fCombineParam;
    value = fContext->fCombine;
}

void T3dPort::textureCombineSource(TglContext::TtexEnvSourceParam& param, TglContext::TtexEnvSource& value) const
{
    if (!fContext)
        return;
    param = fContext->fSourceParam;
    value = fContext->fSource;
}

void T3dPort::textureCombineOperand(TglContext::TtexEnvOperandParam& param, TglContext::TtexEnvOperand& value) const
{
    if (!fContext)
        return;
    param = fContext->fOperandParam;
    value = fContext->fOperand;
}

void T3dPort::textureCombineScale(TglContext::TtexEnvScaleParam& param, TglContext::TtexEnvScale& value) const
{
    if (!fContext)
        return;
    param = fContext->fScaleParam;
    value = fContext->fScale;
}

void T3dPort::textureEnvModeChanged(TglContext::TtextureEnv mode)
{
    setCurrentContext();
    fContext->fTextureEnv = mode;
    fContext->fTextureEnvUnit = fContext->fServerUnit;
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, static_cast<GLint>(mode));
}

void T3dPort::textureWrapChanged(TglContext::TtextureWrap wrap, TglContext::TtextureTarget target)
{
    setCurrentContext();
    fContext->fTextureWrap = wrap;
    glTexParameteri(target, GL_TEXTURE_WRAP_S, static_cast<GLint>(wrap));
    glTexParameteri(target, GL_TEXTURE_WRAP_T, static_cast<GLint>(wrap));
}

void T3dPort::textureMinFilterChanged(TglContext::TtextureFilter filter, TglContext::TtextureTarget target)
{
    setCurrentContext();
    if (filter != TglContext::kNearest && filter != TglContext::kLinear)
        return;
    fContext->fTextureMinFilter = filter;
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(filter));
}

void T3dPort::textureMagFilterChanged(TglContext::TtextureFilter filter, TglContext::TtextureTarget target)
{
    setCurrentContext();
    fContext->fTextureMagFilter = filter;
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(filter));
}

template <class Param, class Value>
void T3dPort::setTextureCombine(Param TglContext::*param, Value TglContext::*value,
                                TglContext::TtextureUnit TglContext::*unit, Param newParam, Value newValue)
{
    if (!fContext || (fContext->*param == newParam && fContext->*value == newValue))
        return;
    setCurrentContext();
    fContext->*param = newParam;
    fContext->*value = newValue;
    fContext->*unit = fContext->fServerUnit;
    glTexEnvi(GL_TEXTURE_ENV, newParam, static_cast<GLint>(newValue));
}

void T3dPort::setTextureCombineBlend(TglContext::TtexEnvCombineParam param, TglContext::TtexEnvCombine value)
{
    setTextureCombine(&TglContext::fCombineParam, &TglContext::fCombine, &TglContext::fCombineUnit, param, value);
}

void T3dPort::setTextureCombineSource(TglContext::TtexEnvSourceParam param, TglContext::TtexEnvSource value)
{
    setTextureCombine(&TglContext::fSourceParam, &TglContext::fSource, &TglContext::fSourceUnit, param, value);
}

void T3dPort::setTextureCombineOperand(TglContext::TtexEnvOperandParam param, TglContext::TtexEnvOperand value)
{
    setTextureCombine(&TglContext::fOperandParam, &TglContext::fOperand, &TglContext::fOperandUnit, param, value);
}

void T3dPort::setTextureCombineScale(TglContext::TtexEnvScaleParam param, TglContext::TtexEnvScale value)
{
    setTextureCombine(&TglContext::fScaleParam, &TglContext::fScale, &TglContext::fScaleUnit, param, value);
}

void T3dPort::textureGenModeChanged(TglContext::TtextureGenMode mode)
{
    setCurrentContext();
    fContext->fTextureGenMode = mode;
    fContext->fTextureGenUnit = fContext->fServerUnit;

    const auto generateCube = [](GLint generation) {
        glTexGeni(GL_S, GL_TEXTURE_GEN_MODE, generation);
        glTexGeni(GL_T, GL_TEXTURE_GEN_MODE, generation);
        glTexGeni(GL_R, GL_TEXTURE_GEN_MODE, generation);
        glEnable(GL_TEXTURE_CUBE_MAP);
        glEnable(GL_TEXTURE_GEN_S);
        glEnable(GL_TEXTURE_GEN_T);
        glEnable(GL_TEXTURE_GEN_R);
    };
    switch (mode) {
    case TglContext::kGenOff:
        glDisable(GL_TEXTURE_GEN_S);
        glDisable(GL_TEXTURE_GEN_T);
        glDisable(GL_TEXTURE_GEN_R);
        glDisable(GL_TEXTURE_GEN_Q);
        glDisable(GL_TEXTURE_CUBE_MAP);
        break;
    case TglContext::kGenEyeLinear:
    case TglContext::kGenObjectLinear:
    case TglContext::kGenSphereMap:
        glDisable(GL_TEXTURE_CUBE_MAP);
        glDisable(GL_TEXTURE_GEN_R);
        glDisable(GL_TEXTURE_GEN_Q);
        glTexGeni(GL_S, GL_TEXTURE_GEN_MODE, mode);
        glTexGeni(GL_T, GL_TEXTURE_GEN_MODE, mode);
        glEnable(GL_TEXTURE_GEN_S);
        glEnable(GL_TEXTURE_GEN_T);
        break;
    case TglContext::kGenNormalMap:
    case TglContext::kGenReflectionMap:
        generateCube(mode);
        break;
    case TglContext::kGenCubeEyeLinear:
        generateCube(GL_EYE_LINEAR);
        break;
    case TglContext::kGenCubeObjectLinear:
        generateCube(GL_OBJECT_LINEAR);
        break;
    case TglContext::kGenCubeNone:
        glEnable(GL_TEXTURE_CUBE_MAP);
        break;
    }
}

void T3dPort::setTextureGenCoord(TglContext::TtextureCoord coord, TglContext::TtextureGenFunc func,
                                 const T4dDblPoint& plane)
{
    const GLfloat values[] = {static_cast<float>(plane.x), static_cast<float>(plane.y), static_cast<float>(plane.z),
                              static_cast<float>(plane.w)};
    glTexGenfv(coord, func, values);
}

float T3dPort::maxTextureFilterAnistropic() const
{
    static float most = 0;
    if (!hasTextureFilterAnisotropic())
        return 1;
    if (most <= 0) {
        setCurrentContext();
        glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &most);
    }
    return most > 0 ? most : 1;
}

void T3dPort::setTextureFilterAnisotropic(float anisotropy)
{
    if (!hasTextureFilterAnisotropic())
        return;
    setCurrentContext();
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, anisotropy);
}

void T3dPort::noteUnitSentElsewhere() const
{
    // Units are selected in whatever context is bound. When that is not the port's, both no longer have what is
    // recorded.
    const QlirnGLWidget* widget = glWidget();
    const void* const own = widget ? widget->glContext()->getActiveContext() : nullptr;
    const void* const bound = glXGetCurrentContext();
    if (own == bound)
        return;
    for (const void* context : {own, bound})
        if (context && fsDisturbedContexts.find(context) < 0)
            fsDisturbedContexts.append(context);
    fsTrustedPort = nullptr;
}

void T3dPort::activeTextureUnit(TglContext::TtextureUnit unit)
{
    if (!isUnitFree(unit))
        return;
    if (fContext)
        fContext->fTextureUnit = fContext->fServerUnit = unit;
    if (this != fsTrustedPort || isHostUnsettled())
        noteUnitSentElsewhere();
    glActiveTextureARB(unit);
}

void T3dPort::activeTexCoordPointer(TglContext::TtextureUnit unit)
{
    if (!isUnitFree(unit))
        return;
    if (fContext)
        fContext->fTextureUnit = fContext->fClientUnit = unit;
    if (this != fsTrustedPort || isHostUnsettled())
        noteUnitSentElsewhere();
    glClientActiveTextureARB(unit);
}

void T3dPort::multiTexCoord2(TglContext::TtextureUnit unit, const float* st)
{
    if (fsHasMultiTexture)
        glMultiTexCoord2fvARB(unit, st);
    else
        glTexCoord2fv(st);
}

void T3dPort::multiTexCoord(TglContext::TtextureUnit unit, float s, float t)
{
    if (fsHasMultiTexture)
        glMultiTexCoord2fARB(unit, s, t);
    else
        glTexCoord2f(s, t);
}

void T3dPort::multiTexCoord(TglContext::TtextureUnit unit, float s, float t, float r)
{
    if (fsHasMultiTexture)
        glMultiTexCoord3fARB(unit, s, t, r);
    else
        glTexCoord3f(s, t, r);
}

template <class Operation> void T3dPort::onTextureMatrix(Operation operation)
{
    if (fNoTextureMatrix || !fContext)
        return;
    setCurrentContext();
    sendMatrixMode(GL_TEXTURE);
    operation();
    sendMatrixMode(GL_MODELVIEW);
}

void T3dPort::texturePushMatrix()
{
    onTextureMatrix(glPushMatrix);
}

void T3dPort::texturePopMatrix()
{
    onTextureMatrix(glPopMatrix);
}

void T3dPort::textureTransform(const T4dFltMatrix& m)
{
    onTextureMatrix([&m] { glLoadMatrixf(m.data()); });
}

void T3dPort::textureTransform(float rotate, float repeatU, float repeatV, float offsetU, float offsetV, float turn)
{
    onTextureMatrix([=] {
        glLoadIdentity();
        if (rotate != 0) {
            glTranslatef(0.5f, 0.5f, 0);
            glRotatef(rotate, 0, 0, 1);
            glTranslatef(-0.5f, -0.5f, 0);
        }
        if (repeatU != 1 || repeatV != 1)
            glScalef(1 / repeatU, 1 / repeatV, 1);
        glTranslatef(0.5f - offsetU, 0.5f - offsetV, 0);
        if (turn != 0)
            glRotatef(-turn, 0, 0, 1);
    });
}
