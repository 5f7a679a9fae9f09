// The unit solids: what each sends in each form, and that the filled ones are closed.

#include "3dPort/curves_support.h"

#include "foundation/T4dDblPoint.h"
#include "foundation/T4dDblVector.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {

constexpr Xyz kUp{0, 0, 1};
constexpr Xyz kDown{0, 0, -1};
constexpr double kRootOf3 = 1.732f;
constexpr double kSlant = 0.7071f;

Xyz mirrored(const Xyz& p)
{
    return {p.x, p.y, -p.z};
}

/** @p count points, @p degrees apart, and the first once more. */
std::vector<Xyz> ring(const Xyz& first, int count, double degrees)
{
    std::vector<Xyz> points;
    for (int i = 0; i < count; ++i)
        points.push_back(turned(first, degrees * i));
    points.push_back(first);
    return points;
}

std::vector<Xyz> lowerRing(std::vector<Xyz> points)
{
    std::reverse(points.begin(), points.end());
    std::transform(points.begin(), points.end(), points.begin(), mirrored);
    return points;
}

/** @p points by their numbers, as in "0 3 12". */
std::vector<Xyz> pick(const std::vector<Xyz>& points, std::initializer_list<int> numbers)
{
    std::vector<Xyz> picked;
    for (const int i : numbers)
        picked.push_back(points[std::size_t(i)]);
    return picked;
}

/** Vertices that are their own normals. */
std::vector<SentVertex> onSphere(const std::vector<Xyz>& points)
{
    std::vector<SentVertex> vertices;
    for (const Xyz& p : points)
        vertices.push_back({p, p});
    return vertices;
}

template <class T> void append(std::vector<T>& to, const std::vector<T>& more)
{
    to.insert(to.end(), more.begin(), more.end());
}

const std::vector<Xyz> kBox = {{1, 1, -1},  {1, 1, 1},    {1, -1, 1}, {1, -1, -1},
                               {-1, -1, 1}, {-1, -1, -1}, {-1, 1, 1}, {-1, 1, -1}};

std::vector<SentPrimitive> wantedBox(bool filled)
{
    if (!filled)
        return {{"GL_LINE_STRIP", with({}, pick(kBox, {7, 6, 1, 0, 7, 5, 3, 2, 4, 5}))},
                {"GL_LINES", with({}, pick(kBox, {4, 6, 1, 2, 0, 3}))}};
    SentPrimitive first{"GL_QUADS", {}};
    append(first.vertices, with({1, 0, 0}, pick(kBox, {0, 1, 2, 3})));
    append(first.vertices, with({0, -1, 0}, pick(kBox, {3, 2, 4, 5})));
    append(first.vertices, with({-1, 0, 0}, pick(kBox, {5, 4, 6, 7})));
    SentPrimitive second{"GL_QUADS", {}};
    append(second.vertices, with({0, 0, -1}, pick(kBox, {3, 5, 7, 0})));
    append(second.vertices, with({0, 1, 0}, pick(kBox, {0, 7, 6, 1})));
    append(second.vertices, with({0, 0, 1}, pick(kBox, {1, 6, 4, 2})));
    return {first, second};
}

SentPrimitive wantedConeBase(const Xyz& normal)
{
    std::vector<Xyz> base = ring({0, 1, 0}, 15, 24);
    base.pop_back();
    std::reverse(base.begin(), base.end());
    return {"GL_POLYGON", with(normal, base)};
}

std::vector<SentPrimitive> wantedCone(bool filled)
{
    const std::vector<Xyz> base = ring({0, 1, 0}, 15, 24);
    if (!filled) {
        std::vector<Xyz> lines;
        for (int i = 0; i < 15; ++i) {
            lines.push_back(kUp);
            lines.push_back(base[std::size_t(i)]);
        }
        return {{"GL_LINE_LOOP", with({}, std::vector<Xyz>(base.begin(), base.end() - 1))},
                {"GL_LINES", with({}, lines)}};
    }
    SentPrimitive fan{"GL_TRIANGLE_FAN", {{kUp, kUp}}};
    for (int i = 0; i <= 15; ++i)
        fan.vertices.push_back({base[std::size_t(i)], turned({0, kSlant, kSlant}, 24 * i)});
    return {fan, wantedConeBase(kDown)};
}

