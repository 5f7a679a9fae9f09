#include "Graphics/glResources/TglTextureUnits.h"

#include <gtest/gtest.h>

TEST(TextureUnits, AreCountedOnceAndTellTheLockedOnes)
{
    TglTextureUnits units;
    EXPECT_FALSE(units.lockUnit(0)) << "there are none yet";
    EXPECT_TRUE(units.isUnitLocked(0));
    EXPECT_TRUE(units.setUnitCount(4));
    EXPECT_FALSE(units.setUnitCount(8));
    EXPECT_EQ(units.unitCount(), 4u);

    EXPECT_TRUE(units.lockUnit(3));
    EXPECT_TRUE(units.lockUnit(1));
    EXPECT_FALSE(units.lockUnit(4));
    EXPECT_FALSE(units.unlockUnit(4));
    TuInt32Array found;
    found.append(7);
    units.unlockedUnits(found);
    ASSERT_EQ(found.length(), 3u) << "what was there stays";
    EXPECT_EQ(found[1], 1u);
    EXPECT_EQ(found[2], 3u);
    EXPECT_EQ(units.unlockedUnitCount(), 2u);
    EXPECT_TRUE(units.unlockUnit(1));
    EXPECT_FALSE(units.isUnitLocked(1));
    EXPECT_EQ(units.unlockedUnitCount(), 1u);
}
