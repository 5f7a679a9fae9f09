// A mesh and its layout in texture space.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/interaction/TuvCache.h"
#include "foundation/Tangle.h"

#include <cmath>
#include <vector>

namespace {

constexpr int kAround = 24;
constexpr int kUp = 12;

struct Tcorner
{
    T4dDblPoint at;
    T4dDblVector normal;
    T2Float uv;
};

/** A vase turned about z: quads, four corners each. */
std::vector<Tcorner> makeVase()
{
    const auto corner = [](int i, int j) {
        const double a = i * 2 * Tangle::kPi / kAround;
        const double z = j * 2.4 / kUp - 1.2;
        const double r = 0.75 + 0.3 * std::sin(2.4 * z + 0.4);
        const double slope = 0.72 * std::cos(2.4 * z + 0.4);
        const double shrink = 0.55 + 0.4 * r;
        return Tcorner{{r * std::cos(a), r * std::sin(a), z},
                       T4dDblVector(std::cos(a), std::sin(a), -slope).normalised(),
                       {float(0.5 + (double(i) / kAround - 0.5) * shrink), float(j) / kUp * 0.9f + 0.05f}};
    };
    std::vector<Tcorner> corners;
    for (int j = 0; j < kUp; ++j)
        for (int i = 0; i < kAround; ++i)
            for (const Tcorner& each : {corner(i, j), corner(i + 1, j), corner(i + 1, j + 1), corner(i, j + 1)})
                corners.push_back(each);
    return corners;
}

bool isPicked(std::size_t face)
{
    return face / kAround >= 4 && face / kAround < 7 && face % kAround >= 15 && face % kAround < 20;
}

TuvCache layoutOf(const std::vector<Tcorner>& corners)
{
    T2FloatArray points;
    for (const Tcorner& corner : corners)
        points.append(corner.uv);
    TuvCache layout(true); // keeps copies
    layout.setPointsPerPolygon(TuvCache::kQuads);
    layout.setPoints(points);
    return layout;
}

void drawLayout(T3dPort& port, const std::vector<Tcorner>& corners)
{
    port.clearColor(TportColor(0.95f, 0.95f, 0.94f));
    port.clear(GL_COLOR_BUFFER_BIT);
    port.ortho(-0.1, 1.1, -0.1, 1.1);
    port.loadIdentity();
    port.color(TportColor(0.72f, 0.73f, 0.75f));
    port.lineWidth(2);
    port.rect(0, 0, 1, 1, false);

    port.color(TportColor(0.95f, 0.72f, 0.38f));
    port.setCurrentContext();
    glBegin(GL_QUADS);
    for (std::size_t i = 0; i < corners.size(); ++i)
        if (isPicked(i / 4))
            glVertex2f(corners[i].uv.x, corners[i].uv.y);
    glEnd();

    static const TuvCache layout = layoutOf(corners);
    port.color(TportColor(0.25f, 0.42f, 0.58f)); // without indices it draws in the current colour
    layout.draw(port);
    TuvCache::gUVCachePointColor = TportColor(0.15f, 0.28f, 0.42f);
    layout.drawPoints(port);
    port.lineWidth(1);
}

void drawVase(T3dPort& port, const std::vector<Tcorner>& corners)
{
    port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.perspective(26, double(port.portRect().width()) / port.portRect().height(), 1, 20);
    port.polarView(6.8, -30, 70, 0);
    port.depthTest(true);
    port.shadeModel(T3dPort::kShadeSmooth);
    port.setGlobalAmbient(kCwhite);
    port.setLightingModel();
    port.setDefaultLight(0, T4dDblVector(0.5, -2, 1));
    for (const bool picked : {false, true}) {
        port.setDiffuseColor(picked ? TportColor(0.92f, 0.62f, 0.22f) : TportColor(0.40f, 0.58f, 0.72f));
        port.setCurrentContext();
        glBegin(GL_QUADS);
        for (std::size_t i = 0; i < corners.size(); ++i) {
            if (isPicked(i / 4) != picked)
                continue;
            glNormal3d(corners[i].normal.x, corners[i].normal.y, corners[i].normal.z);
            glVertex3d(corners[i].at.x, corners[i].at.y, corners[i].at.z);
        }
        glEnd();
    }
    port.disableLighting();
}

const Sample sample("uv", [] {
    const auto corners = makeVase();
    const auto vase = [&](T3dPort& port) { drawVase(port, corners); };
    const auto layout = [&](T3dPort& port) { drawLayout(port, corners); };
    return Sample::sideBySide({Sample::drawing(QSize(260, 300), 3, vase), Sample::drawing(QSize(300, 300), 3, layout)});
});

} // namespace
