// The lists behind the shapes: when they are compiled and who calls them, and what a shape leaves as it was.

#include "3dPort/curves_support.h"
#include "support/HostProbes.h"

#include <QX11Info>

#include "Graphics/glResources/TglDisplayList.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/T4dDblVector.h"
#include "foundation/TglobalTranslatorBase.h"

#include <GL/glx.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <set>

namespace {

const T4dDblPoint kCentre{1, 2, 3, 1};

/** The shapes that are one list each. */
const NamedDraw kUnitShapes[] = {
    {"circle", [](T3dPort& p) { p.circle(false, true); }},
    {"disc", [](T3dPort& p) { p.circle(true, true); }},
    {"wire box", [](T3dPort& p) { p.box(false); }},
    {"box", [](T3dPort& p) { p.box(true); }},
    {"wire cone", [](T3dPort& p) { p.cone(false); }},
    {"cone", [](T3dPort& p) { p.cone(true); }},
    {"wire sphere", [](T3dPort& p) { p.sphere(false); }},
    {"sphere", [](T3dPort& p) { p.sphere(true, false); }},
    {"wire cylinder", [](T3dPort& p) { p.cylinder(false, true); }},
    {"tube", [](T3dPort& p) { p.cylinder(true, false); }},
    {"cylinder", [](T3dPort& p) { p.cylinder(true, true); }},
    {"wire octahedron", [](T3dPort& p) { p.octahedron(false); }},
    {"octahedron", [](T3dPort& p) { p.octahedron(true); }},
    {"wire tetrahedron", [](T3dPort& p) { p.tetrahedron(false); }},
    {"tetrahedron", [](T3dPort& p) { p.tetrahedron(true); }},
};

struct PlacedShape
{
    const char* name;
    Draw draw;
    const char* scale;
};

const PlacedShape kPlacedShapes[] = {
    {"circle", [](T3dPort& p) { p.circle(kCentre, 0.5f, false); }, "glScalef(0.5, 0.5, 0.5)"},
    {"disc", [](T3dPort& p) { p.circle(kCentre, 0.5f, true); }, "glScalef(0.5, 0.5, 0.5)"},
    {"wire box", [](T3dPort& p) { p.box(kCentre, 0.5f, 2, 0.25f, false); }, "glScalef(0.5, 2, 0.25)"},
    {"box", [](T3dPort& p) { p.box(kCentre, 0.5f, 2, 0.25f, true); }, "glScalef(0.5, 2, 0.25)"},
    {"wire cone", [](T3dPort& p) { p.cone(kCentre, 0.5f, 2, false); }, "glScalef(0.5, 0.5, 2)"},
    {"cone", [](T3dPort& p) { p.cone(kCentre, 0.5f, 2, true); }, "glScalef(0.5, 0.5, 2)"},
    {"wire sphere", [](T3dPort& p) { p.sphere(kCentre, 0.5f, false); }, "glScalef(0.5, 0.5, 0.5)"},
    {"sphere", [](T3dPort& p) { p.sphere(kCentre, 0.5f, true); }, "glScalef(0.5, 0.5, 0.5)"},
    {"wire cylinder", [](T3dPort& p) { p.cylinder(kCentre, 0.5f, 2, false, false); }, "glScalef(0.5, 0.5, 2)"},
    {"tube", [](T3dPort& p) { p.cylinder(kCentre, 0.5f, 2, true, false); }, "glScalef(0.5, 0.5, 2)"},
    {"cylinder", [](T3dPort& p) { p.cylinder(kCentre, 0.5f, 2, true, true); }, "glScalef(0.5, 0.5, 2)"},
    {"wire octahedron", [](T3dPort& p) { p.octahedron(kCentre, 0.5f, false); }, "glScalef(0.5, 0.5, 0.5)"},
    {"octahedron", [](T3dPort& p) { p.octahedron(kCentre, 0.5f, true); }, "glScalef(0.5, 0.5, 0.5)"},
    {"wire tetrahedron", [](T3dPort& p) { p.tetrahedron(kCentre, 0.5f, false); }, "glScalef(0.5, 0.5, 0.5)"},
    {"tetrahedron", [](T3dPort& p) { p.tetrahedron(kCentre, 0.5f, true); }, "glScalef(0.5, 0.5, 0.5)"},
};
static_assert(std::size(kUnitShapes) == std::size(kPlacedShapes));

/** Every shape, flat ones and placed ones too. */
std::vector<NamedDraw> allShapes()
{
    std::vector<NamedDraw> shapes = {
        {"point", [](T3dPort& p) { p.point(0, 0, 0); }},
        {"rectangle", [](T3dPort& p) { p.rect(1, 1, -1, -1, false); }},
        {"filled rectangle", [](T3dPort& p) { p.rect(1, 1, -1, -1, true); }},
        {"line", [](T3dPort& p) { p.line(1, 1, -1, -1); }},
        {"arc", [](T3dPort& p) { p.arc(0, 0, 1, 10, 70, false); }},
        {"sector", [](T3dPort& p) { p.arc(0, 0, 1, 10, 70, true); }},
        {"arc between vectors", [](T3dPort& p) { p.arc(kCentre, T4dDblVector(1, 0, 0), T4dDblVector(0, 1, 1), true); }},
        {"ring", [](T3dPort& p) { p.ring(0.5f, false); }},
        {"placed ring", [](T3dPort& p) { p.ring(kCentre, 0.5f, 1, true); }},
        {"outline cone", [](T3dPort& p) { p.outline_cone(3); }},
        {"placed outline cone", [](T3dPort& p) { p.outline_cone(kCentre, 0.5f, 1, 3); }},
    };
    shapes.insert(shapes.end(), std::begin(kUnitShapes), std::end(kUnitShapes));
    for (const PlacedShape& shape : kPlacedShapes)
        shapes.push_back({shape.name, shape.draw});
    return shapes;
}

/** The driver's state that no record of a port tells of, and that shapes touch or might. */
std::vector<double> unrecordedState()
{
    // clang-format off
    constexpr GLenum kNames[] = {
        GL_POLYGON_MODE, GL_EDGE_FLAG, GL_MATRIX_MODE, GL_MODELVIEW_STACK_DEPTH, GL_PROJECTION_STACK_DEPTH,
        GL_MODELVIEW_MATRIX, GL_ATTRIB_STACK_DEPTH, GL_CLIENT_ATTRIB_STACK_DEPTH, GL_LIST_INDEX, GL_LIST_MODE,
        GL_CURRENT_COLOR, GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY, GL_EDGE_FLAG_ARRAY, GL_CULL_FACE,
        GL_LIGHTING, GL_NORMALIZE, GL_LINE_WIDTH, GL_POINT_SIZE};
    // clang-format on
    std::vector<double> state;
    for (const GLenum name : kNames) {
        double values[16] = {};
        glGetDoublev(name, values);
        state.insert(state.end(), values, values + 16);
    }
    return state;
}

/** The list that a call stream ending in "glCallList(7)" calls. */
std::string calledAtTheEnd(const Calls& calls)
{
    const std::string last = calls.empty() ? "" : calls.back();
    return last.rfind("glCallList(", 0) == 0 ? last.substr(11, last.size() - 12) : "";
}

} // namespace

