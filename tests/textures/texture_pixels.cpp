// The texels that textured geometry shows.

#include "textures/TestMap.h"

#include "3dPort/Calls.h"

#include "Graphics/textures/TglTextureObject.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

namespace {

class TexturePixels : public ShownPort
{
protected:
    void SetUp() override
    {
        ShownPort::SetUp();
        T3dPort::fsGraphicsFlags.set(T3dPort::kHasNonPowerTwoTexture);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 8); // uploads are right all the same
        glPixelStorei(GL_UNPACK_SKIP_PIXELS, 2);
        glEnable(GL_TEXTURE_2D);
    }

    /** What a rectangle over the whole port shows that has the coordinates @p s, @p t, @p r everywhere. */
    Texel sample(TglTextureObject& texture, float s, float t, float r = 0)
    {
        texture.setEnvMode(TglContext::kEnvReplace);
        texture.apply(&port(), 0);
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        glTexCoord3f(s, t, r);
        glRectf(-1, -1, 1, 1);
        GLubyte got[4];
        glReadPixels(20, 15, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, got);
        return {got[0], got[1], got[2], 255};
    }
};

void expectNear(const Texel& wanted, const Texel& got, int tolerance)
{
    for (std::size_t k = 0; k < 3; ++k)
        EXPECT_NEAR(wanted[k], got[k], tolerance) << "channel " << k;
}

} // namespace

TEST_F(TexturePixels, EveryTexelInEveryOrderSizeAndAlpha)
{
    static const int kSizes[][2] = {{8, 4}, {5, 3}, {1, 7}, {16, 16}};
    for (int n = 0; n < 4 * 16; ++n) {
        const int width = kSizes[n / 16][0], height = kSizes[n / 16][1];
        const int channels = n & 1 ? 3 : 4, alpha = n & 2 ? 128 : 255;
        const bool rgba = n & 4, keep = n & 8, transparent = channels == 4 && alpha < 255;
        SCOPED_TRACE(testing::Message() << "case " << n);
        TestMap map(width, height, channels, rgba, nullptr, alpha);
        TglTextureObject texture(&map, 0, keep);
        texture.setFilters(TglContext::kNearest, TglContext::kNearest);
        EXPECT_EQ(transparent, texture.hasAlpha());
        EXPECT_EQ(unsigned(width * height * (channels == 4 && (keep || transparent) ? 4 : 3)),
                  TglTextureObject::textureMemoryUsage());
        for (int i = 0; i < width * height; i += 3) {
            const int x = i % width, y = i / width;
            EXPECT_EQ(texelAt(x, y),
                      sample(texture, (float(x) + 0.5f) / float(width), (float(y) + 0.5f) / float(height)));
        }
    }
    GLint alignment = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    EXPECT_EQ(8, alignment);
}

TEST_F(TexturePixels, SizesAreConformed)
{
    static const int kCases[][7] = {// width, height, maximum, any size, channels; conformed width and height
                                    {100, 3, 0, 0, 4, 128, 2},      {100, 3, 0, 1, 3, 100, 3},
                                    {96, 97, 0, 0, 3, 64, 128},     {41, 21, 16, 1, 4, 16, 16},
                                    {1200, 2, 1000, 0, 3, 1024, 2}, {1, 3, 0, 0, 4, 1, 2}};
    const Texel left = {200, 100, 0, 255}, right = {0, 100, 250, 255};
    for (const auto& [width, height, maximum, anySize, channels, conformedWidth, conformedHeight] : kCases) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasNonPowerTwoTexture, anySize);
        TestMap map(width, height, channels, false, &left, 3); // an alpha less than the colours
        for (int i = 0; i < height * (width / 2); ++i)
            map.set(width - 1 - i % (width / 2), i / (width / 2), right, 3);
        TglTextureObject texture(&map, maximum, false);
        EXPECT_EQ(conformedWidth, map.width());
        EXPECT_EQ(conformedHeight, map.height());
        EXPECT_EQ(channels == 4, texture.hasAlpha());
        expectNear(left, sample(texture, 0.2f, 0.5f), 1);
        if (width > 1)
            expectNear(right, sample(texture, 0.8f, 0.5f), 1);
    }
}