/** The second pass of the outline cone: only the lines to every second point of the base have their edge flags. */
std::vector<SentPrimitive> wantedConeOutline()
{
    SentPrimitive triangles{"GL_TRIANGLES", {}};
    for (int j = 0; j < 7; ++j) {
        triangles.vertices.push_back({kUp, kUp, true});
        for (const int i : {2 * j, 2 * j + 2})
            triangles.vertices.push_back({turned({0, 1, 0}, 24 * i), turned({0, kSlant, kSlant}, 24 * i), false});
    }
    return {triangles, wantedConeBase(kDown)};
}

/** One half of the sphere between its pole and its ring m. */
std::vector<SentPrimitive> wantedBand(bool filled, const std::vector<Xyz>& m, const std::vector<Xyz>& a)
{
    std::vector<SentPrimitive> fans;
    for (std::size_t i = 0; i < 5; ++i) {
        if (filled)
            fans.push_back({"GL_TRIANGLE_FAN", onSphere({m[2 * i + 1], m[2 * i + 2], a[i + 1], a[i], m[2 * i]})});
        else
            fans.push_back({"GL_LINE_STRIP", onSphere({m[2 * i], a[i], m[2 * i + 1], a[i + 1], m[2 * i + 2]})});
    }
    return fans;
}

std::vector<SentPrimitive> wantedSphere(bool filled)
{
    const std::vector<Xyz> a = ring({0, 0.5257, 0.8507}, 5, 72);
    const std::vector<Xyz> m = ring({0, 0.8945, 0.4472}, 10, 36);
    const std::vector<Xyz> e = ring({-0.309, 0.9512, 0}, 10, 36);
    const std::vector<Xyz> lowerA = lowerRing(a);
    const std::vector<Xyz> lowerM = lowerRing(m);
    std::vector<Xyz> upperZigzag;
    std::vector<Xyz> lowerZigzag;
    for (std::size_t k = 0; k < 10; ++k) {
        append(upperZigzag, {m[k], e[k]});
        append(lowerZigzag, {lowerM[k], e[9 - k]});
    }

    std::vector<SentPrimitive> sent;
    if (filled) {
        std::vector<Xyz> fan = a;
        fan.insert(fan.begin(), kUp);
        std::vector<Xyz> lowerFan = lowerA;
        lowerFan.insert(lowerFan.begin(), kDown);
        sent = {{"GL_TRIANGLE_FAN", onSphere(fan)}, {"GL_TRIANGLE_FAN", onSphere(lowerFan)}};
    } else {
        std::vector<Xyz> lines;
        for (const auto* half : {&a, &lowerA})
            for (std::size_t k = 0; k < 5; ++k)
                append(lines, {half == &a ? kUp : kDown, (*half)[k]});
        sent = {{"GL_LINE_LOOP", onSphere({a.begin(), a.end() - 1})},
                {"GL_LINE_LOOP", onSphere({lowerA.begin(), lowerA.end() - 1})},
                {"GL_LINES", onSphere(lines)}};
    }
    const std::vector<SentPrimitive> upper = wantedBand(filled, m, a);
    const std::vector<SentPrimitive> lower = wantedBand(filled, lowerM, lowerA);
    for (std::size_t i = 0; i < 5; ++i)
        append(sent, {upper[i], lower[i]});
    if (filled) {
        append(upperZigzag, {m[10], e[10]});
        append(lowerZigzag, {lowerM[0], e[9]});
        append(sent, {{"GL_TRIANGLE_STRIP", onSphere(upperZigzag)}, {"GL_TRIANGLE_STRIP", onSphere(lowerZigzag)}});
    } else {
        for (const auto* loop : {&m, &e, &lowerM})
            sent.push_back({"GL_LINE_LOOP", onSphere({loop->begin(), loop->end() - 1})});
        // The upper zigzag twice.
        for (const auto* zigzag : {&upperZigzag, &upperZigzag, &lowerZigzag})
            sent.push_back({"GL_LINE_LOOP", onSphere(*zigzag)});
    }
    return sent;
}

