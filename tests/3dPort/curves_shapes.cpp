// The flat shapes of a port: what they send, and what can be seen of it.

#include "3dPort/curves_support.h"

using FlatShapes = Shapes;

TEST_F(FlatShapes, SendVerticesInOrder)
{
    if (T3dPort::fsDepreciateFixedFunction)
        GTEST_SKIP() << "flat shapes come from vertex arrays";
    const Calls outline = {"glBegin(GL_LINE_LOOP)", "glVertex2f(1, 2)",   "glVertex2f(5, 2)",
                           "glVertex2f(5, 4.5)",    "glVertex2f(1, 4.5)", "glEnd()"};
    Calls filled = outline;
    filled[0] = "glBegin(GL_QUADS)";
    const struct
    {
        Draw draw;
        Calls calls;
    } shapes[] = {
        {[](T3dPort& p) { p.point(T4dDblPoint(0.1, 2, 3, 7)); },
         {"glBegin(GL_POINTS)", "glVertex3dv([0.1 2 3])", "glEnd()"}},
        {[](T3dPort& p) { p.point(1, 2, 3); }, {"glBegin(GL_POINTS)", "glVertex3f(1, 2, 3)", "glEnd()"}},
        {[](T3dPort& p) { p.line(3, 4, 1, 2); },
         {"glBegin(GL_LINES)", "glVertex2f(3, 4)", "glVertex2f(1, 2)", "glEnd()"}},
        {[](T3dPort& p) { p.rect(1, 2, 5, 4.5f, false); }, outline},
        {[](T3dPort& p) { p.rect(5, 2, 1, 4.5f, true); }, filled},
        {[](T3dPort& p) { p.rect(1, 4.5f, 5, 2, true); }, filled},
        {[](T3dPort& p) { p.rect(T4dDblPoint(5, 2, 9, 3), T4dDblPoint(1, 4.5, -9, 0), true); }, filled},
    };
    for (const auto& shape : shapes)
        EXPECT_EQ(shape.calls, callsOf(shape.draw));

    T3dPort::fsDepreciateFixedFunction = true;
    const Calls arrays = {"glEnableClientState(GL_VERTEX_ARRAY)", "glVertexPointer(2, GL_FLOAT, 0, pointer)",
                          "glDrawElements(GL_QUADS, 4, GL_UNSIGNED_SHORT, pointer)",
                          "glDisableClientState(GL_VERTEX_ARRAY)"};
    EXPECT_EQ(arrays, callsOf([](T3dPort& p) { p.rect(1, 1, 0, 0, true); }));
}

TEST_F(FlatShapes, BothPathsDrawTheSame)
{
    const Draw shapes[] = {
        [](T3dPort& p) { p.rect(1.3f, -0.7f, -1.1f, 0.9f, false); },
        [](T3dPort& p) { p.rect(1.3f, -0.7f, -1.1f, 0.9f, true); },
        [](T3dPort& p) { p.line(-1.7f, 1.1f, 1.3f, -0.6f); },
        [](T3dPort& p) { p.circle(false, true); },
        [](T3dPort& p) { p.circle(T4dDblPoint(0.3, -0.2, 1), 1.4f, true); },
        [](T3dPort& p) { p.box(false); },
        [](T3dPort& p) { p.box(T4dDblPoint(0.1, -0.2, 0.3), 0.7f, -0.9f, 1.1f, true); },
    };
    port().depthTest(true);
    port().setDefaultLight(0, T4dDblVector(0.5, 0.3, 1));
    port().enableLight(0);
    port().setLightingModel();
    for (const double angle : {0.4, 3.54}) {
        port().loadIdentity();
        port().rotate(angle, 0.5, 0.1);
        for (std::size_t i = 0; i < std::size(shapes); ++i) {
            std::vector<QRgb> pixels[2];
            for (const bool arrays : {false, true}) {
                // A filled box leaves the normal of its last face behind, arrays leave any.
                glNormal3f(0, 0, 1);
                T3dPort::fsDepreciateFixedFunction = arrays;
                pixels[arrays] = pixelsOf(shapes[i]);
            }
            EXPECT_LT(30, kSize * kSize - std::count(pixels[0].begin(), pixels[0].end(), 0u)) << i;
            EXPECT_EQ(pixels[0], pixels[1]) << "shape " << i << ", turned by " << angle;
        }
    }
}

