#include "Graphics/3dPort/T3dPort.h"

#include <gtest/gtest.h>

namespace {

constexpr int kAny = -1;

struct Row
{
    int a2, a3, a4, a5, a6, a7, n;
    unsigned code;
};

// n is 0, 1 or, as 2, any other.
const Row kRows[] = {
    {0, 0, kAny, kAny, kAny, kAny, kAny, 1}, {0, 1, 0, kAny, kAny, kAny, kAny, 3},
    {0, 1, 1, 0, kAny, kAny, kAny, 6},       {0, 1, 1, 1, kAny, kAny, kAny, 7},
    {1, 0, kAny, kAny, kAny, kAny, 0, 0},    {1, 0, kAny, kAny, kAny, kAny, 1, 8},
    {1, 0, kAny, kAny, kAny, kAny, 2, 9},    {1, 1, 1, 1, 0, kAny, kAny, 11},
    {1, 1, 1, 1, 1, kAny, kAny, 14},         {1, 1, 1, 0, 0, kAny, kAny, 10},
    {1, 1, 1, 0, 1, kAny, kAny, 15},         {1, 1, 0, 1, 1, kAny, kAny, 13},
    {1, 1, 0, 1, 0, 0, kAny, 12},            {1, 1, 0, 1, 0, 1, kAny, 17},
    {1, 1, 0, 0, 1, kAny, kAny, 16},         {1, 1, 0, 0, 0, kAny, kAny, 2},
};

bool fits(int wanted, int given)
{
    return wanted == kAny || wanted == given;
}

} // namespace

TEST(ContextType, FollowsFromTheBuffersAndGivesThemBack)
{
    for (int bits = 0; bits < 128; ++bits) {
        const auto flag = [bits](int a) { return bits >> (a - 1) & 1; };
        for (const int n : {0, 1, 2, 65535}) {
            const unsigned code = T3dPort::getContextType(flag(1), flag(2), flag(3), flag(4), flag(5), flag(6),
                                                          flag(7), static_cast<unsigned short>(n));
            int rows = 0;
            for (const Row& row : kRows) {
                if (!fits(row.a2, flag(2)) || !fits(row.a3, flag(3)) || !fits(row.a4, flag(4)) ||
                    !fits(row.a5, flag(5)) || !fits(row.a6, flag(6)) || !fits(row.a7, flag(7)) ||
                    !fits(row.n, n < 2 ? n : 2))
                    continue;
                ++rows;
                EXPECT_EQ(code, row.code) << "flags " << bits << ", n " << n;
            }
            EXPECT_EQ(rows, 1);

            // Flags that the code does not depend on are not among its capabilities.
            const bool both = flag(2) && flag(3);
            unsigned capabilities = 0;
            capabilities |= flag(3) ? 0x8 : 0;
            capabilities |= flag(2) ? 0x10 : 0;
            capabilities |= flag(3) && flag(4) ? 0x20 : 0;
            capabilities |= flag(3) && flag(5) && (both || flag(4)) ? 0x40 : 0;
            capabilities |= both && flag(6) ? 0x80 : 0;
            capabilities |= both && !flag(4) && flag(5) && !flag(6) && flag(7) ? 0x100 : 0;
            for (const bool marked : {false, true}) {
                const TglContext context(code, marked);
                EXPECT_EQ(context.fDirtyBits.value(), capabilities | (marked ? 0x1000 : 0)) << "code " << code;
                EXPECT_EQ(context.fIndexBufferCount, code == 8 ? 1 : code == 9 ? 2 : 0);
            }
        }
    }
    for (const unsigned code : {4u, 5u, 18u, 100000u, 0xFFFFFFFFu})
        EXPECT_EQ(TglContext(code, false).fDirtyBits.value(), 0u);
}