class SolidLists : public Shapes
{
protected:
    /** Draws the scene half from above, so that every form shows. */
    static std::vector<QRgb> seen(T3dPort& port, const Draw& draw)
    {
        lookAtScene(port);
        port.rotate(0.9, 0.3, 0.2);
        port.setCurrentContext();
        return pixelsOf(port, draw);
    }
};

TEST_F(SolidLists, AreCompiledOnceAndThenCalled)
{
    std::set<std::string> lists;
    for (std::size_t i = 0; i < std::size(kUnitShapes); ++i) {
        SCOPED_TRACE(kUnitShapes[i].name);
        const Calls first = sentBy(callsOf(kUnitShapes[i].draw)).others;
        const std::string list = calledAtTheEnd(first);
        EXPECT_TRUE(lists.insert(list).second) << "shares list " << list;
        EXPECT_EQ(
            (Calls{"glGenLists(1)", "glNewList(" + list + ", GL_COMPILE)", "glEndList()", "glCallList(" + list + ")"}),
            first);
        EXPECT_EQ(Calls{"glCallList(" + list + ")"}, callsOf(kUnitShapes[i].draw));
        EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 3)", kPlacedShapes[i].scale, "glCallList(" + list + ")",
                         "glPopMatrix()"}),
                  callsOf(kPlacedShapes[i].draw));
    }
    // A wire cylinder is the same with caps and without.
    EXPECT_EQ(callsOf([](T3dPort& p) { p.cylinder(false, true); }),
              callsOf([](T3dPort& p) { p.cylinder(false, false); }));

    const Calls ring = sentBy(callsOf([](T3dPort& p) { p.ring(kCentre, 1, 2, false); })).others;
    EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 3)", "glScalef(2, 2, 1)", "glPopMatrix()"}), ring);
}

