// The flat shapes of a port: what they send, and what can be seen of it.

#include "3dPort/curves_support.h"

#include "foundation/T4dDblPoint.h"
#include "foundation/T4dDblVector.h"

#include <algorithm>
#include <chrono>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr Xyz kUp{0, 0, 1};

std::vector<Xyz> circlePoints()
{
    std::vector<Xyz> points;
    for (int i = 0; i < 60; ++i)
        points.push_back(turned({0, 1, 0}, 6 * i));
    return points;
}

const NamedDraw kTwoPathShapes[] = {
    {"rectangle", [](T3dPort& p) { p.rect(1.3f, -0.7f, -1.1f, 0.9f, false); }},
    {"filled rectangle", [](T3dPort& p) { p.rect(1.3f, -0.7f, -1.1f, 0.9f, true); }},
    {"line", [](T3dPort& p) { p.line(-1.7f, 1.1f, 1.3f, -0.6f); }},
    {"circle", [](T3dPort& p) { p.circle(false, true); }},
    {"disc", [](T3dPort& p) { p.circle(true, true); }},
    {"placed disc", [](T3dPort& p) { p.circle(T4dDblPoint(0.3, -0.2, 1), 1.4f, true); }},
};

} // namespace

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
}

TEST_F(FlatShapes, CircleIsPreparedOnceAndThenCalled)
{
    for (const bool filled : {false, true}) {
        const Calls preparing = callsOf([&](T3dPort& p) { p.circle(filled, false); });
        const Sent sent = sentBy(preparing);
        ASSERT_EQ(3u, sent.others.size());
        EXPECT_EQ("glGenLists(1)", sent.others[0]);
        EXPECT_EQ("glEndList()", sent.others[2]);
        EXPECT_EQ(preparing.back(), sent.others[2]);
        expectSent({{filled ? "GL_POLYGON" : "GL_LINE_LOOP", with(filled ? kUp : Xyz(), circlePoints())}},
                   sent.primitives);
        // The disc's normal comes before glBegin.
        EXPECT_EQ(filled ? "glNormal3f(0, 0, 1)" : "glBegin(GL_LINE_LOOP)", preparing[2]);

        const std::string call = sent.others[1].substr(std::strlen("glNewList("));
        const std::string list = call.substr(0, call.find(','));
        EXPECT_EQ("glNewList(" + list + ", GL_COMPILE)", sent.others[1]);
        EXPECT_EQ(Calls(), callsOf([&](T3dPort& p) { p.circle(filled, false); }));
        EXPECT_EQ(Calls{"glCallList(" + list + ")"}, callsOf([&](T3dPort& p) { p.circle(filled, true); }));
        EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 3)", "glScalef(0.5, 0.5, 0.5)",
                         "glCallList(" + list + ")", "glPopMatrix()"}),
                  callsOf([&](T3dPort& p) { p.circle(T4dDblPoint(1, 2, 3), 0.5f, filled); }));
    }
}

TEST_F(FlatShapes, ArrayPathSendsWholeShapesAndSwitchesOffAgain)
{
    T3dPort::fsDepreciateFixedFunction = true;
    const auto arrays = [](const char* pointer, const char* draw) {
        return Calls{"glEnableClientState(GL_VERTEX_ARRAY)", pointer, draw, "glDisableClientState(GL_VERTEX_ARRAY)"};
    };
    const char* const floats = "glVertexPointer(2, GL_FLOAT, 0, pointer)";
    const char* const doubles = "glVertexPointer(2, GL_DOUBLE, 0, pointer)";
    EXPECT_EQ(arrays(floats, "glDrawElements(GL_LINE_LOOP, 4, GL_UNSIGNED_SHORT, pointer)"),
              callsOf([](T3dPort& p) { p.rect(1, 1, 0, 0, false); }));
    EXPECT_EQ(arrays(floats, "glDrawElements(GL_QUADS, 4, GL_UNSIGNED_SHORT, pointer)"),
              callsOf([](T3dPort& p) { p.rect(1, 1, 0, 0, true); }));
    EXPECT_EQ(arrays(floats, "glDrawElements(GL_LINES, 2, GL_UNSIGNED_SHORT, pointer)"),
              callsOf([](T3dPort& p) { p.line(1, 1, 0, 0); }));
    EXPECT_EQ(Calls(), callsOf([](T3dPort& p) { p.circle(true, false); }));
    EXPECT_EQ(arrays(doubles, "glDrawElements(GL_LINE_LOOP, 60, GL_UNSIGNED_SHORT, pointer)"),
              callsOf([](T3dPort& p) { p.circle(false, true); }));
    Calls disc = callsOf([](T3dPort& p) { p.circle(true, true); });
    for (const char* call : {"glEnableClientState(GL_NORMAL_ARRAY)", "glNormalPointer(GL_FLOAT, 0, pointer)",
                             "glDisableClientState(GL_NORMAL_ARRAY)"}) {
        const auto found = std::find(disc.begin(), disc.end(), call);
        ASSERT_NE(disc.end(), found) << call;
        disc.erase(found);
    }
    EXPECT_EQ(arrays(doubles, "glDrawElements(GL_POLYGON, 60, GL_UNSIGNED_SHORT, pointer)"), disc);
    // Points and arcs have one path only.
    EXPECT_EQ("glBegin(GL_POINTS)", callsOf([](T3dPort& p) { p.point(1, 2, 3); }).front());
    EXPECT_EQ(1u, sentBy(callsOf([](T3dPort& p) { p.arc(0, 0, 1, 0, 90, true); })).primitives.size());
}

