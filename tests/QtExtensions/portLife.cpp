// Ports, their widgets and the shared widget: who goes with whom, and what is counted.

#include <QApplication>
#include <QGLPixelBuffer>
#include <QGLFramebufferObject>
#include <QGLWidget>
#include <QMouseEvent>
#include <QVariant>
#include <QX11Info>

#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLRenderTarget.h"
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

/** Deletes what Qt was asked to delete later. */
void settleDeletions()
{
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    settle();
}

TEST(SharedWidget, CountsTheWidgetsThatShare)
{
    QWidget parent;
    auto first = std::make_unique<T3dPort>(&parent, "first", false);
    QGLWidget* resource = Q3dPort::fsSharedGLWidget;
    ASSERT_TRUE(resource);
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 1);
    EXPECT_EQ(qApp->property("lirnSharedQGLWidget").value<QWidget*>(), resource);
    auto second = std::make_unique<T3dPort>(&parent, "second", false);
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 2);
    EXPECT_EQ(Q3dPort::fsSharedGLWidget, resource);
    first.reset();
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 1);
    EXPECT_EQ(Q3dPort::fsSharedGLWidget, resource);
    second.reset();
    EXPECT_EQ(Q3dPort::fsSharedGLWidgetRefCount, 0);
    EXPECT_EQ(Q3dPort::fsSharedGLWidget, nullptr);
    EXPECT_EQ(qApp->property("lirnSharedQGLWidget").value<QWidget*>(), nullptr) << "nobody may find a deleted widget";

    // It is made once per process.
    T3dPort late(&parent, "late", false);
    EXPECT_EQ(Q3dPort::resourceWidget(), nullptr);
    EXPECT_EQ(late.qControl(), nullptr);
    EXPECT_FALSE(late.isOpen());
}

TEST(SharedWidget, DebugTraces)
{
    ASSERT_TRUE(Q3dPort::resourceWidget());
    QGLFormat wanted;
    wanted.setRedBufferSize(5);
    wanted.setGreenBufferSize(6);
    wanted.setBlueBufferSize(4);
    wanted.setDepthBufferSize(16);
    wanted.setDoubleBuffer(true);
    wanted.setStencil(false);
    QWidget parent;
    std::string text;
    {
        StdoutCapture out;
        auto side = std::make_unique<Q3dPort>();
        side->setDebugMode(true);
        side->createGLWidget(wanted, nullptr, side->createStackedWidget(&parent));
        text = out.text();
    }
    EXPECT_THAT(text, HasSubstr("Q3dPort::createWidget() wanted format {\n"
                                "\t accum=0, accumSize=-1\n"
                                "\t depth=1, depthSize=16\n"
                                "\t doubleBuffer=1\n"
                                "\t redSize=5\n, greenSize=4, blueSize=6\n"
                                "\t stencil=0, stencilSize=-1\n"
                                "\t sampleBuffers=-1, sampleBufferSize=-1\n"
                                "\t stereo=0\n"
                                "}\n"
                                "Q3dPort::createWidget() got format {\n"
                                "\t accum="));
    EXPECT_THAT(text, HasSubstr("\t redSize=8\n, greenSize=8, blueSize=8\n"));
    EXPECT_THAT(text, HasSubstr("}\nQ3dPort::createWidget() Increment shared context reference count = 1\n"));
}

TEST(SharedWidget, DebugTracesOfTheEnd)
{
    const ScopedEnv debug("LIRN_DEBUG_Q3DPORTS", "");
    QWidget parent;
    auto first = std::make_unique<T3dPort>(&parent, "first", false);
    auto second = std::make_unique<T3dPort>(&parent, "second", false);
    StdoutCapture out;
    first.reset();
    second.reset();
    EXPECT_THAT(out.text(), HasSubstr("Remove widget from static list. Current size = 1\n"
                                      "Q3dPort::~Q3dPort() Decrement shared context reference count = 1\n"));
    EXPECT_THAT(out.text(), HasSubstr("Remove widget from static list. Current size = 0\n"
                                      "Q3dPort::~Q3dPort() Decrement shared context reference count = 0\n"
                                      "Q3dPort::~Q3dPort() Destroy shared context\n"));
}

