#include "TuvView.h"

#include "Graphics/interaction/TinteractivePort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "TsavedState.h"
#include "TviewScene.h"
#include "foundation/Tevent.h"
#include "foundation/TresourceMap.h"
#include "pictures.h"
#include "ui/TUIInventory.h"
#include "ui/ThandlerBlock.h"
#include "ui/Tpanel.h"

#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

constexpr char kName[] = "uvView";
constexpr int kWheelButton = 1024;
constexpr double kZoomPerWheelUnit = 1.0 / 1000;
constexpr double kMargin = 1.12;
constexpr double kLeastHeight = 1e-4;
constexpr double kMostHeight = 1e4;
constexpr int kMostLines = 400; // of a grid
constexpr TportColor kBackground{0.165f, 0.177f, 0.192f};
constexpr TportColor kTenth{0.205f, 0.218f, 0.235f};
constexpr TportColor kWhole{0.36f, 0.38f, 0.41f};
constexpr TportColor kDimmed{0.5f, 0.5f, 0.5f};
constexpr float kUnitSquare[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
constexpr TportColor kWireColour{0.72f, 0.80f, 0.86f};
constexpr TportColor kPointColour{0.24f, 0.50f, 0.64f};
constexpr TportColor kPickedColour{0.98f, 0.62f, 0.20f};

std::unique_ptr<TinteractivePort> makePort(QWidget* parent)
{
    TresourceMap::Set(kName, "saFrameBufferMode", "double");
    auto port = std::make_unique<TinteractivePort>(parent, kName, false);
    gUIInventory->add(port.get(), kName);
    if (QWidget* pane = port->qControl())
        new Tpanel(pane, kName); // goes with the widget
    return port;
}

bool hasUvs(const TobjModel& model, const TobjModel::Trange& corners)
{
    return std::none_of(model.uvs().begin() + static_cast<std::ptrdiff_t>(corners.fBegin),
                        model.uvs().begin() + static_cast<std::ptrdiff_t>(corners.fEnd),
                        [](const TobjModel::Tuv& uv) { return std::isnan(uv.fU); });
}

TuvCache layoutOf(const T2FloatArray& points, TuvCache::TuvPolygonType type)
{
    TuvCache layout(true);
    layout.setPointsPerPolygon(type);
    layout.setPoints(points);
    return layout;
}

} // namespace

TuvView::TuvView(QWidget* parent, TviewScene& scene)
    : fScene(scene), fDraw([this](const Tevent&) { draw(); }),
      fPress([this](const Tevent& event) { return press(event); }),
      fDrag([this](const Tevent& event) { return drag(event); }), fPort(makePort(parent))
{
    TuvCache::gUVCacheLineColor = kWireColour;
    TuvCache::gUVCachePointColor = kPointColour;
    ThandlerBlock handlers;
    handlers.setUpdate(&fDraw);
    handlers.setPress(&fPress);
    handlers.setDoubleClick(&fPress);
    handlers.setDrag(&fDrag);
    fPort->attachHandlers(handlers);
}

TuvView::~TuvView() = default;

QWidget* TuvView::widget() const
{
    return fPort->qControl();
}

void TuvView::setWire(bool on)
{
    fWire = on;
    update();
}

void TuvView::setPoints(bool on)
{
    fPoints = on;
    update();
}

void TuvView::takeModel()
{
    fLayouts.destroy();
    fLower[0] = fLower[1] = 0;
    fUpper[0] = fUpper[1] = 1;
    const TobjModel* model = fScene.model();
    if (model && !model->uvs().empty()) {
        T2FloatArray quads;
        T2FloatArray triangles;
        const auto add = [&](T2FloatArray& to, std::size_t corner) {
            const TobjModel::Tuv& uv = model->uvs()[corner];
            to.append({uv.fU, uv.fV});
            const float at[2] = {uv.fU, uv.fV};
            for (int i = 0; i < 2; ++i) {
                fLower[i] = std::min(fLower[i], at[i]);
                fUpper[i] = std::max(fUpper[i], at[i]);
            }
        };
        for (std::size_t face = 0; face < model->faceCount(); ++face) {
            const TobjModel::Trange corners = model->cornersOf(face);
            if (!hasUvs(*model, corners))
                continue;
            if (corners.size() == 4) {
                for (std::size_t corner = corners.fBegin; corner < corners.fEnd; ++corner)
                    add(quads, corner);
                continue;
            }
            for (std::size_t corner = corners.fBegin + 2; corner < corners.fEnd; ++corner) {
                add(triangles, corners.fBegin);
                add(triangles, corner - 1);
                add(triangles, corner);
            }
        }
        if (!quads.isEmpty())
            fLayouts.addLast(layoutOf(quads, TuvCache::kQuads));
        if (!triangles.isEmpty())
            fLayouts.addLast(layoutOf(triangles, TuvCache::kTriangles));
    }
    frame();
}

void TuvView::frame()
{
    fFramePending = true;
    update();
}

void TuvView::update()
{
    if (QlirnGLWidget* canvas = fPort->glWidget())
        canvas->update();
}

QImage TuvView::picture(const QSize& size)
{
    const bool framePending = fFramePending;
    if (fPort->portFlags().test(T3dPort::kPortFirstPaintPending))
        fPort->renderToPixmap(1, 1);
    fFramePending = framePending;
    return drawnPicture(*fPort, size);
}

