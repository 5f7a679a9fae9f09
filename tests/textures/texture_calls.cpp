// The OpenGL calls of texture objects, exactly.

#include "textures/TestMap.h"

#include "3dPort/Calls.h"

#include "Graphics/textures/TglTextureObject.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

/** The calls of OpenGL without "GL_"; the texture's name reads N, and the pixel-store calls are left out. */
std::string callsOf(const TglTextureObject& texture, const std::function<void()>& run)
{
    GlRecorder recorder;
    recorder.start();
    run();
    recorder.stop();
    std::string calls;
    for (const std::string& call : recorder.calls())
        if (call.find("UNPACK") == std::string::npos && call.compare(0, 3, "glX") != 0)
            calls += (calls.empty() ? "" : "\n") + call;
    const auto replace = [&calls](const std::string& from, const std::string& to) {
        for (std::size_t at; (at = calls.find(from)) != std::string::npos;)
            calls.replace(at, from.size(), to);
    };
    replace("GL_", "");
    replace("pointer", "p");
    replace("glTexParameteri(TEXTURE_2D, TEXTURE_", "2D(");
    if (texture.textureNames().length() > 0 && texture.textureNames()[0])
        for (const char* target : {"(TEXTURE_2D, ", "(TEXTURE_CUBE_MAP, "})
            replace(target + std::to_string(texture.textureNames()[0]->name()) + ")", target + std::string("N)"));
    return calls;
}

class TextureCalls : public ShownPort
{
protected:
    void SetUp() override
    {
        ShownPort::SetUp();
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasGenerateMipmap, false);
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasAnisotropicFilter, false);
    }
    std::string applyCalls(const TglTextureObject& texture)
    {
        return callsOf(texture, [&] { texture.apply(&port(), 0); });
    }
};

const char* const kWrap = "2D(WRAP_S, REPEAT)\n2D(WRAP_T, REPEAT)\n";

} // namespace

TEST_F(TextureCalls, UploadWithAndWithoutMipmaps)
{
    TglTextureObject texture;
    texture.createTextures(1);
    TestMap map(4, 2);
    const auto upload = [&] { texture.texImage2D(&map, true, 0); };
    const std::string image = "glTexImage2D(TEXTURE_2D, 0, RGBA8, 4, 2, 0, RGBA, UNSIGNED_BYTE, p)";
    const std::string bind = "glBindTexture(TEXTURE_2D, N)\n";
    EXPECT_EQ(bind + image, callsOf(texture, upload));
    texture.setFlag(TglTextureObject::kMipmaps, true);
    const std::string built = callsOf(texture, upload);
    EXPECT_NE(std::string::npos, built.find("glTexImage2D(TEXTURE_2D, 2, RGBA8, 1, 1, ")) << built;
    EXPECT_EQ(TglContext::kLinearMipmapLinear, texture.minFilter());
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasGenerateMipmap);
    EXPECT_EQ(bind + "glTexParameteri(TEXTURE_2D, GENERATE_MIPMAP, 1)\n" + image, callsOf(texture, upload));
    texture.setFlag(TglTextureObject::kMipmaps, false);
    EXPECT_EQ(bind + "glTexParameteri(TEXTURE_2D, GENERATE_MIPMAP, 0)\n" + image, callsOf(texture, upload));
    EXPECT_EQ(TglContext::kLinear, texture.minFilter());
}

TEST_F(TextureCalls, ScaleAndBiasAroundTheUpload)
{
    TglTextureObject texture;
    texture.createTextures(1);
    texture.setScale(TportColor(0.5f, 1, 2, 1));
    texture.setBias(TportColor(0, 0, 0.25f, 0.125f));
    TestMap map(2, 2, 3);
    EXPECT_EQ("glPixelTransferf(RED_SCALE, 0.5)\nglPixelTransferf(BLUE_SCALE, 2)\nglPixelTransferf(BLUE_BIAS, 0.25)\n"
              "glPixelTransferf(ALPHA_BIAS, 0.125)\nglBindTexture(TEXTURE_2D, N)\n"
              "glTexImage2D(TEXTURE_2D, 0, RGB8, 2, 2, 0, RGB, UNSIGNED_BYTE, p)\n"
              "glPixelTransferf(RED_SCALE, 1)\nglPixelTransferf(BLUE_SCALE, 1)\nglPixelTransferf(BLUE_BIAS, 0)\n"
              "glPixelTransferf(ALPHA_BIAS, 0)",
              callsOf(texture, [&] { texture.texImage2D(&map, false, 0); }));
}

