// The code of the README.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/Taction.h"
#include "foundation/TresourceMap.h"

#include <QVBoxLayout>
#include <QWidget>

namespace {

QImage run()
{
    QWidget parent;
    QWidget* parentWidget = &parent;
    auto* layout = new QVBoxLayout(&parent);
    const double aspect = 1.5;

    TresourceMap::Set("view", "saFrameBufferMode", "double"); // without it the port is single-buffered
    T3dPort port(parentWidget, "view", false);                // makes the widget and its OpenGL context
    layout->addWidget(port.qControl());

    TfunctionAction draw([&](const Tevent&) {
        port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        port.perspective(40, aspect, 0.1, 100);
        port.loadIdentity();
        port.translate(0, 0, -5);
        port.color(TportColor(0.9f, 0.6f, 0.2f, 1));
        port.box(true);
        port.swapBuffers();
        return true;
    });
    port.setUpdateCommand(&draw); // runs on every paint
    return Sample::picture(port, QSize(150, 100), 3);
}

const Sample sample("readme", run);

} // namespace
