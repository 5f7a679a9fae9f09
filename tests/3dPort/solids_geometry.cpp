// The shapes kept as lists: what each sends in each form, once, and who calls it afterwards.

#include "3dPort/curves_support.h"

namespace {

constexpr Xyz kDown{0, 0, -1};
constexpr double kRootOf3 = 1.732f;
constexpr double kSlant = 0.7071f;

/** @p count points, @p degrees apart. */
std::vector<Xyz> ring(const Xyz& first, int count, double degrees)
{
    std::vector<Xyz> points;
    for (int i = 0; i < count; ++i)
        points.push_back(turned(first, degrees * i));
    return points;
}

std::vector<Xyz> lowerRing(std::vector<Xyz> points)
{
    std::reverse(points.begin(), points.end());
    for (Xyz& point : points)
        point.z = -point.z;
    return points;
}

/** Without the last point, which is the first one again. */
std::vector<Xyz> opened(std::vector<Xyz> points)
{
    points.pop_back();
    return points;
}

/** The points of both in turn. */
std::vector<Xyz> zip(const std::vector<Xyz>& a, const std::vector<Xyz>& b)
{
    std::vector<Xyz> points;
    for (std::size_t i = 0; i < a.size(); ++i)
        points.insert(points.end(), {a[i], b[i]});
    return points;
}

/** Vertices that are their own normals. */
std::vector<SentVertex> onSphere(const std::vector<Xyz>& points)
{
    std::vector<SentVertex> vertices;
    for (const Xyz& p : points)
        vertices.push_back({p, p});
    return vertices;
}

struct Face
{
    Xyz normal;
    std::vector<std::size_t> corners;
};

SentPrimitive faces(const char* mode, const std::vector<Xyz>& points, const std::vector<Face>& faces)
{
    SentPrimitive primitive{mode, {}};
    for (const Face& face : faces)
        for (const std::size_t corner : face.corners)
            primitive.vertices.push_back({points[corner], face.normal});
    return primitive;
}

std::vector<SentPrimitive> wantedBox(bool filled)
{
    const std::vector<Xyz> box = {{1, 1, -1},  {1, 1, 1},    {1, -1, 1}, {1, -1, -1},
                                  {-1, -1, 1}, {-1, -1, -1}, {-1, 1, 1}, {-1, 1, -1}};
    if (!filled)
        return {faces("GL_LINE_STRIP", box, {{{}, {7, 6, 1, 0, 7, 5, 3, 2, 4, 5}}}),
                faces("GL_LINES", box, {{{}, {4, 6, 1, 2, 0, 3}}})};
    return {faces("GL_QUADS", box, {{{1, 0, 0}, {0, 1, 2, 3}}, {{0, -1, 0}, {3, 2, 4, 5}}, {{-1, 0, 0}, {5, 4, 6, 7}}}),
            faces("GL_QUADS", box, {{{0, 0, -1}, {3, 5, 7, 0}}, {{0, 1, 0}, {0, 7, 6, 1}}, {{0, 0, 1}, {1, 6, 4, 2}}})};
}

std::vector<SentPrimitive> wantedCone(bool filled)
{
    const std::vector<Xyz> base = ring({0, 1, 0}, 15, 24);
    if (!filled)
        return {{"GL_LINE_LOOP", with({}, base)}, {"GL_LINES", with({}, zip(std::vector<Xyz>(15, kUp), base))}};
    SentPrimitive fan{"GL_TRIANGLE_FAN", {{kUp, kUp}}};
    for (int i = 0; i <= 15; ++i)
        fan.vertices.push_back({turned({0, 1, 0}, 24 * i), turned({0, kSlant, kSlant}, 24 * i)});
    return {fan, {"GL_POLYGON", with(kDown, {base.rbegin(), base.rend()})}};
}

std::vector<SentPrimitive> wantedSphere(bool filled)
{
    const Xyz e{-0.309, 0.9512, 0};
    struct Half
    {
        Xyz pole;
        std::vector<Xyz> a, m, e; // the rings, the closest to the pole first
    } upper = {kUp, ring({0, 0.5257, 0.8507}, 6, 72), ring({0, 0.8945, 0.4472}, 11, 36), ring(e, 11, 36)};
    const Half lower = {kDown, lowerRing(upper.a), lowerRing(upper.m), lowerRing(ring(turned(e, -36), 11, 36))};

    std::vector<SentPrimitive> sent;
    std::vector<Xyz> lines;
    for (const Half& half : {upper, lower}) {
        std::vector<Xyz> fan = half.a;
        fan.insert(fan.begin(), half.pole);
        sent.push_back(filled ? SentPrimitive{"GL_TRIANGLE_FAN", onSphere(fan)}
                              : SentPrimitive{"GL_LINE_LOOP", onSphere(opened(half.a))});
        const std::vector<Xyz> spokes = zip(std::vector<Xyz>(5, half.pole), half.a);
        lines.insert(lines.end(), spokes.begin(), spokes.end());
    }
    if (!filled)
        sent.push_back({"GL_LINES", onSphere(lines)});
    for (std::size_t i = 0; i < 5; ++i) {
        for (const auto& [pole, a, m, equator] : {upper, lower}) {
            const Xyz &left = m[2 * i], &middle = m[2 * i + 1], &right = m[2 * i + 2];
            sent.push_back(filled ? SentPrimitive{"GL_TRIANGLE_FAN", onSphere({middle, right, a[i + 1], a[i], left})}
                                  : SentPrimitive{"GL_LINE_STRIP", onSphere({left, a[i], middle, a[i + 1], right})});
        }
    }
    if (filled) {
        for (const Half& half : {upper, lower})
            sent.push_back({"GL_TRIANGLE_STRIP", onSphere(zip(half.m, half.e))});
        return sent;
    }
    // The upper zigzag twice.
    const std::vector<Xyz> zigzag = zip(opened(upper.m), upper.e);
    for (const auto& loop :
         {opened(upper.m), opened(upper.e), opened(lower.m), zigzag, zigzag, zip(opened(lower.m), lower.e)})
        sent.push_back({"GL_LINE_LOOP", onSphere(loop)});
    return sent;
}

std::vector<SentPrimitive> wantedCylinder(bool filled)
{
    const std::vector<Xyz> bottom = ring({0, 1, 0}, 60, 6);
    const std::vector<Xyz> top = ring({0, 1, 1}, 60, 6);
    if (!filled)
        return {{"GL_LINE_LOOP", with({}, bottom)},
                {"GL_LINE_LOOP", with({}, top)},
                {"GL_LINES", with({}, zip(bottom, top))}};
    SentPrimitive side{"GL_TRIANGLE_STRIP", {}};
    for (const Xyz& p : ring({0, 1, 0}, 61, 6))
        side.vertices.insert(side.vertices.end(), {{{p.x, p.y, 1}, p}, {p, p}});
    // Both caps face up.
    return {side, {"GL_POLYGON", with(kUp, bottom)}, {"GL_POLYGON", with(kUp, top)}};
}

std::vector<SentPrimitive> wantedOctahedron(bool filled)
{
    const std::vector<Xyz> tips = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {-1, 0, 0}, {0, -1, 0}, {0, 0, -1}};
    if (!filled)
        return {faces("GL_LINE_LOOP", tips, {{{}, {2, 0, 5, 3, 2, 1, 5, 4}}}),
                faces("GL_LINE_LOOP", tips, {{{}, {0, 1, 3, 4}}})};
    SentPrimitive triangles{"GL_TRIANGLES", {}};
    // Half of the normals face inwards, as do the faces that they stand on.
    for (int i = 0; i < 8; ++i) {
        const double x = i & 4 ? 1 : -1, y = i & 2 ? 1 : -1, z = i & 1 ? 1 : -1, n = kRootOf3;
        for (const Xyz& tip : {Xyz{x, 0, 0}, Xyz{0, y, 0}, Xyz{0, 0, z}})
            triangles.vertices.push_back({tip, {n * y * z, n * x * z, n * x * y}});
    }
    return {triangles};
}

