// The OpenGL calls of texture objects, exactly.

#include <QRegularExpression>

#include "textures/TestMap.h"

#include "3dPort/Calls.h"

#include "Graphics/textures/TglTextureObject.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

namespace {

class TextureCalls : public ShownPort
{
protected:
    void SetUp() override
    {
        ShownPort::SetUp();
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasGenerateMipmap, false);
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasAnisotropicFilter, false);
    }
    /** The calls of OpenGL, without those for the pixel store; names of textures read N. */
    template <class Run> std::string calls(Run run)
    {
        QString text = QString::fromStdString(callsOf(run));
        text.remove(QRegularExpression(".*(UNPACK|ClientAttrib).*\n"));
        text.replace(QRegularExpression("(Texture\\(TEXTURE\\w*, )[1-9]\\d*"), "\\1N");
        return text.replace("glTexParameteri(TEXTURE_2D, TEXTURE_", "2D(").toStdString();
    }
    std::string applyCalls(const TglTextureObject& texture)
    {
        return calls([&] { texture.apply(&port(), 0); });
    }
};

} // namespace

TEST_F(TextureCalls, UploadWithMipmapsScaleAndBias)
{
    TglTextureObject texture;
    texture.createTextures(1);
    TestMap map(4, 2), rgb(2, 2, 3);
    const auto upload = [&] { return calls([&] { texture.texImage2D(&map, true, 0); }); };
    const std::string image = "glTexImage2D(TEXTURE_2D, 0, RGBA8, 4, 2, 0, RGBA, UNSIGNED_BYTE, pointer)\n";
    const std::string bind = "glBindTexture(TEXTURE_2D, N)\n";
    EXPECT_EQ(bind + image, upload());
    texture.setFlag(TglTextureObject::kMipmaps, true);
    EXPECT_NE(std::string::npos, upload().find("glTexImage2D(TEXTURE_2D, 2, RGBA8, 1, 1, "));
    EXPECT_EQ(TglContext::kLinearMipmapLinear, texture.minFilter());
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasGenerateMipmap);
    EXPECT_EQ(bind + "glTexParameteri(TEXTURE_2D, GENERATE_MIPMAP, 1)\n" + image, upload());
    texture.setFlag(TglTextureObject::kMipmaps, false);
    texture.setTextureTarget(TglContext::kTexture3D); // the other target is not the switch's
    texture.setScale(TportColor(0.5f, 1, 2, 1));
    texture.setBias(TportColor(0, 0, 0.25f, 0.125f));
    EXPECT_EQ("glPixelTransferf(RED_SCALE, 0.5)\nglPixelTransferf(BLUE_SCALE, 2)\nglPixelTransferf(BLUE_BIAS, 0.25)\n"
              "glPixelTransferf(ALPHA_BIAS, 0.125)\nglBindTexture(TEXTURE_3D, N)\n"
              "glTexParameteri(TEXTURE_2D, GENERATE_MIPMAP, 0)\n"
              "glTexImage2D(TEXTURE_3D, 0, RGB8, 2, 2, 0, RGB, UNSIGNED_BYTE, pointer)\n"
              "glPixelTransferf(RED_SCALE, 1)\nglPixelTransferf(BLUE_SCALE, 1)\nglPixelTransferf(BLUE_BIAS, 0)\n"
              "glPixelTransferf(ALPHA_BIAS, 0)\n",
              calls([&] { texture.texImage2D(&rgb, false, 0); }));
    EXPECT_EQ(TglContext::kLinear, texture.minFilter());
}

TEST_F(TextureCalls, ApplySetsParametersBeforeAndAfterTheBind)
{
    TestMap map(2, 2);
    TglTextureObject texture(&map, 0, false);
    texture.setWrap(TglContext::kClamp, TglContext::kRepeat);
    texture.setBorderColor(TportColor(0.5f, 0, 0, 1));
    texture.setFilters(TglContext::kNearest, TglContext::kNearest);
    texture.setGenMode(TglContext::kGenCubeNone);
    const std::string filters = "2D(MIN_FILTER, NEAREST)\n2D(MAG_FILTER, NEAREST)\n";
    const std::string wrap = "glTexParameterfv(TEXTURE_2D, TEXTURE_BORDER_COLOR, [0.5 0 0 1])\n2D(WRAP_S, CLAMP)\n"
                             "2D(WRAP_T, REPEAT)\n";
    const std::string bound = "glBindTexture(TEXTURE_2D, N)\n" + filters + wrap;
    EXPECT_EQ(filters + wrap + "2D(WRAP_S, CLAMP)\n2D(WRAP_T, CLAMP)\n" + bound + "glEnable(TEXTURE_CUBE_MAP)\n",
              applyCalls(texture));
    EXPECT_EQ(wrap + bound, applyCalls(texture)); // unchanged: what the record spares is left out

    TglTextureObject::setUsePortTextureOptions(true);
    T3dPort::setTextureEnvModeState(TglContext::kEnvDecal);
    T3dPort::setViewMagFilterState(TglContext::kNearest);
    T3dPort::setViewMinFilterState(TglContext::kNearest);
    T3dPort::setViewMinFilterState(TglContext::kLinearMipmapLinear); // not taken
    T3dPort::fsGraphicsFlags.set(T3dPort::kHasAnisotropicFilter);
    T3dPort::enableTextureFilterAnisotropic(true);
    texture.setFilters(TglContext::kLinear, TglContext::kLinear);
    const int most = int(port().maxTextureFilterAnistropic());
    ASSERT_LT(1, most);
    EXPECT_EQ("glTexEnvi(TEXTURE_ENV, TEXTURE_ENV_MODE, DECAL)\n" + wrap + bound +
                  "glTexParameterf(TEXTURE_2D, TEXTURE_MAX_ANISOTROPY, " + std::to_string(most) + ")\n",
              applyCalls(texture));
}

TEST_F(TextureCalls, CubeMapFacesInOrderAndItsEnd)
{
    TestMap rgba(4, 4), bgra(3, 5, 4, false);
    TpixelMap* faces[] = {&rgba, &rgba, &bgra, &rgba, &rgba, &rgba};
    auto texture = std::make_unique<TglTextureObject>();
    texture->createTextures(1);
    std::string wanted = "glBindTexture(TEXTURE_CUBE_MAP, N)\n";
    for (const char* face : {"POSITIVE_X", "NEGATIVE_X", "POSITIVE_Y", "NEGATIVE_Y", "POSITIVE_Z", "NEGATIVE_Z"})
        wanted += std::string("glTexImage2D(TEXTURE_CUBE_MAP_") + face +
                  ", 0, RGBA8, 4, 4, 0, RGBA, UNSIGNED_BYTE, pointer)\n";
    EXPECT_EQ(wanted, calls([&] { EXPECT_TRUE(texture->texImageCubeMap(faces)); }));
    EXPECT_FALSE(bgra.isRgba());
    const std::string name = std::to_string(texture->textureNames()[0]->name());
    EXPECT_EQ("glBindTexture(TEXTURE_CUBE_MAP, 0)\nglDeleteTextures(1, [" + name + "])\n",
              calls([&] { texture.reset(); }));
}