TEST_F(FlatShapes, BothPathsDrawTheSame)
{
    for (const bool lit : {false, true}) {
        if (lit) {
            port().setDefaultLight(0, T4dDblVector(0.3, 0.2, 1));
            port().enableLight(0);
            port().setLightingModel();
        }
        for (const NamedDraw& shape : kTwoPathShapes) {
            SCOPED_TRACE(shape.name);
            glNormal3f(0, 0, 1);
            T3dPort::fsDepreciateFixedFunction = false;
            const auto pixels = pixelsOf(shape.draw);
            EXPECT_LT(30, kSize * kSize - std::count(pixels.begin(), pixels.end(), 0u));

            T3dPort::fsDepreciateFixedFunction = true;
            const bool bringsNormals = std::strstr(shape.name, "disc") != nullptr;
            if (bringsNormals)
                glNormal3f(1, 0, 0);
            EXPECT_EQ(pixels, pixelsOf(shape.draw));
        }
    }
}

TEST_F(FlatShapes, ArraysHoldTheSameVertices)
{
    T3dPort::fsDepreciateFixedFunction = true;
    const std::vector<Xyz> rectangle = {{-1.1, -0.7, 0}, {1.3, -0.7, 0}, {1.3, 0.9, 0}, {-1.1, 0.9, 0}};
    const struct
    {
        const char* name;
        Draw draw;
        std::vector<Xyz> points;
        bool filled;
    } shapes[] = {
        {"rectangle", [](T3dPort& p) { p.rect(1.3f, -0.7f, -1.1f, 0.9f, false); }, rectangle, false},
        {"filled rectangle", [](T3dPort& p) { p.rect(1.3f, 0.9f, -1.1f, -0.7f, true); }, rectangle, true},
        {"circle", [](T3dPort& p) { p.circle(false, true); }, circlePoints(), false},
        {"disc", [](T3dPort& p) { p.circle(true, true); }, circlePoints(), true},
    };
    for (const auto& shape : shapes) {
        SCOPED_TRACE(shape.name);
        Corners corners;
        Face face;
        std::vector<Face> sides;
        for (const Xyz& point : shape.points)
            face.push_back(corners[point]);
        for (std::size_t i = 0; i < face.size(); ++i)
            sides.push_back({face[i], face[(i + 1) % face.size()]});
        const std::vector<Face> got = fedBack(shape.draw, corners);
        if (shape.filled)
            EXPECT_EQ(boundaryOf({face}), boundaryOf(got));
        else
            EXPECT_EQ(sides, got);
        EXPECT_EQ(int(shape.points.size()), corners.count());
    }
    Corners corners;
    const Face line = {corners[{-1.7, 1.1, 0}], corners[{1.3, -0.6, 0}]};
    EXPECT_EQ(std::vector<Face>{line}, fedBack([](T3dPort& p) { p.line(-1.7f, 1.1f, 1.3f, -0.6f); }, corners));
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
        std::vector<Xyz> fan = points;
        fan.insert(fan.begin(), Xyz{0, 0, 0});

        const auto line = callsOf([&](T3dPort& p) { p.arc(T4dDblPoint(1, 2, 3), 0.5f, arc.start, arc.end, false); });
        const auto filled = callsOf([&](T3dPort& p) { p.arc(1, 2, 0.5f, arc.start, arc.end, true); });
        expectSent({{"GL_LINE_STRIP", with({}, points)}}, sentBy(line).primitives);
        expectSent({{"GL_POLYGON", with(kUp, fan)}}, sentBy(filled).primitives);
        EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 3)", "glScalef(0.5, 0.5, 0.5)", "glPopMatrix()"}),
                  sentBy(line).others);
        EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 0)", "glScalef(0.5, 0.5, 0.5)", "glPopMatrix()"}),
                  sentBy(filled).others);
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
        std::vector<Xyz> fan = points;
        fan.insert(fan.begin(), Xyz{0, 0, 0});

        const Sent line = sentBy(callsOf([&](T3dPort& p) { p.arc(T4dDblPoint(1, 2, 3), arc.from, arc.to, false); }));
        const Sent filled = sentBy(callsOf([&](T3dPort& p) { p.arc(T4dDblPoint(1, 2, 3), arc.from, arc.to, true); }));
        expectSent({{"GL_LINE_STRIP", with({}, points)}}, line.primitives);
        expectSent({{"GL_POLYGON", with(kUp, fan)}}, filled.primitives);
        for (const Sent* sent : {&line, &filled})
            EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 3)", "glPopMatrix()"}), sent->others);
    }
}

