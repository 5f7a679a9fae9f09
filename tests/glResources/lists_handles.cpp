// Display lists: handles, their names and the blocks that are used again.

#include "support/GlRecorder.h"
#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "Graphics/glResources/TglListId.h"
#include "Graphics/glResources/Timage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace {

constexpr int kPool = 32;

GLuint pixelAt(int x, int y)
{
    GLubyte c[4] = {};
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, c);
    return GLuint(c[0]) << 16 | GLuint(c[1]) << 8 | c[2];
}

class DisplayLists : public testing::Test
{
protected:
    DisplayLists() : fWindow(30, 20)
    {
        EXPECT_TRUE(fWindow.show());
        port().setCurrentContext();
    }

    T3dPort& port() { return fWindow.port(); }

    /** A list that colours the whole port. */
    void compile(TglDisplayList& list, GLubyte r, GLubyte g, GLubyte b, T3dPort::TdisplayListMode mode = T3dPort::kCompile)
    {
        port().newList(list, mode);
        glColor3ub(r, g, b);
        glRectd(-1, -1, 1, 1);
        port().endList();
    }

    PortWindow<> fWindow;
};

} // namespace

TEST_F(DisplayLists, ABlockGivenBackIsUsedAgainTheYoungestFirst)
{
    std::vector<TglListId*> made;
    for (int i = 0; i < kPool + 8; ++i)
        made.push_back(new TglListId(0));
    for (TglListId* list : made)
        delete list;
    std::vector<TglListId*> again;
    for (int i = 0; i < kPool; ++i)
        again.push_back(new TglListId(0));
    // Of forty, the first thirty-two given back were kept.
    EXPECT_EQ(std::vector<TglListId*>(made.rend() - kPool, made.rend()), again);
    for (TglListId* list : again)
        delete list;

    // Another size is no such block.
    class Larger : public TglListId
    {
    public:
        Larger() : TglListId(0) {}
        char fMore[64] = {};
    };
    TglListId* larger = new Larger;
    EXPECT_EQ(again.end(), std::find(again.begin(), again.end(), larger));
    delete larger;
    TglListId* const last = new TglListId(0);
    EXPECT_EQ(again.back(), last);
    delete last;
}

TEST_F(DisplayLists, TheLastHolderDeletesTheNames)
{
    GLuint first = 0;
    {
        TcountedPtr<TglListId> holder(new TglListId(3));
        const TcountedPtr<TglListId> another = holder;
        first = holder->first();
        EXPECT_EQ(3, holder->count());
        for (GLuint i = 0; i < 3; ++i) {
            glNewList(first + i, GL_COMPILE);
            glEndList();
        }
        holder.reset();
        EXPECT_TRUE(glIsList(first));
    }
    for (GLuint i = 0; i < 3; ++i)
        EXPECT_FALSE(glIsList(first + i));

    GlRecorder recorder;
    recorder.start();
    for (const int count : {0, -1, -2147483647}) {
        const TcountedPtr<TglListId> none(new TglListId(count));
        EXPECT_EQ(0u, none->first());
    }
    recorder.stop();
    EXPECT_EQ("", recorder.text());
}

TEST_F(DisplayLists, AnUnsharedListIsCompiledAnewIntoItsName)
{
    TglDisplayList list;
    EXPECT_FALSE(list.isCompiled());
    EXPECT_EQ(0u, list.name());
    list.call();
    compile(list, 255, 0, 0);
    const GLuint name = list.name();
    compile(list, 0, 255, 0);
    EXPECT_EQ(name, list.name());
    list.call();
    EXPECT_EQ(0x00FF00u, pixelAt(3, 3));

    TglDisplayList copy = list;
    EXPECT_EQ(name, copy.name());
    compile(copy, 0, 0, 255);
    EXPECT_NE(name, copy.name());
    EXPECT_EQ(name, list.name());
    copy.call();
    EXPECT_EQ(0x0000FFu, pixelAt(3, 3));
    list.call();
    EXPECT_EQ(0x00FF00u, pixelAt(3, 3));

    // Alone again, the name is kept.
    copy = TglDisplayList();
    compile(list, 255, 255, 0, T3dPort::kCompileAndExecute);
    EXPECT_EQ(name, list.name());
    EXPECT_EQ(0xFFFF00u, pixelAt(3, 3));
}

TEST_F(DisplayLists, TheCallsOfCompiling)
{
    TglDisplayList list;
    GlRecorder recorder;
    recorder.start();
    port().newList(list, T3dPort::kCompileAndExecute);
    port().endList();
    port().newList(list, T3dPort::kCompile);
    port().endList();
    recorder.stop();
    const std::string name = std::to_string(list.name());
    EXPECT_THAT(recorder.calls(),
                testing::ElementsAre("glGenLists(1)", "glNewList(" + name + ", GL_COMPILE_AND_EXECUTE)", "glEndList()",
                                     "glNewList(" + name + ", GL_COMPILE)", "glEndList()"));
}

TEST_F(DisplayLists, ANameThatWasNotToBeHadIsAskedForAgain)
{
    TglDisplayList list;
    GlRecorder::failNext("glGenLists", 1);
    port().newList(list, T3dPort::kCompile);
    port().endList();
    GlRecorder::resetOverrides();
    glGetError();
    EXPECT_EQ(0u, list.name());
    compile(list, 255, 0, 255);
    list.call();
    EXPECT_EQ(0xFF00FFu, pixelAt(3, 3));
    EXPECT_EQ(GLenum(GL_NO_ERROR), glGetError());
}

TEST_F(DisplayLists, AListOutlivesThePortThatMadeIt)
{
    TglDisplayList list;
    {
        PortWindow<> other(20, 20);
        ASSERT_TRUE(other.show());
        other.port().newList(list, T3dPort::kCompile);
        glColor3ub(0, 255, 255);
        glRectd(-1, -1, 1, 1);
        other.port().endList();
    }
    port().setCurrentContext();
    list.call();
    EXPECT_EQ(0x00FFFFu, pixelAt(3, 3));
}

TEST(DisplayListsOfNobody, GoWithoutAContext)
{
    auto window = std::make_unique<PortWindow<>>(20, 20);
    ASSERT_TRUE(window->show());
    auto list = std::make_unique<TglDisplayList>();
    window->port().newList(*list, T3dPort::kCompile);
    window->port().endList();
    window.reset();
    GlRecorder recorder;
    recorder.start();
    list.reset();
    const TcountedPtr<TglListId> late(new TglListId(1));
    recorder.stop();
    EXPECT_EQ(0, recorder.count("glDeleteLists"));
    EXPECT_EQ(0u, late->first());
}

TEST(DisplayListsOfNobody, AnImageFreesItsPixels)
{
    // The leak sanitizer watches.
    Timage image;
    image.right = 4;
    image.top = 2;
    image.fPixels = std::malloc(4 * 2 * 4);
    EXPECT_EQ(4, image.width());
}
