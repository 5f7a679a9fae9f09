#pragma once

#include "support/GlRecorder.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "foundation/T4dDblPoint.h"
#include "foundation/T4dDblVector.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using Calls = std::vector<std::string>;
using Draw = std::function<void(T3dPort&)>;

const T4dDblPoint kCentre{1, 2, 3, 1};

/** A shape kept as a list for each of its two forms. */
struct ListedShape
{
    const char* name;
    void (*draw)(T3dPort& p, bool filled);
    void (*placed)(T3dPort& p, bool filled);
    const char* scale;
};

const ListedShape kListedShapes[] = {
    {"circle", [](T3dPort& p, bool filled) { p.circle(filled, true); },
     [](T3dPort& p, bool filled) { p.circle(kCentre, 0.5f, filled); }, "glScalef(0.5, 0.5, 0.5)"},
    {"box", [](T3dPort& p, bool filled) { p.box(filled); },
     [](T3dPort& p, bool filled) { p.box(kCentre, 0.5f, 2, 0.25f, filled); }, "glScalef(0.5, 2, 0.25)"},
    {"cone", [](T3dPort& p, bool filled) { p.cone(filled); },
     [](T3dPort& p, bool filled) { p.cone(kCentre, 0.5f, 2, filled); }, "glScalef(0.5, 0.5, 2)"},
    {"sphere", [](T3dPort& p, bool filled) { p.sphere(filled); },
     [](T3dPort& p, bool filled) { p.sphere(kCentre, 0.5f, filled); }, "glScalef(0.5, 0.5, 0.5)"},
    {"cylinder", [](T3dPort& p, bool filled) { p.cylinder(filled, true); },
     [](T3dPort& p, bool filled) { p.cylinder(kCentre, 0.5f, 2, filled, true); }, "glScalef(0.5, 0.5, 2)"},
    {"octahedron", [](T3dPort& p, bool filled) { p.octahedron(filled); },
     [](T3dPort& p, bool filled) { p.octahedron(kCentre, 0.5f, filled); }, "glScalef(0.5, 0.5, 0.5)"},
    {"tetrahedron", [](T3dPort& p, bool filled) { p.tetrahedron(filled); },
     [](T3dPort& p, bool filled) { p.tetrahedron(kCentre, 0.5f, filled); }, "glScalef(0.5, 0.5, 0.5)"},
};

using Xyz = T4dDblVector;

inline bool isNear(const Xyz& a, const Xyz& b, double tolerance)
{
    return std::abs(a.x - b.x) <= tolerance && std::abs(a.y - b.y) <= tolerance && std::abs(a.z - b.z) <= tolerance;
}

/** @p p turned about z by @p degrees; positive ones turn +y towards -x. */
inline Xyz turned(const Xyz& p, double degrees)
{
    const double c = std::cos(degrees * std::acos(-1.0) / 180);
    const double s = std::sin(degrees * std::acos(-1.0) / 180);
    return {p.x * c - p.y * s, p.x * s + p.y * c, p.z};
}

constexpr Xyz kUp{0, 0, 1};
constexpr double kFloats = 3e-7;

/** A vertex, and the normal and edge flag it got. Without a normal sent before it has the null vector. */
struct SentVertex
{
    Xyz at;
    Xyz normal;
    bool edge = true;
    double precision = 1e-12; ///< in which the vertex was sent
};

struct SentPrimitive
{
    std::string mode;
    std::vector<SentVertex> vertices;
};

/** What went out between glBegin and glEnd, and the calls around that, normals excepted. */
struct Sent
{
    std::vector<SentPrimitive> primitives;
    Calls others;
};

