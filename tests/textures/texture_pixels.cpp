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
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    }

    /** What a quad over the whole port shows whose corners have the coordinates @p s, @p t, @p r. */
    Texel sample(TglTextureObject& texture, float s, float t, float r = 0)
    {
        texture.setEnvMode(TglContext::kEnvReplace);
        texture.apply(&port(), 0);
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        glBegin(GL_QUADS);
        for (const float* corner : kCorners) {
            glTexCoord3f(s, t, r);
            glVertex2fv(corner);
        }
        glEnd();
        GLubyte got[4];
        glReadPixels(20, 15, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, got);
        return {got[0], got[1], got[2], 255};
    }

    static constexpr float kCorners[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
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
        (transparent ? glEnable : glDisable)(GL_BLEND);
        for (int y = 0; y < height; y += 2) {
            for (int x = 0; x < width; x += 3) {
                Texel wanted = texelAt(x, y);
                for (int& value : wanted)
                    value = transparent ? value * alpha / 255 : value;
                const Texel got = sample(texture, (float(x) + 0.5f) / float(width), (float(y) + 0.5f) / float(height));
                expectNear(wanted, got, transparent ? 2 : 0);
            }
        }
    }
    GLint alignment = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    EXPECT_EQ(8, alignment);
}

TEST_F(TexturePixels, SizesAreConformed)
{
    struct Case
    {
        int width, height, maximum;
        bool anySize;
        int conformedWidth, conformedHeight;
    };
    static const Case kCases[] = {{100, 3, 0, false, 128, 2},      {100, 3, 0, true, 100, 3},
                                  {96, 97, 0, false, 64, 128},     {40, 20, 16, true, 16, 16},
                                  {1200, 2, 1000, false, 1024, 2}, {1, 3, 0, false, 1, 2}};
    const Texel left = {200, 100, 0, 255}, right = {0, 100, 250, 255};
    for (const Case& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.width << " x " << c.height);
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasNonPowerTwoTexture, c.anySize);
        TestMap map(c.width, c.height, 4, false, &left);
        for (int y = 0; y < c.height; ++y)
            for (int x = (c.width + 1) / 2; x < c.width; ++x)
                map.set(x, y, right);
        TglTextureObject texture(&map, c.maximum, false);
        EXPECT_EQ(c.conformedWidth, map.width());
        EXPECT_EQ(c.conformedHeight, map.height());
        EXPECT_FALSE(texture.hasAlpha());
        expectNear(left, sample(texture, 0.2f, 0.5f), 1);
        if (c.width > 1)
            expectNear(right, sample(texture, 0.8f, 0.5f), 1);
    }
}

TEST_F(TexturePixels, WrapModesAndFilters)
{
    TestMap map(4, 1);
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

    texture.setWrap(TglContext::kClampToEdge, TglContext::kClampToEdge);
    texture.setFilters(TglContext::kNearest, TglContext::kLinear);
    Texel between = texelAt(1, 0);
    for (std::size_t k = 0; k < 3; ++k)
        between[k] = (between[k] + texelAt(2, 0)[k]) / 2;
    expectNear(between, sample(texture, 0.5f, 0.5f), 2);

    // Only mipmaps make one colour of a texture repeated 512 times.
    const Texel black = {0, 0, 0, 255}, white = {255, 255, 255, 255};
    TestMap stripes(16, 16, 4, true, &black);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 8; ++x)
            stripes.set(x, y, white);
    for (const bool generated : {false, true}) {
        T3dPort::fsGraphicsFlags.assign(T3dPort::kHasGenerateMipmap, generated);
        TglTextureObject minified;
        minified.setFlag(TglTextureObject::kMipmaps, true);
        minified.setEnvMode(TglContext::kEnvReplace);
        minified.texImage2D(&stripes, false, 0);
        minified.apply(&port(), 0);
        glBegin(GL_QUADS);
        for (const float* corner : kCorners) {
            glTexCoord2f(256 * corner[0], 256 * corner[1]);
            glVertex2fv(corner);
        }
        glEnd();
        GLubyte got[40 * 3];
        glReadPixels(0, 15, 40, 1, GL_RGB, GL_UNSIGNED_BYTE, got);
        for (const GLubyte value : got)
            ASSERT_NEAR(127, value, 2) << generated;
    }
}

TEST_F(TexturePixels, EveryFaceOfACubeWhereItBelongs)
{
    static const float kDirections[6][3] = {{1, 0.1f, 0.1f},  {-1, 0.1f, 0.1f}, {0.1f, 1, 0.1f},
                                            {0.1f, -1, 0.1f}, {0.1f, 0.1f, 1},  {0.1f, 0.1f, -1}};
    std::vector<std::unique_ptr<TestMap>> maps;
    TpixelMap* faces[6];
    Texel colours[6];
    for (int i = 0; i < 6; ++i) {
        colours[i] = {40 * i, 250 - 30 * i, 100 + 10 * i, 255};
        maps.push_back(std::make_unique<TestMap>(4 + i, 4, i % 2 ? 3 : 4, i < 3, &colours[i]));
        faces[i] = maps.back().get();
    }
    TglTextureObject texture(6); // the side: no power of two
    texture.setFlag(TglTextureObject::kMipmaps, true);
    ASSERT_TRUE(texture.texImageCubeMap(faces));
    texture.setGenMode(TglContext::kGenCubeNone);
    for (int i = 0; i < 6; ++i)
        expectNear(colours[i], sample(texture, kDirections[i][0], kDirections[i][1], kDirections[i][2]), 1);
}

namespace {

/** Uploads the part of a map that it is asked for. */
class MapUpdater : public TglTexObjUpdater
{
public:
    explicit MapUpdater(TpixelMap& map) : fMap(map) {}

    void update(const TglTextureObject&, int x, int y, int width, int height, unsigned reserved) override
    {
        fCalls.push_back({x, y, width, height, int(reserved)});
        const int w = std::min(width, fMap.width() - x);
        const int h = std::min(height, fMap.height() - y);
        glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, fMap.width());
        glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, w, h, GL_RGBA, GL_UNSIGNED_BYTE,
                        fMap.pixels() + (y * fMap.width() + x) * 4);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
    }

    std::vector<std::array<int, 5>> fCalls;

private:
    TpixelMap& fMap;
};

} // namespace

TEST_F(TexturePixels, ADirtyRectangleUpdatesThoseTexelsAndNoOthers)
{
    const Texel before = {10, 20, 30, 255}, after = {200, 100, 50, 255};
    TestMap map(100, 64, 4, true, &before);
    TglTextureObject texture(&map, 0, false);
    texture.setFilters(TglContext::kNearest, TglContext::kNearest);
    auto* updater = new MapUpdater(map);
    texture.setTextureUpdater(updater);
    texture.setTextureUpdater(updater); // the same one again
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 100; ++x)
            map.set(x, y, after);
    texture.changed(70, 80, 3, 4);
    texture.changed(97, 99, 0, 32);
    texture.apply(&port(), 0);
    texture.apply(&port(), 0);
    EXPECT_EQ((std::vector<std::array<int, 5>>{{64, 0, 64, 32, 0}}), updater->fCalls);
    std::vector<GLubyte> got(100 * 64 * 3);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, got.data());
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 100; ++x)
            ASSERT_EQ(x >= 64 && y < 32 ? 200 : 10, got[std::size_t((y * 100 + x) * 3)]) << x << ' ' << y;
}
