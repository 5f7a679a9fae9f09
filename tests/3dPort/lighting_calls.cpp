// What the light and material operations send to OpenGL, and what they spare it.

#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

TEST(Lighting, SendsWhatChanged)
{
    using Calls = std::vector<std::string>;
    const auto material = [](const char* channel, const char* color) {
        return Calls{std::string("glColorMaterial(GL_FRONT_AND_BACK, ") + channel + ")", "glEnable(GL_COLOR_MATERIAL)",
                     color, "glDisable(GL_COLOR_MATERIAL)"};
    };
    const Calls clamped = {"glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 128)"};
    const struct
    {
        void (*run)(T3dPort& p);
        Calls calls;
    } steps[] = {
        {[](T3dPort& p) { p.enableLighting(); }, {"glEnable(GL_LIGHTING)"}},
        {[](T3dPort& p) { p.setLighting(true); }, {}},
        {[](T3dPort& p) { p.setShininess(200); }, clamped},
        {[](T3dPort& p) { p.setShininess(128); }, {}},
        {[](T3dPort& p) { p.setShininess(-7); }, {"glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, 0)"}},
        {[](T3dPort& p) { p.setShininess(std::numeric_limits<double>::infinity()); }, clamped},
        {[](T3dPort& p) { p.setDiffuseColor(TportColor(0, 1, 0.5f)); },
         material("GL_DIFFUSE", "glColor3fv([0 1 0.5])")},
        {[](T3dPort& p) { p.setDiffuseColor(TportColor(0, 1, 0.5f), 1); }, {}},
        {[](T3dPort& p) { p.color(TportColor(0, 1, 0.5f)); }, {}},
        {[](T3dPort& p) { p.setSpecularColor(kCwhite); }, material("GL_SPECULAR", "glColor3fv([1 1 1])")},
        {[](T3dPort& p) {
             p.setNoLighting(true);
             p.setLighting(true);
         },
         {"glDisable(GL_LIGHTING)"}},
    };
    PortWindow<> window(40, 30);
    ASSERT_TRUE(window.show());
    T3dPort::useSeparateSpecularColor(false);
    window.port().disableLighting();
    int number = 0;
    for (const auto& step : steps) {
        GlRecorder recorder;
        recorder.start();
        step.run(window.port());
        recorder.stop();
        EXPECT_EQ(step.calls, recorder.calls()) << "step " << number;
        EXPECT_EQ(TstringArray(), window.port().stateDifferences()) << "step " << number++;
    }
}