TEST(SharedWidget, Environment)
{
    if (!isRerun()) {
        rerun({{"WANT", "single"}});
        rerun({{"LIRN_XRE_SINGLE_CONTEXT", "0"}, {"WANT", "several"}});
        rerun({{"LIRN_XRE_SINGLE_CONTEXT", "7"}, {"WANT", "single"}});
        rerun({{"LIRN_XRE_STEREO_PROTOTYPE", ""}, {"WANT", "single stereo"}});
        return;
    }
    const std::string want = std::getenv("WANT");
    Q3dPort::initResourceWidget();
    ASSERT_TRUE(Q3dPort::fsSharedGLWidget);
    const QGLFormat asked = Q3dPort::fsSharedGLWidget->context()->requestedFormat();
    EXPECT_EQ(Q3dPort::fsIsXRESingleContext, want.find("single") != std::string::npos);
    EXPECT_EQ(asked.stereo(), want.find("stereo") != std::string::npos);
    EXPECT_EQ(Q3dPort::stereoAllowed(), want.find("stereo") != std::string::npos ? 3 : 0);
    EXPECT_EQ(asked.alphaBufferSize(), 8);
    EXPECT_FALSE(asked.accum());
    EXPECT_TRUE(asked.doubleBuffer() && asked.depth() && asked.rgba());
    EXPECT_FALSE(Q3dPort::fsSharedGLWidget->isVisible());
    // Asked for once.
    const ScopedEnv changed("LIRN_XRE_STEREO_PROTOTYPE", want.find("stereo") != std::string::npos ? nullptr : "1");
    EXPECT_EQ(Q3dPort::stereoAllowed(), want.find("stereo") != std::string::npos ? 3 : 0);
}

enum class First { kPort, kWidget, kStack, kParent };

struct Built
{
    std::unique_ptr<QWidget> parent;
    CountedPort* port;
};

Built build()
{
    Built made;
    made.parent = std::make_unique<QWidget>();
    made.port = new CountedPort(made.parent.get(), "life");
    return made;
}

void destroy(Built& built, First first)
{
    switch (first) {
    case First::kPort:
        delete built.port;
        break;
    case First::kWidget:
        delete built.port->glWidget();
        break;
    case First::kStack:
        delete built.port->qControl();
        break;
    case First::kParent:
        break;
    }
    built.parent.reset();
}

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
        alive.push_back(build());
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
        if (i % 5 == 0)
            keeper.makeCurrent();
        while (alive.size() > 7 || (i == ports - 1 && !alive.empty())) {
            const std::size_t which = random() % alive.size();
            const auto first = First(random() % 4);
            count -= first == First::kPort ? 1 : 0;
            destroy(alive[which], first);
            alive.erase(alive.begin() + std::ptrdiff_t(which));
            ASSERT_EQ(gPortsAlive, int(alive.size()) + 1);
            ASSERT_EQ(QlirnGLWidget::widgetList().length(), alive.size() + 1);
            ASSERT_EQ(T3dPort::allPorts().length(), alive.size() + 1);
            ASSERT_EQ(gUIInventory->count(), alive.size() + 1);
            ASSERT_EQ(Q3dPort::fsSharedGLWidgetRefCount, count);
            if (random() % 4 == 0)
                settleDeletions();
        }
    }
    settleDeletions();
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

TEST(LifeOnScreen, DeadContextTakesNothingOfTheOthersAlong)
{
    auto first = std::make_unique<PortWindow<>>(40, 40, Buffering::kDouble);
    PortWindow<> second(40, 40, Buffering::kDouble);
    ASSERT_TRUE(first->show());
    ASSERT_TRUE(second.show());
    first->port().setCurrentContext();
    const GLuint list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    glClearColor(0, 1, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glEndList();
    first.reset();

    second.port().setCurrentContext();
    EXPECT_TRUE(glIsList(list)) << "shared lists outlive the context that compiled them";
    glCallList(list);
    second.port().swapBuffers();
    EXPECT_EQ(shownPixels(second.port()).pixelColor(20, 20), QColor(0, 255, 0));
}

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
    port.lineWidth(2);
    port.clear(GL_COLOR_BUFFER_BIT);
    port.pushMatrix();
    port.translate(1, 2, 3);
    port.popMatrix();
    port.setPortRect(TportRect(0, 0, 30, 20));
    port.pushViewport(TportRect(0, 0, 3, 2));
    port.popViewport();
    port.OnPaint();
    port.doUpdate(Tevent());
    port.swapBuffers();
    port.initContext();
    port.resendState();
    port.make3dVisible(true);
    port.visibleNotify(true);
    port.doPress(Tevent(Tevent::kPress));
    port.doMouseWheel(Tevent(Tevent::kWheel));
    port.setDoUpdateOnMove(true);
    port.setContext(T3dPort::kPrimaryContext);
    EXPECT_TRUE(port.renderToPixmap(10, 10).isNull());
    EXPECT_EQ(port.stateDifferences().length(), 0u);
}

