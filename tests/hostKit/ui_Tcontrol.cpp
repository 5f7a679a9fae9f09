#include "ui/Tcontrol.h"

#include "foundation/Taction.h"
#include "foundation/Tevent.h"
#include "foundation/Tmetaclass.h"
#include "foundation/TportRect.h"
#include "ui/TUIInventory.h"
#include "ui_support.h"

#include <QWidget>

#include <cstddef>
#include <cstring>
#include <memory>
#include <numeric>
#include <vector>

namespace {

// Itanium C++ ABI, 2.3: a pointer to a virtual member function begins with 1 plus the function's offset in the table.
template <class F> std::size_t slotOf(F function)
{
    std::ptrdiff_t offset = 0;
    static_assert(sizeof(function) >= sizeof(offset));
    std::memcpy(&offset, &function, sizeof(offset));
    return static_cast<std::size_t>(offset - 1) / sizeof(void*);
}

class TwidgetControl : public Tcontrol
{
public:
    using Tcontrol::setQControl;
    Tmetaclass* typeof() const override { return sTypeof(); }
    static Tmetaclass* sTypeof();
};

void* constructWidgetControl()
{
    return new TwidgetControl;
}

Tmetaclass* TwidgetControl::sTypeof()
{
    static Tmetaclass metaclass("testWidgetControl", sizeof(TwidgetControl), Tcontrol::sTypeof(),
                                constructWidgetControl);
    return &metaclass;
}

} // namespace

TEST(Tcontrol, VirtualFunctionsStandInTheirSlots)
{
    using ReadMap = bool (Tcontrol::*)(TpixelMap&, short);
    using ReadFloats = bool (Tcontrol::*)(TgenericPixelMap<float>&, TportRect, PixelMapReadColorSpace);
    const std::vector<std::size_t> found = {
        slotOf(&Tcontrol::typeof), slotOf(&Tcontrol::cast), slotOf(&Tcontrol::doPress),
        slotOf(&Tcontrol::doDoubleClick), slotOf(&Tcontrol::doUpdate), slotOf(&Tcontrol::doEnterRegion),
        slotOf(&Tcontrol::doExitRegion), slotOf(&Tcontrol::doStow), slotOf(&Tcontrol::doUnStow),
        slotOf(&Tcontrol::doPtrMoved), slotOf(&Tcontrol::doMouseWheel), slotOf(&Tcontrol::visibleNotify),
        slotOf(&Tcontrol::adjustEventLocalPosition), slotOf(&Tcontrol::beginSelect), slotOf(&Tcontrol::endSelect),
        slotOf(static_cast<ReadMap>(&Tcontrol::pixelMapRead)),
        slotOf(static_cast<ReadFloats>(&Tcontrol::pixelMapRead)), slotOf(&Tcontrol::parentWindowMoveNotify),
        slotOf(&Tcontrol::resize),
    };
    std::vector<std::size_t> expected(found.size());
    std::iota(expected.begin(), expected.end(), 2); // after the two destructors
    EXPECT_EQ(found, expected);
}

TEST(Tcontrol, CommandRunsWithItsEventOnly)
{
    struct Tcase {
        const char* name;
        bool (Tcontrol::*event)(const Tevent&);
        void (Tcontrol::*setCommand)(Taction*);
    };
    const Tcase cases[] = {
        {"press", &Tcontrol::doPress, &Tcontrol::setPressCommand},
        {"drag", &Tcontrol::doDrag, &Tcontrol::setDragCommand},
        {"release", &Tcontrol::doRelease, &Tcontrol::setReleaseCommand},
        {"hold", &Tcontrol::doHold, &Tcontrol::setHoldCommand},
        {"enter", &Tcontrol::doEnterRegion, &Tcontrol::setEnterCommand},
        {"exit", &Tcontrol::doExitRegion, &Tcontrol::setExitCommand},
    };
    for (const Tcase& tested : cases) {
        SCOPED_TRACE(tested.name);
        Tcontrol control;
        int runs = 0;
        bool result = true;
        const Tevent* seen = nullptr;
        TfunctionAction action([&](const Tevent& event) -> bool {
            ++runs;
            seen = &event;
            return result;
        });
        const Tevent event(Tevent::kPress);
        EXPECT_FALSE((control.*tested.event)(event));

        (control.*tested.setCommand)(&action);
        for (const Tcase& other : cases) {
            EXPECT_EQ((control.*other.event)(event), other.event == tested.event) << other.name;
        }
        EXPECT_EQ(runs, 1);
        EXPECT_EQ(seen, &event);
        result = false;
        EXPECT_FALSE((control.*tested.event)(event));

        (control.*tested.setCommand)(nullptr);
        EXPECT_FALSE((control.*tested.event)(event));
        EXPECT_EQ(runs, 2);
    }
}

