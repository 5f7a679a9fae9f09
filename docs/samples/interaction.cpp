// A tool that draws on the ground, and the handle that it is dragged by.

#include "Sample.h"

#include "Graphics/interaction/TinteractivePort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Taction.h"
#include "foundation/Tevent.h"
#include "foundation/Tpoint.h"
#include "ui/ThandlerBlock.h"
#include "ui/Tpanel.h"

#include <cmath>
#include <vector>

namespace {

/** Strokes on the plane z = 0. */
class TsketchTool
{
public:
    explicit TsketchTool(TinteractivePort& port)
        : fPort(port), fUpdate([this](const Tevent&) { draw(); }), fPress([this](const Tevent& event) {
              fStrokes.emplace_back();
              extend(event);
          }),
          fDrag([this](const Tevent& event) { extend(event); })
    {
        ThandlerBlock handlers;
        handlers.setUpdate(&fUpdate);
        handlers.setPress(&fPress);
        handlers.setDrag(&fDrag);
        fPort.attachHandlers(handlers);
    }
    ~TsketchTool() { fPort.detachHandlers(); }

private:
    void loadCamera()
    {
        fPort.perspective(26, double(fPort.portRect().width()) / fPort.portRect().height(), 1, 60);
        fPort.polarView(13, 35, 58, 0);
    }

    void extend(const Tevent& event)
    {
        loadCamera(); // a view shared with others may have drawn something else since
        const Tpoint pixel = fPort.windowToPort(event.getLocalPosition());
        T4dDblPoint near;
        T4dDblVector direction;
        fPort.portToWorld(pixel, near, direction);
        if (direction.z < -1e-6)
            fStrokes.back().push_back(near + direction * (-near.z / direction.z));
        fPort.glWidget()->update();
    }

    void draw()
    {
        fPort.clearColor(TportColor(0.17f, 0.19f, 0.21f));
        fPort.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        loadCamera();
        drawGrid();
        fPort.depthTest(true);
        fPort.color(TportColor(0.92f, 0.62f, 0.22f));
        fPort.lineWidth(5);
        for (const auto& stroke : fStrokes)
            for (std::size_t i = 1; i < stroke.size(); ++i)
                fPort.line(float(stroke[i - 1].x), float(stroke[i - 1].y), float(stroke[i].x), float(stroke[i].y));
        fPort.lineWidth(1);
        if (!fStrokes.empty() && !fStrokes.back().empty())
            drawHandle(fStrokes.back().back());
        fPort.depthTest(false);
        fPort.swapBuffers();
    }

    void drawGrid()
    {
        fPort.color(TportColor(0.30f, 0.33f, 0.36f));
        fPort.lineWidth(2);
        for (int i = -5; i <= 5; ++i) {
            fPort.line(-5, float(i), 5, float(i));
            fPort.line(float(i), -5, float(i), 5);
        }
    }

    /** Three arrows, 240 pixels long however far away they are. */
    void drawHandle(const T4dDblPoint& at)
    {
        const TportColor colours[] = {{0.86f, 0.32f, 0.30f}, {0.40f, 0.70f, 0.38f}, {0.36f, 0.58f, 0.90f}};
        T4dDblMatrix view;
        fPort.getModelViewMatrix(view);
        const T4dDblVector right(view[0], view[4], view[8]); // of the picture: not foreshortened
        const double scale = fPort.screenLengthScale(240, at, right);
        const T4dDblVector axes[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        fPort.shadeModel(T3dPort::kShadeSmooth);
        fPort.setGlobalAmbient(kCwhite);
        fPort.setLightingModel();
        fPort.setDefaultLight(0, T4dDblVector(0, -1, 2));
        for (int i = 0; i < 3; ++i) {
            fPort.setDiffuseColor(colours[i]);
            fPort.pushMatrix();
            fPort.align(axes[(i + 1) % 3], axes[i], at); // z along the axis
            fPort.scale(scale, scale, scale);
            fPort.cylinder(T4dDblPoint(0, 0, 0), 0.025f, 0.8f, true, false);
            fPort.cone(T4dDblPoint(0, 0, 0.75), 0.09f, 0.25f, true);
            fPort.popMatrix();
        }
        fPort.disableLighting();
    }

    TinteractivePort& fPort;
    std::vector<std::vector<T4dDblPoint>> fStrokes;
    TfunctionAction fUpdate;
    TfunctionAction fPress;
    TfunctionAction fDrag;
};

QImage run()
{
    QWidget pane;
    new Tpanel(&pane, "sketch"); // goes with the widget
    TinteractivePort port(&pane, "sketch", false);
    TsketchTool tool(port);
    Sample::picture(port, QSize(560, 320), 3); // the first drawing tells the port its size

    port.setPortRect(TportRect(0, 0, 560 * 3, 320 * 3));
    for (int i = 0; i <= 150; ++i) {
        const double a = 0.13 * i;
        const double r = 110 + 1.9 * i;
        const Tpoint at{short(780 + 1.5 * r * std::cos(a)), short(480 + 0.8 * r * std::sin(a))};
        if (i == 0)
            port.doPress(TpressEvent(at, 0, 1));
        else
            port.doDrag(TdragEvent(at, 0, 1));
    }
    Sample::expect(TinteractionDirector::current() == &port, "a press makes the port the current director");
    return Sample::picture(port, QSize(560, 320), 3);
}

const Sample sample("interaction", run);

} // namespace