TEST(PortLife, ClearingTheListLeavesPortsWithoutWidget)
{
    QWidget parent;
    CountedPort first(&parent, "first");
    CountedPort second(&parent, "second");
    QStringList order;
    for (T3dPort* port : {&first, &second})
        QObject::connect(port->glWidget(), &QObject::destroyed, [&order, port] {
            order += QString::fromLatin1(gUIInventory->find("first") == port ? "1" : "2");
        });
    first.makeCurrent();
    QlirnGLWidget::clearWidgetList();
    EXPECT_EQ(order.join(QString()), "21") << "the youngest first";
    EXPECT_EQ(gPortsAlive, 2);
    EXPECT_TRUE(first.isOpen());
    EXPECT_TRUE(Q3dPort::fsSharedGLWidget);
    useWithoutWidget(first);

    Q3dPort::releaseResources();
    EXPECT_EQ(Q3dPort::fsSharedGLWidget, nullptr);
    useWithoutWidget(second);
    EXPECT_EQ(first.q3dPort()->createOffscreenTarget(QSize(8, 8), nullptr), nullptr);
    first.q3dPort()->deleteOffscreenTarget();
}

TEST(PortLife, ReleasedWidgetLeftInsideDoesNotTakeThePortTwice)
{
    QWidget parent;
    auto port = std::make_unique<CountedPort>(&parent, "released");
    QlirnGLWidget* widget = port->glWidget();
    port->q3dPort()->releaseWidget(widget);
    EXPECT_EQ(port->q3dPort()->widget(), nullptr);
    EXPECT_EQ(QlirnGLWidget::widgetList().length(), 1u);
    port.reset();
    EXPECT_EQ(gPortsAlive, 0);
    EXPECT_EQ(QlirnGLWidget::widgetList().length(), 0u);
}

TEST(PortLife, WidgetsKnowTheirPort)
{
    QWidget parent;
    T3dPort port(&parent, "named", false);
    const auto portOf = [](const QWidget* w) { return w->property("LirnPort").value<void*>(); };
    EXPECT_EQ(portOf(port.qControl()), &port);
    EXPECT_EQ(portOf(port.glWidget()), &port);
    auto* stack = qobject_cast<QlirnStackedWidget*>(port.qControl());
    ASSERT_TRUE(stack);
    EXPECT_EQ(stack->currentWidget(), port.glWidget());
    EXPECT_EQ(stack->layout()->objectName(), "lirnLayoutInternalWidget");
}

