#include "support/XEvents.h"

#include <QMouseEvent>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <X11/keysym.h>

namespace {

class EventLog : public QWidget
{
public:
    std::vector<std::string> log;

protected:
    bool event(QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick: {
            const auto* const mouse = static_cast<QMouseEvent*>(event);
            note(event->type() == QEvent::MouseButtonRelease ? "release"
                 : event->type() == QEvent::MouseButtonPress ? "press"
                                                             : "double",
                 mouse->button(), mouse->modifiers());
            EXPECT_EQ(mouse->pos(), QPoint(20, 30));
            return true;
        }
        case QEvent::Wheel:
            note("wheel", static_cast<QWheelEvent*>(event)->angleDelta().y(), 0);
            return true;
        case QEvent::KeyPress:
            note("key", static_cast<QKeyEvent*>(event)->key(), 0);
            return true;
        default:
            return QWidget::event(event);
        }
    }

private:
    void note(const char* what, int a, int b)
    {
        log.push_back(std::string(what) + ' ' + std::to_string(a) + ' ' + std::to_string(b));
    }
};

} // namespace

TEST(XEventsRealEvents, ArriveAsQtEvents)
{
    EventLog widget;
    widget.resize(100, 100);
    ASSERT_TRUE(showAndWait(widget));
    XEvents events;
    EXPECT_TRUE(events.doubleClick(widget, {20, 30}, XEvents::kRight));
    EXPECT_TRUE(events.wheel(widget, {20, 30}, -2));
    EXPECT_TRUE(events.focus(widget));
    EXPECT_TRUE(events.keyDown(XK_Shift_L));
    EXPECT_TRUE(events.click(widget, {20, 30}));
    EXPECT_TRUE(events.keyUp(XK_Shift_L));
    EXPECT_THAT(widget.log, ::testing::ElementsAre("press 2 0", "release 2 0", "double 2 0", "release 2 0", "wheel -120 0",
                                                   "wheel -120 0", "key 16777248 0", "press 1 33554432",
                                                   "release 1 33554432"));
}