std::vector<SentPrimitive> wantedTetrahedron(bool filled)
{
    const std::vector<Xyz> tips = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    if (!filled)
        return {faces("GL_LINE_STRIP", tips, {{{}, {1, 2, 3, 1, 0, 3}}}), faces("GL_LINES", tips, {{{}, {0, 2}}})};
    return {faces("GL_TRIANGLES", tips,
                  {{{kRootOf3, kRootOf3, kRootOf3}, {1, 2, 3}},
                   {{-1, 0, 0}, {0, 3, 2}},
                   {{0, -1, 0}, {0, 1, 3}},
                   {{0, 0, -1}, {0, 2, 1}}})};
}

std::vector<SentPrimitive> wantedCircle(bool filled)
{
    return {{filled ? "GL_POLYGON" : "GL_LINE_LOOP", with(filled ? kUp : Xyz(), ring({0, 1, 0}, 60, 6))}};
}

} // namespace

using Solids = Shapes;

TEST_F(Solids, AreCompiledOnceAndThenCalled)
{
    if (T3dPort::fsDepreciateFixedFunction)
        GTEST_SKIP() << "boxes and circles come from vertex arrays, not from lists";
    std::vector<SentPrimitive> (*const wanted[])(bool) = {
        wantedCircle, wantedBox, wantedCone, wantedSphere, wantedCylinder, wantedOctahedron, wantedTetrahedron};
    static_assert(std::size(wanted) == std::size(kListedShapes));
    std::set<std::string> calls;
    for (std::size_t i = 0; i < 2 * std::size(wanted); ++i) {
        const bool filled = i % 2;
        const ListedShape& shape = kListedShapes[i / 2];
        SCOPED_TRACE(std::string(filled ? "filled " : "wire ") + shape.name);
        const Draw draw = [&](T3dPort& p) { shape.draw(p, filled); };
        const Draw placed = [&](T3dPort& p) { shape.placed(p, filled); };
        const Sent first = sentBy(callsOf(draw));
        expectSent(wanted[i / 2](filled), first.primitives);
        ASSERT_EQ(4u, first.others.size());
        const std::string call = first.others[3];
        const std::string list = call.substr(11, call.size() - 12);
        EXPECT_TRUE(calls.insert(call).second) << "shares list " << list;
        EXPECT_EQ(
            (Calls{"glGenLists(1)", "glNewList(" + list + ", GL_COMPILE)", "glEndList()", "glCallList(" + list + ")"}),
            first.others);
        EXPECT_EQ(Calls{call}, callsOf(draw));
        const Calls moved = {"glPushMatrix()", "glTranslated(1, 2, 3)", shape.scale, call, "glPopMatrix()"};
        EXPECT_EQ(moved, callsOf(placed));

        // A stale matrix is loaded before it is moved.
        port().translate(0.5, 0, 0);
        const Calls stale = callsOf(placed);
        const auto push = std::find(stale.begin(), stale.end(), "glPushMatrix()");
        EXPECT_TRUE(std::any_of(stale.begin(), push, [](auto& c) { return c.rfind("glLoadMatrixd", 0) == 0; }));
        EXPECT_EQ(moved, Calls(push, stale.end()));
    }
    EXPECT_EQ(callsOf([](T3dPort& p) { p.cylinder(false, true); }),
              callsOf([](T3dPort& p) { p.cylinder(false, false); }));
    EXPECT_EQ(Calls(), callsOf([](T3dPort& p) { p.circle(true, false); })) << "prepared already";
    expectSent({wantedCylinder(true)[0]}, sentBy(callsOf([](T3dPort& p) { p.cylinder(true, false); })).primitives);
}