TEST_F(TextureCalls, ApplySetsParametersBeforeAndAfterTheBind)
{
    TestMap map(2, 2);
    TglTextureObject texture(&map, 0, false);
    texture.setWrap(TglContext::kClamp, TglContext::kRepeat);
    texture.setBorderColor(TportColor(0.5f, 0, 0, 1));
    texture.setFilters(TglContext::kNearest, TglContext::kNearest);
    texture.setGenMode(TglContext::kGenCubeNone);
    const std::string border = "glTexParameterfv(TEXTURE_2D, TEXTURE_BORDER_COLOR, [0.5 0 0 1])\n";
    const std::string wrap = border + "2D(WRAP_S, CLAMP)\n2D(WRAP_T, REPEAT)\n";
    const std::string bound = wrap + "glBindTexture(TEXTURE_2D, N)\n2D(MIN_FILTER, NEAREST)\n2D(MAG_FILTER, NEAREST)\n";
    const std::string end = border + "2D(WRAP_S, CLAMP)\n2D(WRAP_T, REPEAT)";
    EXPECT_EQ("2D(MIN_FILTER, NEAREST)\n2D(MAG_FILTER, NEAREST)\n" + wrap + "2D(WRAP_S, CLAMP)\n2D(WRAP_T, CLAMP)\n" +
                  bound.substr(wrap.size()) + end + "\nglEnable(TEXTURE_CUBE_MAP)",
              applyCalls(texture));
    EXPECT_EQ(bound + end, applyCalls(texture)); // unchanged: what the record spares is left out

    EXPECT_EQ("", callsOf(texture, [&] { texture.apply(&port(), 1); }));
}

TEST_F(TextureCalls, ApplyFollowsTheView)
{
    TestMap map(2, 2);
    TglTextureObject texture(&map, 0, false);
    texture.apply(&port(), 0);
    TglTextureObject::setUsePortTextureOptions(true);
    T3dPort::setTextureEnvModeState(TglContext::kEnvDecal);
    T3dPort::setViewMinFilterState(TglContext::kNearest);
    T3dPort::setViewMinFilterState(TglContext::kLinearMipmapLinear); // not taken
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasAnisotropicFilter);
    T3dPort::enableTextureFilterAnisotropic(true);
    const std::string most = std::to_string(int(port().maxTextureFilterAnistropic()));
    ASSERT_LT(1, port().maxTextureFilterAnistropic());
    const std::string anisotropy = "glTexParameterf(TEXTURE_2D, TEXTURE_MAX_ANISOTROPY, ";
    EXPECT_EQ("glTexEnvi(TEXTURE_ENV, TEXTURE_ENV_MODE, DECAL)\n2D(MIN_FILTER, NEAREST)\n" + std::string(kWrap) +
                  "glBindTexture(TEXTURE_2D, N)\n2D(MIN_FILTER, NEAREST)\n2D(MAG_FILTER, LINEAR)\n" + kWrap +
                  anisotropy + most + ")",
              applyCalls(texture));
}

TEST_F(TextureCalls, CubeMapFacesInOrder)
{
    TestMap rgba(4, 4), bgra(3, 5, 4, false);
    TpixelMap* faces[] = {&rgba, &rgba, &bgra, &rgba, &rgba, &rgba};
    TglTextureObject texture;
    texture.createTextures(1);
    std::string wanted = "glBindTexture(TEXTURE_CUBE_MAP, N)";
    for (const char* face : {"POSITIVE_X", "NEGATIVE_X", "POSITIVE_Y", "NEGATIVE_Y", "POSITIVE_Z", "NEGATIVE_Z"})
        wanted +=
            std::string("\nglTexImage2D(TEXTURE_CUBE_MAP_") + face + ", 0, RGBA8, 4, 4, 0, RGBA, UNSIGNED_BYTE, p)";
    EXPECT_EQ(wanted, callsOf(texture, [&] { EXPECT_TRUE(texture.texImageCubeMap(faces)); }));
    EXPECT_FALSE(bgra.isRgba());
    EXPECT_EQ(4, bgra.width());

    // At its end the texture is unbound and deleted, once.
    std::string name;
    const std::string ended = callsOf(TglTextureObject(), [&] {
        auto* last = new TglTextureObject(texture);
        texture = TglTextureObject();
        name = std::to_string(last->textureNames()[0]->name());
        delete last;
    });
    EXPECT_EQ("glBindTexture(TEXTURE_CUBE_MAP, 0)\nglDeleteTextures(1, [" + name + "])", ended);
}
