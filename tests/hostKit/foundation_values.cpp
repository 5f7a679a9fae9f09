#include "foundation/Taction.h"
#include "foundation/TbitField64.h"
#include "foundation/TbitFieldFixedN.h"
#include "foundation/TcountedPtr.h"
#include "foundation/Tevent.h"
#include "foundation/TmtRefCounter.h"
#include "foundation/TportColor.h"
#include "foundation/TportRect.h"
#include "foundation/TsharedObject.h"
#include "foundation/TstringArray.h"
#include "foundation/mmapAlloc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <thread>
#include <vector>

TEST(Tarray, RefusesPositionsThatDoNotExist)
{
    TuInt32Array a(8);
    EXPECT_EQ(a.length(), 0u);
    EXPECT_FALSE(a.insert(1, 5));
    EXPECT_FALSE(a.remove(0));
    EXPECT_FALSE(a.removeLast());
    EXPECT_TRUE(a.insert(0, 20));
    EXPECT_TRUE(a.insert(0, 10));
    EXPECT_TRUE(a.insert(2, 30));
    EXPECT_FALSE(a.remove(3));
    EXPECT_FALSE(a.swap(0, 3));
    EXPECT_FALSE(a.swap(std::numeric_limits<unsigned>::max(), 0));
    EXPECT_FALSE(a.removeLast(4));
    EXPECT_EQ(a.length(), 3u);
    EXPECT_TRUE(a.swap(0, 2));
    EXPECT_TRUE(a.swap(1, 1));
    EXPECT_EQ(a[0], 30u);
    EXPECT_EQ(a[1], 20u);
    EXPECT_EQ(a.last(), 10u);
    EXPECT_EQ(a.find(10), 2);
    EXPECT_EQ(a.find(11), -1);
    EXPECT_TRUE(a.removeLast(2));
    EXPECT_FALSE(a.removeItem(10));
    EXPECT_TRUE(a.removeItem(30));
    EXPECT_TRUE(a.isEmpty());
    a.setLength(2);
    EXPECT_EQ(a[1], 0u);
}

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

    Tcounted uncounted(alive);
    EXPECT_FALSE(TcountedPtr<Tcounted>() == &uncounted);
    EXPECT_EQ(alive, 1);
}

TEST(TmtRefCounter, NeverBelowZeroAndExactAcrossThreads)
{
    TmtRefCounter counter;
    EXPECT_EQ(counter.remove(), 0);
    EXPECT_EQ(counter.add(), 1);
    EXPECT_EQ(counter.remove(), 0);
    EXPECT_EQ(counter.remove(), 0);
    EXPECT_EQ(counter.count(), 0);

    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&counter] {
            for (int k = 0; k < 20000; ++k) {
                counter.add();
                counter.add();
                counter.remove();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter.count(), 80000);
}

TEST(TbitField, MasksStayInsideTheField)
{
    TbitFieldFixedN six(6);
    six.set(0xFFFFFFFFu);
    EXPECT_EQ(six.value(), 0x3Fu);
    six.assign(0x41, false);
    EXPECT_EQ(six.value(), 0x3Eu);
    EXPECT_FALSE(six.test(0x41));
    EXPECT_TRUE(six.test(0x3));
    six.resize(2);
    six.resize(8);
    EXPECT_EQ(six.value(), 0x2u);
    TbitFieldFixedN wide(40);
    wide.setAll();
    EXPECT_EQ(wide.size(), 32u);
    EXPECT_EQ(wide.value(), 0xFFFFFFFFu);
    TbitFieldFixedN none;
    none.setAll();
    EXPECT_EQ(none.value(), 0u);

    TbitField64 flags;
    flags.assign(std::uint64_t(1) << 63 | 1, true);
    flags.clear(1);
    EXPECT_TRUE(flags.test(std::uint64_t(1) << 63 | 1));
    EXPECT_EQ(flags.value(), std::uint64_t(1) << 63);
}

