// Ports, their widgets and the shared widget: who goes with whom, and what is counted.

#include <QApplication>
#include <QGLWidget>
#include <QMouseEvent>
#include <QVariant>

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "QtExtensions/QlirnStackedWidget.h"

#include "QtExtensions/OwnProcess.h"
#include "foundation/Tevent.h"
#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "ui/TUIInventory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

namespace {

using ::testing::HasSubstr;

int gPortsAlive = 0;

class CountedPort : public T3dPort
{
public:
    CountedPort(QWidget* parent, const char* name) : T3dPort(parent, name, false)
    {
        ++gPortsAlive;
        gUIInventory->add(this, name);
    }
    ~CountedPort() override { --gPortsAlive; }
};

TEST(SharedWidget, CountsTheWidgetsThatShare)
{
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "");
    StdoutCapture out;
    QWidget parent;
    auto first = std::make_unique<T3dPort>(&parent, "first", false);
    QGLWidget* resource = Q3dPort::fsSharedGLWidget;
    ASSERT_TRUE(resource);
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 1);
    EXPECT_EQ(qApp->property("lirnSharedQGLWidget").value<QWidget*>(), resource);
    auto second = std::make_unique<T3dPort>(&parent, "second", false);
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 2);
    first.reset();
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 1);
    EXPECT_EQ(Q3dPort::fsSharedGLWidget, resource);
    second.reset();
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 0);
    EXPECT_EQ(Q3dPort::fsSharedGLWidget, nullptr);
    EXPECT_EQ(qApp->property("lirnSharedQGLWidget").value<QWidget*>(), nullptr) << "nobody may find a deleted widget";
    EXPECT_THAT(out.text(), HasSubstr("Remove widget from static list. Current size = 0\n"
                                      "Q3dPort::~Q3dPort() Decrement shared context reference count = 0\n"
                                      "Q3dPort::~Q3dPort() Destroy shared context\n"));

    // It is made once per process.
    T3dPort late(&parent, "late", false);
    EXPECT_EQ(Q3dPort::resourceWidget(), nullptr);
    EXPECT_FALSE(late.isOpen());
}

enum class First { kPort, kWidget, kStack, kParent };

struct Built
{
    std::unique_ptr<QWidget> parent = std::make_unique<QWidget>();
    CountedPort* port = new CountedPort(parent.get(), "life");

    void destroy(First first)
    {
        if (first == First::kPort)
            delete port;
        else if (first == First::kWidget)
            delete port->glWidget();
        else if (first == First::kStack)
            delete port->qControl();
        parent.reset();
    }
};

class LifeInEveryOrder : public ::testing::TestWithParam<bool>
{
};