TEST(Tcontrol, ConstructsByNameOnlyWhatIsAControl)
{
    static int constructed = 0;
    static Tmetaclass noControl("testNoControl", sizeof(int), nullptr, +[]() -> void* {
        ++constructed;
        return nullptr;
    });
    ASSERT_TRUE(TwidgetControl::sTypeof());

    const std::unique_ptr<Tcontrol> control(Tcontrol::constructControl("testWidgetControl"));
    ASSERT_TRUE(control);
    EXPECT_EQ(control->typeof(), TwidgetControl::sTypeof());
    EXPECT_TRUE(control->typeof()->istype(Tcontrol::sTypeof()));
    EXPECT_EQ(control->cast(Tcontrol::sTypeof()), control.get());
    EXPECT_EQ(control->cast(TclientServer::sTypeof()), static_cast<TclientServer*>(control.get()));
    EXPECT_EQ(control->cast(&noControl), nullptr);

    EXPECT_EQ(Tcontrol::constructControl("testNoControl"), nullptr);
    EXPECT_EQ(constructed, 0);
    EXPECT_EQ(Tcontrol::constructControl("no such control"), nullptr);
    EXPECT_EQ(Tcontrol::constructControl(nullptr), nullptr);

    const std::unique_ptr<Tcontrol> plain(Tcontrol::constructControl("control"));
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->typeof(), Tcontrol::sTypeof());
}

using TcontrolWidget = UiTest;

TEST_F(TcontrolWidget, IsNotOwnedAndForgottenWhenDestroyed)
{
    auto widget = std::make_unique<QWidget>();
    QPointer<QWidget> alive(widget.get());
    {
        TwidgetControl control;
        control.setQControl(widget.get());
        EXPECT_EQ(control.qControl(), widget.get());
    }
    ASSERT_TRUE(alive);

    TwidgetControl control;
    control.setQControl(widget.get());
    widget.reset();
    EXPECT_EQ(control.qControl(), nullptr);
}

TEST(TUIInventory, FindsByNameAndForgetsDestroyedControls)
{
    ASSERT_TRUE(gUIInventory);
    const unsigned before = gUIInventory->count();
    Tcontrol first;
    Tcontrol second;
    {
        Tcontrol third;
        EXPECT_TRUE(gUIInventory->add(&first, "view"));
        EXPECT_TRUE(gUIInventory->add(&second, "view"));
        EXPECT_TRUE(gUIInventory->add(&third, "panel"));
        EXPECT_EQ(gUIInventory->find("view"), &first);
        EXPECT_EQ(gUIInventory->find("panel"), &third);
        EXPECT_EQ(gUIInventory->count(), before + 3);
    }
    EXPECT_EQ(gUIInventory->find("panel"), nullptr);
    EXPECT_EQ(gUIInventory->count(), before + 2);

    EXPECT_TRUE(gUIInventory->add(&first, "renamed"));
    EXPECT_EQ(gUIInventory->count(), before + 2);
    EXPECT_EQ(gUIInventory->find("view"), &second);
    EXPECT_EQ(gUIInventory->find("renamed"), &first);

    gUIInventory->remove(&second);
    gUIInventory->remove(&second);
    gUIInventory->remove(nullptr);
    EXPECT_FALSE(gUIInventory->contains(&second));
    EXPECT_TRUE(gUIInventory->contains(&first));
    EXPECT_EQ(gUIInventory->count(), before + 1);

    EXPECT_FALSE(gUIInventory->add(nullptr, "none"));
    EXPECT_TRUE(gUIInventory->add(&second, nullptr));
    EXPECT_EQ(gUIInventory->find(nullptr), nullptr);
}