TEST_F(FlatShapes, CoverTheirAreas)
{
    const double sector = 0.5 * std::sin(radians(6)); // of the unit circle of 60 points
    const struct
    {
        const char* name;
        Draw draw;
        double area;
    } shapes[] = {
        {"rectangle", [](T3dPort& p) { p.rect(1, -1.5f, -1, 0.5f, true); }, 4},
        {"disc", [](T3dPort& p) { p.circle(true, true); }, 60 * sector},
        {"small disc", [](T3dPort& p) { p.circle(T4dDblPoint(1, 1, 0), 0.5f, true); }, 15 * sector},
        {"half a disc", [](T3dPort& p) { p.arc(0, 0, 1, 0, 180, true); }, 30 * sector},
        {"a quarter", [](T3dPort& p) { p.arc(T4dDblPoint(-1, -1, 0), 2, 0, 90, true); }, 60 * sector},
        {"between vectors",
         [](T3dPort& p) { p.arc(T4dDblPoint(0, 0, 0), T4dDblVector(1, 0, 0), T4dDblVector(0, 1, 0), true); },
         15 * sector},
        {"ring", [](T3dPort& p) { p.ring(T4dDblPoint(0, 0, 0), 0.75f, 1.5f, false); }, 60 * sector * 1.6875},
        {"ring inside out", [](T3dPort& p) { p.ring(T4dDblPoint(0, 0, 0), 1.5f, 0.75f, true); }, 60 * sector * 1.6875},
    };
    for (const auto& shape : shapes)
        EXPECT_NEAR(shape.area, areaOf(shape.draw), 0.06) << shape.name;

    // From +y towards +x: the right half.
    const auto half = pixelsOf([](T3dPort& p) { p.arc(0, 0, 1, 0, 180, true); });
    EXPECT_EQ(0xFFFFFFu, half[kSize * 40 + 36]);
    EXPECT_EQ(0u, half[kSize * 40 + 28]);
}

TEST_F(FlatShapes, ManyTurnsAreCutButEndWhereTheyWould)
{
    for (const double end : {1e9, -1e9, 3e9, 4e5 + 0.5}) {
        const Sent sent = sentBy(callsOf([&](T3dPort& p) { p.arc(0, 0, 1, 0, end, true); }));
        ASSERT_EQ(1u, sent.primitives.size());
        const auto& vertices = sent.primitives[0].vertices;
        EXPECT_LT(60u, vertices.size()) << "a whole turn at least";
        EXPECT_GT(10000u, vertices.size());
        const double rest = std::fmod(end, 360);
        EXPECT_TRUE(isNear(turned({0, 1, 0}, -rest), vertices.back().at, 1e-6)) << end;
        const double lastStep = 6 * std::fmod(std::floor(std::abs(end) / 6), 60);
        EXPECT_TRUE(isNear(turned({0, 1, 0}, -lastStep), vertices[vertices.size() - 2].at, 1e-9)) << end;
    }
}

TEST_F(FlatShapes, BadInputIsQuick)
{
    const double bad[] = {0, -1, 1e-310, 1e38, 1e300, -1e300, kInfinity, -kInfinity, kNaN};
    const auto start = std::chrono::steady_clock::now();
    std::size_t most = 0;
    for (const bool deprecated : {false, true}) {
        T3dPort::fsDepreciateFixedFunction = deprecated;
        for (const double a : bad) {
            for (const double b : bad) {
                const auto calls = callsOf([=](T3dPort& p) {
                    const auto clamped = [](double v) {
                        return float(std::isfinite(v) ? std::clamp(v, -3e38, 3e38) : v);
                    };
                    const T4dDblPoint centre(a, b, a, b);
                    for (const bool filled : {false, true}) {
                        p.point(centre);
                        p.rect(clamped(a), clamped(b), clamped(b), clamped(a), filled);
                        p.line(clamped(a), 0, clamped(b), clamped(a));
                        p.circle(centre, clamped(b), filled);
                        p.arc(centre, clamped(a), a, b, filled);
                        p.arc(clamped(a), clamped(b), 1, b, a, filled);
                        p.arc(centre, T4dDblVector(a, b, 1), T4dDblVector(b, a, 0), filled);
                    }
                });
                most = std::max(most, calls.size());
            }
        }
    }
    EXPECT_GT(50000u, most);
    EXPECT_GT(20, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    GLint depth = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
    EXPECT_EQ(1, depth);
    // The port draws as ever.
    lookAtScene(port());
    EXPECT_NEAR(4, areaOf([](T3dPort& p) { p.rect(-1, -1, 1, 1, true); }), 0.01);
}
