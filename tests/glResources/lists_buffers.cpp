// External buffers: drawing that goes off the screen and comes back.

#include <QGLFramebufferObject>
#include <QGLWidget>

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglBuffer.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <gtest/gtest.h>

namespace {

/** Sets the viewport to the buffer, as a host does. */
class HostBuffer : public TglBuffer
{
public:
    explicit HostBuffer(T3dPort& port) : fPort(port) {}
    void beginBufferNotify() override { fPort.pushViewport(fPort.portRect()); }
    void endBufferNotify() override { fPort.popViewport(); }

private:
    T3dPort& fPort;
};

void fill(T3dPort& port, const TportColor& c)
{
    port.loadIdentity();
    port.color(c);
    port.setCurrentContext();
    glRectd(-1, -1, 1, 1);
}

} // namespace

TEST(ExternalBuffer, TakesTheDrawingAndGivesThePortBack)
{
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort& port = window.port();
    port.setCurrentContext();
    port.glWidget()->makeCurrent();
    QGLFramebufferObject object(24, 16, QGLFramebufferObject::Depth);
    T3dPort::nativeBindingMoved();
    TglBuffer::Target target;
    target.fWidth = 24;
    target.fHeight = 16;
    target.fFramebufferObject = &object;
    HostBuffer buffer(port);
    buffer.setTarget(&target);
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        fill(port, TportColor(1, 0, 0));
        const TportRect before = port.portRect();
        port.beginBuffer(&buffer);
        EXPECT_EQ(TportRect(0, 0, 24, 16), port.portRect());
        EXPECT_EQ(TstringArray(), port.stateDifferences());
        fill(port, TportColor(0, 1, 0));
        EXPECT_EQ(TstringArray(), port.stateDifferences());
        port.endBuffer(&buffer);
        EXPECT_EQ(before, port.portRect());
        EXPECT_EQ(TstringArray(), port.stateDifferences());
        GLubyte c[4] = {};
        glReadPixels(3, 3, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
        EXPECT_EQ(255, c[0]) << "drawing went to the window";
        const QImage image = object.toImage();
        T3dPort::nativeBindingMoved();
        for (const QPoint at : {QPoint(0, 0), QPoint(23, 15)})
            EXPECT_EQ(0xFF00FF00u, image.pixel(at));
    }
    port.makeCurrent();
}
