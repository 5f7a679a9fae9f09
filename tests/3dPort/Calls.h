#pragma once

#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

inline const std::string kLoadIdentity = "glLoadMatrixd([1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1])";

/** The recorded calls of OpenGL itself, without the window system's. */
inline std::vector<std::string> glCalls(const GlRecorder& recorder)
{
    std::vector<std::string> calls;
    for (const std::string& call : recorder.calls())
        if (call.compare(0, 3, "glX") != 0)
            calls.push_back(call);
    return calls;
}

/** The part of @p calls from the first one named @p name. */
inline std::vector<std::string> from(const std::string& name, const std::vector<std::string>& calls)
{
    for (auto call = calls.begin(); call != calls.end(); ++call)
        if (call->compare(0, name.size(), name) == 0)
            return std::vector<std::string>(call, calls.end());
    return {};
}

/** The calls of OpenGL that @p run makes, a line each and without "GL_". */
template <class Run> std::string callsOf(Run run)
{
    GlRecorder recorder;
    recorder.start();
    run();
    recorder.stop();
    std::string lines;
    for (const std::string& call : glCalls(recorder))
        lines += call + '\n';
    for (std::size_t at; (at = lines.find("GL_")) != std::string::npos;)
        lines.erase(at, 3);
    return lines;
}

/** A port of 40 x 30 pixels that is shown and current. */
class ShownPort : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }

    PortWindow<> fWindow{40, 30};
};
