// What the texture state operations send to OpenGL, and what they spare it.

#include "3dPort/Calls.h"

#include "Graphics/3dPort/T3dPort.h"

#include <gtest/gtest.h>

using TextureState = ShownPort;

TEST_F(TextureState, GenerationModesDisableNoMoreThanTheyName)
{
    const auto generation = [&](int mode) {
        const std::string calls = callsOf([&] { port().setTextureGenMode(TglContext::TtextureGenMode(mode)); });
        EXPECT_EQ(TstringArray(), port().stateDifferences()) << mode;
        return calls;
    };
    const std::string planar = "glDisable(TEXTURE_CUBE_MAP)\nglDisable(TEXTURE_GEN_R)\nglDisable(TEXTURE_GEN_Q)\n";
    const std::string cube = "glEnable(TEXTURE_CUBE_MAP)\n", onR = "glEnable(TEXTURE_GEN_R)\n";
    const std::string on = "glEnable(TEXTURE_GEN_S)\nglEnable(TEXTURE_GEN_T)\n";
    const auto modes = [](const std::string& mode, const std::string& coordinates) {
        std::string calls;
        for (const char c : coordinates)
            calls += std::string("glTexGeni(") + c + ", TEXTURE_GEN_MODE, " + mode + ")\n";
        return calls;
    };
    EXPECT_EQ(planar + modes("SPHERE_MAP", "ST") + on, generation(GL_SPHERE_MAP));
    EXPECT_EQ(cube, generation(-3));
    EXPECT_EQ(planar + modes("EYE_LINEAR", "ST") + on, generation(GL_EYE_LINEAR));
    EXPECT_EQ(modes("NORMAL_MAP", "STR") + cube + on + onR, generation(GL_NORMAL_MAP));
    EXPECT_EQ(modes("EYE_LINEAR", "STR") + cube + on + onR, generation(-1));
    EXPECT_EQ(modes("OBJECT_LINEAR", "STR") + cube + on + onR, generation(-2));
    EXPECT_EQ("", generation(5));
    EXPECT_EQ("glDisable(TEXTURE_GEN_S)\nglDisable(TEXTURE_GEN_T)\nglDisable(TEXTURE_GEN_R)\nglDisable(TEXTURE_GEN_Q)\n"
              "glDisable(TEXTURE_CUBE_MAP)\n",
              generation(0));
}

TEST_F(TextureState, MatrixKeepsTheHalfUnitShift)
{
    const auto transform = [&p = port()] { p.textureTransform(30, 2, 4, 0.25f, 0.75f, 10); };
    EXPECT_EQ("glMatrixMode(TEXTURE)\nglLoadIdentity()\nglTranslatef(0.5, 0.5, 0)\nglRotatef(30, 0, 0, 1)\n"
              "glTranslatef(-0.5, -0.5, 0)\nglScalef(0.5, 0.25, 1)\nglTranslatef(0.25, -0.25, 0)\n"
              "glRotatef(-10, 0, 0, 1)\nglMatrixMode(MODELVIEW)\n",
              callsOf(transform));
    EXPECT_EQ("glMatrixMode(TEXTURE)\nglLoadIdentity()\nglTranslatef(0.5, 0.5, 0)\nglMatrixMode(MODELVIEW)\n",
              callsOf([&] { port().textureTransform(0, 1, 1, 0, 0, 0); }));
    port().setNoTextureMatrix(true);
    EXPECT_EQ("", callsOf(transform));
}
