// Texture names, arrays, the registry, and input that is no good.

#include "textures/TestMap.h"

#include "3dPort/Calls.h"

#include "Graphics/textures/TglTextureObjectArray.h"
#include "QtExtensions/Q3dPort.h"
#include "foundation/mmapAlloc.h"

#include <GL/glext.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

bool gAllocationFails = false;

TtextureName* nameOf(const TglTextureObject& texture)
{
    return texture.textureNames().isEmpty() ? nullptr : texture.textureNames()[0];
}

class TextureObjects : public ShownPort
{
};

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
    EXPECT_EQ(2, second->scale().r);
    TglTextureObject third(&map, 0, false);
    const GLuint replaced = nameOf(third)->name();
    third = *first;
    EXPECT_FALSE(glIsTexture(replaced));
    EXPECT_EQ(1, third.scale().r);
    EXPECT_TRUE(third == *first && third == *second);
    const GLuint name = nameOf(third)->name();
    GlRecorder recorder;
    recorder.start();
    first.reset();
    third = third;
    third = TglTextureObject();
    EXPECT_EQ(0, recorder.count("glDeleteTextures"));
    EXPECT_TRUE(glIsTexture(name));
    second.reset();
    EXPECT_EQ(1, recorder.count("glDeleteTextures"));
    EXPECT_FALSE(glIsTexture(name));
}

TEST(TextureNames, OutliveThePorts)
{
    auto port = std::make_unique<PortWindow<>>(40, 30);
    auto other = std::make_unique<PortWindow<>>(40, 30);
    ASSERT_TRUE(port->show() && other->show());
    port->port().setCurrentContext();
    TestMap map(4, 4);
    auto texture = std::make_unique<TglTextureObject>(&map, 0, false);
    auto copy = std::make_unique<TglTextureObject>(*texture);
    GlRecorder recorder;
    recorder.start();
    port.reset(); // no context is current then
    texture.reset();
    EXPECT_EQ(0, recorder.count("glDeleteTextures"));
    copy.reset();
    EXPECT_EQ(1, recorder.count("glDeleteTextures"));
    other.reset(); // all contexts go
    EXPECT_TRUE(TglTextureObject(&map, 0, false).textureNames().isEmpty());
}

TEST_F(TextureObjects, RegistryAndMemory)
{
    EXPECT_EQ(0u, TglTextureObject::fsTextureObjects.length());
    TestMap map(4, 2), opaque(2, 2);
    {
        TglTextureObject a(&map, 0, true), b(a), c(&opaque, 0, false);
        EXPECT_EQ(&c, TglTextureObject::fsTextureObjects[2]);
        EXPECT_EQ(2u * 4 * 2 * 4 + 2 * 2 * 3, TglTextureObject::textureMemoryUsage());
        TglTextureObjectArray array;
        for (int i = 0; i < 9; ++i)
            array.insert(i % 2 ? a : c, 0);
        array.insert(array[3], 1);
        array.remove(array[0]);
        array.construct(8, 12);
        array.destruct(10, 11);
        array.copy(array);
        EXPECT_EQ(11u, array.length());
        EXPECT_EQ(14u, TglTextureObject::fsTextureObjects.length());
        for (unsigned i = 0; i < array.length(); ++i)
            EXPECT_NE(-1, TglTextureObject::fsTextureObjects.find(&array[i]));
    }
    EXPECT_EQ(0u, TglTextureObject::fsTextureObjects.length());
}

TEST_F(TextureObjects, ArrayElementsMoveByAssignment)
{
    TestMap map(2, 2);
    TglTextureObjectArray array;
    TglTextureObject textures[3] = {{&map, 0, false}, {&map, 0, false}, {&map, 0, false}};
    array.addLast(textures, 3);
    array[1].setScale(TportColor(3, 1, 1, 1));
    array.insert(array[2], 0);
    EXPECT_TRUE(array[0] == textures[2] && array[1] == textures[0] && array[2] == textures[1]);
    EXPECT_EQ(3, array[1].scale().r);
    array.addLast(array.data() + 1, 2);
    EXPECT_TRUE(array[4] == textures[0] && array[5] == textures[1]);
}

TEST(TextureArrays, PointersAreFoundInsertedAndRun)
{
    unsigned index = 3;
    EXPECT_EQ(-1, TtextureNamePtrArray().find(nullptr, index));
    EXPECT_EQ(0u, index);
    int objects[8];
    const auto object = [&](int i) { return reinterpret_cast<TglTextureObject*>(&objects[i]); };
    TglTextureObjectPtrArray a(8), b(8);
    for (int i = 0; i < 8; ++i)
        a.addLast(object(i));
    a.insert(a[7], 2); // full, and its own element
    b.copy(a, 2, 2);
    b.catenate(b, 1);
    b.createAndSet(4, object(1));
    a.swap(b);
    EXPECT_EQ((std::vector<TglTextureObject*>{object(7), object(2), object(7), nullptr, object(1)}),
              std::vector<TglTextureObject*>(a.begin(), a.end()));
    EXPECT_EQ(-1, a.remove(object(5)));
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
    for (const int bad : {0, -1, 65536, 0x7FFFFFFF})
        texture.texImage2D(bad, 0x7FFFFFFF, &pixel, 4, 0);
    texture.texImage2D(1, 1, &pixel, 4, 0xFFFFFFFFu);
    texture.texImageSphereMap(nullptr, false);
    texture.texImageSphereMap(&empty, false);
    negative.texImage2D(&map, false, 0);
    texture.setPixelMap(TsharedPixelMap(), 0xFFFFFFFFu);
    TpixelMap* missing[] = {&map, &map, &map, nullptr, &map, &map};
    EXPECT_FALSE(texture.texImageCubeMap(missing));
    EXPECT_FALSE(texture.texImageCubeMap(nullptr));
    texture.apply(&port(), 0);
    texture.apply(nullptr, 0);
    EXPECT_EQ(0, recorder.count("glTexImage2D") + recorder.count("glBindTexture"));

    // A face without pixels gives the texture up; the entry stays null until the next upload.
    TpixelMap* faces[] = {&map, &map, &map, &empty, &map, &map};
    EXPECT_FALSE(texture.texImageCubeMap(faces));
    EXPECT_EQ(1u, texture.textureNames().length());
    EXPECT_EQ(nullptr, nameOf(texture));
    TglTextureObject copy(texture), assigned(&map, 0, false);
    assigned = texture;
    assigned.apply(&port(), 0);
    texture.setTextureTarget(TglContext::kTexture2D);
    texture.texImage2D(&map, false, 0);
    EXPECT_NE(nullptr, nameOf(texture));

    recorder.stop();
    recorder.start();
    gAllocationFails = true; // the alpha stays, for want of memory to strip it
    const TglTextureObject kept(&map, 0, false);
    gAllocationFails = false;
    ASSERT_EQ(1, recorder.count("glTexImage2D"));
    int width, height, components;
    TglTextureObject::TtextureFormat format;
    TglTextureObject::TtextureType type;
    EXPECT_EQ(0, kept.getTextureInfo(width, height, components, format, type, 0));
    EXPECT_EQ(4, components);
    EXPECT_EQ(unsigned(GL_NO_ERROR), glGetError());
}
