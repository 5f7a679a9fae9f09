#pragma once

#include "foundation/TclientServer.h"
#include "foundation/Tdimmable.h"

#include <QPointer>

class QWidget;
class Taction;
class Tevent;
class Tmetaclass;
class TpixelMap;
class Trect;
struct TportRect;
template <class T> class TgenericPixelMap;
enum PixelMapReadColorSpace : int;

/**
 * A user-interface control: it receives events, runs the commands attached to them, and is a message server whose
 * clients hear of its changes. Its metaclass is named "control".
 *
 * The order of the virtual functions is part of the interface. A control owns neither its commands nor its widget.
 */
class Tcontrol : public TclientServer, public Tdimmable
{
public:
    Tcontrol() = default;
    Tcontrol(const Tcontrol&) = delete;
    Tcontrol& operator=(const Tcontrol&) = delete;

    /** Takes the control out of gUIInventory. */
    ~Tcontrol() override;

    Tmetaclass* typeof() const override;

    /** This control when asked for the metaclass of Tcontrol, else what TclientServer answers. */
    void* cast(Tmetaclass* metaclass) override;

    /** \name Events
     * Each returns what the command attached to it returns, false without a command. Events that can have no command
     * here are ignored and return false. */
    ///@{
    virtual bool doPress(const Tevent& event);
    virtual bool doDoubleClick(const Tevent& event);
    virtual bool doUpdate(const Tevent& event);
    virtual bool doEnterRegion(const Tevent& event);
    virtual bool doExitRegion(const Tevent& event);
    virtual bool doStow(const Tevent& event);
    virtual bool doUnStow(const Tevent& event);
    virtual bool doPtrMoved(const Tevent& event);
    virtual bool doMouseWheel(const Tevent& event);
    ///@}

    /** Called when the control's widget was shown or hidden. Does nothing here. */
    virtual void visibleNotify(bool visible);

    /** Brings an event's local position into the control's own space. Does nothing here. */
    virtual void adjustEventLocalPosition(Tevent& event) const;

    /**
     * Starts picking: what is drawn until endSelect() is recorded in the buffer. Does nothing here.
     * @param size entries of the buffer.
     */
    virtual void beginSelect(unsigned* buffer, int size);

    /** Ends picking; returns the number of hits, 0 here. */
    virtual int endSelect();

    /** Reads the control's pixels; false when it has none, as here. */
    virtual bool pixelMapRead(TpixelMap& map, short buffer);
    virtual bool pixelMapRead(TgenericPixelMap<float>& map, TportRect area, PixelMapReadColorSpace colorSpace);

    /** Called when the window that holds the control was moved. Does nothing here. */
    virtual void parentWindowMoveNotify();

    /** Gives the control a new rectangle; false when it takes none, as here. */
    virtual bool resize(const Trect& rect);

    virtual bool doDrag(const Tevent& event);
    virtual bool doRelease(const Tevent& event);
    virtual bool doHold(const Tevent& event);
    virtual bool doKeyPress(const Tevent& event);
    virtual bool doKeyRelease(const Tevent& event);
    virtual bool doKeyRepeat(const Tevent& event);

    /** \name Commands
     * The command run by the event of that name; null takes it away. It must outlive the control or be taken away. */
    ///@{
    virtual void setPressCommand(Taction* command);
    virtual void setDragCommand(Taction* command);
    virtual void setReleaseCommand(Taction* command);
    virtual void setHoldCommand(Taction* command);
    virtual void setEnterCommand(Taction* command);
    virtual void setExitCommand(Taction* command);

    Taction* pressCommand() const { return fPressCommand; }
    Taction* dragCommand() const { return fDragCommand; }
    Taction* releaseCommand() const { return fReleaseCommand; }
    Taction* holdCommand() const { return fHoldCommand; }
    Taction* enterCommand() const { return fEnterCommand; }
    Taction* exitCommand() const { return fExitCommand; }
    ///@}

    static Tmetaclass* sTypeof();

    /**
     * Constructs the control whose metaclass has the name.
     * @return the new control, owned by the caller; null when there is no such metaclass, when it is not a control's
     * or can't construct. A control that can be made this way derives from Tcontrol first.
     */
    static Tcontrol* constructControl(const char* name);

    /** Notes stages of construction as passed, a bit each. */
    void markInitialized(unsigned mask = 4) { fInitialized |= mask; }

    /** True when every stage of the mask was passed. */
    bool isInitialized(unsigned mask = 4) const { return (fInitialized & mask) == mask; }

    /** The widget that shows the control; null when there is none, or none any more. */
    QWidget* qControl() const;

protected:
    void setQControl(QWidget* widget);

private:
    QPointer<QWidget> fQControl;
    Taction* fPressCommand = nullptr;
    Taction* fDragCommand = nullptr;
    Taction* fReleaseCommand = nullptr;
    Taction* fHoldCommand = nullptr;
    Taction* fEnterCommand = nullptr;
    Taction* fExitCommand = nullptr;
    unsigned fInitialized = 0;
};
