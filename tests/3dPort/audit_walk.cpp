// Random walks over everything that changes recorded state, on two ports in turn.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/T4dDblVector.h"
#include "foundation/TglobalTranslatorBase.h"

#include <QPixmap>
#include <QX11Info>

#include "QtExtensions/QlirnX11.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>
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
        const auto left = short(below(3) * 10);
        const auto bottom = short(below(3) * 10);
        return TportRect(left, bottom, short(left + below(3) * 20), short(bottom + below(3) * 15));
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
        for (int i = 0; i < 6; ++i) {
            const auto capability = one<GLenum>({GL_BLEND, GL_CULL_FACE, GL_SCISSOR_TEST, GL_DEPTH_TEST, GL_FOG,
                                                 GL_LIGHTING, GL_DITHER, GL_LINE_STIPPLE, GL_POLYGON_OFFSET_FILL});
            (flag() ? glEnable : glDisable)(capability);
        }
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
    }

    std::mt19937 fEngine;
};

const Twalk::Toperation Twalk::kOperations[] = {
    {"color", [](Twalk& d, T3dPort& p) { p.color(d.colour()); }},
    {"pointSize", [](Twalk& d, T3dPort& p) { p.pointSize(d.value()); }},
    {"pointSmoothing", [](Twalk& d, T3dPort& p) { p.pointSmoothing(d.flag()); }},
    {"lineWidth", [](Twalk& d, T3dPort& p) { p.lineWidth(d.value()); }},
    {"lineWidthStateChanged", [](Twalk& d, T3dPort& p) { p.lineWidthStateChanged(d.value()); }},
    {"blending", [](Twalk& d, T3dPort& p) { p.blending(d.flag()); }},
    {"blendingStateChanged", [](Twalk& d, T3dPort& p) { p.blendingStateChanged(d.flag()); }},
    {"blendFunc", [](Twalk& d, T3dPort& p) { p.blendFunc(d.factor(), d.factor()); }},
    {"setLayerBlendMode", [](Twalk& d, T3dPort& p) { p.setLayerBlendMode(d.below(13)); }},
    {"lineSmoothing", [](Twalk& d, T3dPort& p) { p.lineSmoothing(d.flag()); }},
    {"polygonMode",
     [](Twalk& d, T3dPort& p) {
         p.polygonMode(d.one({T3dPort::kFront, T3dPort::kBack, T3dPort::kFrontAndBack}),
                       d.one({T3dPort::kPolygonPoint, T3dPort::kPolygonLine, T3dPort::kPolygonFill}));
     }},
    {"cullFace", [](Twalk& d, T3dPort& p) { p.cullFace(T3dPort::TcullingMethod(d.below(4))); }},
    {"cullFace asked", [](Twalk&, T3dPort& p) { p.cullFace(); }},
    {"depthRange", [](Twalk& d, T3dPort& p) { p.depthRange(d.value(), d.value()); }},
    {"depthTest", [](Twalk& d, T3dPort& p) { p.depthTest(d.flag()); }},
    {"depthMask", [](Twalk& d, T3dPort& p) { p.depthMask(d.flag()); }},
    {"depthFunc", [](Twalk& d, T3dPort& p) { p.depthFunc(T3dPort::TdepthFunc(GL_NEVER + d.below(8))); }},
    {"accum", [](Twalk& d, T3dPort& p) { p.accum(T3dPort::kAccumLoad, d.value()); }},
    {"clearColor", [](Twalk& d, T3dPort& p) { p.clearColor(d.colour()); }},
    {"clearColor asked", [](Twalk&, T3dPort& p) { p.clearColor(); }},
    {"clear", [](Twalk&, T3dPort& p) { p.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT); }},
    {"scissor", [](Twalk& d, T3dPort& p) { p.scissor(d.rect(), d.flag()); }},
    {"scissor of all", [](Twalk& d, T3dPort& p) { p.scissor(TportRect(0, 0, 200, 200), d.flag()); }},
    {"polygonOffset", [](Twalk& d, T3dPort& p) { p.polygonOffset(d.value(), d.value()); }},
    {"polygonOffsetLower", [](Twalk&, T3dPort& p) { p.polygonOffsetLower(); }},
    {"polygonOffsetRaise", [](Twalk&, T3dPort& p) { p.polygonOffsetRaise(); }},
    {"setNoPolygonOffset", [](Twalk& d, T3dPort& p) { p.setNoPolygonOffset(d.flag()); }},
    {"shadeModel", [](Twalk& d, T3dPort& p) { p.shadeModel(d.one({T3dPort::kShadeFlat, T3dPort::kShadeSmooth})); }},
    {"shadeModelChanged",
     [](Twalk& d, T3dPort& p) { p.shadeModelChanged(d.one({T3dPort::kShadeFlat, T3dPort::kShadeSmooth})); }},
    {"mainDepth", [](Twalk&, T3dPort& p) { p.mainDepth(); }},
    {"zbufferDepth", [](Twalk&, T3dPort& p) { p.zbufferDepth(); }},
    {"setFogEnabled", [](Twalk& d, T3dPort& p) { p.setFogEnabled(d.flag()); }},
    {"setFogSource",
     [](Twalk& d, T3dPort& p) { p.setFogSource(d.one({TglContext::kFogCoordinate, TglContext::kFragmentDepth})); }},

    {"makeCurrent", [](Twalk&, T3dPort& p) { p.makeCurrent(); }},
    {"setCurrentContext", [](Twalk&, T3dPort& p) { p.setCurrentContext(); }},
    {"setContext", [](Twalk&, T3dPort& p) { p.setContext(T3dPort::kPrimaryContext); }},
    {"setDrawingPlanes",
     [](Twalk& d, T3dPort& p) { p.setDrawingPlanes(d.one({T3dPort::kMainPlanes, T3dPort::kSecondPlanes})); }},
    {"initContext", [](Twalk&, T3dPort& p) { p.initContext(); }},
    {"initBuffer",
     [](Twalk&, T3dPort& p) {
         p.makeCurrent();
         p.initBuffer();
     }},
    {"resizeDrawingPlanes", [](Twalk&, T3dPort& p) { p.resizeDrawingPlanes(); }},
    {"setPortRect", [](Twalk& d, T3dPort& p) { p.setPortRect(d.rect()); }},
    {"pushViewport", [](Twalk& d, T3dPort& p) { p.pushViewport(d.rect()); }},
    {"popViewport", [](Twalk&, T3dPort& p) { p.popViewport(); }},
    {"OnPaint", [](Twalk&, T3dPort& p) { p.OnPaint(); }},
    {"swapBuffers", [](Twalk&, T3dPort& p) { p.swapBuffers(); }},
    {"the widget made current", [](Twalk&, T3dPort& p) { p.glWidget()->makeCurrent(); }},
    {"nothing current",
     [](Twalk&, T3dPort&) {
         glXMakeCurrent(QX11Info::display(), QlirnX11::kNone, nullptr);
         T3dPort::nativeBindingMoved();
     }},
    {"scene flushed",
     [](Twalk& d, T3dPort&) { TglobalTranslatorBase::setFlushingSceneCondition(d.flag()); }},

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
    {"renderToPixmap",
     [](Twalk& d, T3dPort& p) {
         if (d.below(4) == 0)
             p.renderToPixmap(8, 8);
     }},
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
        text += "    " + line.toStdString() + '\n';
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
    std::deque<std::string> path;
    for (int i = 0; i < kSteps; ++i) {
        const unsigned number = walk.below(2);
        path.push_back(std::to_string(number) + " " + walk.step(*ports[number]));
        // Asking a port makes it current. Only one of them is asked, then the other one is found as the step left it.
        const unsigned asked = walk.below(2);
        const std::string found = listed(ports[asked]->stateDifferences());
        if (path.size() > 12)
            path.pop_front();
        if (found.empty())
            continue;
        std::string last;
        for (const std::string& step : path)
            last += "    port " + step + '\n';
        FAIL() << "seed " << GetParam() << ", step " << i << ", port " << asked << ":\n" << found << "after\n" << last;
    }
    EXPECT_EQ("", listed(ports[0]->stateDifferences()) + listed(ports[1]->stateDifferences()));
    TglobalTranslatorBase::setFlushingSceneCondition(false);
}

INSTANTIATE_TEST_SUITE_P(Seeds, AuditWalk, testing::Range(1u, 9u));
