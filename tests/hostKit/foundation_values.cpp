#include "foundation/TcountedPtr.h"
#include "foundation/TsharedObject.h"
#include "foundation/TstringArray.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(Tarray, TakesItsOwnElementsWhileItGrows)
{
    TstringArray a;
    a.append("a text that is too long to be anywhere but in memory of its own");
    a.append("second");
    for (int i = 0; i < 20; ++i) {
        a.append(a[0]);
        a.insert(0, a.last());
    }
    a.catenate(a);
    EXPECT_EQ(a.length(), 84u);
    EXPECT_EQ(std::count(a.begin(), a.end(), a[0]), 82);
    EXPECT_TRUE(a.removeItem(a[0]));
    EXPECT_EQ(a.length(), 83u);
    TstringArray copy(a);
    copy[0] = "changed";
    EXPECT_NE(a, copy);
}

namespace {

class Tcounted : public TsharedObject
{
public:
    explicit Tcounted(int& alive) : fAlive(alive) { ++fAlive; }
    Tcounted(const Tcounted& other) : TsharedObject(other), fAlive(other.fAlive) { ++fAlive; }
    ~Tcounted() override { --fAlive; }

    TcountedPtr<Tcounted> fNext;

private:
    int& fAlive;
};

} // namespace

TEST(TcountedPtr, DeletesWithTheLastReference)
{
    int alive = 0;
    {
        TcountedPtr<Tcounted> a(new Tcounted(alive));
        EXPECT_TRUE(a->isCounted());
        EXPECT_FALSE(a->isShared());
        TcountedPtr<Tcounted> b = a;
        EXPECT_TRUE(a->isShared());
        const Tcounted copy(*a);
        EXPECT_FALSE(copy.isCounted());
        b = b.operator->(); // its own object
        EXPECT_EQ(a, b);
        a = nullptr;
        EXPECT_FALSE(b->isShared());
        TcountedPtr<Tcounted> c(std::move(b));
        EXPECT_FALSE(b); // NOLINT(bugprone-use-after-move)
        EXPECT_EQ(alive, 2);
        // The head is all that keeps its successor alive.
        c->fNext = new Tcounted(alive);
        c = c->fNext;
        EXPECT_EQ(alive, 2);
        EXPECT_FALSE(c->isShared());
        c.reset();
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}