// Everything that asks for GLX where there is none.
TEST(PortLife, NoGlxNoWidgetNoCrash)
{
    if (!isRerun()) {
        rerun({{"QT_QPA_PLATFORM", "offscreen"}});
        rerun({{"QT_QPA_PLATFORM", "minimal"}});
        rerun({{"QT_QPA_PLATFORM", "offscreen"}, {"DISPLAY", ""}});
        rerun({{"QT_XCB_GL_INTEGRATION", "none"}});
        rerun({{"QT_XCB_GL_INTEGRATION", "xcb_egl"}});
        const LesserDisplay display("GLX");
        ASSERT_NE(display.name(), "");
        rerun({{"DISPLAY", display.name().c_str()}});
        return;
    }
    QWidget parent;
    parent.show();
    for (int i = 0; i < 2; ++i) {
        CountedPort port(i == 0 ? &parent : nullptr, "nowhere");
        EXPECT_EQ(Q3dPort::resourceWidget(), nullptr);
        EXPECT_EQ(Q3dPort::resourceContext(), nullptr);
        EXPECT_FALSE(Q3dPort::ensureContext());
        EXPECT_EQ(port.qControl(), nullptr);
        EXPECT_EQ(port.q3dPort(), nullptr);
        EXPECT_EQ(T3dPort::allPorts().length(), 0u);
        useWithoutWidget(port);
    }
    EXPECT_EQ(qApp->property("lirnSharedQGLWidget").value<QWidget*>(), nullptr);

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

TEST(OffscreenTarget, IsKeptWhileItFits)
{
    ASSERT_TRUE(Q3dPort::resourceContext());
    Q3dPort::resourceContext()->makeCurrent();
    const QGLFormat format = QGLFormat::defaultFormat();
    QGLFormat other = format;
    other.setStencil(!format.stencil());

    struct Step
    {
        QSize size;
        const QGLFormat* format;
        bool renewed;
        const char* trace;
    };
    const Step steps[] = {
        {{32, 16}, nullptr, true, "(Re)create QT FBO target 1. Size 32 x 16\n"},
        {{32, 16}, nullptr, false, ""},
        {{16, 32}, nullptr, true, "(Re)create QT FBO target 1. Size 16 x 32\n"},
        {{16, 32}, &format, true, "(Re)create PBO QT target 1. Size 16 x 32\n"},
        {{16, 32}, &format, false, ""},
        {{16, 32}, &other, true, "(Re)create PBO QT target 1. Size 16 x 32\n"},
        {{16, 31}, &other, true, "(Re)create PBO QT target 1. Size 16 x 31\n"},
        {{16, 31}, nullptr, true, "(Re)create QT FBO target 1. Size 16 x 31\n"},
    };
    QlirnGLRenderTarget target(true);
    EXPECT_EQ(target.width(), -1);
    for (const Step& step : steps) {
        SCOPED_TRACE(step.trace);
        StdoutCapture out;
        target.setInUse(true);
        ASSERT_TRUE(target.create(step.size, step.format, Q3dPort::fsSharedGLWidget));
        EXPECT_EQ(out.text(), step.renewed ? std::string("Destroy QT target\n") + step.trace : "");
        EXPECT_EQ(target.isInUse(), !step.renewed);
        EXPECT_EQ(target.pixelBuffer() != nullptr, step.format != nullptr);
        EXPECT_EQ(target.framebufferObject() != nullptr, step.format == nullptr);
        EXPECT_TRUE(target.isValid());
        EXPECT_EQ(QSize(target.width(), target.height()), step.size);
        if (!step.format)
            Q3dPort::resourceContext()->makeCurrent();
    }
}

TEST(OffscreenTarget, ImpossibleOnesLeaveNone)
{
    PortWindow<> window(40, 40, Buffering::kDouble);
    ASSERT_TRUE(window.show());
    Q3dPort& side = *window.port().q3dPort();
    QGLFormat format;
    struct Row
    {
        QSize size;
        bool pixelBuffer;
    };
    for (const Row& row : {Row{{0, 0}, false}, Row{{-3, 5}, false}, Row{{100000, 100000}, false}}) {
        EXPECT_EQ(side.createOffscreenTarget(row.size, row.pixelBuffer ? &format : nullptr), nullptr)
            << row.size.width();
        EXPECT_EQ(side.offscreenTarget(), nullptr);
        EXPECT_EQ(glXGetCurrentContext(), window.port().glWidget()->glContext()->getActiveContext());
    }
    ASSERT_TRUE(side.createOffscreenTarget(QSize(20, 20), nullptr));
    EXPECT_EQ(glXGetCurrentContext(), window.port().glWidget()->glContext()->getActiveContext());
    EXPECT_EQ(side.createOffscreenTarget(QSize(20, 20), nullptr), side.offscreenTarget());

    // While drawing goes to the target the port stays where it is.
    PortWindow<> other(40, 40);
    ASSERT_TRUE(other.show());
    side.offscreenTarget()->setInUse(true);
    other.port().makeCurrent();
    window.port().makeCurrent();
    EXPECT_EQ(glXGetCurrentContext(), other.port().glWidget()->glContext()->getActiveContext());
    side.deleteOffscreenTarget();
    EXPECT_EQ(side.offscreenTarget(), nullptr);
    window.port().makeCurrent();
    EXPECT_EQ(glXGetCurrentContext(), window.port().glWidget()->glContext()->getActiveContext());
    EXPECT_EQ(window.port().stateDifferences().length(), 0u);
}

} // namespace
