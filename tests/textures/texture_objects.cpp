// Texture names, arrays, the registry, and input that is no good.

#include "textures/TestMap.h"

#include "3dPort/Calls.h"

#include "Graphics/textures/TglTextureObjectArray.h"
#include "foundation/mmapAlloc.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using TextureObjects = ShownPort;

bool gAllocationFails = false;

} // namespace

// The test program's come before the kit's.
void* mmapAlloc(std::size_t size, const char*)
{
    return gAllocationFails ? nullptr : std::calloc(size, 1);
}

void mmapFree(void* memory, std::size_t)
{
    std::free(memory);
}

TEST_F(TextureObjects, CopiesShareNamesUntilTheLastGoes)
{
    TestMap map(4, 4);
    auto first = std::make_unique<TglTextureObject>(&map, 0, false);
    first->setScale(TportColor(2, 1, 1, 1));
    auto second = std::make_unique<TglTextureObject>(*first);
    TglTextureObject third(&map, 0, false);
    const GLuint replaced = third.textureNames()[0]->name(), name = first->textureNames()[0]->name();
    third = *first;
    EXPECT_FALSE(glIsTexture(replaced));
    EXPECT_EQ(2, second->scale().r);
    EXPECT_EQ(1, third.scale().r);
    EXPECT_TRUE(third == *first && third == *second);
    GlRecorder recorder;
    recorder.start();
    first.reset();
    third = third;
    third = TglTextureObject();
    EXPECT_TRUE(glIsTexture(name));
    second.reset();
    EXPECT_EQ(1, recorder.count("glDeleteTextures"));
    EXPECT_FALSE(glIsTexture(name));
}

TEST(TextureNames, OutliveThePorts)
{
    auto port = std::make_unique<PortWindow<>>(40, 30), other = std::make_unique<PortWindow<>>(40, 30);
    ASSERT_TRUE(port->show() && other->show());
    port->port().setCurrentContext();
    TestMap map(4, 4);
    auto texture = std::make_unique<TglTextureObject>(&map, 0, false);
    GlRecorder recorder;
    recorder.start();
    port.reset(); // no context is current then
    texture.reset();
    EXPECT_EQ(1, recorder.count("glDeleteTextures"));
    other.reset(); // all contexts go
    EXPECT_TRUE(TglTextureObject(&map, 0, false).textureNames().isEmpty());
}

TEST_F(TextureObjects, RegistryArraysAndMemory)
{
    TestMap map(4, 2), opaque(2, 2);
    {
        TglTextureObject a(&map, 0, true), b(a), c(&opaque, 0, false);
        EXPECT_EQ(&c, TglTextureObject::fsTextureObjects[2]);
        EXPECT_EQ(2u * 4 * 2 * 4 + 2 * 2 * 3, TglTextureObject::textureMemoryUsage());
        TglTextureObjectArray array;
        const TglTextureObject run[] = {a, c, TglTextureObject(&map, 0, false)};
        array.addLast(run, 3);
        array[1].setScale(TportColor(3, 1, 1, 1)); // stays with the place
        array.insert(array[2], 0);
        EXPECT_TRUE(array[0] == run[2] && array[1] == a && array[2] == c);
        EXPECT_EQ(3, array[1].scale().r);
        for (int i = 0; i < 5; ++i)
            array.addLast(array.data() + 1, 2);
        EXPECT_TRUE(array[12] == a && array[13] == c);
        array.remove(array[0]);
        array.construct(12, 15);
        array.destruct(13, 14);
        array.copy(array);
        EXPECT_EQ(14u, array.length());
        EXPECT_EQ(20u, TglTextureObject::fsTextureObjects.length());
        for (TglTextureObject& element : array)
            EXPECT_EQ(0, TglTextureObject::fsTextureObjects.find(&element));
    }
    unsigned index = 3;
    EXPECT_EQ(-1, TglTextureObject::fsTextureObjects.find(nullptr, index));
    EXPECT_EQ(0u, index);
}

TEST_F(TextureObjects, InputThatIsNoGoodUploadsNothing)
{
    TestMap map(4, 4);
    TpixelMap empty;
    TglTextureObject texture, negative(-5);
    unsigned pixel = 0;
    GlRecorder recorder;
    recorder.start();
    texture.texImage2D(nullptr, false, 0);
    texture.texImage2D(&empty, false, 0);
    texture.texImage2D(4, 4, nullptr, 4, 0);
    for (const int bad : {0, -1, 65535, 65536, 0x7FFFFFFF})
        texture.texImage2D(bad, 65535, &pixel, 4, 0);
    texture.texImage2D(1, 1, &pixel, 4, 0xFFFFFFFFu);
    texture.texImageSphereMap(nullptr, false);
    texture.texImageSphereMap(&empty, false);
    negative.texImage2D(&map, false, 0);
    texture.setPixelMap(TsharedPixelMap(2, 2), 0);
    texture.setPixelMap(texture.pixelMaps()[0], 9); // an entry of the array that grows
    texture.setPixelMap(TsharedPixelMap(), 0xFFFFFFFFu);
    EXPECT_EQ(texture.pixelMaps()[0], texture.pixelMaps()[9]);
    TpixelMap* faces[] = {&map, &map, &map, nullptr, &map, &map};
    EXPECT_FALSE(texture.texImageCubeMap(faces));
    EXPECT_FALSE(texture.texImageCubeMap(nullptr));
    texture.apply(&port(), 0);
    texture.apply(nullptr, 0);
    EXPECT_EQ(0, recorder.count("glTexImage2D") + recorder.count("glBindTexture"));

    // A face without pixels gives the texture up; the entry stays null until the next upload.
    faces[3] = &empty;
    EXPECT_FALSE(texture.texImageCubeMap(faces));
    EXPECT_EQ(nullptr, texture.textureNames()[0]);
    TglTextureObject copy(texture), assigned(&map, 0, false);
    assigned = texture;
    assigned.apply(&port(), 0);
    texture.setTextureTarget(TglContext::kTexture2D);
    gAllocationFails = true; // the alpha stays, for want of memory to strip it
    texture.texImage2D(&map, false, 0);
    EXPECT_NE(nullptr, texture.textureNames()[0]);
    GLint alphaBits = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_ALPHA_SIZE, &alphaBits);
    EXPECT_EQ(8, alphaBits);
    EXPECT_EQ(unsigned(GL_NO_ERROR), glGetError());
}
