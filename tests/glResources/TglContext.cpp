#include <QGLWidget>

#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include "Graphics/glResources/TglColorTable.h"
#include "Graphics/glResources/TglContext.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** One claim of a record's: the value of an OpenGL state. */
struct Claim
{
    const char* state;
    GLenum name;
    std::vector<double> recorded;
    bool isSwitch = false;
};

} // namespace

TEST(GlContext, ANewRecordHasOpenGLsOwnDefaults)
{
    // A context that nobody has drawn with: the record must be true of it from the start.
    QGLWidget fresh;
    fresh.makeCurrent();
    ASSERT_NE(glGetString(GL_VERSION), nullptr);
    const TglContext c(2, false);
    const auto color = [](const TportColor& k) { return std::vector<double>{k.r, k.g, k.b, k.a}; };
    const Claim claims[] = {
        {"line width", GL_LINE_WIDTH, {c.fLineWidth}},
        {"point size", GL_POINT_SIZE, {c.fPointSize}},
        {"depth function", GL_DEPTH_FUNC, {double(c.fDepthFunc)}},
        {"depth mask", GL_DEPTH_WRITEMASK, {double(c.fDepthMask)}},
        {"colour mask",
         GL_COLOR_WRITEMASK,
         {double(c.fColorMaskRed), double(c.fColorMaskGreen), double(c.fColorMaskBlue), double(c.fColorMaskAlpha)}},
        {"light model", GL_LIGHT_MODEL_AMBIENT, color(c.fLightModelAmbient)},
        {"local viewer", GL_LIGHT_MODEL_LOCAL_VIEWER, {double(c.fLocalViewer)}},
        {"blending", GL_BLEND, {double(c.fBlending)}, true},
        {"blend source", GL_BLEND_SRC, {double(c.fBlendSource)}},
        {"blend destination", GL_BLEND_DST, {double(c.fBlendDestination)}},
        {"blend equation", GL_BLEND_EQUATION, {double(c.fBlendEquation)}},
        {"texture unit", GL_ACTIVE_TEXTURE, {double(c.fTextureUnit)}},
        {"matrix mode", GL_MATRIX_MODE, {double(c.fMatrixMode)}},
        {"depth test", GL_DEPTH_TEST, {double(c.fDirtyBits.test(TglContext::kDepthTestOn))}, true},
        {"culling", GL_CULL_FACE, {double(c.fDirtyBits.test(TglContext::kCullingOn))}, true},
        {"scissor", GL_SCISSOR_TEST, {double(c.fDirtyBits.test(TglContext::kScissorOn))}, true},
        {"lighting", GL_LIGHTING, {double(c.fDirtyBits.test(TglContext::kLightingOn))}, true},
        {"line stipple", GL_LINE_STIPPLE, {double(!c.fLineStipple.isSolid())}, true},
    };
    for (const Claim& claim : claims) {
        double actual[16] = {};
        if (claim.isSwitch)
            actual[0] = glIsEnabled(claim.name);
        else
            glGetDoublev(claim.name, actual);
        for (std::size_t i = 0; i < claim.recorded.size(); ++i)
            EXPECT_FLOAT_EQ(float(actual[i]), float(claim.recorded[i])) << claim.state;
    }
    const std::pair<GLenum, TportColor> materials[] = {{GL_AMBIENT, c.fMaterialAmbient},
                                                       {GL_DIFFUSE, c.fMaterialDiffuse},
                                                       {GL_SPECULAR, c.fMaterialSpecular},
                                                       {GL_EMISSION, c.fMaterialEmission}};
    for (const auto& [channel, recorded] : materials) {
        TportColor actual;
        glGetMaterialfv(GL_FRONT, channel, &actual.r);
        EXPECT_EQ(actual, recorded) << GlRecorder::enumName(channel);
    }
    const std::pair<GLenum, GLint> environment[] = {
        {GL_TEXTURE_ENV_MODE, GLint(c.fTextureEnv)}, {c.fCombineParam, GLint(c.fCombine)},
        {c.fSourceParam, GLint(c.fSource)},          {c.fOperandParam, GLint(c.fOperand)},
        {c.fScaleParam, GLint(c.fScale)}};
    for (const auto& [name, recorded] : environment) {
        GLint actual = 0;
        glGetTexEnviv(GL_TEXTURE_ENV, name, &actual);
        EXPECT_EQ(actual, recorded) << GlRecorder::enumName(name);
    }
    const std::pair<GLenum, GLint> parameters[] = {{GL_TEXTURE_WRAP_S, GLint(c.fTextureWrap)},
                                                   {GL_TEXTURE_WRAP_T, GLint(c.fTextureWrap)},
                                                   {GL_TEXTURE_MIN_FILTER, GLint(c.fTextureMinFilter)},
                                                   {GL_TEXTURE_MAG_FILTER, GLint(c.fTextureMagFilter)}};
    for (const auto& [name, recorded] : parameters) {
        GLint actual = 0;
        glGetTexParameteriv(c.fTextureTarget, name, &actual);
        EXPECT_EQ(actual, recorded) << GlRecorder::enumName(name);
    }

    // What OpenGL does not have, or ports set before they draw.
    EXPECT_EQ(c.fColor, kCblack);
    EXPECT_EQ(c.fClearColor, kCblack);
    EXPECT_EQ(c.fShadeModel, GLenum(GL_FLAT));
    EXPECT_EQ(c.fHardwareIndex, 0xFFFF);
    EXPECT_EQ(c.fValidBits.value(), 0x3Fu) << "all to be sent before they are trusted";
    EXPECT_EQ(c.fIndexBuffer, 7u);
    EXPECT_EQ(c.fIndexWriteMask, 0xFFFFFFFFu);
}

