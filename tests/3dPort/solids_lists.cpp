// The lists behind the shapes: when they are compiled and who calls them, and what a shape leaves as it was.

#include "3dPort/curves_support.h"

#include <QX11Info>

#include "Graphics/glResources/TglDisplayList.h"

#include <GL/glx.h>

namespace {

/** Every listed shape in both forms, and with a centre. */
std::vector<Draw> allShapes()
{
    std::vector<Draw> shapes = {
        [](T3dPort& p) { p.rect(1, 1, -1, -1, false); },
        [](T3dPort& p) { p.arc(kCentre, T4dDblVector(1, 0, 0), T4dDblVector(0, 1, 1), true); },
        [](T3dPort& p) { p.ring(kCentre, 0.5f, 1, true); },
        [](T3dPort& p) { p.outline_cone(3); },
    };
    for (const ListedShape& shape : kListedShapes) {
        for (const bool filled : {false, true}) {
            shapes.push_back([=](T3dPort& p) { shape.draw(p, filled); });
            shapes.push_back([=](T3dPort& p) { shape.placed(p, filled); });
        }
    }
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

} // namespace

class SolidLists : public Shapes
{
};

TEST_F(SolidLists, LeaveStateAlone)
{
    port().color(TportColor(0.25f, 0.5f, 0.75f, 1));
    port().setCurrentContext();
    for (const bool deprecated : {false, true}) {
        T3dPort::fsDepreciateFixedFunction = deprecated;
        const std::vector<Draw> shapes = allShapes();
        for (std::size_t i = 0; i < 2 * shapes.size(); ++i) {
            const std::vector<double> before = unrecordedState();
            shapes[i / 2](port());
            EXPECT_EQ(before, unrecordedState()) << "shape " << i / 2;
            EXPECT_EQ(TstringArray(), port().stateDifferences()) << "shape " << i / 2;
            EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
        }
    }
}

TEST_F(SolidLists, FirstUseInsideOfAnothersListNestsNothing)
{
    const auto startsLists = [](const Calls& calls) {
        return std::count_if(calls.begin(), calls.end(), [](auto& call) { return call.rfind("glNewList", 0) == 0; });
    };
    for (const ListedShape& shape : kListedShapes) {
        SCOPED_TRACE(shape.name);
        TglDisplayList hosts;
        const auto listing = [&](T3dPort& p) {
            p.newList(hosts, T3dPort::kCompile);
            shape.draw(p, true);
            p.endList();
        };
        const Calls calls = callsOf(listing);
        EXPECT_EQ(1, startsLists(calls));
        EXPECT_LT(0u, sentBy(calls).primitives.size()) << "drawn at once";

        // Afterwards the shape has a list as ever, which draws what the host's does.
        const auto fromHosts = pixelsOf([&](T3dPort&) { hosts.call(); });
        EXPECT_EQ(1, startsLists(callsOf([&](T3dPort& p) { shape.draw(p, true); })));
        EXPECT_EQ(pixelsOf([&](T3dPort& p) { shape.draw(p, true); }), fromHosts);
        EXPECT_EQ(0u, sentBy(callsOf(listing)).primitives.size()) << "called from the host's";
        EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
    }
}

TEST_F(SolidLists, SurviveThePortThatMadeThem)
{
    {
        PortWindow<> maker(kSize, kSize);
        ASSERT_TRUE(maker.show());
        for (const Draw& draw : allShapes())
            draw(maker.port());
    }
    for (const ListedShape& shape : kListedShapes) {
        const Draw draw = [&](T3dPort& p) { shape.draw(p, true); };
        const auto pixels = pixelsOf(draw);
        EXPECT_LT(20, kSize * kSize - std::count(pixels.begin(), pixels.end(), 0u)) << shape.name;
        EXPECT_EQ(1u, callsOf(draw).size()) << shape.name;
    }
}

/** The lists go with the static objects: the program has to end well, though the port that holds a context never goes.
 */
TEST(SolidListsAtExit, TouchNoContextThatIsGone)
{
    auto* forgotten = new PortWindow<>(64, 64);
    ASSERT_TRUE(forgotten->show());
    for (const Draw& draw : allShapes())
        draw(forgotten->port());
}

TEST_F(SolidLists, WithoutContextAreMadeLaterInstead)
{
    T3dPort detached(nullptr, "testPort", false);
    // Not even the resource context.
    glXMakeCurrent(QX11Info::display(), 0, nullptr);
    T3dPort::nativeBindingMoved();
    for (const Draw& draw : allShapes())
        draw(detached);
    T3dPort::fsDepreciateFixedFunction = false;
    port().setCurrentContext();
    for (const ListedShape& shape : kListedShapes) {
        const Sent sent = sentBy(callsOf([&](T3dPort& p) { shape.draw(p, true); }));
        ASSERT_EQ(4u, sent.others.size()) << shape.name;
        EXPECT_EQ("glGenLists(1)", sent.others[0]) << shape.name;
    }
}

TEST_F(SolidLists, OutlineConeColoursItsLinesOnly)
{
    const auto others = [this](short index) { return callsOf([index](T3dPort& p) { p.outline_cone(index); }); };
    TglContext& record = *T3dPortProbe::context(port());
    auto* table = const_cast<TglColorTable*>(T3dPortProbe::activeColorTable(port()));
    ASSERT_NE(nullptr, table);
    others(0);
    record.colorIndex(table, 5);
    const Calls same = others(5);
    ASSERT_EQ(2u, same.size()) << "the index in force already";
    EXPECT_EQ(0u, same[0].rfind("glCallList", 0));
    EXPECT_NE(same[0], same[1]);

    // Another one, and the former afterwards.
    const std::string own = callsOf([&](T3dPort&) { record.colorIndex(table, 5); }).at(0);
    const std::string other = callsOf([&](T3dPort&) { record.colorIndex(table, 7); }).at(0);
    record.colorIndex(table, 5);
    EXPECT_EQ((Calls{same[0], other, same[1], own}), others(7));
    EXPECT_EQ(5, record.fColorIndex);

    // A colour that is no index: nobody can say which to return to, but the colour is known.
    port().color(TportColor(0.25f, 0.5f, 0.75f, 0.5f));
    for (const short index : {short(5), short(-1), std::numeric_limits<short>::max()})
        EXPECT_EQ("glColor3fv([0.25 0.5 0.75])", others(index).back());
    EXPECT_EQ(TportColor(0.25f, 0.5f, 0.75f, 0.5f), record.fColor);
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}