TEST_F(SolidLists, LeaveStateAlone)
{
    port().color(TportColor(0.25f, 0.5f, 0.75f, 1));
    port().setCurrentContext();
    for (const bool deprecated : {false, true}) {
        T3dPort::fsDepreciateFixedFunction = deprecated;
        for (const NamedDraw& shape : allShapes()) {
            SCOPED_TRACE(shape.name);
            for (int use = 0; use < 2; ++use) {
                const std::vector<double> before = unrecordedState();
                shape.draw(port());
                EXPECT_EQ(before, unrecordedState()) << "use " << use;
                EXPECT_EQ(TstringArray(), port().stateDifferences()) << "use " << use;
                EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
            }
        }
    }
}

TEST_F(SolidLists, StaleMatricesAreLoadedBeforeTheyAreMoved)
{
    for (const PlacedShape& shape : kPlacedShapes) {
        SCOPED_TRACE(shape.name);
        shape.draw(port());
        port().translate(0.5, 0, 0);
        const Calls calls = callsOf(shape.draw);
        const auto push = std::find(calls.begin(), calls.end(), "glPushMatrix()");
        const auto isLoad = [](const std::string& call) { return call.rfind("glLoadMatrixd", 0) == 0; };
        EXPECT_TRUE(std::any_of(calls.begin(), push, isLoad));
        EXPECT_FALSE(std::any_of(push, calls.end(), isLoad));
    }
}

/** While the host makes a new scene every operation makes its port current, and with forced viewports loads matrices.
 */
TEST(SolidListsForced, KeepTheirPlacesWhileMatricesAreLoadedEachTime)
{
    const ScopedEnv forced("LIRN_FORCE_VP_SIZE", "1");
    PortWindow<> window(64, 64);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    TglobalTranslatorBase::setNewingFileCondition(true);
    GlRecorder recorder;
    for (const PlacedShape& shape : kPlacedShapes) {
        SCOPED_TRACE(shape.name);
        recorder.start();
        shape.draw(port);
        recorder.stop();
        const Calls& calls = recorder.calls();
        EXPECT_LT(0, recorder.count("glLoadMatrixd"));
        const auto push = std::find(calls.begin(), calls.end(), "glPushMatrix()");
        const auto lastDrawn = std::find_if(calls.rbegin(), calls.rend(), [](const std::string& call) {
            return call.rfind("glCallList", 0) == 0 || call == "glEnd()";
        });
        EXPECT_EQ(0, std::count_if(push, std::max(push, lastDrawn.base()),
                                   [](const std::string& call) { return call.rfind("glLoadMatrix", 0) == 0; }));
    }
    TglobalTranslatorBase::setNewingFileCondition(false);
}

TEST_F(SolidLists, FirstUseInsideOfAnothersListNestsNothing)
{
    for (const NamedDraw& shape : kUnitShapes) {
        SCOPED_TRACE(shape.name);
        TglDisplayList hosts;
        lookAtScene(port());
        port().rotate(0.9, 0.3, 0.2);
        port().setCurrentContext();
        const Calls calls = callsOf([&](T3dPort& p) {
            p.newList(hosts, T3dPort::kCompile);
            shape.draw(p);
            p.endList();
        });
        EXPECT_EQ(1, std::count_if(calls.begin(), calls.end(),
                                   [](const std::string& call) { return call.rfind("glNewList", 0) == 0; }));
        EXPECT_LT(0u, sentBy(calls).primitives.size()) << "drawn at once";
        EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());

        // Afterwards the shape has a list as ever, which draws what the host's does.
        const auto fromHosts = seen(port(), [&](T3dPort&) { hosts.call(); });
        const auto own = seen(port(), shape.draw);
        EXPECT_LT(20, kSize * kSize - std::count(own.begin(), own.end(), 0u));
        EXPECT_EQ(own, fromHosts);
        EXPECT_NE("", calledAtTheEnd(callsOf(shape.draw)));

        // Compiled before, it is called from the host's.
        const Calls later = callsOf([&](T3dPort& p) {
            p.newList(hosts, T3dPort::kCompileAndExecute);
            shape.draw(p);
            p.endList();
        });
        EXPECT_EQ(0u, sentBy(later).primitives.size());
    }
}

