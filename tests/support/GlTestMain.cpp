#include "support/GlRecorder.h"

#include <QApplication>
#include <QX11Info>

#include <gtest/gtest.h>

#include <GL/gl.h>
#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>

namespace {

/** An X error is a fault of the test under way, not the end of the program. */
int reportXError(Display* display, XErrorEvent* error)
{
    char text[200] = "";
    XGetErrorText(display, error->error_code, text, sizeof(text));
    ADD_FAILURE() << "X error: " << text << ", request " << int(error->request_code) << "." << int(error->minor_code)
                  << ", resource 0x" << std::hex << error->resourceid;
    return 0;
}

class EachTest : public ::testing::EmptyTestEventListener
{
    void OnTestStart(const ::testing::TestInfo&) override
    {
        XSetErrorHandler(reportXError);
        // An older OpenGL, as far as the library can tell: an older one in earnest is none that Qt works with.
        if (const char* version = std::getenv("TEST_GL_VERSION"))
            GlRecorder::setString(GL_VERSION, version);
    }

    void OnTestEnd(const ::testing::TestInfo&) override
    {
        GlRecorder::resetOverrides();
        if (QX11Info::display())
            XSync(QX11Info::display(), 0);
    }
};

} // namespace

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();

    setenv("QT_QPA_PLATFORM", "xcb", 0);
    if (qgetenv("QT_QPA_PLATFORM") == "xcb" && !std::getenv("DISPLAY")) {
        std::fprintf(stderr, "These tests need an X display; ./test gives them one.\n");
        return 1;
    }
    QApplication application(argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new EachTest);
    return RUN_ALL_TESTS();
}
