#pragma once

#include "foundation/Tmodifier.h"
#include "foundation/Tpoint.h"

/** What happened to a control, and where. Positions are in device pixels. */
class Tevent
{
public:
    enum Ttype : unsigned {
        kNone = 0,
        kPress = 2,
        kRelease = 4,
        kDrag = 8,
        kHold = 16,
        kDoubleClick = 32,
        kKeyPress = 64,
        kKeyRelease = 128,
        kKeyRepeat = 256,
        kUpdate = 512,
        kEnter = 4096,
        kExit = 8192,
        kPointerMoved = 16384,
        kWheel = 0x400000
    };

    Tevent() = default;
    /** @param type a Ttype, @param modifiers bits of Tmodifier, @param button the pointer button's number or 0 */
    explicit Tevent(unsigned type, unsigned modifiers = 0, int button = 0)
        : fType(type), fModifiers(modifiers), fButton(button)
    {
    }
    Tevent(const Tevent&) = default;
    Tevent& operator=(const Tevent&) = default;
    virtual ~Tevent();

    unsigned type() const { return fType; }
    unsigned modifiers() const { return fModifiers; }
    int button() const { return fButton; }

    /** Whether a pointer button takes part in the event. */
    bool isPressed() const { return fPressed; }
    void setPressed(bool pressed) { fPressed = pressed; }
    /** Whether the event carries information of the primary pointer. */
    bool hasPrimaryPointer() const { return fPrimaryPointer; }
    void setPrimaryPointer(bool primary) { fPrimaryPointer = primary; }

    /** On the screen, origin at the upper left. */
    Tpoint getGlobalPosition() const { return fGlobal; }
    void setGlobalPosition(const Tpoint& position) { fGlobal = position; }
    /** In the control. There is one space so far, 1, the control's own; any other number means it too. */
    Tpoint getLocalPosition(int space = 1) const
    {
        static_cast<void>(space);
        return fLocal;
    }
    void setLocalPosition(const Tpoint& position, int space = 1)
    {
        static_cast<void>(space);
        fLocal = position;
    }

    /** The turn of the wheel, in eighths of a degree. */
    short mouseDelta() const { return fMouseDelta; }
    void setMouseDelta(short delta) { fMouseDelta = delta; }

    static void setUseDevice(bool use) { fsUseDevice = use; }

    static bool fsIsDragging;       ///< a pointer button is held down
    static bool fsUseDevice;        ///< a tablet's stylus touches the tablet
    static double fsDevicePressure; ///< of the stylus, from 0 to 1
    static int fsTabletPointerType; ///< 1 pen, 3 eraser

private:
    unsigned fType = kNone;
    unsigned fModifiers = 0;
    int fButton = 0;
    Tpoint fGlobal;
    Tpoint fLocal;
    bool fPressed = false;
    bool fPrimaryPointer = false;
    short fMouseDelta = 0;
};

/** A pointer button goes down. */
class TpressEvent : public Tevent
{
public:
    TpressEvent(const Tpoint& local, unsigned modifiers, int button) : Tevent(kPress, modifiers, button)
    {
        setLocalPosition(local);
        setPressed(true);
    }
};

/** A pointer button goes up. */
class TreleaseEvent : public Tevent
{
public:
    TreleaseEvent(const Tpoint& local, unsigned modifiers, int button) : Tevent(kRelease, modifiers, button)
    {
        setLocalPosition(local);
    }
};

/** The pointer moves with a button held down. */
class TdragEvent : public Tevent
{
public:
    TdragEvent(const Tpoint& local, unsigned modifiers, int button) : Tevent(kDrag, modifiers, button)
    {
        setLocalPosition(local);
        setPressed(true);
    }
};
