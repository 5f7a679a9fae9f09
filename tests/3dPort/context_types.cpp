#include "Graphics/3dPort/T3dPort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

/** The flags from the second to the seventh, and how many index buffers: 0, 1 or, as 2, any other number. */
struct Row
{
    const char* pattern;
    unsigned code;
};

const Row kRows[] = {
    {"00*****", 1},  {"010****", 3},  {"0110***", 6},  {"0111***", 7},  {"10****0", 0},  {"10****1", 8},
    {"10****2", 9},  {"11110**", 11}, {"11111**", 14}, {"11100**", 10}, {"11101**", 15}, {"11011**", 13},
    {"110100*", 12}, {"110101*", 17}, {"11001**", 16}, {"11000**", 2},
};

bool fits(const std::string& pattern, const std::string& given)
{
    return std::equal(pattern.begin(), pattern.end(), given.begin(), [](char p, char g) { return p == '*' || p == g; });
}

} // namespace

TEST(ContextType, FollowsFromTheBuffers)
{
    for (int bits = 0; bits < 128; ++bits) {
        const auto flag = [bits](int a) { return bits >> (a - 1) & 1; };
        for (const int n : {0, 1, 2, 65535}) {
            std::string given;
            for (int a = 2; a <= 7; ++a)
                given += char('0' + flag(a));
            given += char('0' + std::min(n, 2));
            const auto row =
                std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& r) { return fits(r.pattern, given); });
            EXPECT_EQ(T3dPort::getContextType(flag(1), flag(2), flag(3), flag(4), flag(5), flag(6), flag(7),
                                              static_cast<unsigned short>(n)),
                      row->code)
                << given;
        }
    }
    for (const unsigned code : {4u, 5u, 18u, 100000u, 0xFFFFFFFFu})
        EXPECT_EQ(TglContext(code, false).fDirtyBits.value(), 0u);
}