TEST_F(SolidLists, PreparingInsideOfAnothersListLeavesItEmpty)
{
    TglDisplayList hosts;
    const Calls calls = callsOf([&](T3dPort& p) {
        p.newList(hosts, T3dPort::kCompile);
        p.circle(true, false);
        p.endList();
    });
    EXPECT_EQ(0u, sentBy(calls).primitives.size());
    EXPECT_LT(0.5, areaOf([](T3dPort& p) { p.circle(true, true); }));
}

TEST_F(SolidLists, OutlineConeInsideOfAnothersListIsWholeAfterwards)
{
    TglDisplayList hosts;
    port().newList(hosts, T3dPort::kCompile);
    port().outline_cone(2);
    port().endList();
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
    lookAtScene(port());
    const Calls calls = callsOf([](T3dPort& p) { p.outline_cone(2); });
    EXPECT_EQ(2, std::count_if(calls.begin(), calls.end(),
                               [](const std::string& call) { return call.rfind("glNewList", 0) == 0; }));
    EXPECT_EQ(2, std::count_if(calls.begin(), calls.end(),
                               [](const std::string& call) { return call.rfind("glCallList", 0) == 0; }));
}

TEST(SolidListsOfManyPorts, SurviveThePortThatMadeThem)
{
    PortWindow<> survivor(64, 64);
    ASSERT_TRUE(survivor.show());
    std::vector<Calls> calls;
    {
        PortWindow<> maker(64, 64);
        ASSERT_TRUE(maker.show());
        for (const NamedDraw& shape : kUnitShapes)
            shape.draw(maker.port());
        maker.port().outline_cone(1);
    }
    T3dPort& port = survivor.port();
    port.ortho(-2, 2, -2, 2, -4, 4);
    port.loadIdentity();
    port.rotate(0.9, 0.3, 0.2);
    port.clearColor(kCblack);
    port.color(kCwhite);
    GlRecorder recorder;
    for (const NamedDraw& shape : kUnitShapes) {
        SCOPED_TRACE(shape.name);
        port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        port.setCurrentContext();
        recorder.start();
        shape.draw(port);
        recorder.stop();
        EXPECT_EQ(Calls{"glCallList"}, recorder.names());
        std::vector<QRgb> pixels(64 * 64);
        glReadPixels(0, 0, 64, 64, GL_BGRA, GL_UNSIGNED_BYTE, pixels.data());
        EXPECT_LT(20, std::count_if(pixels.begin(), pixels.end(), [](QRgb p) { return (p & 0xFFFFFF) != 0; }));
    }
}

TEST(SolidListsOfManyPorts, SphereSwitchesOnlyWhenAsked)
{
    PortWindow<> one(64, 64);
    PortWindow<> other(64, 64);
    ASSERT_TRUE(one.show());
    ASSERT_TRUE(other.show());
    one.port().sphere(true);
    const T4dDblPoint centre(0, 0, 0);
    for (const bool makeCurrent : {false, true}) {
        for (const Draw& draw : {Draw([=](T3dPort& p) { p.sphere(true, makeCurrent); }),
                                 Draw([=](T3dPort& p) { p.sphere(centre, 2, true, makeCurrent); })}) {
            other.port().setCurrentContext();
            GlRecorder recorder;
            recorder.start();
            draw(one.port());
            recorder.stop();
            EXPECT_EQ(makeCurrent ? 1 : 0, recorder.count("glXMakeCurrent"));
            EXPECT_EQ(1, recorder.count("glCallList"));
            EXPECT_EQ(makeCurrent ? &one.port() : &other.port(), T3dPort::currentPort());
        }
    }
}

/** The lists go with the static objects: the program has to end well, though the port that holds a context never goes.
 */
TEST(SolidListsAtExit, TouchNoContextThatIsGone)
{
    auto* forgotten = new PortWindow<>(64, 64);
    ASSERT_TRUE(forgotten->show());
    for (const NamedDraw& shape : allShapes())
        shape.draw(forgotten->port());
}

TEST(SolidListsWithoutContext, AreMadeLaterInstead)
{
    T3dPort detached(nullptr, "testPort", false);
    ASSERT_EQ(nullptr, detached.glWidget());
    // Not even the resource context.
    glXMakeCurrent(QX11Info::display(), 0, nullptr);
    T3dPort::nativeBindingMoved();
    for (const NamedDraw& shape : allShapes())
        shape.draw(detached);
    T3dPort::fsDepreciateFixedFunction = false;

    PortWindow<> window(64, 64);
    ASSERT_TRUE(window.show());
    window.port().setCurrentContext();
    GlRecorder recorder;
    for (const NamedDraw& shape : kUnitShapes) {
        recorder.start();
        shape.draw(window.port());
        recorder.stop();
        EXPECT_EQ(1, recorder.count("glNewList")) << shape.name;
        EXPECT_EQ(1, recorder.count("glCallList")) << shape.name;
    }
}

