#include "Tview.h"

#include "Graphics/interaction/TinteractivePort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "Tbrush.h"
#include "TselectTool.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/Tangle.h"
#include "foundation/Tevent.h"
#include "foundation/TpixelMap.h"
#include "foundation/TresourceMap.h"
#include "pictures.h"
#include "ui/TUIInventory.h"
#include "ui/ThandlerBlock.h"
#include "ui/Tpanel.h"

#include <QElapsedTimer>
#include <QFontMetrics>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr int kWheelButton = 1024;
constexpr double kDollyPerWheelUnit = 1.0 / 1000; // a notch is 120 units
constexpr double kDollyPerHeight = 3;             // of the exponent

std::unique_ptr<TinteractivePort> makePort(QWidget* parent, const char* name)
{
    TresourceMap::Set(name, "saFrameBufferMode", "double");
    auto port = std::make_unique<TinteractivePort>(parent, name, false);
    gUIInventory->add(port.get(), name);
    if (QWidget* pane = port->panelWidget())
        new Tpanel(pane, name); // goes with the widget
    return port;
}

/** The text as OpenGL takes it: rows from the bottom up, colours not multiplied with their opacity. */
QImage textImage(const QString& text, double pixelRatio)
{
    QFont font;
    font.setPixelSize(static_cast<int>(std::lround(13 * pixelRatio)));
    const QFontMetrics metrics(font);
    QImage image(std::max(1, metrics.horizontalAdvance(text)), metrics.height(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setPen(QColor(225, 230, 235, 200));
    painter.drawText(0, metrics.ascent(), text);
    painter.end();
    return image.mirrored().convertToFormat(QImage::Format_RGBA8888);
}

} // namespace

Tview::Tview(QWidget* parent, TviewCamera::Tprojection projection, TviewScene& scene, const TviewScene::Tstyle& style,
             TselectTool& tool, Tbrush& brush)
    : fScene(scene), fStyle(style), fTool(tool), fBrush(brush), fCamera(projection),
      fDraw([this](const Tevent&) { draw(); }), fPress([this](const Tevent& event) { return press(event); }),
      fDrag([this](const Tevent& event) { return drag(event); }),
      fRelease([this](const Tevent& event) { return release(event); }), fEnter([this](const Tevent&) {
          if (fPointerHook)
              fPointerHook(true);
      }),
      fExit([this](const Tevent&) {
          if (fPointerHook)
              fPointerHook(false);
      }),
      fPort(makePort(parent, TviewCamera::nameOf(projection)))
{
    fPort->fGeometryStats = &fStatistics;
    fPort->enableGeometryStats(true);
    ThandlerBlock handlers;
    handlers.setUpdate(&fDraw);
    handlers.setPress(&fPress);
    // The second press of a double click comes as this.
    handlers.setDoubleClick(&fPress);
    handlers.setDrag(&fDrag);
    handlers.setRelease(&fRelease);
    handlers.setEnter(&fEnter);
    handlers.setExit(&fExit);
    fPort->attachHandlers(handlers);
}

Tview::~Tview() = default;

const char* Tview::name() const
{
    return TviewCamera::nameOf(fCamera.projection());
}

T3dPort& Tview::port()
{
    return *fPort;
}

void Tview::loadCamera()
{
    fScene.loadCamera(*fPort, fCamera);
}

QWidget* Tview::widget() const
{
    return fPort->qControl();
}

void Tview::setLabelled(bool labelled)
{
    fLabel = labelled ? textImage(QString::fromLatin1(name()), pixelRatio()) : QImage();
}

void Tview::frame()
{
    fFramePending = true;
    update();
}

void Tview::update()
{
    if (QlirnGLWidget* canvas = fPort->glWidget())
        canvas->update();
}

void Tview::setCamera(const TviewCamera& camera)
{
    fCamera = camera;
    setLabelled(!fLabel.isNull());
    update();
}

QImage Tview::picture(const QSize& size, bool framed)
{
    if (framed)
        frame();
    const TviewCamera camera = fCamera;
    // A port's first paint comes before the picture, at a size of its own. The request to frame is for the picture.
    const bool framePending = fFramePending;
    if (fPort->portFlags().test(T3dPort::kPortFirstPaintPending))
        fPort->renderToPixmap(1, 1);
    fFramePending = framePending;
    QImage image = drawnPicture(*fPort, size);
    if (!framed) {
        fCamera = camera;
        fFramePending = framePending;
    }
    return image;
}

void Tview::draw()
{
    QElapsedTimer timer;
    timer.start();
    drawScene();
    // The view may have to be drawn anew while the marquee is dragged.
    fTool.drawMarquee(*this);
    fPort->swapBuffers();
    fMilliseconds = double(timer.nsecsElapsed()) / 1e6;
    if (fDrawnHook)
        fDrawnHook();
}

void Tview::drawScene()
{
    if (fFramePending) {
        fFramePending = false;
        T4dDblVector lower;
        T4dDblVector upper;
        fScene.selectionBox(lower, upper);
        fCamera.frame(lower, upper, aspect());
    }
    fPort->resetGeometryStats();
    fStatistics.fTmeshes = 0;
    fScene.draw(*fPort, fCamera, fStyle, fLabel, pixelRatio());
    fTool.draw(*this);
    if (fStyle.fHud)
        drawHud();
}

void Tview::drawHud()
{
    constexpr TportColor kHudColour{0.80f, 0.84f, 0.88f};
    constexpr TportColor kHudBackground{0.09f, 0.095f, 0.105f, 0.5f}; // multiplied by its opacity
    constexpr int kLeft = 10;
    constexpr int kLines = 3;
    const char* renderer = T3dPort::graphicsHardwareString();
    char lines[kLines][96];
    std::snprintf(lines[0], sizeof lines[0], "%.90s", renderer ? renderer : "");
    std::snprintf(lines[1], sizeof lines[1], "%.1f ms", fMilliseconds);
    std::snprintf(lines[2], sizeof lines[2], "%u faces  %u edges  %u vertices", fStatistics.fFaces, fStatistics.fEdges,
                  fStatistics.fVerts);
    const int step = static_cast<int>(fPort->font().textHeight(T3dPort::getDisplay())) + 3;
    fPort->depthTest(false);
    fPort->pushOrtho2D();
    fPort->color(kHudColour);
    for (int i = 0; i < kLines; ++i) {
        const int y = fPort->portRect().height() - (i + 1) * step - 6 - (fLabel.isNull() ? 0 : fLabel.height() + 6);
        fPort->text(T4dDblPoint(kLeft, y, 0), lines[i], T3dPort::kLeft, nullptr, kHudBackground);
    }
    fPort->popOrtho2D();
}

void Tview::drawOver(const std::function<void()>& drawing)
{
    fPort->setCurrentContext();
    if (fPort->isBackingSaved()) {
        fPort->restoreBackingStore();
    } else {
        drawScene();
        fPort->setUseBackingStore(true);
        fPort->saveBackingStore();
    }
    drawing();
    fPort->swapBuffers();
}

void Tview::endDrawingOver()
{
    fPort->setUseBackingStore(false);
}

bool Tview::addShown(QImage& picture, const QPoint& at)
{
    TpixelMap map;
    fPort->setSnapShotRect(fPort->portRect());
    if (!fPort->snapShot(map))
        return false;
    const QImage shown(map.pixels(), map.width(), map.height(), static_cast<int>(map.rowBytes()),
                       map.isRgba() ? QImage::Format_RGBX8888 : QImage::Format_RGB32);
    QPainter(&picture).drawImage(at, shown.mirrored());
    return true;
}

Tview::Tmotion Tview::motionOf(const Tevent& event) const
{
    const bool alt = (event.modifiers() & kAlt) != 0;
    switch (event.button()) {
    case 1:
        return alt ? kTumble : fBrush.isOn() ? kBrush : kTool;
    case 2:
        return kTrack;
    case 3:
        return alt ? kDolly : kTumble;
    default:
        return event.button() == kWheelButton ? kDolly : kNoMotion;
    }
}

Tpoint Tview::pixelOf(const Tevent& event) const
{
    // Positions are those of pixels' upper left corners.
    Tpoint p = fPort->windowToPort(event.getLocalPosition(1));
    --p.y;
    return p;
}

bool Tview::press(const Tevent& event)
{
    const Tpoint p = event.getLocalPosition(1);
    fLastX = p.x;
    fLastY = p.y;
    // A button that goes down while another is held takes over.
    fMotion = motionOf(event);
    if (fMotion == kTool)
        fTool.press(*this, pixelOf(event), event.modifiers());
    else if (fMotion == kBrush && fBrush.press(*this, pixelOf(event)) && fPaintedHook)
        fPaintedHook();
    return true;
}

bool Tview::release(const Tevent& event)
{
    if (fMotion == kTool && event.button() == 1)
        fTool.release(*this, pixelOf(event));
    fMotion = kNoMotion;
    return true;
}

bool Tview::drag(const Tevent& event)
{
    const Tpoint p = event.getLocalPosition(1);
    const int dx = p.x - fLastX;
    const int dy = p.y - fLastY; // downwards
    fLastX = p.x;
    fLastY = p.y;

    const double height = std::max(1, int(fPort->portRect().height()));
    switch (fMotion) {
    case kTumble:
        fCamera.tumble(-Tangle::kPi * dx / height, Tangle::kPi * dy / height);
        break;
    case kTrack:
        fCamera.track(-dx / height, dy / height, aspect());
        break;
    case kDolly:
        fCamera.dolly(event.button() == kWheelButton ? std::exp(-kDollyPerWheelUnit * dx)
                                                     : std::exp(-kDollyPerHeight * (dx - dy) / height));
        break;
    case kTool:
        fTool.drag(*this, pixelOf(event));
        return true;
    case kBrush:
        if (fBrush.drag(*this, pixelOf(event)) && fPaintedHook)
            fPaintedHook();
        return true;
    case kNoMotion:
        return false;
    }
    update();
    return true;
}

double Tview::aspect() const
{
    const TportRect& r = fPort->portRect();
    return double(std::max(1, int(r.width()))) / std::max(1, int(r.height()));
}

double Tview::pixelRatio() const
{
    const QWidget* shown = widget();
    return shown ? shown->devicePixelRatioF() : 1;
}
