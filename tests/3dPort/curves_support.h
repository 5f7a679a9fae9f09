#pragma once

#include "support/GlRecorder.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

using Calls = std::vector<std::string>;
using Draw = std::function<void(T3dPort&)>;

struct NamedDraw
{
    const char* name;
    Draw draw;
};

struct Xyz
{
    double x = 0;
    double y = 0;
    double z = 0;
};

inline std::ostream& operator<<(std::ostream& out, const Xyz& p)
{
    return out << "(" << p.x << " " << p.y << " " << p.z << ")";
}

inline bool isNear(const Xyz& a, const Xyz& b, double tolerance)
{
    return std::abs(a.x - b.x) <= tolerance && std::abs(a.y - b.y) <= tolerance && std::abs(a.z - b.z) <= tolerance;
}

inline double radians(double degrees)
{
    return degrees * std::acos(-1.0) / 180;
}

/** @p p turned about z by @p degrees; positive ones turn +y towards -x. */
inline Xyz turned(const Xyz& p, double degrees)
{
    const double c = std::cos(radians(degrees));
    const double s = std::sin(radians(degrees));
    return {p.x * c - p.y * s, p.x * s + p.y * c, p.z};
}

// What is computed in double precision has to arrive so.
constexpr double kDoubles = 1e-12;
constexpr double kFloats = 3e-7;