double TuvView::unitsPerPixel() const
{
    return fHeight / std::max(1, int(fPort->portRect().height()));
}

void TuvView::draw()
{
    T3dPort& port = *fPort;
    const TportRect r = port.portRect();
    if (r.isEmpty())
        return;
    const double aspect = double(r.width()) / r.height();
    if (fFramePending) {
        fFramePending = false;
        const double width = double(fUpper[0]) - fLower[0];
        const double height = double(fUpper[1]) - fLower[1];
        for (int i = 0; i < 2; ++i)
            fCentre[i] = 0.5 * (double(fLower[i]) + fUpper[i]);
        fHeight = std::clamp(kMargin * std::max(height, width / aspect), kLeastHeight, kMostHeight);
    }
    port.clearColor(kBackground);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    port.depthTest(false);
    const double x = fHeight * aspect / 2;
    const double y = fHeight / 2;
    port.ortho(fCentre[0] - x, fCentre[0] + x, fCentre[1] - y, fCentre[1] + y, -1, 1);
    port.matrixMode(GL_MODELVIEW);
    port.loadIdentity();
    drawSquares();
    drawTexture();
    if (fPoints) {
        for (unsigned i = 0; i < fLayouts.length(); ++i)
            fLayouts[i].drawPoints(port);
    }
    drawPicked();
    port.lineWidth(1);
    if (fWire) {
        port.color(TuvCache::gUVCacheLineColor);
        for (unsigned i = 0; i < fLayouts.length(); ++i)
            fLayouts[i].draw(port);
    }
    port.swapBuffers();
}

void TuvView::drawSquares()
{
    T3dPort& port = *fPort;
    const double halfWidth = unitsPerPixel() * port.portRect().width() / 2;
    const auto lines = [&](const TportColor& colour, double step) {
        const double first[2] = {std::floor((fCentre[0] - halfWidth) / step),
                                 std::floor((fCentre[1] - fHeight / 2) / step)};
        const double last[2] = {std::ceil((fCentre[0] + halfWidth) / step),
                                std::ceil((fCentre[1] + fHeight / 2) / step)};
        if (!(last[0] - first[0] + last[1] - first[1] <= kMostLines))
            return;
        port.color(colour);
        port.setCurrentContext();
        glBegin(GL_LINES);
        for (int axis = 0; axis < 2; ++axis) {
            const int count = static_cast<int>(last[axis] - first[axis]);
            for (int line = 0; line <= count; ++line) {
                const double i = first[axis] + line;
                for (const double end : {first[1 - axis], last[1 - axis]})
                    axis == 0 ? glVertex2d(i * step, end * step) : glVertex2d(end * step, i * step);
            }
        }
        glEnd();
    };
    lines(kTenth, 0.1);
    lines(kWhole, 1);
}

void TuvView::drawTexture()
{
    if (fScene.texture().isEmpty())
        return;
    fPort->color(kDimmed);
    fScene.texture().apply(*fPort);
    fPort->setCurrentContext();
    const TsavedState state(GL_ENABLE_BIT);
    glEnable(GL_TEXTURE_2D);
    glBegin(GL_QUADS);
    for (const auto& corner : kUnitSquare) {
        glTexCoord2fv(corner);
        glVertex2fv(corner);
    }
    glEnd();
}

void TuvView::drawPicked()
{
    const TobjModel* model = fScene.model();
    const Tselection& selection = fScene.selection();
    if (!model || model->uvs().empty() || selection.kind() != Tselection::kFaces || selection.isEmpty())
        return;
    fPort->color(kPickedColour);
    fPort->setCurrentContext();
    for (const Tselection::Titem& item : selection.items()) {
        const TobjModel::Trange corners = model->cornersOf(item.fElement);
        if (!hasUvs(*model, corners))
            continue;
        glBegin(GL_POLYGON);
        for (std::size_t corner = corners.fBegin; corner < corners.fEnd; ++corner)
            glVertex2f(model->uvs()[corner].fU, model->uvs()[corner].fV);
        glEnd();
    }
}

bool TuvView::press(const Tevent& event)
{
    const Tpoint p = event.getLocalPosition(1);
    fLastX = p.x;
    fLastY = p.y;
    return true;
}

bool TuvView::drag(const Tevent& event)
{
    const Tpoint p = event.getLocalPosition(1);
    const int dx = p.x - fLastX;
    const int dy = p.y - fLastY; // downwards
    const TportRect& r = fPort->portRect();
    if (event.button() == kWheelButton) {
        // What is under the pointer stays there. The drag of a wheel goes by the turn, from where the pointer is.
        const double before = unitsPerPixel();
        fHeight = std::clamp(fHeight * std::exp(-kZoomPerWheelUnit * dx), kLeastHeight, kMostHeight);
        const double shrunk = before - unitsPerPixel();
        fCentre[0] += (fLastX - r.width() / 2.0) * shrunk;
        fCentre[1] -= (fLastY - r.height() / 2.0) * shrunk;
    } else {
        fLastX = p.x;
        fLastY = p.y;
        fCentre[0] -= dx * unitsPerPixel();
        fCentre[1] += dy * unitsPerPixel();
    }
    update();
    return true;
}
