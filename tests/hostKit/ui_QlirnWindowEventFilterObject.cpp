#include "ui/QlirnWindowEventFilterObject.h"

#include "ui_support.h"

#include <QMoveEvent>
#include <QWidget>

#include <vector>

using QlirnWindowEventFilter = UiTest;

TEST_F(QlirnWindowEventFilter, TellsOncePerMoveOfAWindow)
{
    QObject receiver;
    std::vector<QWidget*> moved;
    // Asking again must not watch twice.
    QlirnWindowEventFilterObject::globalEventFilter();
    QObject::connect(QlirnWindowEventFilterObject::globalEventFilter(), &QlirnWindowEventFilterObject::windowMoved,
                     &receiver, [&moved](QWidget* window) { moved.push_back(window); });
    QWidget window;
    QWidget child(&window);
    window.show();
    moved.clear();

    window.move(window.pos() + QPoint(30, 20));
    EXPECT_EQ(moved, std::vector<QWidget*>{&window});
    child.move(5, 5);
    window.resize(window.size() + QSize(10, 10));
    EXPECT_EQ(moved.size(), 1u);
}

TEST(QlirnWindowEventFilterReplaced, WatchesTheApplicationThatCameLater)
{
    if (QCoreApplication::instance()) {
        GTEST_SKIP() << "an application exists already; run this test in a process of its own";
    }
    QObject receiver;
    int moves = 0;
    QObject::connect(QlirnWindowEventFilterObject::globalEventFilter(), &QlirnWindowEventFilterObject::windowMoved,
                     &receiver, [&moves] { ++moves; });
    {
        char name[] = "earlier";
        char* arguments[] = {name, nullptr};
        int argumentCount = 1;
        const QCoreApplication earlier(argumentCount, arguments);
        QlirnWindowEventFilterObject::globalEventFilter();
    }
    ensureApplication();
    QlirnWindowEventFilterObject::globalEventFilter();
    QWidget window;
    QMoveEvent move(QPoint(1, 1), QPoint());
    QCoreApplication::sendEvent(&window, &move);
    EXPECT_EQ(moves, 1);
}