TEST_F(Solids, RingsAreSentEachTime)
{
    const std::vector<Xyz> points = zip(ring({0, 1, 0}, 61, 6), ring({0, 2.5, 0}, 61, 6));
    const Sent sent = sentBy(callsOf([](T3dPort& p) { p.ring(kCentre, 5, 2, true); }));
    expectSent({{"GL_QUAD_STRIP", with(kDown, points)}}, sent.primitives);
    EXPECT_EQ((Calls{"glPushMatrix()", "glTranslated(1, 2, 3)", "glScalef(2, 2, 1)", "glPopMatrix()"}), sent.others);
    EXPECT_EQ("glNormal3f(0, 0, 1)", callsOf([](T3dPort& p) { p.ring(2.5f, false); })[1]);
}

TEST_F(Solids, OutlineConeDrawsTheConeAndThenLines)
{
    const Sent sent = sentBy(callsOf([](T3dPort& p) { p.outline_cone(0); }));
    std::vector<SentPrimitive> wanted = wantedCone(true);
    wanted.push_back({"GL_TRIANGLES", {}});
    // In the second pass only the lines to every second point of the base have their edge flags.
    for (int i = 0; i < 14; i += 2) {
        wanted[2].vertices.push_back({kUp, kUp, true});
        for (const int degrees : {24 * i, 24 * (i + 2)})
            wanted[2].vertices.push_back({turned({0, 1, 0}, degrees), turned({0, kSlant, kSlant}, degrees), false});
    }
    wanted.push_back(wanted[1]);
    expectSent(wanted, sent.primitives);
    const Calls outline = {"glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)", "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                           "glEndList()"};
    ASSERT_LT(8u, sent.others.size());
    EXPECT_EQ(outline, Calls(sent.others.begin() + 5, sent.others.begin() + 8));
}

// By counting alone, whatever the tables above say.
TEST_F(Solids, FilledOnesAreClosed)
{
    if (T3dPort::fsDepreciateFixedFunction)
        GTEST_SKIP() << "boxes and circles come from vertex arrays, not from lists";
    const struct
    {
        const char* name;
        Draw draw;
        int corners, edges, faces;
    } solids[] = {
        {"box", [](T3dPort& p) { p.box(true); }, 8, 12, 6},
        {"cone", [](T3dPort& p) { p.cone(true); }, 16, 30, 16},
        {"sphere", [](T3dPort& p) { p.sphere(true); }, 42, 120, 80},
        {"cylinder", [](T3dPort& p) { p.cylinder(true, true); }, 120, 240, 122},
        {"octahedron", [](T3dPort& p) { p.octahedron(true); }, 6, 12, 8},
        {"tetrahedron", [](T3dPort& p) { p.tetrahedron(true); }, 4, 6, 4},
    };
    for (const auto& solid : solids) {
        SCOPED_TRACE(solid.name);
        std::vector<Xyz> corners;
        const auto cornerAt = [&corners](const Xyz& at) {
            const auto found =
                std::find_if(corners.begin(), corners.end(), [&](const Xyz& c) { return isNear(c, at, 1e-4); });
            if (found != corners.end())
                return int(found - corners.begin());
            corners.push_back(at);
            return int(corners.size()) - 1;
        };
        std::vector<std::vector<int>> faces;
        for (const SentPrimitive& primitive : sentBy(callsOf(solid.draw)).primitives) {
            std::vector<int> c;
            for (const SentVertex& vertex : primitive.vertices)
                c.push_back(cornerAt(vertex.at));
            const std::size_t each = primitive.mode == "GL_POLYGON"     ? c.size()
                                     : primitive.mode == "GL_QUADS"     ? 4
                                     : primitive.mode == "GL_TRIANGLES" ? 3
                                                                        : 0;
            for (std::size_t i = 0; each && i < c.size(); i += each)
                faces.emplace_back(c.begin() + long(i), c.begin() + long(i + each));
            for (std::size_t i = 2; !each && i < c.size(); ++i)
                faces.push_back({primitive.mode == "GL_TRIANGLE_FAN" ? c[0] : c[i - 2], c[i - 1], c[i]});
        }
        std::map<std::pair<int, int>, int> uses;
        for (const auto& face : faces)
            for (std::size_t i = 0; i < face.size(); ++i)
                ++uses[std::minmax(face[i], face[(i + 1) % face.size()])];
        for (const auto& [edge, count] : uses)
            EXPECT_EQ(2, count) << "the edge from " << edge.first << " to " << edge.second;
        EXPECT_EQ(solid.corners, int(corners.size()));
        EXPECT_EQ(solid.edges, int(uses.size()));
        EXPECT_EQ(solid.faces, int(faces.size()));
    }
}