inline Sent sentBy(const Calls& calls)
{
    Sent sent;
    SentVertex vertex;
    bool inside = false;
    for (const std::string& call : calls) {
        const std::string name = call.substr(0, call.find('('));
        const bool isNormal = name.rfind("glNormal3", 0) == 0;
        if (name == "glBegin" || name == "glEnd") {
            EXPECT_NE(inside, name == "glBegin") << "unpaired " << name;
            inside = name == "glBegin";
            if (inside)
                sent.primitives.push_back({call.substr(8, call.size() - 9), {}});
        } else if (name == "glEdgeFlag") {
            vertex.edge = call == "glEdgeFlag(GL_TRUE)";
        } else if (isNormal || (inside && name.rfind("glVertex", 0) == 0)) {
            std::string numbers = call.substr(name.size());
            std::replace_if(
                numbers.begin(), numbers.end(), [](char c) { return std::strchr("()[],", c); }, ' ');
            std::istringstream in(numbers);
            Xyz xyz;
            in >> xyz.x >> xyz.y >> xyz.z;
            (isNormal ? vertex.normal : vertex.at) = xyz;
            vertex.precision = name.find('f', 7) == std::string::npos ? 1e-12 : kFloats;
            if (!isNormal)
                sent.primitives.back().vertices.push_back(vertex);
        } else {
            sent.others.push_back(call);
        }
    }
    EXPECT_FALSE(inside) << "glBegin without glEnd";
    return sent;
}

/** Compares modes, order, positions, normals and edge flags. */
inline void expectSent(const std::vector<SentPrimitive>& wanted, const std::vector<SentPrimitive>& got)
{
    ASSERT_EQ(wanted.size(), got.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        SCOPED_TRACE("primitive " + std::to_string(i));
        EXPECT_EQ(wanted[i].mode, got[i].mode);
        ASSERT_EQ(wanted[i].vertices.size(), got[i].vertices.size());
        for (std::size_t k = 0; k < wanted[i].vertices.size(); ++k) {
            const SentVertex& w = wanted[i].vertices[k];
            const SentVertex& g = got[i].vertices[k];
            EXPECT_TRUE(isNear(w.at, g.at, g.precision)) << "vertex " << k;
            EXPECT_TRUE(isNear(w.normal, g.normal, kFloats)) << "normal " << k;
            EXPECT_EQ(w.edge, g.edge) << "edge flag " << k;
        }
    }
}

/** The same normal for all of @p points. */
inline std::vector<SentVertex> with(const Xyz& normal, const std::vector<Xyz>& points)
{
    std::vector<SentVertex> vertices;
    for (const Xyz& point : points)
        vertices.push_back({point, normal});
    return vertices;
}

/** A port in a small window, current, with what it sees of z = 0 from -2 to 2 in x and y. */
class Shapes : public testing::Test
{
protected:
    static constexpr int kSize = 64;

    Shapes() : fWindow(kSize, kSize)
    {
        EXPECT_TRUE(fWindow.show());
        port().ortho(-2, 2, -2, 2, -4, 4);
        port().setCurrentContext();
    }
    ~Shapes() override { T3dPort::fsDepreciateFixedFunction = false; }

    T3dPort& port() { return fWindow.port(); }

    Calls callsOf(const Draw& draw)
    {
        GlRecorder recorder;
        recorder.start();
        draw(port());
        recorder.stop();
        Calls calls;
        for (const std::string& call : recorder.calls())
            if (call != "glGetIntegerv(GL_LIST_INDEX, pointer)")
                calls.push_back(call);
        return calls;
    }

    /** The picture that @p draw makes in white on black, its lowest row first. */
    std::vector<QRgb> pixelsOf(const Draw& draw)
    {
        port().clearColor(kCblack);
        port().clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        port().color(kCwhite);
        port().setCurrentContext();
        draw(port());
        std::vector<QRgb> pixels(kSize * kSize);
        glReadPixels(0, 0, kSize, kSize, GL_BGRA, GL_UNSIGNED_BYTE, pixels.data());
        for (QRgb& pixel : pixels)
            pixel &= 0xFFFFFF;
        return pixels;
    }

    PortWindow<> fWindow;
};
