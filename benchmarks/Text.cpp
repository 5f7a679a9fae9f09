#include <QApplication>
#include <QGLWidget>
#include <QImage>
#include <QPainter>

#include "Text.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnFontRaster.h"
#include "foundation/T4dDblPoint.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr Aim kLabels{Aim::kRatio, 1.1};
constexpr Aim kBesideQt{Aim::kRatio, 1.22};
constexpr Aim kStrip{Aim::kRatio, 0.2};
constexpr int kCount = 1000;
constexpr int kPixelSize = 14;
constexpr double kPixelCentre = 0.375;
constexpr char kLabelText[] = "pSphereShape12";

struct Label
{
    char fText[16];
    T4dDblPoint fAt;
};

/** Labels all over the lower left @p width by @p height pixels. */
std::vector<Label> makeLabels(int width, int height)
{
    std::vector<Label> labels(kCount);
    for (int i = 0; i < kCount; ++i) {
        std::snprintf(labels[std::size_t(i)].fText, sizeof labels[0].fText, "node%04d", i);
        labels[std::size_t(i)].fAt = T4dDblPoint(i * 37 % (width - 60), i * 23 % (height - 14), 0);
    }
    return labels;
}

std::vector<GLubyte> picture(int width, int height)
{
    std::vector<GLubyte> pixels(std::size_t(4 * width * height));
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

const Side kEmpty{[] {}, [](long count) { return timeLoop(count, [](long) {}); }};

bool isWanted(const QString& filter, const QString& name)
{
    return name.contains(filter, Qt::CaseInsensitive);
}

/** Frames of labels by port, by display lists and by Qt. */
bool addLabelRows(const QString& lists, const QString& qt, const QString& filter, T3dPort& port,
                  const std::function<void()>& bindPort, const RawWindow& raw, Display* display, std::vector<Row>& rows)
{
    const int width = port.portRect().width();
    const int height = port.portRect().height();
    const std::vector<Label> labels = makeLabels(width, height);
    const auto bind = [&] {
        bindPort();
        port.clearColor(kCblack);
        port.color(kCwhite);
        port.depthTest(false);
        port.ortho(0, width, 0, height, -1, 1);
        port.loadIdentity();
    };
    const auto draw = [&](long) {
        port.clear(GL_COLOR_BUFFER_BIT);
        for (const Label& label : labels)
            port.text(label.fAt, label.fText, T3dPort::kLeft);
        glFinish();
    };
    const Side portSide{bind, [&](long count) { return timeLoop(count, draw); }};
    bind();
    draw(0);
    const std::vector<GLubyte> portPicture = picture(width, height);

    raw.makeCurrent();
    XFontStruct* const font = XLoadQueryFont(display, port.font().fontName());
    const GLuint base = glGenLists(256);
    glXUseXFont(font->fid, 0, 256, int(base));
    while (glGetError() == GL_OUT_OF_MEMORY) {
    }
    const auto bindRaw = [&] {
        raw.makeCurrent();
        glViewport(0, 0, width, height);
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_DITHER);
        glClearColor(0, 0, 0, 1);
        glColor3f(1, 1, 1);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(0, width, 0, height, -1, 1);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glTranslated(kPixelCentre, kPixelCentre, 0);
    };
    const auto drawRaw = [&](long) {
        glClear(GL_COLOR_BUFFER_BIT);
        glListBase(base);
        for (const Label& label : labels) {
            glRasterPos3dv(&label.fAt.x);
            glCallLists(GLsizei(std::strlen(label.fText)), GL_UNSIGNED_BYTE, label.fText);
        }
        glListBase(0);
        glFinish();
    };
    bindRaw();
    drawRaw(0);
    const std::vector<GLubyte> rawPicture = picture(width, height);
    const bool isSame = portPicture == rawPicture && std::count(rawPicture.begin(), rawPicture.end(), 255) > 0;
    if (isSame && isWanted(filter, lists))
        rows.push_back(
            compare(lists, kLabels, portSide, {bindRaw, [&](long count) { return timeLoop(count, drawRaw); }}, kEmpty));
    if (!isSame)
        std::fputs("portbench: labels: the two sides draw different pictures, or nothing\n", stderr);
    raw.makeCurrent();
    glDeleteLists(base, 256);
    XFreeFont(display, font);

    if (isSame && isWanted(filter, qt)) {
        QGLWidget widget;
        widget.resize(width, height);
        widget.show();
        for (int i = 0; i < 20; ++i)
            QApplication::processEvents();
        QFont qtFont(QStringLiteral("Helvetica"));
        qtFont.setPixelSize(kPixelSize);
        const auto bindQt = [&] {
            widget.makeCurrent();
            T3dPort::nativeBindingMoved();
        };
        const auto drawQt = [&](long) {
            glClear(GL_COLOR_BUFFER_BIT);
            for (const Label& label : labels)
                widget.renderText(int(label.fAt.x), height - int(label.fAt.y), QString::fromLatin1(label.fText),
                                  qtFont);
            glFinish();
        };
        rows.push_back(
            compare(qt, kBesideQt, portSide, {bindQt, [&](long count) { return timeLoop(count, drawQt); }}, kEmpty));
    }
    bindPort();
    return isSame;
}

void addStripRow(const QString& name, std::vector<Row>& rows)
{
    QlirnFontRaster raster("DejaVu Sans", kPixelSize, QlirnFontRaster::defaultStyle());
    const Tstring text(kLabelText);
    const QString qtText = QString::fromLatin1(kLabelText);
    const int width = raster.getWidth(text);
    std::vector<unsigned char> image(std::size_t(width * raster.getHeight()));
    rows.push_back(compare(
        name, kStrip,
        {[] {},
         [&](long count) {
             return timeLoop(count, [&](long) { raster.getTextImage(text, true, image.data(), width); });
         }},
        {[] {},
         [&](long count) {
             return timeLoop(count, [&](long) { raster.drawTextImage(qtText, width, true, image.data(), width); });
         }},
        kEmpty));
}

} // namespace

bool addTextRows(const QString& filter, T3dPort& port, const std::function<void()>& bindPort, const RawWindow& raw,
                 Display* display, std::vector<Row>& rows)
{
    const QString lists = QStringLiteral("1000 labels, display lists");
    const QString qt = QStringLiteral("1000 labels, QGLWidget::renderText");
    const QString strip = QStringLiteral("label image, strip and QPainter");
    bool isSame = true;
    if (isWanted(filter, lists) || isWanted(filter, qt))
        isSame = addLabelRows(lists, qt, filter, port, bindPort, raw, display, rows);
    if (isWanted(filter, strip))
        addStripRow(strip, rows);
    return isSame;
}