TEST_F(TexturePixels, WrapModesAndFilters)
{
    const Texel black = {0, 0, 0, 255}, white = {255, 255, 255, 255};
    TestMap map(4, 1), stripes(16, 1, 4, true, &black);
    for (int x = 0; x < 8; ++x)
        stripes.set(x, 0, white);
    TglTextureObject texture(&map, 0, false);
    texture.setFilters(TglContext::kNearest, TglContext::kNearest);
    texture.setBorderColor(TportColor(1, 0, 1, 1));
    const auto at = [&](TglContext::TtextureWrap wrap, float s) {
        texture.setWrap(wrap, wrap);
        return sample(texture, s, 0.5f);
    };
    EXPECT_EQ(texelAt(0, 0), at(TglContext::kRepeat, 1.1f));
    EXPECT_EQ(texelAt(3, 0), at(TglContext::kMirroredRepeat, 1.1f));
    EXPECT_EQ(texelAt(3, 0), at(TglContext::kClampToEdge, 1.6f));
    EXPECT_EQ(texelAt(3, 0), at(TglContext::kClamp, 1.6f));
    EXPECT_EQ((Texel{255, 0, 255, 255}), at(TglContext::kClampToBorder, 1.6f));

    texture.setFilters(TglContext::kNearest, TglContext::kLinear);
    Texel between = texelAt(1, 0);
    for (std::size_t k = 0; k < 3; ++k)
        between[k] = (between[k] + texelAt(2, 0)[k]) / 2;
    expectNear(between, at(TglContext::kClampToEdge, 0.5f), 2);

    // Only mipmaps make one colour of a texture repeated 512 times.
    for (const bool generated : {false, true}) {
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasGenerateMipmap, generated);
        TglTextureObject minified;
        minified.setFlag(TglTextureObject::kMipmaps, true);
        minified.texImage2D(&stripes, false, 0);
        minified.setGenMode(TglContext::kGenObjectLinear);
        minified.apply(&port(), 0);
        port().setTextureGenCoord(TglContext::kCoordS, TglContext::kObjectPlane, {256, 0, 0, 0});
        expectNear({127, 127, 127, 255}, sample(minified, 0, 0), 2);
    }
}

TEST_F(TexturePixels, EveryFaceOfACubeWhereItBelongs)
{
    std::vector<std::unique_ptr<TestMap>> maps;
    TpixelMap* faces[6];
    const auto colour = [](int i) { return Texel{40 * i, 250 - 30 * i, 100 + 10 * i, 255}; };
    for (int i = 0; i < 6; ++i) {
        const Texel own = colour(i);
        faces[i] = maps.emplace_back(std::make_unique<TestMap>(4 + i, 4, i % 2 ? 3 : 4, i < 3, &own)).get();
    }
    TglTextureObject texture(6); // the side: no power of two
    texture.setFlag(TglTextureObject::kMipmaps, true);
    ASSERT_TRUE(texture.texImageCubeMap(faces));
    texture.setGenMode(TglContext::kGenCubeNone);
    for (int i = 0; i < 6; ++i) {
        float direction[3] = {0.1f, 0.1f, 0.1f};
        direction[i / 2] = i % 2 ? -1 : 1;
        expectNear(colour(i), sample(texture, direction[0], direction[1], direction[2]), 1);
    }
}

/** Uploads red where it is asked to. */
struct RedUpdater : TglTexObjUpdater
{
    void update(const TglTextureObject&, int x, int y, int width, int height, unsigned reserved) override
    {
        fCalls.push_back({x, y, width, height, int(reserved)});
        const std::vector<GLubyte> red(128 * 128, 200);
        glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, std::min(width, 100 - x), std::min(height, 64 - y), GL_RED,
                        GL_UNSIGNED_BYTE, red.data());
    }
    std::vector<std::array<int, 5>> fCalls;
};

TEST_F(TexturePixels, ADirtyRectangleUpdatesThoseTexelsAndNoOthers)
{
    const Texel before = {10, 20, 30, 255};
    TestMap map(100, 64, 4, true, &before);
    TglTextureObject texture(&map, 0, false);
    auto* updater = new RedUpdater;
    texture.setTextureUpdater(updater);
    texture.setTextureUpdater(updater); // the same one again
    texture.changed(70, 80, 3, 4);
    texture.changed(97, 99, 0, 32);
    texture.apply(&port(), 0);
    texture.apply(&port(), 0);
    EXPECT_EQ((std::vector<std::array<int, 5>>{{64, 0, 64, 32, 0}}), updater->fCalls);
    GLubyte got[64][100];
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RED, GL_UNSIGNED_BYTE, got);
    for (int i = 0; i < 100 * 64; ++i)
        ASSERT_EQ(i % 100 >= 64 && i / 100 < 32 ? 200 : 10, got[i / 100][i % 100]) << i;
}
