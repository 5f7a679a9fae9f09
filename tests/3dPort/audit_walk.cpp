// Random walks over everything that changes recorded state, on two ports in turn.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/T4dDblVector.h"

#include <QPixmap>
#include <QX11Info>

#include "QtExtensions/QlirnX11.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

class Twalk
{
public:
    explicit Twalk(unsigned seed) : fEngine(seed) {}

    /** Does something to @p port, and says what. */
    const char* step(T3dPort& port);

    unsigned below(std::size_t count)
    {
        return std::uniform_int_distribution<unsigned>(0, unsigned(count) - 1)(fEngine);
    }
    bool flag() { return below(2) != 0; }
    /** One of few values, so that equal ones in a row are frequent. */
    float value() { return 0.25f * float(1 + below(4)); }
    template <class T> T one(std::initializer_list<T> values) { return values.begin()[below(values.size())]; }
    TportColor colour() { return TportColor(value(), value(), value(), value()); }
    TportRect rect()
    {
        return TportRect(short(below(3) * 10), short(below(3) * 10), short(below(3) * 20), short(below(3) * 15));
    }
    T3dPort::TblendFunc factor()
    {
        return one({T3dPort::kBlendZero, T3dPort::kBlendOne, T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha,
                    T3dPort::kBlendDstColor});
    }

private:
    struct Toperation
    {
        const char* name;
        void (*run)(Twalk& dice, T3dPort& port);
    };

    static const Toperation kOperations[];

    /** What other libraries leave behind. */
    void disturb()
    {
        for (const GLenum capability :
             {GL_BLEND, GL_CULL_FACE, GL_SCISSOR_TEST, GL_DEPTH_TEST, GL_FOG, GL_LIGHTING, GL_DITHER, GL_LINE_STIPPLE,
              GL_POLYGON_OFFSET_FILL, GL_TEXTURE_GEN_S, GL_TEXTURE_GEN_R, GL_TEXTURE_CUBE_MAP})
            (flag() ? glEnable : glDisable)(capability);
        glPointSize(value());
        glLineWidth(value());
        glColor3f(value(), value(), value());
        glClearColor(value(), value(), value(), value());
        glBlendFunc(factor(), factor());
        glDepthFunc(GL_NEVER + below(8));
        glDepthMask(flag());
        glShadeModel(flag() ? GL_FLAT : GL_SMOOTH);
        glViewport(int(below(9)), 0, int(below(90)), 3);
        glScissor(0, int(below(9)), int(below(90)), 3);
        glMatrixMode(one<GLenum>({GL_MODELVIEW, GL_PROJECTION, GL_TEXTURE}));
        glLoadIdentity();
        glTranslatef(value(), 0, 0);
        glColorMask(flag(), flag(), flag(), flag());
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_BLEND);
        glActiveTexture(GL_TEXTURE0 + below(3));
    }

    std::mt19937 fEngine;
};

