// What the texture state operations send to OpenGL, and what they spare it.

#include "3dPort/Calls.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/T4dFltMatrix.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using Context = TglContext;

struct Step
{
    std::function<void(T3dPort&)> run;
    std::string calls; ///< without "GL_"
};

class TextureState : public ShownPort
{
protected:
    void expectCalls(const std::vector<Step>& steps)
    {
        for (const Step& step : steps) {
            GlRecorder recorder;
            recorder.start();
            step.run(port());
            recorder.stop();
            std::string calls;
            for (const std::string& call : recorder.calls())
                calls += (calls.empty() ? "" : " ") + call;
            for (std::size_t at; (at = calls.find("GL_")) != std::string::npos;)
                calls.erase(at, 3);
            EXPECT_EQ(step.calls, calls) << "step " << &step - steps.data();
            EXPECT_EQ(TstringArray(), port().stateDifferences()) << "step " << &step - steps.data();
        }
    }
};

Step generation(int mode, const std::string& calls)
{
    return {[mode](T3dPort& p) { p.setTextureGenMode(Context::TtextureGenMode(mode)); }, calls};
}

} // namespace

TEST_F(TextureState, CachedSettersSendChangesOnly)
{
    expectCalls({
        {[](T3dPort& p) { p.setTextureEnvMode(Context::kEnvModulate); }, ""},
        {[](T3dPort& p) { p.setTextureEnvMode(Context::kEnvDecal); },
         "glTexEnvi(TEXTURE_ENV, TEXTURE_ENV_MODE, DECAL)"},
        {[](T3dPort& p) { p.setTextureWrap(Context::kClamp, Context::kTextureCubeMap); },
         "glTexParameteri(TEXTURE_CUBE_MAP, TEXTURE_WRAP_S, CLAMP) glTexParameteri(TEXTURE_CUBE_MAP, TEXTURE_WRAP_T, "
         "CLAMP)"},
        {[](T3dPort& p) { p.setTextureWrap(Context::kClamp); }, ""},
        {[](T3dPort& p) { p.setTextureMinFilter(Context::kLinear); },
         "glTexParameteri(TEXTURE_2D, TEXTURE_MIN_FILTER, LINEAR)"},
        {[](T3dPort& p) { p.setTextureMinFilter(Context::kLinearMipmapLinear); }, ""},
        {[](T3dPort& p) { p.setTextureMagFilter(Context::kNearest); },
         "glTexParameteri(TEXTURE_2D, TEXTURE_MAG_FILTER, NEAREST)"},
        {[](T3dPort& p) { p.setTextureCombineBlend(Context::kCombineAlpha, Context::kCombineAdd); },
         "glTexEnvi(TEXTURE_ENV, COMBINE_ALPHA, ADD)"},
        {[](T3dPort& p) { p.setTextureCombineSource(Context::kSource1Rgb, Context::kSourceConstant); },
         "glTexEnvi(TEXTURE_ENV, SOURCE1_RGB, CONSTANT)"},
        {[](T3dPort& p) { p.setTextureCombineOperand(Context::kOperand0Rgb, Context::kOperandAlpha); },
         "glTexEnvi(TEXTURE_ENV, OPERAND0_RGB, SRC_ALPHA)"},
        {[](T3dPort& p) { p.setTextureCombineScale(Context::kAlphaScale, Context::kScale4); },
         "glTexEnvi(TEXTURE_ENV, ALPHA_SCALE, 4)"},
        {[](T3dPort& p) {
             p.setTextureGenCoord(Context::kCoordR, Context::kEyePlane, {1, 2, 3, 0.5});
         },
         "glTexGenfv(R, EYE_PLANE, [1 2 3 0.5])"},
    });
}

