#define GL_GLEXT_PROTOTYPES
#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include <QGLWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <GL/glu.h>
#include <GL/glx.h>

#include <thread>

using ::testing::ElementsAre;
using ::testing::SizeIs;

class GlRecorderTest : public ::testing::Test
{
protected:
    GlRecorderTest()
    {
        fWidget.resize(64, 64);
        fWidget.show();
        EXPECT_TRUE(waitUntil([this] { return fWidget.isVisible(); }));
        settle();
        fWidget.makeCurrent();
    }

    QGLWidget fWidget;
    GlRecorder fRecorder;
};

TEST_F(GlRecorderTest, WritesArgumentsByTheirMeaning)
{
    const GLdouble matrix[16] = {0.5, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.1, -2, 1e-7, 1};
    const GLfloat four[4] = {1, 0, 0.25f, 1};
    const GLuint textures[2] = {7, 9};
    const GLubyte lists[3] = {3, 4, 200};
    fRecorder.start();
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ZERO);
    glViewport(0, -1, 640, 480);
    glLoadMatrixd(matrix);
    glColor3fv(four);
    glColor4ub(1, 2, 255, 0);
    glLightfv(GL_LIGHT1, GL_SPOT_DIRECTION, four);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    glActiveTexture(GL_TEXTURE1);
    glFogf(GL_FOG_START, 512);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDepthMask(GL_FALSE);
    glLineStipple(2, 0xf0f0);
    glDeleteTextures(2, textures);
    glCallLists(3, GL_UNSIGNED_BYTE, lists);
    glBegin(GL_POINTS);
    glEnd();
    glEnable(0xfffe);
    glPolygonStipple(nullptr);
    fRecorder.stop();
    glFlush();
    EXPECT_THAT(fRecorder.calls(),
                ElementsAre("glEnable(GL_BLEND)", "glBlendFunc(GL_ONE, GL_ZERO)", "glViewport(0, -1, 640, 480)",
                            "glLoadMatrixd([0.5 0 0 0 0 1 0 0 0 0 1 0 0.1 -2 1e-07 1])", "glColor3fv([1 0 0.25])",
                            "glColor4ub(1, 2, 255, 0)", "glLightfv(GL_LIGHT1, GL_SPOT_DIRECTION, [1 0 0.25])",
                            "glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1)",
                            "glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE)",
                            "glActiveTexture(GL_TEXTURE1)", "glFogf(GL_FOG_START, 512)",
                            "glClear(GL_DEPTH_BUFFER_BIT|GL_COLOR_BUFFER_BIT)", "glDepthMask(GL_FALSE)",
                            "glLineStipple(2, 0xf0f0)", "glDeleteTextures(2, [7 9])",
                            "glCallLists(3, GL_UNSIGNED_BYTE, [3 4 200])", "glBegin(GL_POINTS)", "glEnd()",
                            "glEnable(0xfffe)", "glPolygonStipple(null)"));
}

TEST_F(GlRecorderTest, ForwardsAndSeesOtherLibrariesCallsButNoOtherThreads)
{
    fRecorder.start();
    glViewport(3, 4, 21, 22);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    GLUquadric* const quadric = gluNewQuadric();
    gluSphere(quadric, 1, 4, 4);
    gluDeleteQuadric(quadric);
    std::thread([] { glXGetCurrentDrawable(); }).join();
    fRecorder.stop();
    EXPECT_THAT(viewport, ElementsAre(3, 4, 21, 22));
    EXPECT_GT(fRecorder.count("glVertex3f"), 10);
    EXPECT_GT(fRecorder.count("glVertex*"), fRecorder.count("glVertex"));
    EXPECT_EQ(fRecorder.count("glX*"), 0);
    EXPECT_EQ(fRecorder.names().front(), "glViewport");
}

TEST_F(GlRecorderTest, ExtensionFunctionsLookedUpByNameAreRecorded)
{
    const auto lookUp = [](const char* name) { return glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)); };
    const auto blendColor = reinterpret_cast<decltype(&glBlendColor)>(lookUp("glBlendColor"));
    ASSERT_TRUE(blendColor);
    fRecorder.start();
    blendColor(1, 0, 0, 0);
    EXPECT_THAT(fRecorder.calls(), ElementsAre("glBlendColor(1, 0, 0, 0)"));
    EXPECT_TRUE(lookUp("glXGetProcAddress"));
}

TEST_F(GlRecorderTest, OverridesReplaceTheDriverUntilTheyAreUsedUp)
{
    Display* const display = glXGetCurrentDisplay();
    int attributes[] = {GLX_RGBA, GLX_DEPTH_SIZE, 1, GLX_DOUBLEBUFFER, 0};
    GlRecorder::failNext("glXChooseVisual", 2);
    GlRecorder::setString(GL_VERSION, "1.0");
    GlRecorder::queueErrors({GL_INVALID_ENUM, GL_OUT_OF_MEMORY});
    EXPECT_FALSE(glXChooseVisual(display, 0, attributes));
    fRecorder.start();
    EXPECT_FALSE(glXChooseVisual(display, 0, attributes));
    EXPECT_THAT(fRecorder.calls(),
                ElementsAre("glXChooseVisual(pointer, 0, [GLX_RGBA GLX_DEPTH_SIZE=1 GLX_DOUBLEBUFFER])"));
    XVisualInfo* const visual = glXChooseVisual(display, 0, attributes);
    EXPECT_TRUE(visual);
    XFree(visual);
    EXPECT_STREQ(reinterpret_cast<const char*>(glGetString(GL_VERSION)), "1.0");
    EXPECT_STRNE(reinterpret_cast<const char*>(glGetString(GL_VENDOR)), "1.0");
    EXPECT_EQ(glGetError(), unsigned(GL_INVALID_ENUM));
    EXPECT_EQ(glGetError(), unsigned(GL_OUT_OF_MEMORY));
    EXPECT_EQ(glGetError(), unsigned(GL_NO_ERROR));
    GlRecorder::resetOverrides();
    EXPECT_STRNE(reinterpret_cast<const char*>(glGetString(GL_VERSION)), "1.0");
}