/** Steps of 6 degrees that set out from @p from towards @p aside, and then @p to; as a line and filled. */
void expectArc(const Xyz& from, const Xyz& aside, int steps, const Xyz& to, const Calls& line, const Calls& filled)
{
    std::vector<Xyz> points;
    for (int i = 0; i <= steps; ++i) {
        const Xyz turn = turned({1, 0, 0}, 6 * i);
        points.push_back(aside == Xyz() ? from : from * turn.x + aside * turn.y);
    }
    points.push_back(to);
    expectSent({{"GL_LINE_STRIP", with({}, points)}}, sentBy(line).primitives);
    points.insert(points.begin(), Xyz{0, 0, 0});
    expectSent({{"GL_POLYGON", with(kUp, points)}}, sentBy(filled).primitives);
    EXPECT_EQ(sentBy(line).others, sentBy(filled).others);
}

TEST_F(FlatShapes, ArcsWalkTheirStepsAndEndAtTheirEnd)
{
    const struct
    {
        double start, end;
        int steps;
    } arcs[] = {
        {0, 90, 15},   {0, 5, 0},     {90, 0, 15},     {0, 0, 0},     {0, 360, 60},    {-45, 45, 15},
        {30, -31, 10}, {10, 33.9, 3}, {720, 731.9, 1}, {0, -400, 66}, {1e-11, 5.9, 0}, {350, 10, 56},
    };
    const Xyz y{0, 1, 0};
    for (const auto& arc : arcs) {
        SCOPED_TRACE(std::to_string(arc.start) + " to " + std::to_string(arc.end));
        const auto line = callsOf([&](T3dPort& p) { p.arc(1, 2, 0.5f, arc.start, arc.end, false); });
        const auto filled = callsOf([&](T3dPort& p) { p.arc(1, 2, 0.5f, arc.start, arc.end, true); });
        expectArc(turned(y, -arc.start), turned(y, -arc.start - 90), arc.steps, turned(y, -arc.end), line, filled);
        EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 0)", "glScalef(0.5, 0.5, 0.5)", "glPopMatrix()"}),
                  sentBy(line).others);
        // Other than the disc's, an arc's normal comes after glBegin.
        EXPECT_EQ("glNormal3f(0, 0, 1)", filled[4]);
    }
}

TEST_F(FlatShapes, ArcsBetweenVectorsStayInTheirPlane)
{
    const Xyz x{2, 0, 0};
    const struct
    {
        Xyz from, to;
        int steps;
        Xyz aside; ///< the direction that the arc sets out in, as long as from
    } arcs[] = {
        {x, {-0.5, 0.5, 0}, 22, {0, 2, 0}},                     // 135 degrees
        {x, {3, -3 * std::sqrt(3.0) + 1e-9, 0}, 9, {0, -2, 0}}, // a hair less than 60
        {{0, 3, 0}, {0, 1, 1.2}, 8, {0, 0, 3}},                 // 50.2
        {x, {7, 0, 0}, 0, {}},                                  // no axis
        {x, {-1, 0, 0}, 30, {}},                                // none either
        {{}, {1, 2, 3}, 0, {}},
    };
    for (const auto& [from, to, steps, aside] : arcs) {
        SCOPED_TRACE(std::to_string(to.x) + " " + std::to_string(to.y));
        const auto calls = [&, &from = from, &to = to](bool filled) {
            return callsOf([&](T3dPort& p) { p.arc(kCentre, from, to, filled); });
        };
        const Calls line = calls(false);
        expectArc(from, aside, steps, to, line, calls(true));
        EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 3)", "glPopMatrix()"}), sentBy(line).others);
    }
}

TEST_F(FlatShapes, BadInputIsHarmless)
{
    const auto picture = pixelsOf([](T3dPort& p) { p.box(true); });
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float bad[] = {0, -1, 1e-40f, 3e38f, -3e38f, kInfinity, -kInfinity, std::numeric_limits<float>::quiet_NaN()};
    for (int i = 0; i < 256; ++i) {
        T3dPort::fsDepreciateFixedFunction = i & 1;
        const bool filled = i & 2;
        const float a = bad[i / 4 % 8];
        const float b = bad[i / 32];
        const T4dDblPoint centre(a, b, a, b);
        const auto calls = callsOf([=](T3dPort& p) {
            p.point(centre);
            p.rect(a, b, b, a, filled);
            p.line(a, 0, b, a);
            p.circle(centre, b, filled);
            p.arc(centre, a, double(a) * 1e200, b, filled);
            p.arc(a, b, 1, b, a, filled);
            p.arc(centre, T4dDblVector(a, b, 1), T4dDblVector(b, a, 0), filled);
            p.ring(centre, a, b, filled);
            p.ring(a, true);
            p.outline_cone(centre, a, b, std::numeric_limits<short>::min());
            p.box(centre, a, b, a, filled);
            p.sphere(centre, a, filled, filled);
        });
        EXPECT_GT(50000u, calls.size());
    }
    T3dPort::fsDepreciateFixedFunction = false;
    EXPECT_EQ(picture, pixelsOf([](T3dPort& p) { p.box(true); }));
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}