TEST_F(SolidLists, WithoutANameShapesAreStillDrawn)
{
    for (const NamedDraw& shape : kUnitShapes) {
        SCOPED_TRACE(shape.name);
        GlRecorder::failNext("glGenLists", 1);
        const Calls calls = callsOf(shape.draw);
        EXPECT_LT(0u, sentBy(calls).primitives.size());
        EXPECT_EQ(Calls{"glGenLists(1)"}, sentBy(calls).others);
        EXPECT_NE("", calledAtTheEnd(callsOf(shape.draw)));
    }
}

TEST_F(SolidLists, OutlineConeColoursItsLinesOnly)
{
    const auto others = [this](short index) { return callsOf([index](T3dPort& p) { p.outline_cone(index); }); };
    TglContext& record = *T3dPortProbe::context(port());
    auto* table = const_cast<TglColorTable*>(T3dPortProbe::activeColorTable(port()));
    ASSERT_NE(nullptr, table);
    const Calls first = others(0);
    const std::string outline = "glCallList(" + [&] {
        for (auto call = first.rbegin(); call != first.rend(); ++call)
            if (call->rfind("glCallList(", 0) == 0)
                return call->substr(11);
        return std::string();
    }();
    const std::string solid = *std::find_if(first.begin(), first.end(),
                                            [](const std::string& call) { return call.rfind("glCallList(", 0) == 0; });
    ASSERT_NE(solid, outline);

    // The index in force already.
    record.colorIndex(table, 5);
    EXPECT_EQ((Calls{solid, outline}), others(5));

    // Another one, and the former afterwards.
    const std::string own = callsOf([&](T3dPort&) { record.colorIndex(table, 5); }).at(0);
    const std::string other = callsOf([&](T3dPort&) { record.colorIndex(table, 7); }).at(0);
    record.colorIndex(table, 5);
    EXPECT_EQ((Calls{solid, other, outline, own}), others(7));
    EXPECT_EQ(5, record.fColorIndex);
    EXPECT_NE(+TglContext::kUnknownIndex, record.fHardwareIndex);

    // A colour that is no index: nobody can say which to return to, but the colour is known.
    port().color(TportColor(0.25f, 0.5f, 0.75f, 0.5f));
    for (const short index : {short(5), short(7), short(-1), std::numeric_limits<short>::max()}) {
        const Calls calls = others(index);
        ASSERT_EQ(4u, calls.size());
        EXPECT_EQ("glColor3fv([0.25 0.5 0.75])", calls.back());
        EXPECT_EQ(TportColor(0.25f, 0.5f, 0.75f, 0.5f), record.fColor);
    }
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}

TEST_F(SolidLists, BadInputIsQuick)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const float sizes[] = {0, -1, 1e-40f, 3e38f, -3e38f, float(kInfinity), -float(kInfinity), float(kNaN)};
    const double places[] = {0, 1e300, -kInfinity, kNaN};
    const auto start = std::chrono::steady_clock::now();
    for (const bool deprecated : {false, true}) {
        T3dPort::fsDepreciateFixedFunction = deprecated;
        for (const double place : places) {
            const T4dDblPoint centre(place, -place, place, place);
            for (const float a : sizes) {
                for (const float b : sizes) {
                    for (const bool filled : {false, true}) {
                        port().box(centre, a, b, a, filled);
                        port().cone(centre, a, b, filled);
                        port().sphere(centre, a, filled, filled);
                        port().cylinder(centre, a, b, filled, true);
                        port().octahedron(centre, a, filled);
                        port().tetrahedron(centre, b, filled);
                        port().ring(centre, a, b, filled);
                    }
                    port().ring(a, true);
                    port().outline_cone(centre, a, b, std::numeric_limits<short>::min());
                }
            }
        }
    }
    glFinish();
    EXPECT_GT(30, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    T3dPort::fsDepreciateFixedFunction = false;
    lookAtScene(port());
    EXPECT_NEAR(4, areaOf([](T3dPort& p) { p.box(true); }), 0.01);
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}