std::vector<SentPrimitive> wantedCylinder(bool filled, bool capped)
{
    const std::vector<Xyz> rim = ring({0, 1, 0}, 60, 6);
    const std::vector<Xyz> bottom(rim.begin(), rim.end() - 1);
    std::vector<Xyz> top = bottom;
    for (Xyz& p : top)
        p.z = 1;
    if (!filled) {
        std::vector<Xyz> lines;
        for (std::size_t i = 0; i < 60; ++i)
            append(lines, {bottom[i], top[i]});
        return {{"GL_LINE_LOOP", with({}, bottom)}, {"GL_LINE_LOOP", with({}, top)}, {"GL_LINES", with({}, lines)}};
    }
    SentPrimitive side{"GL_TRIANGLE_STRIP", {}};
    for (const Xyz& p : rim)
        append(side.vertices, with(p, {{p.x, p.y, 1}, p}));
    if (!capped)
        return {side};
    // Both caps face up.
    return {side, {"GL_POLYGON", with(kUp, bottom)}, {"GL_POLYGON", with(kUp, top)}};
}

std::vector<SentPrimitive> wantedOctahedron(bool filled)
{
    const Xyz x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1}, minusX{-1, 0, 0}, minusY{0, -1, 0}, minusZ{0, 0, -1};
    if (!filled)
        return {{"GL_LINE_LOOP", with({}, {z, x, minusZ, minusX, z, y, minusZ, minusY})},
                {"GL_LINE_LOOP", with({}, {x, y, minusX, minusY})}};
    const double n = kRootOf3;
    SentPrimitive faces{"GL_TRIANGLES", {}};
    // Half of the normals face inwards, as do the faces that they stand on.
    append(faces.vertices, with({n, n, n}, {minusX, minusY, minusZ}));
    append(faces.vertices, with({-n, -n, n}, {minusX, minusY, z}));
    append(faces.vertices, with({-n, n, -n}, {minusX, y, minusZ}));
    append(faces.vertices, with({n, -n, -n}, {minusX, y, z}));
    append(faces.vertices, with({n, -n, -n}, {x, minusY, minusZ}));
    append(faces.vertices, with({-n, n, -n}, {x, minusY, z}));
    append(faces.vertices, with({-n, -n, n}, {x, y, minusZ}));
    append(faces.vertices, with({n, n, n}, {x, y, z}));
    return {faces};
}

std::vector<SentPrimitive> wantedTetrahedron(bool filled)
{
    const Xyz o{}, x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
    if (!filled)
        return {{"GL_LINE_STRIP", with({}, {x, y, z, x, o, z})}, {"GL_LINES", with({}, {o, y})}};
    SentPrimitive faces{"GL_TRIANGLES", {}};
    append(faces.vertices, with({kRootOf3, kRootOf3, kRootOf3}, {x, y, z}));
    append(faces.vertices, with({-1, 0, 0}, {o, z, y}));
    append(faces.vertices, with({0, -1, 0}, {o, x, z}));
    append(faces.vertices, with({0, 0, -1}, {o, y, x}));
    return {faces};
}

std::vector<SentPrimitive> wantedRing(double innerRatio, double facing)
{
    std::vector<Xyz> points;
    for (const Xyz& p : ring({0, 1, 0}, 60, 6))
        append(points, {p, {p.x * innerRatio, p.y * innerRatio, 0}});
    return {{"GL_QUAD_STRIP", with({0, 0, facing}, points)}};
}

struct Form
{
    const char* name;
    Draw draw;
    std::vector<SentPrimitive> wanted;
};