// The order drawn at random is the same every time. A port that goes first takes its share off the count; one that is
// taken along by its widget leaves it.
TEST_P(LifeInEveryOrder, EndsOnceAndLeavesNothing)
{
    const bool shown = GetParam();
    const int ports = shown ? 24 : 200;
    std::mt19937 random(4711);
    QWidget keeperParent;
    CountedPort keeper(&keeperParent, "keeper");
    keeper.makeCurrent();
    int count = 1;

    GlRecorder recorder;
    recorder.start();
    std::vector<Built> alive;
    for (int i = 0; i < ports; ++i) {
        alive.emplace_back();
        ++count;
        CountedPort& port = *alive.back().port;
        ASSERT_TRUE(port.glWidget());
        if (shown) {
            alive.back().parent->resize(40, 30);
            alive.back().parent->show();
            if (i % 3)
                settle();
        }
        port.clear(GL_COLOR_BUFFER_BIT);
        while (alive.size() > 7 || (i == ports - 1 && !alive.empty())) {
            const std::size_t which = random() % alive.size();
            const auto first = First(random() % 4);
            count -= first == First::kPort ? 1 : 0;
            alive[which].destroy(first);
            alive.erase(alive.begin() + std::ptrdiff_t(which));
            ASSERT_EQ(gPortsAlive, int(alive.size()) + 1);
            ASSERT_EQ(QlirnGLWidget::widgetList().length(), alive.size() + 1);
            ASSERT_EQ(T3dPort::allPorts().length(), alive.size() + 1);
            ASSERT_EQ(gUIInventory->count(), alive.size() + 1);
            ASSERT_EQ(Q3dPort::fsSharedGLWidgetRefCount, count);
        }
    }
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    settle();
    recorder.stop();
    EXPECT_EQ(recorder.count("glXCreateContext"), recorder.count("glXDestroyContext"));
    EXPECT_TRUE(Q3dPort::fsSharedGLWidget);

    // The one that saw them all still draws.
    keeper.setCurrentContext();
    EXPECT_EQ(glXGetCurrentContext(), keeper.glWidget()->glContext()->getActiveContext());
    EXPECT_EQ(keeper.stateDifferences().length(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Ports, LifeInEveryOrder, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Shown" : "NeverShown"; });

// A command that ends the view it was pressed in.
TEST(PortLife, PortMayGoInItsOwnEvent)
{
    QWidget keeperParent;
    const CountedPort keeper(&keeperParent, "keeper");
    for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseMove}) {
        auto window = std::make_unique<QWidget>();
        auto* port = new CountedPort(window.get(), "own");
        TfunctionAction close([&](const Tevent&) { delete port; });
        port->setPressCommand(&close);
        port->setDragCommand(&close);
        QMouseEvent event(type, QPointF(3, 3), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(port->glWidget(), &event);
        EXPECT_EQ(gPortsAlive, 1);
        EXPECT_EQ(QlirnGLWidget::widgetList().length(), 1u);
    }
}

void useWithoutWidget(T3dPort& port)
{
    EXPECT_EQ(port.glWidget(), nullptr);
    port.makeCurrent();
    port.setCurrentContext();
    port.color(TportColor(0.1f, 0.2f, 0.3f, 1));
    port.clear(GL_COLOR_BUFFER_BIT);
    port.pushMatrix();
    port.translate(1, 2, 3);
    port.popMatrix();
    port.setPortRect(TportRect(0, 0, 30, 20));
    port.OnPaint();
    port.doUpdate(Tevent());
    port.swapBuffers();
    port.initContext();
    port.visibleNotify(true);
    port.doPress(Tevent(Tevent::kPress));
    port.doMouseWheel(Tevent(Tevent::kWheel));
    EXPECT_TRUE(port.renderToPixmap(10, 10).isNull());
    EXPECT_EQ(port.stateDifferences().length(), 0u);
}

// Everything that asks for GLX where there is none.
TEST(PortLife, NoGlxNoWidgetNoCrash)
{
    if (!isRerun()) {
        rerun({{"QT_QPA_PLATFORM", "offscreen"}});
        rerun({{"QT_QPA_PLATFORM", "offscreen"}, {"DISPLAY", ""}});
        rerun({{"QT_XCB_GL_INTEGRATION", "none"}});
        rerun({}, "GLX");
        return;
    }
    QWidget parent;
    parent.show();
    for (int i = 0; i < 2; ++i) {
        CountedPort port(i == 0 ? &parent : nullptr, "nowhere");
        EXPECT_EQ(Q3dPort::resourceWidget(), nullptr);
        EXPECT_EQ(Q3dPort::resourceContext(), nullptr);
        EXPECT_EQ(port.qControl(), nullptr);
        EXPECT_EQ(port.q3dPort(), nullptr);
        useWithoutWidget(port);
    }

    // A host that builds the Qt side by itself.
    Q3dPort side;
    QlirnStackedWidget* stack = side.createStackedWidget(&parent);
    QlirnGLWidget* widget = side.createGLWidget(QGLFormat(), nullptr, stack);
    ASSERT_TRUE(widget);
    parent.resize(50, 50);
    widget->makeCurrent();
    widget->renderScene();
    widget->swapBuffers();
    widget->useSharedContext(true);
    EXPECT_EQ(side.createOffscreenTarget(QSize(8, 8), nullptr), nullptr);
}

} // namespace