const Twalk::Toperation Twalk::kOperations[] = {
    {"color", [](Twalk& d, T3dPort& p) { p.color(d.colour()); }},
    {"pointSize", [](Twalk& d, T3dPort& p) { p.pointSize(d.value()); }},
    {"lineWidth", [](Twalk& d, T3dPort& p) { p.lineWidth(d.value()); }},
    {"blending", [](Twalk& d, T3dPort& p) { p.blending(d.flag()); }},
    {"blendFunc", [](Twalk& d, T3dPort& p) { p.blendFunc(d.factor(), d.factor()); }},
    {"setLayerBlendMode", [](Twalk& d, T3dPort& p) { p.setLayerBlendMode(d.below(13)); }},
    {"lineSmoothing", [](Twalk& d, T3dPort& p) { p.lineSmoothing(d.flag()); }},
    {"cullFace", [](Twalk& d, T3dPort& p) { p.cullFace(T3dPort::TcullingMethod(d.below(4))); }},
    {"depthTest", [](Twalk& d, T3dPort& p) { p.depthTest(d.flag()); }},
    {"depthMask", [](Twalk& d, T3dPort& p) { p.depthMask(d.flag()); }},
    {"depthFunc", [](Twalk& d, T3dPort& p) { p.depthFunc(T3dPort::TdepthFunc(GL_NEVER + d.below(8))); }},
    {"clearColor", [](Twalk& d, T3dPort& p) { p.clearColor(d.colour()); }},
    {"scissor", [](Twalk& d, T3dPort& p) { p.scissor(d.rect(), d.flag()); }},
    {"shadeModel", [](Twalk& d, T3dPort& p) { p.shadeModel(d.one({T3dPort::kShadeFlat, T3dPort::kShadeSmooth})); }},
    {"setFogEnabled", [](Twalk& d, T3dPort& p) { p.setFogEnabled(d.flag()); }},
    {"setFogSource",
     [](Twalk& d, T3dPort& p) { p.setFogSource(d.one({TglContext::kFogCoordinate, TglContext::kFragmentDepth})); }},

    {"setDrawingPlanes",
     [](Twalk& d, T3dPort& p) { p.setDrawingPlanes(d.one({T3dPort::kMainPlanes, T3dPort::kSecondPlanes})); }},
    {"setTextureEnvMode",
     [](Twalk& d, T3dPort& p) { p.setTextureEnvMode(d.one({TglContext::kEnvModulate, TglContext::kEnvDecal})); }},
    {"setTextureGenMode",
     [](Twalk& d, T3dPort& p) {
         p.setTextureGenMode(TglContext::TtextureGenMode(
             d.one({0, GL_SPHERE_MAP, GL_OBJECT_LINEAR, GL_NORMAL_MAP, -1, -2, -3, 5})));
     }},
    {"setTextureCombineBlend",
     [](Twalk& d, T3dPort& p) {
         p.setTextureCombineBlend(d.one({TglContext::kCombineRgb, TglContext::kCombineAlpha}),
                                  d.one({TglContext::kCombineReplace, TglContext::kCombineAdd}));
     }},
    {"textureTransform",
     [](Twalk& d, T3dPort& p) { p.textureTransform(d.value(), d.value(), 1, d.value(), 0, d.value()); }},
    {"activeTextureUnit",
     [](Twalk& d, T3dPort& p) { p.activeTextureUnit(TglContext::TtextureUnit(GL_TEXTURE0 + d.below(3))); }},
    {"activeTexCoordPointer",
     [](Twalk& d, T3dPort& p) { p.activeTexCoordPointer(TglContext::TtextureUnit(GL_TEXTURE0 + d.below(3))); }},

    {"initContext", [](Twalk&, T3dPort& p) { p.initContext(); }},
    {"resizeDrawingPlanes", [](Twalk&, T3dPort& p) { p.resizeDrawingPlanes(); }},
    {"pushViewport", [](Twalk& d, T3dPort& p) { p.pushViewport(d.rect()); }},
    {"popViewport", [](Twalk&, T3dPort& p) { p.popViewport(); }},
    {"OnPaint", [](Twalk&, T3dPort& p) { p.OnPaint(); }},
    {"the widget made current", [](Twalk&, T3dPort& p) { p.glWidget()->makeCurrent(); }},
    {"nothing current",
     [](Twalk&, T3dPort&) {
         glXMakeCurrent(QX11Info::display(), QlirnX11::kNone, nullptr);
         T3dPort::nativeBindingMoved();
     }},

    {"model-view matrix",
     [](Twalk& d, T3dPort& p) {
         p.matrixMode(GL_MODELVIEW);
         p.pushMatrix();
         p.rotate(d.value(), d.value(), 0);
         p.popMatrix(d.below(3));
     }},
    {"projection matrix", [](Twalk& d, T3dPort& p) { p.perspective(100 * d.value(), 1, d.value(), 10); }},
    {"pushOrtho2D", [](Twalk&, T3dPort& p) { p.pushOrtho2D(0, 10, 0, 10); }},
    {"popOrtho2D", [](Twalk&, T3dPort& p) { p.popOrtho2D(); }},

    {"foreign OpenGL",
     [](Twalk& d, T3dPort& p) {
         p.beginForeignGL();
         d.disturb();
         p.endForeignGL();
     }},
    {"renderToPixmap", [](Twalk&, T3dPort& p) { p.renderToPixmap(8, 8); }},
};

const char* Twalk::step(T3dPort& port)
{
    const Toperation& operation = kOperations[below(std::size(kOperations))];
    operation.run(*this, port);
    return operation.name;
}

std::string listed(const TstringArray& lines)
{
    std::string text;
    for (const Tstring& line : lines)
        text += line.toStdString() + '\n';
    return text;
}

class AuditWalk : public testing::TestWithParam<unsigned>
{
};

} // namespace

TEST_P(AuditWalk, RecordAndDriverStayTogether)
{
    constexpr int kSteps = 500;
    PortWindow<> first(60, 45, Buffering::kSingle);
    PortWindow<> second(50, 60, Buffering::kDouble);
    ASSERT_TRUE(first.show() && second.show());
    T3dPort* const ports[] = {&first.port(), &second.port()};
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasFogCoord);

    Twalk walk(GetParam());
    for (int i = 0; i < kSteps; ++i) {
        const unsigned number = walk.below(2);
        const char* const step = walk.step(*ports[number]);
        // Asking a port makes it current. Only one of them is asked, then the other one is found as the step left it.
        const unsigned asked = walk.below(2);
        ASSERT_EQ("", listed(ports[asked]->stateDifferences()))
            << "port " << asked << " after step " << i << ", port " << number << " " << step;
    }
    EXPECT_EQ("", listed(ports[0]->stateDifferences()) + listed(ports[1]->stateDifferences()));
}

INSTANTIATE_TEST_SUITE_P(Seeds, AuditWalk, testing::Range(1u, 9u));
