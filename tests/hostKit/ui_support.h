#pragma once

#include <QApplication>

#include <gtest/gtest.h>

/** An application on the off-screen platform, unless the program has one already. */
inline void ensureApplication()
{
    if (QCoreApplication::instance()) {
        return;
    }
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int argumentCount = 1;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Never destroyed: the off-screen platform leaks its screen when it ends.
    static auto* const application = new QApplication(argumentCount, arguments);
    Q_UNUSED(application)
}

/** Tests that need widgets. */
class UiTest : public ::testing::Test
{
protected:
    UiTest() { ensureApplication(); }
};
