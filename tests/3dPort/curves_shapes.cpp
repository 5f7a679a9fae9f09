// The flat shapes of a port: what they send, and what can be seen of it.

#include "3dPort/curves_support.h"

#include <chrono>

class FlatShapes : public Shapes
{
};

TEST_F(FlatShapes, SendVerticesInOrder)
{
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
        {[](T3dPort& p) { p.rect(5, 4.5f, 1, 2, false); }, outline},
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
    for (int view = 0; view < 4; ++view) {
        if (view == 2) {
            port().enableLight(0);
            port().setLightingModel();
        }
        port().loadIdentity();
        port().rotate(0.4 + 3.14159 * view, 0.5, 0.1);
        for (std::size_t i = 0; i < std::size(shapes); ++i) {
            std::vector<QRgb> pixels[2];
            for (const bool arrays : {false, true}) {
                // A filled box leaves the normal of its last face behind, arrays leave any.
                glNormal3f(0, 0, 1);
                T3dPort::fsDepreciateFixedFunction = arrays;
                pixels[arrays] = pixelsOf(shapes[i]);
            }
            EXPECT_LT(30, kSize * kSize - std::count(pixels[0].begin(), pixels[0].end(), 0u)) << i;
            EXPECT_EQ(pixels[0], pixels[1]) << "shape " << i << ", view " << view;
        }
    }
}

/** An arc over @p points and the same filled. */
void expectArc(std::vector<Xyz> points, const Calls& line, const Calls& filled, const Calls& around)
{
    expectSent({{"GL_LINE_STRIP", with({}, points)}}, sentBy(line).primitives);
    points.insert(points.begin(), Xyz{0, 0, 0});
    expectSent({{"GL_POLYGON", with(kUp, points)}}, sentBy(filled).primitives);
    EXPECT_EQ(around, sentBy(line).others);
    EXPECT_EQ(around, sentBy(filled).others);
}

TEST_F(FlatShapes, ArcsWalkTheirStepsAndEndAtTheirEnd)
{
    const struct
    {
        double start;
        double end;
        int steps;
    } arcs[] = {
        {0, 90, 15},   {0, 5, 0},     {90, 0, 15},     {0, 0, 0},     {0, 360, 60},    {-45, 45, 15},
        {30, -31, 10}, {10, 33.9, 3}, {720, 731.9, 1}, {0, -400, 66}, {1e-11, 5.9, 0}, {350, 10, 56},
    };
    for (const auto& arc : arcs) {
        SCOPED_TRACE(std::to_string(arc.start) + " to " + std::to_string(arc.end));
        std::vector<Xyz> points;
        for (int i = 0; i <= arc.steps; ++i)
            points.push_back(turned({0, 1, 0}, -arc.start - 6 * i));
        points.push_back(turned({0, 1, 0}, -arc.end));
        const auto line = callsOf([&](T3dPort& p) { p.arc(1, 2, 0.5f, arc.start, arc.end, false); });
        const auto filled = callsOf([&](T3dPort& p) { p.arc(1, 2, 0.5f, arc.start, arc.end, true); });
        expectArc(points, line, filled,
                  {"glPushMatrix()", "glTranslated(1, 2, 0)", "glScalef(0.5, 0.5, 0.5)", "glPopMatrix()"});
        // Other than the disc's, an arc's normal comes after glBegin.
        EXPECT_EQ("glNormal3f(0, 0, 1)", filled[4]);
    }
}

TEST_F(FlatShapes, ArcsBetweenVectorsStayInTheirPlane)
{
    const T4dDblVector x(2, 0, 0);
    const struct
    {
        T4dDblVector from;
        T4dDblVector to;
        int steps;
        Xyz aside; ///< the direction that the arc sets out in, as long as from
    } arcs[] = {
        {x, {-0.5, 0.5, 0}, 22, {0, 2, 0}},                     // 135 degrees
        {x, {3, -3 * std::sqrt(3.0) + 1e-9, 0}, 9, {0, -2, 0}}, // a hair less than 60
        {{0, 3, 0}, {0, 1, 1.2}, 8, {0, 0, 3}},                 // 50.2
        {x, {5, 0.1, 0}, 0, {0, 2, 0}},
        {x, {7, 0, 0}, 0, {0, 0, 0}},   // no axis
        {x, {-1, 0, 0}, 30, {0, 0, 0}}, // none either
        {{0, 0, 0}, {1, 2, 3}, 0, {0, 0, 0}},
    };
    for (const auto& arc : arcs) {
        SCOPED_TRACE(std::to_string(arc.to.x) + " " + std::to_string(arc.to.y));
        const bool hasAxis = arc.aside.x != 0 || arc.aside.y != 0 || arc.aside.z != 0;
        std::vector<Xyz> points;
        for (int i = 0; i <= arc.steps; ++i) {
            const double c = hasAxis ? std::cos(radians(6 * i)) : 1;
            const double s = std::sin(radians(6 * i));
            points.push_back(
                {arc.from.x * c + arc.aside.x * s, arc.from.y * c + arc.aside.y * s, arc.from.z * c + arc.aside.z * s});
        }
        points.push_back({arc.to.x, arc.to.y, arc.to.z});
        expectArc(points, callsOf([&](T3dPort& p) { p.arc(kCentre, arc.from, arc.to, false); }),
                  callsOf([&](T3dPort& p) { p.arc(kCentre, arc.from, arc.to, true); }),
                  {"glPushMatrix()", "glTranslated(1, 2, 3)", "glPopMatrix()"});
    }
}

TEST_F(FlatShapes, ManyTurnsAreCutButEndWhereTheyWould)
{
    for (const double end : {1e9, -1e9, 3e9, 4e5 + 0.5}) {
        const Sent sent = sentBy(callsOf([&](T3dPort& p) { p.arc(0, 0, 1, 0, end, true); }));
        ASSERT_EQ(1u, sent.primitives.size());
        const auto& vertices = sent.primitives[0].vertices;
        EXPECT_GT(10000u, vertices.size());
        ASSERT_LT(60u, vertices.size()) << "a whole turn at least";
        EXPECT_TRUE(isNear(turned({0, 1, 0}, -std::fmod(end, 360)), vertices.back().at, 1e-6)) << end;
    }
}

TEST_F(FlatShapes, BadInputIsQuick)
{
    const auto picture = pixelsOf([](T3dPort& p) { p.box(true); });
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const float bad[] = {0, -1, 1e-40f, 3e38f, -3e38f, kInfinity, -kInfinity, std::numeric_limits<float>::quiet_NaN()};
    const auto start = std::chrono::steady_clock::now();
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
            for (const ListedShape& shape : kListedShapes)
                shape.placed(p, filled);
            p.box(centre, a, b, a, filled);
            p.sphere(centre, a, filled, filled);
            p.cylinder(centre, a, b, filled, true);
        });
        EXPECT_GT(50000u, calls.size());
    }
    EXPECT_GT(20, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    T3dPort::fsDepreciateFixedFunction = false;
    lookAtScene(port());
    EXPECT_EQ(picture, pixelsOf([](T3dPort& p) { p.box(true); }));
    EXPECT_EQ(TstringArray(), port().stateDifferences());
}
