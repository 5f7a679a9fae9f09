// Colour tables: planes and hardware indices, the model-view table and its guards, colours by index.

#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/glResources/XColorArray.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

const TportColor kRed{1, 0, 0, 1};
const TportColor kGreen{0, 1, 0, 1};

TportColor sent()
{
    TportColor c;
    glGetFloatv(GL_CURRENT_COLOR, &c.r);
    return c;
}

} // namespace

TEST(ColorTables, PlanesDivideTheTableAndItsHardwareIndices)
{
    const struct
    {
        unsigned short bitsB, bitsC, bitsA;
        struct
        {
            short first;
            int hardware; ///< of the second entry, less the base
            unsigned cells;
        } planes[3]; ///< of buffers 4, 2 and 1; no cells for an empty one
        unsigned size;
    } cases[] = {
        {5, 5, 1, {{0, 1, 1}, {2, 2 << 1, 3}, {33, 2 << 6, 34}}, 64},
        {3, 2, 0, {{0, 0, 0}, {0, 1, 1}, {8, 2 << 3, 9}}, 11},
        {0, 0, 0, {}, 0},
    };
    TglColorTable table(7);
    for (const auto& each : cases) { // one table, so that each topology has to clear what the one before left
        SCOPED_TRACE(std::to_string(each.bitsB) + ' ' + std::to_string(each.bitsC) + ' ' + std::to_string(each.bitsA));
        table.setColorTableTopology(2048, each.bitsB, each.bitsC, each.bitsA);
        ASSERT_EQ(table.size(), each.size);
        EXPECT_EQ(table.hardwareIndex(1), 0);
        const TindexBuffer buffers[] = {4, 2, 1};
        for (int i = 0; i < 3; ++i) {
            const auto& plane = each.planes[i];
            EXPECT_EQ(table.firstIndex(buffers[i]), plane.first);
            if (plane.cells == 0)
                continue;
            const auto second = short(plane.first + 1);
            const TportColor c(float(i + 1) / 4, float(each.size) / 64, 2.0f, 1);
            table.setColorTable(second, c);
            EXPECT_EQ(table.hardwareIndex(second), 2048 + plane.hardware);
            const XColorArray& cells = TglColorTable::storedColors();
            ASSERT_EQ(cells.length(), plane.cells);
            EXPECT_EQ(cells[0].pixel, unsigned(2048 + plane.hardware));
            EXPECT_EQ(cells.last().pixel, unsigned(2048 + plane.hardware + plane.first));
            EXPECT_EQ(cells[0].red, (i + 1) * 65535 / 4);
            EXPECT_EQ(cells[0].blue, 65535) << "held at full";
            EXPECT_EQ(table.colorIndex(c, buffers[i]), second);
            EXPECT_EQ(table.colorIndex({0.9f, 0, 0, 1}, buffers[i]), plane.first) << "not found";
        }
    }
}

TEST(ColorTables, TakeAnyIndexAndColour)
{
    bool created = false;
    TglColorTable& table = *T3dPort::getColorTable(9, created);
    table.setColorTable(2, kRed);
    table.setColorTable(short(-1), table.colorRGB(2)); // 65535
    EXPECT_EQ(table.colorRGB(-1), kRed);
    EXPECT_EQ(table.colorIndex({1, 0, 0, 0.5f}, 7), 1) << "opacity counts";
    table.setColorTableTopology(0, 65535, 65535, 65535);
    for (const int i : {0, 32768, 65535, 98300})
        table.setColorTable(short(i), {NAN, INFINITY, -1, 1});
    table.setColorTableTopology(2048, 1, 1, 1);
    table.setColorTable(short(20), kRed); // in no plane
    EXPECT_EQ(table.hardwareIndex(20), 2068);
    const auto copy = T3dPort::pushCopyModelViewColorTable();
    EXPECT_EQ(T3dPort::colorTable(20), kRed) << "of the table that took the model view's base";
}

TEST(ColorTables, GuardsNestAndRestoreInAnyOrder)
{
    EXPECT_EQ(T3dPort::colorTable(0), kCblack);
    bool created = false;
    TglColorTable* table = T3dPort::getColorTable(2048, created);
    EXPECT_TRUE(created);
    EXPECT_EQ(T3dPort::getColorTable(2048, created), table);
    EXPECT_FALSE(created);
    T3dPort::setColorTable(5, kRed);
    {
        const auto copy = T3dPort::pushCopyModelViewColorTable();
        EXPECT_EQ(T3dPort::colorTable(5), kRed);
        T3dPort::setColorTable(5, kGreen);
        EXPECT_EQ((T3dPort::pushModelViewColorTable(), T3dPort::colorTable(5)), kRed);
        EXPECT_EQ(T3dPort::colorTable(5), kGreen);
    }
    EXPECT_EQ(T3dPort::colorTable(5), kRed);

    auto outer = T3dPort::pushCopyModelViewColorTable();
    T3dPort port(nullptr, "testPort", false); // takes the table in force
    auto inner = T3dPort::pushCopyModelViewColorTable();
    const T3dPort::ColorTableGuard none(nullptr);
    T3dPort::getModelViewColorTable()->setColorTableTopology(3, 1, 1, 1); // no longer of the base it was put in for
    outer.reset();
    inner.reset();
    EXPECT_EQ(T3dPort::getModelViewColorTable(), table);
    EXPECT_EQ(T3dPortProbe::activeColorTable(port), table);
}

TEST(ColorTables, ColoursAreDrawnByIndexOfThePlaneInForce)
{
    PortWindow<> made(40, 30);
    ASSERT_TRUE(made.show());
    T3dPort& port = made.port();
    T3dPort::setColorTable(34, kRed); // planes of 1, 5 and 5 bits begin at 0, 2 and 33
    T3dPort::setColorTable(3, kGreen);
    port.colorIndexActive(1);
    EXPECT_EQ(sent(), kRed);
    T3dPortProbe::context(port)->setIndexBuffer(2, 0);
    port.colorIndexRelative(1);
    EXPECT_EQ(sent(), kGreen);
    EXPECT_EQ(port.stateDifferences(), TstringArray());
    EXPECT_EQ(port.getColorIndex(kGreen), 3);
    EXPECT_EQ(port.getColorIndex(kRed), 2) << "in another plane";
    const auto copy = T3dPort::pushCopyModelViewColorTable();
    T3dPort::setColorTable(34, kGreen);
    port.colorIndexActive(1);
    EXPECT_EQ(sent(), kGreen);
    EXPECT_EQ(T3dPort::getMarqueeColor({0, 0, 0.26f}), 2);
    EXPECT_EQ(T3dPort::getMarqueeColor({0.25f, 0, 0}), 3);
}
