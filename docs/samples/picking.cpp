// A field of boxes, some picked in a marquee, one by the pointer.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TpickBuffer.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/Taction.h"
#include "foundation/Tpoint.h"

#include <QWidget>

#include <cmath>
#include <set>
#include <vector>

namespace {

constexpr int kAcross = 11;
constexpr int kCount = kAcross * 7;

std::set<unsigned> gPicked;
unsigned gNearest = kCount;
T4dDblPoint gHit;

void loadCamera(T3dPort& port)
{
    port.matrixMode(GL_MODELVIEW);
    port.perspective(24, double(port.portRect().width()) / port.portRect().height(), 1, 60);
    port.polarView(22, 25, 62, 0);
}

TportColor colourOf(unsigned name)
{
    if (name == gNearest)
        return TportColor(0.85f, 0.30f, 0.25f);
    return gPicked.count(name) ? TportColor(0.92f, 0.62f, 0.22f) : TportColor(0.48f, 0.55f, 0.62f);
}

/** Draws for the screen and for picking alike: names go nowhere unless a pick is in progress. */
void drawField(T3dPort& port)
{
    port.pushName(0);
    for (unsigned name = 0; name < kCount; ++name) {
        const int column = int(name % kAcross) - kAcross / 2;
        const int row = int(name / kAcross) - 3;
        const double x = column;
        const double y = row;
        const float half = 0.25f + 0.1f * static_cast<float>((name * 7) % 5);
        port.loadName(name);
        port.setDiffuseColor(colourOf(name));
        port.box(T4dDblPoint(1.1 * x, 1.1 * y, half), 0.35f, 0.35f, half, true);
    }
    port.popName();
}

std::set<unsigned> namesInside(T3dPort& port, const TportRect& region)
{
    std::vector<unsigned> words(8 * kCount);
    const TpickBuffer records(static_cast<int>(words.size()), words.data());
    loadCamera(port);
    port.fSelectRect = region;
    port.beginSelect(words.data(), records.size());
    drawField(port);
    const int hits = port.endSelect(); // negative when they did not fit
    std::set<unsigned> found;
    unsigned* names = nullptr;
    unsigned depth = 0;
    unsigned count = 0;
    for (int i = 0; i < hits; ++i) {
        names = records.nextElem(names, depth, count);
        if (names && count > 0)
            found.insert(names[count - 1]);
    }
    return found;
}

unsigned nameAt(T3dPort& port, const Tpoint& pixel)
{
    loadCamera(port);
    port.fSelectRect = port.makeSelectRect(pixel, 3);
    port.beginSelect(nullptr, 0); // the shared buffer
    drawField(port);
    const int hits = port.endSelect();
    unsigned depth = 0;
    unsigned count = 0;
    const TpickBuffer records(T3dPort::kSelectBufferSize, T3dPort::fsSelectBuffer);
    const unsigned* names = records.closestElem(hits, depth, count);
    return names ? names[count - 1] : unsigned(kCount);
}

/** Where the line of sight through a pixel meets the ground. */
T4dDblPoint groundAt(const T3dPort& port, const Tpoint& pixel)
{
    T4dDblPoint near;
    T4dDblVector direction;
    port.portToWorld(pixel, near, direction);
    return near + direction * (-near.z / direction.z);
}

void draw(T3dPort& port, const TportRect& marquee)
{
    port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    loadCamera(port);
    port.depthTest(true);
    port.setGlobalAmbient(kCwhite);
    port.setLightingModel();
    port.setDefaultLight(0, T4dDblVector(-1, -2, 3));
    drawField(port);
    port.disableLighting();
    port.color(TportColor(0.95f, 0.95f, 0.90f));
    port.lineWidth(3);
    port.circle(gHit, 0.6f, false);
    port.depthTest(false);
    port.pushOrtho2D();
    port.rect(marquee.left, marquee.bottom, marquee.right, marquee.top, false);
    port.popOrtho2D();
    port.lineWidth(1);
}

QImage run()
{
    QWidget parent;
    T3dPort port(&parent, "picking", false);
    TfunctionAction update([&](const Tevent&) {
        // Picked where it is drawn, so that the port has the size of the picture.
        const short w = port.portRect().width();
        const short h = port.portRect().height();
        const TportRect marquee(short(w * 0.15), short(h * 0.30), short(w * 0.45), short(h * 0.62));
        gPicked = namesInside(port, marquee);
        const Tpoint pointer{short(w * 0.66), short(h * 0.5)};
        gNearest = nameAt(port, pointer);
        gHit = groundAt(port, Tpoint{short(w * 0.60), short(h * 0.14)});
        draw(port, marquee);
        port.swapBuffers();
    });
    port.setUpdateCommand(&update);
    QImage picture = Sample::picture(port, QSize(560, 320), 3);
    Sample::expect(gPicked.size() > 4 && gPicked.size() < 40, "the marquee picks some of the boxes");
    Sample::expect(gNearest < kCount, "the pointer is on a box");
    Sample::expect(std::fabs(gHit.z) < 1e-9, "the ground is hit at z = 0");
    return picture;
}

const Sample sample("picking", run);

} // namespace
