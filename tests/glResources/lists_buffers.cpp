// External buffers: drawing that goes off the screen and comes back.

#include <QGLFramebufferObject>
#include <QGLPixelBuffer>
#include <QGLWidget>

#include "support/HostProbes.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglBuffer.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tmetaclass.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>

namespace {

constexpr int kWidth = 40;
constexpr int kHeight = 30;
constexpr int kBufferWidth = 24;
constexpr int kBufferHeight = 16;

/** Sets the viewport to the buffer, as a host does, and tells what it was told. */
class NotedBuffer : public TglBuffer
{
public:
    explicit NotedBuffer(T3dPort& port) : fPort(port) {}
    void beginBufferNotify() override
    {
        std::printf("begin %d %d;", isBound(), fPort.portRect().width());
        std::fflush(stdout);
        fPort.pushViewport(fPort.portRect());
    }
    void endBufferNotify() override
    {
        std::printf("end %d %d;", isBound(), fPort.portRect().width());
        fPort.popViewport();
    }

private:
    T3dPort& fPort;
};

void clearTo(T3dPort& port, const TportColor& c)
{
    port.clearColor(c);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

/** The left half of the port rectangle. */
void drawHalf(T3dPort& port, const TportColor& c)
{
    port.loadIdentity();
    port.ortho(0, 2, 0, 1);
    port.color(c);
    port.setCurrentContext();
    glRectd(0, 0, 1, 1);
}

/** What is in the port's own frame buffer. */
QImage windowPixels(T3dPort& port)
{
    port.setCurrentContext();
    const TportRect& r = port.portRect();
    QImage image(r.width(), r.height(), QImage::Format_RGB32);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, r.width(), r.height(), GL_BGRA, GL_UNSIGNED_BYTE, image.bits());
    return image;
}

bool isHalf(const QImage& image, QRgb left, QRgb right)
{
    if (image.isNull())
        return false;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) | 0xFF000000u) != (x < image.width() / 2 ? left : right))
                return false;
    return true;
}

constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kGreen = 0xFF00FF00;
constexpr QRgb kBlue = 0xFF0000FF;
constexpr QRgb kBlack = 0xFF000000;

enum class Kind { kFramebufferObject, kPixelBuffer };

class ExternalBuffer : public testing::TestWithParam<Kind>
{
protected:
    ExternalBuffer() : fWindow(kWidth, kHeight)
    {
        EXPECT_TRUE(fWindow.show());
        port().setCurrentContext();
        fTarget.fWidth = kBufferWidth;
        fTarget.fHeight = kBufferHeight;
        const QSize size(kBufferWidth, kBufferHeight);
        if (GetParam() == Kind::kFramebufferObject) {
            port().glWidget()->makeCurrent();
            fFramebufferObject = std::make_unique<QGLFramebufferObject>(size, QGLFramebufferObject::Depth);
            fTarget.fFramebufferObject = fFramebufferObject.get();
            EXPECT_TRUE(fFramebufferObject->isValid());
        } else {
            fPixelBuffer = std::make_unique<QGLPixelBuffer>(size, QGLFormat::defaultFormat(), Q3dPort::resourceWidget());
            fTarget.fPixelBuffer = fPixelBuffer.get();
            EXPECT_TRUE(fPixelBuffer->isValid());
        }
        T3dPort::nativeBindingMoved();
    }

    ~ExternalBuffer() override { port().glWidget()->makeCurrent(); }

    T3dPort& port() { return fWindow.port(); }

    QImage bufferPixels()
    {
        const QImage image = fFramebufferObject ? fFramebufferObject->toImage() : fPixelBuffer->toImage();
        T3dPort::nativeBindingMoved();
        return image;
    }

    PortWindow<> fWindow;
    std::unique_ptr<QGLFramebufferObject> fFramebufferObject;
    std::unique_ptr<QGLPixelBuffer> fPixelBuffer;
    TglBuffer::Target fTarget;
};

} // namespace

TEST_P(ExternalBuffer, TakesTheDrawingAndGivesThePortBack)
{
    NotedBuffer buffer(port());
    buffer.setTarget(&fTarget);
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        clearTo(port(), TportColor(0, 0, 1));
        drawHalf(port(), TportColor(1, 0, 0));
        const TportRect before = port().portRect();
        std::string said;
        {
            StdoutCapture out;
            port().beginBuffer(&buffer);
            EXPECT_TRUE(fTarget.fBound);
            EXPECT_EQ(TportRect(0, 0, kBufferWidth, kBufferHeight), port().portRect());
            EXPECT_EQ(TstringArray(), port().stateDifferences());
            clearTo(port(), kCblack);
            // The colour recorded on the window before must reach the buffer.
            drawHalf(port(), TportColor(1, 0, 0));
            EXPECT_EQ(TstringArray(), port().stateDifferences());
            port().color(TportColor(0, 1, 0));
            port().setCurrentContext();
            glRectd(1, 0, 2, 1);
            port().endBuffer(&buffer);
            said = out.text();
        }
        EXPECT_EQ("begin 1 24;end 1 24;", said);
        EXPECT_FALSE(fTarget.fBound);
        EXPECT_EQ(before, port().portRect());
        EXPECT_EQ(TstringArray(), port().stateDifferences());
        EXPECT_TRUE(isHalf(windowPixels(port()), kRed, kBlue)) << "drawing went to the window";
        // The colour recorded in the buffer must be the window's, too.
        clearTo(port(), TportColor(0, 0, 1));
        drawHalf(port(), TportColor(0, 1, 0));
        EXPECT_TRUE(isHalf(bufferPixels(), kRed, kGreen));
        EXPECT_TRUE(isHalf(windowPixels(port()), kGreen, kBlue));
    }
}

