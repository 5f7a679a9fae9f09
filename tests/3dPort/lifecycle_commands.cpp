#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "foundation/Tevent.h"
#include "foundation/Tpoint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

enum Gate { kPointerGate, kKeyGate, kNoGate };

struct Slot
{
    const char* name;
    void (T3dPort::*set)(Taction*);
    Taction* (T3dPort::*get)() const;
    Gate gate;
};

const Slot kSlots[] = {
    {"double click", &T3dPort::setDoubleClickCommand, &T3dPort::doubleClickCommand, kPointerGate},
    {"pointer moved", &T3dPort::setPtrMovedCommand, &T3dPort::ptrMovedCommand, kPointerGate},
    {"key press", &T3dPort::setKeyPressCommand, &T3dPort::keyPressCommand, kKeyGate},
    {"key release", &T3dPort::setKeyReleaseCommand, &T3dPort::keyReleaseCommand, kKeyGate},
    {"key repeat", &T3dPort::setKeyRepeatCommand, &T3dPort::keyRepeatCommand, kKeyGate},
    {"update", &T3dPort::setUpdateCommand, &T3dPort::updateCommand, kNoGate},
};

} // namespace

TEST(PortCommands, AreKeptAndGivenBehindTheirGates)
{
    for (const Slot& slot : kSlots) {
        SCOPED_TRACE(slot.name);
        for (const Gate closed : {kPointerGate, kKeyGate}) {
            T3dPort port(nullptr, "testPort", false);
            CountingAction command;
            CountingAction other;
            (port.*slot.set)(&command);
            EXPECT_EQ((port.*slot.get)(), &command);
            for (const Slot& another : kSlots) {
                if (another.set == slot.set)
                    continue;
                EXPECT_EQ((port.*another.get)(), nullptr) << another.name;
            }

            port.enablePointerCommands(closed != kPointerGate);
            port.enableKeyCommands(closed != kKeyGate);
            const bool isClosed = slot.gate == closed;
            EXPECT_EQ((port.*slot.get)(), isClosed ? nullptr : &command);
            (port.*slot.set)(&other);
            port.enablePointerCommands(true);
            port.enableKeyCommands(true);
            EXPECT_EQ((port.*slot.get)(), isClosed ? &command : &other);
            (port.*slot.set)(nullptr);
            EXPECT_EQ((port.*slot.get)(), nullptr);
        }
    }
}

TEST(PortCommands, PointerEventsRunThemUnlessTheGateIsClosed)
{
    PortWindow<> made(60, 40);
    T3dPort& port = made.port();
    CountingAction press;
    CountingAction doubleClick;
    CountingAction moved;
    CountingAction enter;
    CountingAction exit;
    port.setPressCommand(&press);
    port.setDoubleClickCommand(&doubleClick);
    port.setPtrMovedCommand(&moved);
    port.setEnterCommand(&enter);
    port.setExitCommand(&exit);

    for (const bool open : {true, false}) {
        port.enablePointerCommands(open);
        EXPECT_EQ(port.doPress(Tevent(Tevent::kPress)), open);
        EXPECT_FALSE(port.doDoubleClick(Tevent(Tevent::kDoubleClick)));
        EXPECT_FALSE(port.doPtrMoved(Tevent(Tevent::kPointerMoved)));
        EXPECT_TRUE(port.doEnterRegion(Tevent(Tevent::kEnter)));
        EXPECT_TRUE(port.doExitRegion(Tevent(Tevent::kExit)));
    }
    EXPECT_EQ(press.runs(), 1);
    EXPECT_EQ(doubleClick.runs(), 1);
    EXPECT_EQ(moved.runs(), 1);
    EXPECT_EQ(moved.lastEvent().type(), Tevent::kPointerMoved);
    EXPECT_EQ(enter.runs(), 2);
    EXPECT_EQ(exit.runs(), 2);

    EXPECT_FALSE(port.doStow(Tevent()));
    EXPECT_FALSE(port.doUnStow(Tevent()));
}

TEST(PortCommands, PressAndEnterMakeThePortCurrent)
{
    PortWindow<> first(60, 40);
    PortWindow<> second(60, 40);
    first.port().enablePointerCommands(false);
    EXPECT_FALSE(first.port().doPress(Tevent(Tevent::kPress)));
    EXPECT_EQ(T3dPort::currentPort(), &first.port());
    second.port().doEnterRegion(Tevent(Tevent::kEnter));
    EXPECT_EQ(T3dPort::currentPort(), &second.port());
    first.port().doExitRegion(Tevent(Tevent::kExit));
    EXPECT_EQ(T3dPort::currentPort(), &second.port());
}

TEST(PortCommands, AWheelStepIsADragOfItsOwnButton)
{
    T3dPort port(nullptr, "testPort", false);
    std::vector<std::string> events;
    TfunctionAction note([&](const Tevent& e) {
        const Tpoint at = e.getLocalPosition(1);
        events.push_back(std::to_string(e.type()) + " button " + std::to_string(e.button()) + " modifiers " +
                         std::to_string(e.modifiers()) + " at " + std::to_string(at.x) + "," + std::to_string(at.y) +
                         (e.hasPrimaryPointer() ? " primary" : ""));
        return true;
    });
    port.setPressCommand(&note);
    port.setDragCommand(&note);
    port.setReleaseCommand(&note);

    Tevent wheel(Tevent::kWheel);
    wheel.setLocalPosition(Tpoint{30, 20}, 1);
    wheel.setMouseDelta(-120);
    EXPECT_FALSE(port.doMouseWheel(wheel));
    ASSERT_EQ(events.size(), 3u);
    EXPECT_EQ(events[0], "2 button 1024 modifiers 8 at 30,20");
    EXPECT_EQ(events[1], "8 button 1024 modifiers 8 at -90,20");
    EXPECT_THAT(events[2], testing::AllOf(testing::StartsWith("4 button 1024 modifiers 8"),
                                          testing::EndsWith("primary")));

    events.clear();
    port.enablePointerCommands(false);
    EXPECT_FALSE(port.doMouseWheel(wheel));
    EXPECT_THAT(events, IsEmpty());
}

TEST(PortCommands, DrawingModesAreABitOfTheFlagWord)
{
    T3dPort port(nullptr, "testPort", false);
    const std::uint64_t normal = T3dPortProbe::flags(port);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(port.setToInteractiveMode().value(), normal | 0x200);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(port.setToNormalMode().value(), normal);
    EXPECT_TRUE(port.makeExternalRendererCurrent(true));
    EXPECT_FALSE(port.makeExternalRendererCurrent(false));
}