std::vector<Form> forms()
{
    return {
        {"wire box", [](T3dPort& p) { p.box(false); }, wantedBox(false)},
        {"box", [](T3dPort& p) { p.box(true); }, wantedBox(true)},
        {"wire cone", [](T3dPort& p) { p.cone(false); }, wantedCone(false)},
        {"cone", [](T3dPort& p) { p.cone(true); }, wantedCone(true)},
        {"wire sphere", [](T3dPort& p) { p.sphere(false); }, wantedSphere(false)},
        {"sphere", [](T3dPort& p) { p.sphere(true); }, wantedSphere(true)},
        {"wire cylinder", [](T3dPort& p) { p.cylinder(false, true); }, wantedCylinder(false, true)},
        {"tube", [](T3dPort& p) { p.cylinder(true, false); }, wantedCylinder(true, false)},
        {"cylinder", [](T3dPort& p) { p.cylinder(true, true); }, wantedCylinder(true, true)},
        {"wire octahedron", [](T3dPort& p) { p.octahedron(false); }, wantedOctahedron(false)},
        {"octahedron", [](T3dPort& p) { p.octahedron(true); }, wantedOctahedron(true)},
        {"wire tetrahedron", [](T3dPort& p) { p.tetrahedron(false); }, wantedTetrahedron(false)},
        {"tetrahedron", [](T3dPort& p) { p.tetrahedron(true); }, wantedTetrahedron(true)},
        {"ring", [](T3dPort& p) { p.ring(0.25f, false); }, wantedRing(0.25, 1)},
        {"flipped ring", [](T3dPort& p) { p.ring(2.5f, true); }, wantedRing(2.5, -1)},
    };
}

/** The faces that OpenGL makes of primitives, corner by corner. */
std::vector<Face> facesOf(const std::vector<SentPrimitive>& primitives, Corners& corners)
{
    std::vector<Face> faces;
    for (const SentPrimitive& primitive : primitives) {
        Face c;
        for (const SentVertex& vertex : primitive.vertices)
            c.push_back(corners[vertex.at]);
        const std::size_t count = c.size();
        if (primitive.mode == "GL_POLYGON")
            faces.push_back(c);
        const std::size_t each = primitive.mode == "GL_QUADS" ? 4 : primitive.mode == "GL_TRIANGLES" ? 3 : 0;
        for (std::size_t i = 0; each && i < count; i += each)
            faces.push_back(Face(c.begin() + long(i), c.begin() + long(i + each)));
        for (std::size_t i = 2; i < count; ++i) {
            if (primitive.mode == "GL_TRIANGLE_FAN")
                faces.push_back({c[0], c[i - 1], c[i]});
            else if (primitive.mode == "GL_TRIANGLE_STRIP")
                faces.push_back(i % 2 ? Face{c[i - 1], c[i - 2], c[i]} : Face{c[i - 2], c[i - 1], c[i]});
        }
    }
    return faces;
}

std::set<Edge> linesOf(const std::vector<SentPrimitive>& primitives, Corners& corners)
{
    std::set<Edge> lines;
    for (const SentPrimitive& primitive : primitives) {
        const std::size_t count = primitive.vertices.size();
        const bool pairs = primitive.mode == "GL_LINES";
        const bool loop = primitive.mode == "GL_LINE_LOOP";
        for (std::size_t i = 0; i + (loop ? 0 : 1) < count; i += pairs ? 2 : 1) {
            const int a = corners[primitive.vertices[i].at];
            const int b = corners[primitive.vertices[(i + 1) % count].at];
            lines.insert(std::minmax(a, b));
        }
    }
    return lines;
}

} // namespace

class Solids : public Shapes
{
};

TEST_F(Solids, SendTheirVerticesInOrder)
{
    for (const Form& form : forms()) {
        SCOPED_TRACE(form.name);
        glNormal3f(0, 0, 0);
        expectSent(form.wanted, sentBy(callsOf(form.draw)).primitives);
    }
}