TEST_F(TextureState, GenerationModesDisableNoMoreThanTheyName)
{
    const std::string on = " glEnable(TEXTURE_GEN_S) glEnable(TEXTURE_GEN_T)";
    const auto modes = [](const std::string& mode, bool r) {
        return "glTexGeni(S, TEXTURE_GEN_MODE, " + mode + ") glTexGeni(T, TEXTURE_GEN_MODE, " + mode + ")" +
               (r ? " glTexGeni(R, TEXTURE_GEN_MODE, " + mode + ") glEnable(TEXTURE_CUBE_MAP)" : "");
    };
    const std::string planar = "glDisable(TEXTURE_CUBE_MAP) glDisable(TEXTURE_GEN_R) glDisable(TEXTURE_GEN_Q) ";
    const std::string onThree = on + " glEnable(TEXTURE_GEN_R)";
    expectCalls({
        generation(GL_SPHERE_MAP, planar + modes("SPHERE_MAP", false) + on),
        generation(-3, "glEnable(TEXTURE_CUBE_MAP)"),
        generation(GL_EYE_LINEAR, planar + modes("EYE_LINEAR", false) + on),
        generation(GL_NORMAL_MAP, modes("NORMAL_MAP", true) + onThree),
        generation(-1, modes("EYE_LINEAR", true) + onThree),
        generation(-2, modes("OBJECT_LINEAR", true) + onThree),
        generation(5, ""),
        generation(5, ""),
        generation(0, "glDisable(TEXTURE_GEN_S) glDisable(TEXTURE_GEN_T) glDisable(TEXTURE_GEN_R) "
                      "glDisable(TEXTURE_GEN_Q) glDisable(TEXTURE_CUBE_MAP)"),
    });
}

TEST_F(TextureState, MatrixKeepsTheHalfUnitShift)
{
    const std::string begin = "glMatrixMode(TEXTURE) ";
    const std::string end = " glMatrixMode(MODELVIEW)";
    expectCalls({
        {[](T3dPort& p) { p.texturePushMatrix(); }, begin + "glPushMatrix()" + end},
        {[](T3dPort& p) { p.textureTransform(0, 1, 1, 0, 0, 0); },
         begin + "glLoadIdentity() glTranslatef(0.5, 0.5, 0)" + end},
        {[](T3dPort& p) { p.textureTransform(30, 2, 4, 0.25f, 0.75f, 10); },
         begin +
             "glLoadIdentity() glTranslatef(0.5, 0.5, 0) glRotatef(30, 0, 0, 1) glTranslatef(-0.5, -0.5, 0) "
             "glScalef(0.5, 0.25, 1) glTranslatef(0.25, -0.25, 0) glRotatef(-10, 0, 0, 1)" +
             end},
        {[](T3dPort& p) { p.texturePopMatrix(); }, begin + "glPopMatrix()" + end},
        {[](T3dPort& p) { p.setNoTextureMatrix(true), p.texturePushMatrix(), p.textureTransform(T4dFltMatrix()); }, ""},
    });
}

TEST_F(TextureState, UnitsThatAreLockedOrMissingAreLeftAlone)
{
    const auto one = Context::TtextureUnit(GL_TEXTURE1);
    static const float st[] = {0.25f, 0.75f};
    const auto coordinates = [one](T3dPort& p) {
        p.multiTexCoord2(one, st);
        p.multiTexCoord(one, 1, 2);
        p.multiTexCoord(one, 1, 2, 3);
    };
    expectCalls({
        {[one](T3dPort& p) { p.activeTextureUnit(one); }, "glActiveTextureARB(TEXTURE1)"},
        {[](T3dPort& p) { p.setTextureEnvMode(Context::kEnvAdd); }, "glTexEnvi(TEXTURE_ENV, TEXTURE_ENV_MODE, ADD)"},
        {[](T3dPort& p) { p.activeTextureUnit(Context::kTexture0); }, "glActiveTextureARB(TEXTURE0)"},
        {[one](T3dPort& p) { p.activeTexCoordPointer(one); }, "glClientActiveTextureARB(TEXTURE1)"},
        {[](T3dPort& p) { p.activeTextureUnit(Context::TtextureUnit(GL_TEXTURE0 + 4000)); }, ""},
        {[](T3dPort& p) { p.activeTextureUnit(Context::TtextureUnit(0)); }, ""},
        {coordinates, "glMultiTexCoord2fvARB(TEXTURE1, [0.25 0.75]) glMultiTexCoord2fARB(TEXTURE1, 1, 2) "
                      "glMultiTexCoord3fARB(TEXTURE1, 1, 2, 3)"},
    });
    Context::fsTextureUnits.lockUnit(2);
    expectCalls({{[](T3dPort& p) { p.activeTexCoordPointer(Context::TtextureUnit(GL_TEXTURE2)); }, ""}});
    T3dPort::fsHasMultiTexture = false;
    expectCalls({{[one](T3dPort& p) { p.activeTextureUnit(one); }, ""},
                 {coordinates, "glTexCoord2fv([0.25 0.75]) glTexCoord2f(1, 2) glTexCoord3f(1, 2, 3)"}});
    EXPECT_EQ(one, port().glContextRecord()->fTextureUnit);
}
