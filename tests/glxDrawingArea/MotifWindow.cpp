#include "glxDrawingArea/MotifWindow.h"

#include <chrono>
#include <cstring>
#include <thread>

std::vector<std::string> MotifWindow::fsWarnings;

namespace {

struct Recipient
{
    std::vector<Report>* reports;
    const char* callback;
};

void keep(Widget, XtPointer client, XtPointer call)
{
    const auto* to = static_cast<const Recipient*>(client);
    const auto* data = static_cast<const GlxMDrawCallbackStruct*>(call);
    to->reports->push_back({to->callback, data->reason, data->event ? data->event->type : 0, data->window, data->width,
                            data->height, data->context});
}

void forget(Widget, XtPointer client, XtPointer)
{
    delete static_cast<Recipient*>(client);
}

} // namespace

void MotifWindow::SetUp()
{
    static char program[] = "test";
    char* arguments[] = {program, nullptr};
    int count = 1;
    XtToolkitInitialize();
    fApplication = XtCreateApplicationContext();
    fsWarnings.clear();
    XtAppSetWarningHandler(fApplication, [](char* text) { fsWarnings.emplace_back(text); });
    fDisplay = XtOpenDisplay(fApplication, nullptr, "test", "Test", nullptr, 0, &count, arguments);
    ASSERT_TRUE(fDisplay);
    fShell = XtVaAppCreateShell("test", "Test", applicationShellWidgetClass, fDisplay, XmNallowShellResize, True, nullptr);
    fForm = XtVaCreateManagedWidget("form", xmRowColumnWidgetClass, fShell, XmNorientation, XmHORIZONTAL, nullptr);
}

void MotifWindow::TearDown()
{
    if (fShell)
        XtDestroyWidget(fShell);
    XSync(fDisplay, False);
    XtDestroyApplicationContext(fApplication);
}

Widget MotifWindow::create(const std::vector<Resource>& resources)
{
    std::vector<Arg> arguments;
    for (const Resource& resource : {Resource(XmNwidth, 90), Resource(XmNheight, 60)})
        arguments.push_back({const_cast<char*>(resource.first), resource.second});
    for (const Resource& resource : resources)
        arguments.push_back({const_cast<char*>(resource.first), resource.second});
    const Widget area = GlXCreateMDraw(fForm, "area", arguments.data(), Cardinal(arguments.size()));
    for (const char* callback :
         {GlxNginitCallback, GlxNinputCallback, GlxNresizeCallback, GlxNexposeCallback, GlxNoverlayExposeCallback}) {
        auto* recipient = new Recipient{&fReports, callback};
        XtAddCallback(area, callback, keep, recipient);
        XtAddCallback(area, XmNdestroyCallback, forget, recipient);
    }
    XtManageChild(area);
    return area;
}

void MotifWindow::realize()
{
    XtRealizeWidget(fShell);
    settle();
}

bool MotifWindow::waitUntil(const std::function<bool()>& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        settle();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

void MotifWindow::settle()
{
    for (XSync(fDisplay, False); XtAppPending(fApplication); XSync(fDisplay, False))
        XtAppProcessEvent(fApplication, XtIMAll);
}

std::vector<Report> MotifWindow::reports(const std::string& callback) const
{
    std::vector<Report> found;
    for (const Report& report : fReports) {
        if (report.callback == callback)
            found.push_back(report);
    }
    return found;
}

bool MotifWindow::shareLists(GLXContext from, GLXContext to)
{
    // Each with a window of its own, for the widgets need not have theirs yet.
    const auto inWindow = [&](GLXContext context, const std::function<bool()>& work) {
        int config = 0;
        int count = 0;
        glXQueryContext(fDisplay, context, GLX_FBCONFIG_ID, &config);
        const int wanted[] = {GLX_FBCONFIG_ID, config, None};
        GLXFBConfig* configs = glXChooseFBConfig(fDisplay, DefaultScreen(fDisplay), wanted, &count);
        const int size[] = {GLX_PBUFFER_WIDTH, 1, GLX_PBUFFER_HEIGHT, 1, None};
        const GLXPbuffer buffer = glXCreatePbuffer(fDisplay, configs[0], size);
        XFree(configs);
        const bool result = glXMakeCurrent(fDisplay, buffer, context) && work();
        glXMakeCurrent(fDisplay, None, nullptr);
        glXDestroyPbuffer(fDisplay, buffer);
        return result;
    };
    GLuint list = 0;
    const bool isMade = inWindow(from, [&] {
        // A name that a context of its own would not have come to.
        list = glGenLists(40) + 39;
        glNewList(list, GL_COMPILE);
        glEndList();
        return true;
    });
    return isMade && inWindow(to, [&] { return glIsList(list) == GL_TRUE; });
}