TEST_F(Solids, FilledOnesAreClosed)
{
    const struct
    {
        const char* name;
        Draw draw;
        int corners;
        int edges;
        int faces;
        bool oriented; ///< all faces turn the same way, seen from outside
    } solids[] = {
        {"box", [](T3dPort& p) { p.box(true); }, 8, 12, 6, true},
        {"cone", [](T3dPort& p) { p.cone(true); }, 16, 30, 16, true},
        {"outline cone", [](T3dPort& p) { p.outline_cone(0); }, 16, 30, 16, true},
        {"sphere", [](T3dPort& p) { p.sphere(true); }, 42, 120, 80, true},
        {"cylinder", [](T3dPort& p) { p.cylinder(true, true); }, 120, 240, 122, false},
        {"octahedron", [](T3dPort& p) { p.octahedron(true); }, 6, 12, 8, false},
        {"tetrahedron", [](T3dPort& p) { p.tetrahedron(true); }, 4, 6, 4, true},
    };
    for (const auto& solid : solids) {
        SCOPED_TRACE(solid.name);
        auto sent = sentBy(callsOf(solid.draw)).primitives;
        if (std::strcmp(solid.name, "outline cone") == 0)
            sent.resize(2);
        Corners corners;
        std::map<Edge, int> uses;
        std::set<Edge> directions;
        const std::vector<Face> faces = facesOf(sent, corners);
        for (const Face& face : faces) {
            EXPECT_EQ(face.size(), std::set<int>(face.begin(), face.end()).size()) << "a face meets itself";
            for (std::size_t i = 0; i < face.size(); ++i) {
                const Edge direction(face[i], face[(i + 1) % face.size()]);
                ++uses[std::minmax(direction.first, direction.second)];
                directions.insert(direction);
            }
        }
        EXPECT_EQ(solid.corners, corners.count());
        EXPECT_EQ(solid.edges, int(uses.size()));
        EXPECT_EQ(solid.faces, int(faces.size()));
        for (const auto& [edge, count] : uses)
            EXPECT_EQ(2, count) << "the edge from " << edge.first << " to " << edge.second;
        EXPECT_EQ(solid.oriented, int(directions.size()) == 2 * solid.edges);
    }
}

TEST_F(Solids, WiresAreTheEdgesOfTheFilledOnes)
{
    const struct
    {
        const char* name;
        Draw wire;
        Draw filled;
    } solids[] = {
        {"box", [](T3dPort& p) { p.box(false); }, [](T3dPort& p) { p.box(true); }},
        {"cone", [](T3dPort& p) { p.cone(false); }, [](T3dPort& p) { p.cone(true); }},
        {"sphere", [](T3dPort& p) { p.sphere(false); }, [](T3dPort& p) { p.sphere(true); }},
        {"octahedron", [](T3dPort& p) { p.octahedron(false); }, [](T3dPort& p) { p.octahedron(true); }},
        {"tetrahedron", [](T3dPort& p) { p.tetrahedron(false); }, [](T3dPort& p) { p.tetrahedron(true); }},
    };
    for (const auto& solid : solids) {
        SCOPED_TRACE(solid.name);
        Corners corners;
        std::set<Edge> edges;
        for (const Face& face : facesOf(sentBy(callsOf(solid.filled)).primitives, corners))
            for (std::size_t i = 0; i < face.size(); ++i)
                edges.insert(std::minmax(face[i], face[(i + 1) % face.size()]));
        EXPECT_EQ(edges, linesOf(sentBy(callsOf(solid.wire)).primitives, corners));
    }
}

TEST_F(Solids, OutlineConeDrawsTheConeAndThenLines)
{
    const Calls calls = callsOf([](T3dPort& p) { p.outline_cone(0); });
    const Sent sent = sentBy(calls);
    std::vector<SentPrimitive> wanted = wantedCone(true);
    append(wanted, wantedConeOutline());
    // The base is outlined whole: its edge flags are back.
    expectSent(wanted, sent.primitives);
    const Calls around = {"glGenLists(1)",
                          "glNewList",
                          "glEndList()",
                          "glGenLists(1)",
                          "glNewList",
                          "glPolygonMode(GL_FRONT_AND_BACK, GL_LINE)",
                          "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                          "glEndList()",
                          "glCallList"};
    ASSERT_LT(around.size(), sent.others.size());
    for (std::size_t i = 0; i < around.size(); ++i)
        EXPECT_EQ(around[i], sent.others[i].substr(0, around[i].size()));
}

