#include "Graphics/glResources/TglTextureUnits.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;

namespace {

std::vector<unsigned> listed(const TglTextureUnits& units)
{
    TuInt32Array out;
    out.append(99); // is appended to
    units.unlockedUnits(out);
    return std::vector<unsigned>(out.begin() + 1, out.end());
}

} // namespace

TEST(TextureUnits, CountIsSetOnce)
{
    TglTextureUnits units;
    EXPECT_EQ(units.unitCount(), 0u);
    EXPECT_TRUE(units.isUnitLocked(0)) << "a unit that does not exist";
    EXPECT_FALSE(units.lockUnit(0));
    EXPECT_TRUE(units.setUnitCount(0)) << "still not set";
    EXPECT_TRUE(units.setUnitCount(4));
    EXPECT_FALSE(units.setUnitCount(8));
    EXPECT_FALSE(units.setUnitCount(4));
    EXPECT_EQ(units.unitCount(), 4u);
}

TEST(TextureUnits, TellsTheUnitsWhoseLockIsSet)
{
    TglTextureUnits units;
    units.setUnitCount(4);
    EXPECT_EQ(units.unlockedUnitCount(), 0u);
    EXPECT_TRUE(units.lockUnit(3));
    EXPECT_TRUE(units.lockUnit(1));
    EXPECT_TRUE(units.lockUnit(1)) << "once more";
    EXPECT_THAT(listed(units), ElementsAre(1, 3));
    EXPECT_EQ(units.unlockedUnitCount(), 2u);
    EXPECT_TRUE(units.isUnitLocked(1));
    EXPECT_FALSE(units.isUnitLocked(2));

    EXPECT_TRUE(units.unlockUnit(3));
    EXPECT_TRUE(units.unlockUnit(3));
    EXPECT_THAT(listed(units), ElementsAre(1));
    for (const unsigned outside : {4u, 5u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(units.lockUnit(outside));
        EXPECT_FALSE(units.unlockUnit(outside));
        EXPECT_TRUE(units.isUnitLocked(outside));
    }
    EXPECT_THAT(listed(units), ElementsAre(1));
}
