// The lists behind the shapes: when they are compiled and who calls them, and what a shape leaves as it was.

#include "3dPort/curves_support.h"

#include <QX11Info>

#include "Graphics/glResources/TglDisplayList.h"

#include <GL/glx.h>

#include <memory>

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
    std::vector<double> state(12 * 16);
    double* values = state.data();
    for (const GLenum name :
         {GL_POLYGON_MODE, GL_EDGE_FLAG, GL_MATRIX_MODE, GL_MODELVIEW_STACK_DEPTH, GL_MODELVIEW_MATRIX, GL_LIST_INDEX,
          GL_CURRENT_COLOR, GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_CULL_FACE, GL_LIGHTING, GL_NORMALIZE}) {
        glGetDoublev(name, values);
        values += 16;
    }
    return state;
}

} // namespace

using SolidLists = Shapes;

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
    if (T3dPort::fsDepreciateFixedFunction)
        GTEST_SKIP() << "boxes and circles come from vertex arrays, not from lists";
    for (const ListedShape& shape : kListedShapes) {
        SCOPED_TRACE(shape.name);
        TglDisplayList hosts;
        const auto listing = [&](T3dPort& p) {
            p.newList(hosts, T3dPort::kCompile);
            shape.draw(p, true);
            p.endList();
        };
        const Sent sent = sentBy(callsOf(listing));
        EXPECT_LT(0u, sent.primitives.size()) << "drawn at once";
        EXPECT_EQ(1, std::count_if(sent.others.begin(), sent.others.end(),
                                   [](auto& call) { return call.rfind("glNewList", 0) == 0; }));

        // Afterwards the shape has a list as ever, which draws what the host's does.
        const auto fromHosts = pixelsOf([&](T3dPort&) { hosts.call(); });
        EXPECT_EQ(pixelsOf([&](T3dPort& p) { shape.draw(p, true); }), fromHosts);
        EXPECT_EQ(0u, sentBy(callsOf(listing)).primitives.size()) << "called from the host's";
        EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
    }
}

TEST_F(SolidLists, SurviveThePortThatMadeThem)
{
    if (T3dPort::fsDepreciateFixedFunction)
        GTEST_SKIP() << "boxes and circles come from vertex arrays, not from lists";
    auto maker = std::make_unique<PortWindow<>>(kSize, kSize);
    ASSERT_TRUE(maker->show());
    for (const Draw& draw : allShapes())
        draw(maker->port());
    maker.reset();
    for (const ListedShape& shape : kListedShapes) {
        const Draw draw = [&](T3dPort& p) { shape.draw(p, true); };
        const auto pixels = pixelsOf(draw);
        EXPECT_LT(20, kSize * kSize - std::count(pixels.begin(), pixels.end(), 0u)) << shape.name;
        EXPECT_EQ(1u, callsOf(draw).size()) << shape.name;
    }
    // The lists go with the static objects: the program ends well, though the port with a context never goes.
    auto* forgotten = new PortWindow<>(kSize, kSize);
    ASSERT_TRUE(forgotten->show());
    forgotten->port().sphere(true);
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
    EXPECT_EQ("glGenLists(1)", callsOf([](T3dPort& p) { p.box(true); }).at(0));
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