TEST(GlContext, KeepsOrderOfFields)
{
    const TglContext c(2, false);
    const void* const fields[] = {
        &c.fColor, &c.fClearColor, &c.fColorIndex, &c.fHardwareIndex, &c.fBlending, &c.fLineWidth, &c.fDirtyBits,
        &c.fValidBits, &c.fIndexBufferCount, &c.fScissorX, &c.fScissorY, &c.fScissorWidth, &c.fScissorHeight,
        &c.fDepthFunc, &c.fDepthMask, &c.fColorMaskRed, &c.fColorMaskGreen, &c.fColorMaskBlue, &c.fColorMaskAlpha,
        &c.fLineStipple, &c.fIndexBuffer, &c.fIndexWriteMask, &c.fLightModelAmbient, &c.fLocalViewer, &c.fShadeModel,
        &c.fMaterialAmbient, &c.fMaterialDiffuse, &c.fMaterialSpecular, &c.fMaterialEmission, &c.fMaterialShininess,
        &c.fBlendSource, &c.fBlendDestination, &c.fTextureEnv, &c.fTextureWrap, &c.fTextureMinFilter,
        &c.fTextureMagFilter, &c.fTextureGenMode, &c.fTextureTarget, &c.fTextureUnit, &c.fCombineParam, &c.fCombine,
        &c.fSourceParam, &c.fSource, &c.fOperandParam, &c.fOperand, &c.fScaleParam, &c.fScale, &c.fBlendEquation,
        &c.fBuffer, &c.fPointSize, &c.fRedBits, &c.fGreenBits, &c.fBlueBits, &c.fAlphaBits, &c.fStencilBits};
    for (std::size_t i = 1; i < std::size(fields); ++i)
        EXPECT_LT(fields[i - 1], fields[i]) << "field " << i;
}

TEST(GlContext, TakesTheColourOfATablesEntry)
{
    PortWindow<> made(60, 40);
    made.port().setCurrentContext();
    TglContext context(2, false);
    GlRecorder recorder;
    recorder.start();
    context.colorIndex(nullptr, 3);
    EXPECT_THAT(recorder.calls(), IsEmpty());
    EXPECT_EQ(context.fColorIndex, 0);

    TglColorTable table(7);
    table.setColorTableTopology(7, 2, 0, 1);
    for (const short index : {short(0), short(2), short(4), short(5), short(-1), short(32767)}) {
        recorder.start();
        context.fColor = TportColor(0.1f, 0.2f, 0.3f, 0.4f);
        context.colorIndex(&table, index);
        EXPECT_EQ(context.fColorIndex, index);
        const bool inside = index >= 0 && unsigned(index) < table.size();
        EXPECT_EQ(context.fHardwareIndex, table.hardwareIndex(inside ? index : 1));
        EXPECT_EQ(context.fColor, table.colorRGB(index));
        EXPECT_THAT(recorder.calls(), ElementsAre("glColor3fv([0 0 0])"));
    }
    TglColorTable empty(8);
    context.colorIndex(&empty, 5);
    EXPECT_EQ(context.fColor, kCblack);
}

TEST(GlContext, ChangesIndexPlanesByTheirMask)
{
    PortWindow<> made(60, 40);
    made.port().setCurrentContext();
    TglContext context(2, false);
    context.fColorIndex = 9;
    context.fHardwareIndex = 9;
    GlRecorder recorder;
    recorder.start();
    context.setIndexBuffer(4, -1);
    EXPECT_THAT(recorder.calls(), IsEmpty());
    EXPECT_EQ(context.fIndexBuffer, 7u) << "an equal mask changes nothing, not even the buffer";
    EXPECT_EQ(context.fColorIndex, 9);

    context.setIndexBuffer(4, 0x801);
    EXPECT_THAT(recorder.calls(), ElementsAre("glIndexMask(0x801)"));
    EXPECT_EQ(context.fIndexBuffer, 4u);
    EXPECT_EQ(context.fIndexWriteMask, 0x801u);
    EXPECT_EQ(context.fHardwareIndex, TglContext::kUnknownIndex);
    EXPECT_EQ(context.fColorIndex, 0);
    EXPECT_EQ(context.fColor, kCtransparent);
}

TEST(GlContext, SharesTheListOfItsLineStipple)
{
    PortWindow<> made(60, 40);
    made.port().setCurrentContext();
    TglLineStipple stipple(0x5555, 2);
    stipple.fList = TcountedPtr<TglListId>(new TglListId(1));
    const GLuint list = stipple.fList->first();
    glNewList(list, GL_COMPILE);
    glEndList();
    {
        TglContext context(2, false);
        context.fLineStipple = stipple;
        EXPECT_EQ(context.fLineStipple.fList->first(), list);
        stipple = TglLineStipple();
        EXPECT_TRUE(glIsList(list)) << "the record holds it";
    }
    EXPECT_FALSE(glIsList(list)) << "the last holder has gone";
}
