// Display lists: handles, their names and the blocks that are used again.

#include "support/PortWindow.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "Graphics/glResources/TglListId.h"

#include <gtest/gtest.h>

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
    void compile(TglDisplayList& list, GLubyte r, GLubyte g, GLubyte b)
    {
        port().newList(list, T3dPort::kCompile);
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
}

TEST_F(DisplayLists, TheLastHolderDeletesTheNames)
{
    GLuint first = 0;
    {
        TcountedPtr<TglListId> holder(new TglListId(3));
        const TcountedPtr<TglListId> another = holder;
        first = holder->first();
        for (GLuint i = 0; i < 3; ++i) {
            glNewList(first + i, GL_COMPILE);
            glEndList();
        }
        holder.reset();
        EXPECT_TRUE(glIsList(first));
    }
    for (GLuint i = 0; i < 3; ++i)
        EXPECT_FALSE(glIsList(first + i));
}

TEST_F(DisplayLists, AnUnsharedListIsCompiledAnewIntoItsName)
{
    TglDisplayList list;
    list.call();
    compile(list, 255, 0, 0);
    const GLuint name = list.name();
    compile(list, 0, 255, 0);
    EXPECT_EQ(name, list.name());
    list.call();
    EXPECT_EQ(0x00FF00u, pixelAt(3, 3));

    TglDisplayList copy = list;
    compile(copy, 0, 0, 255);
    EXPECT_NE(name, copy.name());
    EXPECT_EQ(name, list.name());
    copy.call();
    EXPECT_EQ(0x0000FFu, pixelAt(3, 3));
    list.call();
    EXPECT_EQ(0x00FF00u, pixelAt(3, 3));
}
