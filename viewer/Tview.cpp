#include "Tview.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tangle.h"
#include "foundation/Tevent.h"
#include "foundation/TresourceMap.h"
#include "pictures.h"
#include "ui/TUIInventory.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kWheelButton = 1024;
constexpr double kDollyPerWheelUnit = 1.0 / 1000; // a notch is 120 units
constexpr double kDollyPerHeight = 3;             // of the exponent

const char* nameOf(TviewCamera::Tprojection projection)
{
    switch (projection) {
    case TviewCamera::kPerspective:
        return "perspective";
    case TviewCamera::kTop:
        return "top";
    case TviewCamera::kFront:
        return "front";
    case TviewCamera::kSide:
        return "side";
    }
    return "";
}

std::unique_ptr<T3dPort> makePort(QWidget* parent, const char* name)
{
    TresourceMap::Set(name, "saFrameBufferMode", "double");
    auto port = std::make_unique<T3dPort>(parent, name, false);
    gUIInventory->add(port.get(), name);
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

Tview::Tview(QWidget* parent, TviewCamera::Tprojection projection, TviewScene& scene, const TviewScene::Tstyle& style)
    : fScene(scene), fStyle(style), fCamera(projection), fDraw([this](const Tevent&) { draw(); }),
      fPress([this](const Tevent& event) { return press(event); }),
      fDrag([this](const Tevent& event) { return drag(event); }), fEnter([this](const Tevent&) {
          if (fPointerHook)
              fPointerHook(true);
      }),
      fExit([this](const Tevent&) {
          if (fPointerHook)
              fPointerHook(false);
      }),
      fPort(makePort(parent, nameOf(projection)))
{
    fPort->fGeometryStats = &fStatistics;
    fPort->enableGeometryStats(true);
    fPort->setUpdateCommand(&fDraw);
    fPort->setPressCommand(&fPress);
    // The second press of a double click comes as this.
    fPort->setDoubleClickCommand(&fPress);
    fPort->setDragCommand(&fDrag);
    fPort->setEnterCommand(&fEnter);
    fPort->setExitCommand(&fExit);
}

Tview::~Tview() = default;

const char* Tview::name() const
{
    return nameOf(fCamera.projection());
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

QImage Tview::picture(const QSize& size)
{
    // A port's first paint comes before the picture, at a size of its own. The request to frame is for the picture.
    const bool framePending = fFramePending;
    if (fPort->portFlags().test(T3dPort::kPortFirstPaintPending))
        fPort->renderToPixmap(1, 1);
    fFramePending = framePending;
    return drawnPicture(*fPort, size);
}

void Tview::draw()
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
    fPort->swapBuffers();
    if (fDrawnHook)
        fDrawnHook();
}

bool Tview::press(const Tevent& event)
{
    const Tpoint p = event.getLocalPosition(1);
    fLastX = p.x;
    fLastY = p.y;
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
    switch (event.button()) {
    case 1:
        fCamera.tumble(-Tangle::kPi * dx / height, Tangle::kPi * dy / height);
        break;
    case 2:
        fCamera.track(-dx / height, dy / height, aspect());
        break;
    case 3:
        fCamera.dolly(std::exp(-kDollyPerHeight * (dx - dy) / height));
        break;
    case kWheelButton:
        fCamera.dolly(std::exp(-kDollyPerWheelUnit * dx));
        break;
    default:
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