TEST(TportRect, CommonAreaAndWrappingSize)
{
    const TportRect r(0, 0, 10, 10);
    struct Tcase {
        TportRect other;
        TportRect common;
    };
    const Tcase cases[] = {
        {{5, 6, 20, 20}, {5, 6, 10, 10}},
        {{-5, -5, 20, 20}, r},
        {{2, 3, 4, 5}, {2, 3, 4, 5}},
        {{10, 0, 20, 10}, {}}, // edges touch
        {{0, -8, 10, 0}, {}},
        {{5, 5, 5, 9}, {}}, // empty
        {{8, 8, 2, 2}, {}}, // inside out
        {{-32768, -32768, 32767, 32767}, r},
    };
    for (const Tcase& each : cases) {
        EXPECT_EQ(r.intersect(each.other), each.common);
        EXPECT_EQ(each.other.intersect(r), each.common);
        EXPECT_EQ(r.intersects(each.other), !each.common.isEmpty());
    }
    EXPECT_EQ(TportRect(-32768, 0, 32767, 0).width(), -1);
    EXPECT_EQ(TportRect(0, 32767, 0, -32768).height(), 1);

    short memory[4];
    const TportRect order(1, 2, 3, 4);
    std::memcpy(memory, &order, sizeof memory);
    for (short i = 0; i < 4; ++i)
        EXPECT_EQ(memory[i], i + 1);
}

TEST(TportColor, HueSaturationValue)
{
    struct Tcase {
        TportColor rgb;
        float hsv[3];
    };
    const Tcase cases[] = {
        {{1, 0, 0}, {0, 1, 1}},
        {{1, 1, 0}, {1 / 6.0f, 1, 1}},
        {{0, 0.5f, 0}, {1 / 3.0f, 1, 0.5f}},
        {{0, 1, 1}, {0.5f, 1, 1}},
        {{0.25f, 0.25f, 0.5f}, {2 / 3.0f, 0.5f, 0.5f}},
        {{1, 0, 1}, {5 / 6.0f, 1, 1}},
        {{0.5f, 0.5f, 0.5f}, {0, 0, 0.5f}},
        {kCblack, {0, 0, 0}},
    };
    for (const Tcase& each : cases) {
        float out[3] = {-1, -1, -1};
        ASSERT_TRUE(each.rgb.get(TportColor::kModelHsv, out));
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(out[i], each.hsv[i], 1e-6f) << i;
        ASSERT_TRUE(each.rgb.get(TportColor::kModelRgb, out));
        EXPECT_EQ(TportColor(out[0], out[1], out[2]), each.rgb);
        EXPECT_FALSE(each.rgb.get(2, out));
    }
    EXPECT_NE(kCtransparent, kCblack);
}

TEST(Tevent, SubclassesSayWhatHappenedWhere)
{
    struct Tcase {
        Tevent event;
        unsigned type;
        bool pressed;
    };
    const Tcase cases[] = {
        {TpressEvent({3, -4}, kAlt, 1024), Tevent::kPress, true},
        {TdragEvent({3, -4}, kAlt, 1024), Tevent::kDrag, true},
        {TreleaseEvent({3, -4}, kAlt, 1024), Tevent::kRelease, false},
    };
    for (const Tcase& each : cases) {
        EXPECT_EQ(each.event.type(), each.type);
        EXPECT_EQ(each.event.isPressed(), each.pressed);
        EXPECT_EQ(each.event.modifiers(), 8u);
        EXPECT_EQ(each.event.button(), 1024);
        EXPECT_EQ(each.event.getLocalPosition(), (Tpoint{3, -4}));
        EXPECT_EQ(each.event.getLocalPosition(7), (Tpoint{3, -4}));
        EXPECT_EQ(each.event.getGlobalPosition(), Tpoint());
        EXPECT_FALSE(each.event.hasPrimaryPointer());
    }
}

TEST(TfunctionAction, ResultIsTheFunctionsAndTrueForNone)
{
    int runs = 0;
    TfunctionAction silent([&runs](const Tevent&) { ++runs; });
    TfunctionAction picky([](const Tevent& event) { return event.type() == Tevent::kPress; });
    TfunctionAction empty{std::function<bool(const Tevent&)>()};
    EXPECT_TRUE(silent.run(Tevent()));
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(picky.run(Tevent(Tevent::kPress)));
    EXPECT_FALSE(picky.run(Tevent()));
    EXPECT_FALSE(empty.run(Tevent()));
}

TEST(MmapAlloc, GivesZeroedMemoryOrNull)
{
    constexpr std::size_t kSize = 3 * 4096 + 17;
    auto* const memory = static_cast<unsigned char*>(mmapAlloc(kSize));
    ASSERT_TRUE(memory);
    EXPECT_EQ(std::count(memory, memory + kSize, 0), static_cast<std::ptrdiff_t>(kSize));
    std::memset(memory, 1, kSize);
    mmapFree(memory, kSize);
    EXPECT_EQ(mmapAlloc(0), nullptr);
    EXPECT_EQ(mmapAlloc(std::numeric_limits<std::size_t>::max() / 2), nullptr);
    mmapFree(nullptr, 5);
}