/** A vertex, and the normal and edge flag it got. Without a normal sent before it has the null vector. */
struct SentVertex
{
    Xyz at;
    Xyz normal;
    bool edge = true;
    double precision = kDoubles; ///< in which the vertex was sent
    double normalPrecision = kDoubles;
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
    Xyz normal;
    double normalPrecision = kDoubles;
    bool edge = true;
    bool inside = false;
    for (const std::string& call : calls) {
        const std::string name = call.substr(0, call.find('('));
        const auto isA = [&name](const char* prefix) { return name.rfind(prefix, 0) == 0; };
        if (name == "glBegin") {
            EXPECT_FALSE(inside) << "glBegin inside of another";
            inside = true;
            sent.primitives.push_back({call.substr(8, call.size() - 9), {}});
        } else if (name == "glEnd") {
            EXPECT_TRUE(inside) << "glEnd without glBegin";
            inside = false;
        } else if (name == "glEdgeFlag") {
            edge = call == "glEdgeFlag(GL_TRUE)";
        } else if (isA("glVertex") || isA("glNormal3")) {
            double values[3] = {0, 0, 0};
            const char* text = call.c_str() + name.size();
            for (double& value : values) {
                text += std::strspn(text, "([, ");
                if (*text == ')' || *text == ']')
                    break;
                char* end = nullptr;
                value = std::strtod(text, &end);
                text = end;
            }
            const Xyz xyz{values[0], values[1], values[2]};
            const double precision = name.find('f', 7) == std::string::npos ? kDoubles : kFloats;
            if (isA("glNormal3")) {
                normal = xyz;
                normalPrecision = precision;
            } else if (inside)
                sent.primitives.back().vertices.push_back({xyz, normal, edge, precision, normalPrecision});
            else
                ADD_FAILURE() << call << " outside of glBegin and glEnd";
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
            EXPECT_TRUE(isNear(w.at, g.at, g.precision)) << "vertex " << k << " is " << g.at << " and not " << w.at;
            EXPECT_TRUE(isNear(w.normal, g.normal, g.normalPrecision))
                << "normal " << k << " is " << g.normal << " and not " << w.normal;
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

/** Points told apart by their places. */
class Corners
{
public:
    int operator[](const Xyz& p)
    {
        for (std::size_t i = 0; i < fPoints.size(); ++i)
            if (isNear(fPoints[i], p, kTolerance))
                return int(i);
        fPoints.push_back(p);
        return int(fPoints.size()) - 1;
    }
    int count() const { return int(fPoints.size()); }

private:
    static constexpr double kTolerance = 1e-5;
    std::vector<Xyz> fPoints;
};

/** Numbers of corners: all around a face, or the two ends of a line. */
using Face = std::vector<int>;
using Edge = std::pair<int, int>;

/** The directed edges around the area that @p pieces cover; those between two pieces cancel out. */
inline std::set<Edge> boundaryOf(const std::vector<Face>& pieces)
{
    std::set<Edge> boundary;
    for (const Face& piece : pieces) {
        for (std::size_t i = 0; i < piece.size(); ++i) {
            const Edge edge(piece[i], piece[(i + 1) % piece.size()]);
            if (boundary.erase({edge.second, edge.first}) == 0)
                boundary.insert(edge);
        }
    }
    return boundary;
}

/** A port in a small window, current, with what it sees of z = 0 from -2 to 2 in x and y. */
class Shapes : public testing::Test
{
protected:
    static constexpr int kSize = 64;

    Shapes() : fWindow(kSize, kSize)
    {
        EXPECT_TRUE(fWindow.show());
        lookAtScene(port());
    }
    ~Shapes() override { T3dPort::fsDepreciateFixedFunction = false; }

    T3dPort& port() { return fWindow.port(); }

    static void lookAtScene(T3dPort& port)
    {
        port.ortho(-2, 2, -2, 2, -4, 4);
        port.loadIdentity();
        port.setCurrentContext();
    }

    static Calls callsOf(T3dPort& port, const Draw& draw)
    {
        GlRecorder recorder;
        recorder.start();
        draw(port);
        recorder.stop();
        Calls calls;
        for (const std::string& call : recorder.calls())
            if (call != "glGetIntegerv(GL_LIST_INDEX, pointer)")
                calls.push_back(call);
        return calls;
    }
    Calls callsOf(const Draw& draw) { return callsOf(port(), draw); }

    /** The picture that @p draw makes in white on black, its lowest row first. */
    static std::vector<QRgb> pixelsOf(T3dPort& port, const Draw& draw)
    {
        port.clearColor(kCblack);
        port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        port.color(kCwhite);
        port.setCurrentContext();
        draw(port);
        std::vector<QRgb> pixels(kSize * kSize);
        glReadPixels(0, 0, kSize, kSize, GL_BGRA, GL_UNSIGNED_BYTE, pixels.data());
        for (QRgb& pixel : pixels)
            pixel &= 0xFFFFFF;
        return pixels;
    }
    std::vector<QRgb> pixelsOf(const Draw& draw) { return pixelsOf(port(), draw); }

    /**
     * What OpenGL makes of the arrays that @p draw sends, in their order: lines, and polygons that are cut as the
     * driver likes. Not for shapes sent vertex by vertex, of which the driver would keep memory in this mode.
     */
    std::vector<Face> fedBack(const Draw& draw, Corners& corners)
    {
        std::vector<float> buffer(5000);
        glFeedbackBuffer(GLsizei(buffer.size()), GL_3D, buffer.data());
        glRenderMode(GL_FEEDBACK);
        draw(port());
        buffer.resize(std::size_t(std::max(glRenderMode(GL_RENDER), 0)));
        std::vector<Face> pieces;
        for (std::size_t i = 0; i < buffer.size();) {
            const auto token = GLenum(buffer[i++]);
            const std::size_t count = token == GL_POLYGON_TOKEN ? std::size_t(buffer[i++]) : 2;
            pieces.emplace_back();
            for (std::size_t k = 0; k < count && i + 2 < buffer.size(); ++k, i += 3)
                pieces.back().push_back(
                    corners[{4.0 * buffer[i] / kSize - 2, 4.0 * buffer[i + 1] / kSize - 2, 4 - 8.0 * buffer[i + 2]}]);
        }
        return pieces;
    }

    /** How much of the 4 by 4 units seen is not black. */
    double areaOf(const Draw& draw)
    {
        int count = 0;
        for (const QRgb pixel : pixelsOf(draw))
            count += pixel != 0;
        return 16.0 * count / (kSize * kSize);
    }

    PortWindow<> fWindow;
};
