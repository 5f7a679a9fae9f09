#pragma once

#include "Graphics/3dPort/T3dPort.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

// Last, for the macros of Xlib and Motif.
#include "Graphics/glxDrawingArea/GlxMDraw.h"
#include <Xm/XmAll.h>

/** What a drawing area has reported. */
struct Report
{
    std::string callback;
    int reason;
    int event; ///< its type, 0 for none
    Window window;
    int width;
    int height;
    GLXContext context;
};

using Resource = std::pair<const char*, XtArgVal>;

/** An Xt application on the test's display: a shell with a form for drawing areas. No X error may occur in it. */
class MotifWindow : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    /** A managed drawing area of 90 x 60 pixels beside the others, whose reports are kept. */
    Widget create(const std::vector<Resource>& resources = {});
    void realize();
    /** Lets the application handle its events until @p condition holds; false when it never does. */
    bool waitUntil(const std::function<bool()>& condition);
    /** Lets the application handle all that has happened so far. */
    void settle();
    /** Those of the reports of @p callback, oldest first. */
    std::vector<Report> reports(const std::string& callback) const;

    /** Whether a list compiled in @p from can be called in @p to. */
    bool shareLists(GLXContext from, GLXContext to);
    static XtArgVal address(const void* pointer) { return reinterpret_cast<XtArgVal>(pointer); }
    template <class T> static T get(Widget widget, const char* name)
    {
        T value{};
        XtVaGetValues(widget, name, &value, nullptr);
        return value;
    }

    XtAppContext fApplication = nullptr;
    Display* fDisplay = nullptr;
    Widget fShell = nullptr;
    Widget fForm = nullptr;
    std::vector<Report> fReports;
    static std::vector<std::string> fsWarnings;
};