TEST_P(ExternalBuffer, FindsThePortsContextWhenAnotherPortIsCurrent)
{
    PortWindow<> other(20, 20);
    ASSERT_TRUE(other.show());
    clearTo(port(), TportColor(0, 0, 1));
    drawHalf(port(), TportColor(0, 0, 1));
    clearTo(other.port(), TportColor(0, 0, 1));
    NotedBuffer buffer(port());
    buffer.setTarget(&fTarget);
    port().beginBuffer(&buffer);
    clearTo(port(), kCblack);
    drawHalf(port(), TportColor(1, 0, 0));
    port().endBuffer(&buffer);
    EXPECT_TRUE(isHalf(bufferPixels(), kRed, kBlack));
    clearTo(other.port(), TportColor(0, 1, 0));
    EXPECT_TRUE(isHalf(windowPixels(other.port()), kGreen, kGreen));
    EXPECT_TRUE(isHalf(windowPixels(port()), kBlue, kBlue));
    EXPECT_EQ(TstringArray(), port().stateDifferences());
    EXPECT_EQ(TstringArray(), other.port().stateDifferences());
}

TEST_P(ExternalBuffer, SaysWhatItDoesWhenDebugged)
{
    TglBuffer buffer;
    buffer.setTarget(&fTarget);
    fTarget.fDebug = true;
    StdoutCapture out;
    port().beginBuffer(&buffer);
    port().endBuffer(&buffer);
    EXPECT_EQ("Bind QT target\nUnbind QT target\n", out.text());
}

INSTANTIATE_TEST_SUITE_P(Targets, ExternalBuffer, testing::Values(Kind::kFramebufferObject, Kind::kPixelBuffer),
                         [](const auto& info) {
                             return info.param == Kind::kFramebufferObject ? "FramebufferObject" : "PixelBuffer";
                         });

TEST(Buffers, TracesOfThePortStandOutsideAndInside)
{
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "1");
    std::string said;
    {
        StdoutCapture out;
        T3dPort port(nullptr, "none", false);
        class Noted : public TglBuffer
        {
            void beginBufferNotify() override { std::printf("<begin>"); }
            void endBufferNotify() override { std::printf("<end>"); }
        } buffer;
        std::printf("|");
        port.beginBuffer(&buffer);
        port.endBuffer(&buffer);
        std::printf("|");
        said = out.text();
    }
    ASSERT_NE(std::string::npos, said.find('|'));
    said = said.substr(said.find('|'));
    EXPECT_EQ("|<begin>External buffer override beginExternal buffer override end<end>|", said);
}

TEST(Buffers, AnEmptyTargetMovesThePortRectangleOnly)
{
    T3dPort port(nullptr, "none", false);
    TglBuffer buffer;
    TglBuffer::Target target;
    target.fWidth = 7;
    target.fHeight = 5;
    buffer.setTarget(&target);
    const TportRect before = port.portRect();
    port.beginBuffer(&buffer);
    EXPECT_FALSE(buffer.isBound());
    EXPECT_EQ(TportRect(0, 0, 7, 5), port.portRect());
    port.endBuffer(&buffer);
    EXPECT_EQ(before, port.portRect());
    port.endBuffer(&buffer);
    port.beginBuffer(nullptr);
    port.endBuffer(nullptr);
    EXPECT_EQ(before, port.portRect());
}

TEST(Buffers, HaveAType)
{
    Tmetaclass* type = Tmetaclass::find("TglBuffer");
    ASSERT_EQ(TglBuffer::sTypeof(), type);
    EXPECT_EQ(sizeof(TglBuffer), type->size());
    const std::unique_ptr<TglBuffer> made(static_cast<TglBuffer*>(TglBuffer::construct(type)));
    ASSERT_TRUE(made);
    EXPECT_EQ(type, made->typeof());
    EXPECT_EQ(made.get(), made->cast(type));
    EXPECT_EQ(nullptr, made->cast(nullptr));
    EXPECT_EQ(nullptr, TglBuffer::construct(nullptr));
    EXPECT_EQ(nullptr, TglBuffer::construct(Tmetaclass::find("port3D")));
    alignas(TglBuffer) unsigned char memory[sizeof(TglBuffer)];
    auto* placed = static_cast<TglBuffer*>(TglBuffer::constructInPlace(type, memory));
    ASSERT_EQ(static_cast<void*>(memory), placed);
    EXPECT_FALSE(placed->hasTarget());
    placed->~TglBuffer();
    EXPECT_EQ(nullptr, TglBuffer::constructInPlace(type, nullptr));
}
