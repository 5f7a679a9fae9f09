#include <QApplication>
#include <QWidget>

#include "Graphics/3dPort/T3dPort.h"
#include "ReadBack.h"
#include "foundation/TpixelMap.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr Aim kReadBack{Aim::kRatio, 1.02};
constexpr int kWidth = 1280;
constexpr int kHeight = 720;

void drawPicture()
{
    glClearColor(0.25f, 0.5f, 0.75f, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glColor3f(1, 0.5f, 0);
    glRectd(-0.5, -0.75, 0.25, 0.5);
    glFinish();
}

} // namespace

bool addReadBackRow(const QString& filter, Display* display, Window host, const RawWindow* shareWith,
                    std::vector<Row>& rows)
{
    const QString name = QStringLiteral("pixelMapRead, 1280 x 720");
    if (!name.contains(filter, Qt::CaseInsensitive))
        return true;
    QWidget widget;
    widget.resize(kWidth, kHeight);
    T3dPort port(&widget, "readBack", false);
    if (QWidget* control = port.qControl())
        control->setGeometry(0, 0, kWidth, kHeight);
    widget.show();
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents();
    XResizeWindow(display, host, kWidth, kHeight);
    const RawWindow raw(display, host, kWidth, kHeight, port.isDoubleBuffered(), shareWith);
    const auto bindPort = [&] {
        T3dPort::nativeBindingMoved();
        port.setCurrentContext();
    };
    const auto bindRaw = [&] { raw.makeCurrent(); };

    TpixelMap map, rawMap;
    if (!map.setSize(kWidth, kHeight) || !rawMap.setSize(kWidth, kHeight))
        return false;
    const auto readPort = [&port, &map](long) { port.pixelMapRead(map, 0); };
    const auto readRaw = [pixels = rawMap.pixels()](long) {
        glReadPixels(0, 0, kWidth, kHeight, GL_BGRA, GL_UNSIGNED_BYTE, pixels);
    };
    bindPort();
    drawPicture();
    readPort(0);
    bindRaw();
    glViewport(0, 0, kWidth, kHeight);
    drawPicture();
    readRaw(0);
    const bool isSame = std::memcmp(map.pixels(), rawMap.pixels(), map.rowBytes() * kHeight) == 0;
    if (isSame)
        rows.push_back(compare(name, kReadBack, {bindPort, [&](long count) { return timeLoop(count, readPort); }},
                               {bindRaw, [&](long count) { return timeLoop(count, readRaw); }},
                               {[] {}, [](long count) { return timeLoop(count, [](long) {}); }}));
    else
        std::fputs("portbench: read-back: the two sides read different pixels\n", stderr);
    bindPort(); // its end deletes what it has in OpenGL
    return isSame;
}
