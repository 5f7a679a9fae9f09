#pragma once

#include <initializer_list>
#include <string>
#include <vector>

/**
 * Notes the OpenGL and GLX calls that anything in the process makes from the main thread, each with its arguments as in
 * "glViewport(0, 0, 640, 480)", "glEnable(GL_BLEND)" or "glColor3fv([1 0 0.5])". Every call still reaches the driver.
 * Pointers that are of no interest read "pointer" or "null". Calls made inside a call, by the driver, are left out.
 *
 * It works because the test program itself defines these functions (GlFunctions.inc), which puts them before the
 * driver's. One recorder records at a time.
 */
class GlRecorder
{
public:
    GlRecorder() = default;
    GlRecorder(const GlRecorder&) = delete;
    GlRecorder& operator=(const GlRecorder&) = delete;
    ~GlRecorder() { stop(); }

    /** Begins anew; what was recorded before is gone. */
    void start();
    void stop();

    const std::vector<std::string>& calls() const { return fCalls; }
    /** The calls without their arguments. */
    std::vector<std::string> names() const;
    /** How many calls of the function @p name there were; "glX*" counts all whose name begins with glX. */
    int count(const std::string& name) const;
    /** The calls, a line each. */
    std::string text() const;

    /** The next @p times calls of @p function return zero without reaching the driver. */
    static void failNext(const std::string& function, int times);
    /** glGetString(@p name) gives @p value. */
    static void setString(unsigned name, const std::string& value);
    /** The next calls of glGetError give these errors, in this order. */
    static void queueErrors(std::initializer_list<unsigned> errors);
    /** Takes back failures, strings and errors. The test main does so after each test. */
    static void resetOverrides();

    /** The OpenGL name of @p value, such as "GL_BLEND"; in hexadecimal when it has none. */
    static std::string enumName(unsigned value);

private:
    std::vector<std::string> fCalls;
};