TEST_F(Solids, BoxArraysHoldTheirFacesInOrder)
{
    T3dPort::fsDepreciateFixedFunction = true;
    const std::vector<std::vector<Xyz>> wantedFaces = {
        {{-1, -1, -1}, {-1, 1, -1}, {1, 1, -1}, {1, -1, -1}}, {{1, -1, -1}, {1, 1, -1}, {1, 1, 1}, {1, -1, 1}},
        {{1, -1, 1}, {1, 1, 1}, {-1, 1, 1}, {-1, -1, 1}},     {{-1, -1, -1}, {-1, -1, 1}, {-1, 1, 1}, {-1, 1, -1}},
        {{-1, 1, -1}, {-1, 1, 1}, {1, 1, 1}, {1, 1, -1}},     {{-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}},
    };
    Corners corners;
    const std::vector<Face> pieces = fedBack([](T3dPort& p) { p.box(true); }, corners);
    ASSERT_TRUE(pieces.size() == 6 || pieces.size() == 12) << pieces.size();
    const std::size_t each = pieces.size() / 6;
    for (std::size_t i = 0; i < 6; ++i) {
        Face wanted;
        for (const Xyz& p : wantedFaces[i])
            wanted.push_back(corners[p]);
        const auto first = pieces.begin() + long(each * i);
        EXPECT_EQ(boundaryOf({wanted}), boundaryOf({first, first + long(each)})) << "face " << i;
    }

    std::vector<Face> wantedLines;
    const auto line = [&](int a, int b) {
        const auto corner = [&](int k) {
            return corners[{k & 2 ? 1.0 : -1.0, k & 1 ? 1.0 : -1.0, k & 4 ? 1.0 : -1.0}];
        };
        wantedLines.push_back({corner(a), corner(b)});
    };
    const int strip[] = {0, 4, 5, 1, 0, 2, 6, 7, 3, 2};
    for (int i = 0; i < 9; ++i)
        line(strip[i], strip[i + 1]);
    line(4, 6);
    line(5, 7);
    line(1, 3);
    EXPECT_EQ(wantedLines, fedBack([](T3dPort& p) { p.box(false); }, corners));
    EXPECT_EQ(8, corners.count());
}

TEST_F(Solids, BothPathsOfTheBoxDrawTheSame)
{
    const struct
    {
        double x, y, z;
    } views[] = {{0.4, 0.5, 0.1}, {0.4 + 3.14159, 0.5, 0.1}, {-0.7, 2.2, 0.3}, {0.2, -1.3, 2.5}};
    port().depthTest(true);
    for (const bool lit : {false, true}) {
        if (lit) {
            port().setDefaultLight(0, T4dDblVector(0.5, 0.3, 1));
            port().enableLight(0);
            port().setLightingModel();
        }
        for (const auto& view : views) {
            port().loadIdentity();
            port().rotate(view.x, view.y, view.z);
            for (const Draw& draw :
                 {Draw([](T3dPort& p) { p.box(false); }), Draw([](T3dPort& p) { p.box(true); }),
                  Draw([](T3dPort& p) { p.box(T4dDblPoint(0.1, -0.2, 0.3), 0.7f, -0.9f, 1.1f, true); })}) {
                glNormal3f(0.3f, 0.2f, 0.9f);
                T3dPort::fsDepreciateFixedFunction = false;
                const auto pixels = pixelsOf(draw);
                std::set<QRgb> shades(pixels.begin(), pixels.end());
                EXPECT_LE(2u, shades.size());
                // A filled box leaves the normal of its last face behind, arrays leave any.
                glNormal3f(0.3f, 0.2f, 0.9f);
                T3dPort::fsDepreciateFixedFunction = true;
                EXPECT_EQ(pixels, pixelsOf(draw)) << view.x << " " << view.y << " " << view.z << (lit ? " lit" : "");
            }
        }
    }
}
