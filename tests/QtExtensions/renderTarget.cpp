// Off-screen targets: made, kept, switched, refused, drawn into and shown, and the port's own context afterwards.

#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include <QSize>

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLRenderTarget.h"
#include "QtExtensions/TglRenderTarget.h"

#include <gtest/gtest.h>

namespace {

QRgb pixelAt(int x, int y)
{
    GLubyte c[4] = {};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
    return qRgb(c[0], c[1], c[2]);
}

void clearTo(T3dPort& port, QRgb c)
{
    port.clearColor(TportColor(float(qRed(c)) / 255, float(qGreen(c)) / 255, float(qBlue(c)) / 255, 1));
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

constexpr QRgb kWindow = 0xFF336699;
constexpr QRgb kTarget = 0xFFCC9933;

class Target : public TglRenderTarget
{
public:
    explicit Target(T3dPort* port = nullptr) : fPort(port) {}
    bool render() override
    {
        clearTo(*fPort, kTarget);
        return true;
    }

private:
    T3dPort* fPort;
};

unsigned short* sizeOf(unsigned short width, unsigned short height)
{
    static unsigned short size[3];
    size[0] = width;
    size[1] = height;
    return size;
}

bool create(Target& target, unsigned short width, unsigned short height, int color = 2, int depth = 2, int stencil = 1)
{
    return target.create(TrenderTarget::TcolorFormat(color), 0, TrenderTarget::TdepthFormat(depth),
                         TrenderTarget::TstencilFormat(stencil), sizeOf(width, height));
}

} // namespace

TEST(QtRenderTarget, KeepsWhatFitsSwitchesKindsAndRefusesWhatCannotBe)
{
    PortWindow<> made(60, 40);
    ASSERT_TRUE(made.show());
    T3dPort& port = made.port();
    clearTo(port, kWindow);
    const QGLFormat format = QGLFormat::defaultFormat();
    {
        Q3dPort::resourceContext()->makeCurrent();
        QlirnGLRenderTarget target(true);
        bool made = false;
        const auto create = [&](const QSize& size, const QGLFormat* kind) {
            const StdoutCapture output;
            made = target.create(size, kind, Q3dPort::fsSharedGLWidget);
            return output.text();
        };
        const std::string gone = "Destroy QT target\n";
        EXPECT_EQ(create(QSize(50, 30), nullptr), gone + "(Re)create QT FBO target 1. Size 50 x 30\n");
        const QGLFramebufferObject* object = target.framebufferObject();
        target.setInUse(true);
        EXPECT_EQ(create(QSize(50, 30), nullptr), "");
        EXPECT_TRUE(made);
        EXPECT_EQ(target.framebufferObject(), object);
        EXPECT_EQ(create(QSize(50, 30), &format), gone + "(Re)create PBO QT target 1. Size 50 x 30\n");
        EXPECT_FALSE(target.framebufferObject() || target.isInUse());
        EXPECT_TRUE(made && target.isValid() && target.pixelBuffer());
        port.setCurrentContext();
        EXPECT_EQ(pixelAt(30, 20), kWindow) << "the port finds back to its window";
        for (const QSize bad : {QSize(10, -3), QSize(100000, 10)}) {
            SCOPED_TRACE(bad.width());
            Q3dPort::resourceContext()->makeCurrent();
            T3dPort::nativeBindingMoved();
            EXPECT_EQ(create(bad, nullptr), gone + gone + "(Re)create QT FBO target 0. Size 0 x 0\n");
            EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
            EXPECT_FALSE(made || target.isValid());
            create(bad, &format);
            EXPECT_FALSE(made) << "pixel buffer";
            port.setCurrentContext();
            EXPECT_EQ(pixelAt(30, 20), kWindow);
        }
    }
    port.setCurrentContext();
    EXPECT_EQ(pixelAt(30, 20), kWindow);
    EXPECT_EQ(port.stateDifferences(), TstringArray());
}

// Qt's pixel buffer has a hidden widget, which binds its context when the event loop resizes it.
TEST(QtRenderTarget, PortsFindBackWhenAPixelBufferIsResizedLater)
{
    PortWindow<> made(60, 40);
    ASSERT_TRUE(made.show());
    const QGLFormat format = QGLFormat::defaultFormat();
    ASSERT_TRUE(made.port().q3dPort()->createOffscreenTarget(QSize(50, 30), &format));
    made.port().setCurrentContext();
    settle();
    EXPECT_EQ(made.port().stateDifferences(), TstringArray());
}

TEST(RenderTarget, IsMadeInTheFormatsAndKeptOrGivenUpAsAsked)
{
    PortWindow<> made(60, 40);
    ASSERT_TRUE(made.show());
    made.port().setCurrentContext();
    Target target(&made.port());
    EXPECT_FALSE(target.beginDraw() || target.endDraw() || target.draw(made.port(), false) ||
                 target.resize(sizeOf(1, 1)));
    ASSERT_TRUE(create(target, 20, 10, 3, 1, 2));
    EXPECT_TRUE(target.colorFormat() == 3 && target.depthFormat() == 7 && target.stencilFormat() == 16);
    ASSERT_TRUE(create(target, 20, 10, 5, 2, 1));
    EXPECT_TRUE(target.colorFormat() == 14 && target.depthFormat() == 6 && target.stencilFormat() == 12);
    EXPECT_FALSE(create(target, 20, 10, 0, 3, 0));
    ASSERT_TRUE(create(target, 30, 20));
    const GLFrameBuffer* kept = target.frameBuffer();
    EXPECT_FALSE(create(target, 0, 20) || create(target, 20, 0));
    EXPECT_TRUE(target.resize(sizeOf(30, 20)));
    EXPECT_EQ(target.frameBuffer(), kept);
    EXPECT_FALSE(target.resize(sizeOf(31, 20))) << "the fields are read after destroy";
    EXPECT_FALSE(target.frameBuffer());
    EXPECT_FALSE(create(target, 65535, 10)) << "beyond the limit";
    EXPECT_EQ(target.colorFormat(), 14u);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(made.port().stateDifferences(), TstringArray());
}

TEST(RenderTargetOnScreen, IsDrawnInPortsOfOtherContexts)
{
    PortWindow<> made(60, 40, Buffering::kDouble);
    PortWindow<> second(50, 50, Buffering::kDouble);
    second.window().move(100, 0); // readImage sees what covers a window
    ASSERT_TRUE(made.show() && second.show());
    made.port().setCurrentContext();
    Target target(&made.port());
    ASSERT_TRUE(create(target, 20, 10));
    GLint before = 0;
    glGetIntegerv(GL_DRAW_BUFFER, &before);
    ASSERT_TRUE(target.beginDraw());
    target.render();
    EXPECT_EQ(pixelAt(19, 9), kTarget);
    TpixelMap shot;
    made.port().setSnapShotRect(TportRect(0, 0, 5, 5));
    EXPECT_FALSE(made.port().snapShot(shot)) << "there is no front buffer";
    made.port().copyPixels(T3dPort::kFrontToBack);
    ASSERT_TRUE(target.endDraw());
    GLint after = 0;
    for (T3dPort* port : {&made.port(), &second.port()}) {
        for (const bool front : {false, true}) {
            port->setCurrentContext();
            glDrawBuffer(front ? GL_FRONT : GLenum(before));
            clearTo(*port, kWindow);
            glDrawBuffer(GLenum(before));
            ASSERT_TRUE(target.draw(*port, front));
            glReadBuffer(front ? GL_FRONT : GL_BACK);
            EXPECT_EQ(pixelAt(19, 9), kTarget);
            EXPECT_EQ(pixelAt(20, 9), kWindow);
            EXPECT_EQ(pixelAt(19, 10), kWindow);
            glReadBuffer(GLenum(before));
            glGetIntegerv(GL_DRAW_BUFFER, &after);
            EXPECT_EQ(after, before);
            EXPECT_EQ(port->stateDifferences(), TstringArray());
        }
        clearTo(*port, kTarget);
        port->swapBuffers();
        clearTo(*port, kWindow);
        target.readImage(*port);
        ASSERT_TRUE(target.image());
        EXPECT_EQ(target.image()->width(), port->portRect().width());
        EXPECT_EQ(target.image()->pixels()[2], qRed(kTarget)) << "what is shown, blue first";
    }
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}
