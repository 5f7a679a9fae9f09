#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tevent.h"
#include "foundation/Tpoint.h"
#include "foundation/Trect.h"
#include "ui/TUIInventory.h"

#include <QPixmap>
#include <QPointer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

struct Subject
{
    QPointer<QWidget> window = new QWidget;
    QPointer<QWidget> outer;
    QPointer<QWidget> widget;
    T3dPort* port = nullptr;
    MessageCollector client;
    std::weak_ptr<int> shared;

    Subject()
    {
        port = new T3dPort(window, "testPort", false);
        outer = port->qControl();
        widget = port->glWidget();
        gUIInventory->add(port, "subject");
        port->addClient(&client);
        auto handle = std::make_shared<int>(1);
        port->setSharedHandle(handle);
        shared = handle;
    }
};

} // namespace

TEST(PortDestruction, TakesPortAndWidgetOnceWhicheverGoesFirst)
{
    const PortWindow<> keepsTheResourceWidget(60, 40);
    const unsigned portsBefore = T3dPort::allPorts().length();
    const unsigned contextsBefore = T3dPortProbe::allContexts().length();

    const std::pair<const char*, std::function<void(Subject&)>> ways[] = {
        {"port", [](Subject& s) { delete s.port; }},
        {"GL widget", [](Subject& s) { delete s.widget; }},
        {"stacked widget", [](Subject& s) { delete s.outer; }},
        {"window", [](Subject& s) { delete s.window; }},
    };
    for (const auto& [name, destroy] : ways) {
        SCOPED_TRACE(name);
        for (const bool shown : {false, true}) {
            Subject subject;
            EXPECT_EQ(T3dPort::allPorts().last(), subject.port);
            if (shown) {
                subject.window->show();
                settle();
            }
            destroy(subject);
            settle();
            EXPECT_EQ(T3dPort::allPorts().length(), portsBefore);
            EXPECT_EQ(gUIInventory->find("subject"), nullptr);
            EXPECT_EQ(subject.client.deletedServers().size(), 1u);
            EXPECT_TRUE(subject.shared.expired());
            EXPECT_TRUE(subject.widget.isNull());
            delete subject.window;
            settle();
            EXPECT_TRUE(subject.outer.isNull());
        }
    }
    EXPECT_EQ(T3dPortProbe::allContexts().length(), contextsBefore + 8) << "records of contexts are kept";
}

TEST(PortDestruction, ANewPortAtTheSameAddressDrawsInItsOwnContext)
{
    PortWindow<> keepsTheResourceWidget(60, 40);
    alignas(T3dPort) static unsigned char memory[sizeof(T3dPort)];
    QWidget window;
    for (int i = 0; i < 3; ++i) {
        auto* const port = new (memory) T3dPort(&window, "testPort", false);
        port->color(TportColor(0.25f * float(i), 0.5f, 0.5f, 1));
        EXPECT_EQ(port->stateDifferences().length(), 0u);
        port->~T3dPort();
    }
    EXPECT_EQ(keepsTheResourceWidget.port().stateDifferences().length(), 0u);
}

namespace {

/** Calls what a host may call on a port that has nothing to draw in. */
void useWithoutWidget(T3dPort& port)
{
    CountingAction update;
    port.setUpdateCommand(&update);
    EXPECT_EQ(port.qControl(), nullptr);
    EXPECT_EQ(port.glWidget(), nullptr);
    EXPECT_FALSE(port.isOpen());
    EXPECT_TRUE(port.isStowed());

    port.makeCurrent();
    EXPECT_EQ(T3dPort::currentPort(), &port);
    port.setCurrentContext();
    port.setContext(T3dPort::kPrimaryContext);
    port.initContext();
    port.initBuffer();
    port.resizeDrawingPlanes();
    port.beginForeignGL();
    port.endForeignGL();
    EXPECT_EQ(port.stateDifferences().length(), 0u);

    port.setPortRect(TportRect(0, 0, 40, 30));
    EXPECT_EQ(port.portRect(), TportRect(0, 0, 40, 30));
    EXPECT_EQ(port.lastRow(), 29);
    port.pushViewport(TportRect(1, 2, 3, 4));
    EXPECT_EQ(port.viewport(), TportRect(1, 2, 3, 4));
    port.popViewport();
    Trect size;
    size.set(0, 60, 80, 0);
    port.resize(size);
    EXPECT_EQ(port.portRect(), TportRect(0, 0, 80, 60));
    EXPECT_FALSE(port.isFullyObscured());
    port.OnPaint();
    EXPECT_TRUE(port.portFlags().test(T3dPort::kPortFirstPaintPending));
    port.doUpdate(Tevent());
    EXPECT_EQ(update.runs(), 0);
    port.swapBuffers();
    port.setDoUpdateOnMove(true);
    port.parentWindowMoveNotify();
    port.make3dVisible(true);
    port.visibleNotify(true);
    EXPECT_TRUE(port.renderToPixmap(10, 10).isNull());
    Tpoint at{7, 8};
    port.getPositionAbs(at);
    EXPECT_EQ(at.x, 7);
    EXPECT_EQ(at.y, 8);

    port.color(TportColor(1, 0, 0, 1));
    port.clearColor(TportColor(1, 0, 0, 1));
    port.depthTest(true);
    port.scissor(TportRect(0, 0, 5, 5), true);
    port.clear(GL_COLOR_BUFFER_BIT);
    port.setFogEnabled(true);
    port.setRendererString("vp2Renderer");
    EXPECT_FALSE(port.hasAccumBuffer());
    EXPECT_FALSE(port.accum(T3dPort::kAccumLoad, 1));
    EXPECT_EQ(port.mainDepth(), 0);
    EXPECT_EQ(port.zbufferDepth(), 0);
    port.pushMatrix();
    port.translate(1, 2, 3);
    port.popMatrix();
    port.glLoadMatrices();
    port.glLoadModelViewMatrix();
    EXPECT_EQ(port.error(), 0);
}

} // namespace

TEST(PortWithoutWidget, NoParentLeavesContextAndRegistryEntry)
{
    T3dPort port(nullptr, "testPort", true);
    EXPECT_NE(port.glContextRecord(), nullptr);
    EXPECT_NE(T3dPortProbe::activeColorTable(port), nullptr);
    EXPECT_GE(T3dPort::allPorts().find(&port), 0);
    EXPECT_EQ(port.portRect(), TportRect());
    useWithoutWidget(port);
}

TEST(PortWithoutWidget, DoesNotDisturbTheContextOfAnother)
{
    PortWindow<> other(60, 40);
    const T3dPort port(nullptr, "testPort", false);
    GlRecorder recorder;
    recorder.start();
    port.setCurrentContext();
    port.makeCurrent();
    other.port().setCurrentContext();
    EXPECT_EQ(recorder.count("glXMakeCurrent"), 0);
    EXPECT_EQ(recorder.count("glLoadMatrixd"), 0);
    EXPECT_EQ(other.port().stateDifferences().length(), 0u);
}

TEST(PortWithoutX, HasNeitherContextNorRegistryEntry)
{
    QWidget window;
    for (int i = 0; i < 2; ++i) {
        T3dPort port(i == 0 ? &window : nullptr, "testPort", true);
        EXPECT_EQ(port.glContextRecord(), nullptr);
        EXPECT_EQ(T3dPort::allPorts().length(), 0u);
        EXPECT_EQ(port.portRect(), TportRect());
        useWithoutWidget(port);
    }
    window.show();
    QApplication::processEvents();
}
