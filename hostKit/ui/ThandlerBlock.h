#pragma once

class Taction;

/**
 * The commands by which a tool handles the events of a view, to be attached to it in one go
 * (TinteractionDirector::attachHandlers). Null where the tool has none. The block owns no command, and need not outlive
 * the call; the commands must stay until they are detached or the view is gone.
 */
class ThandlerBlock
{
public:
    Taction* press() const { return fPress; }
    Taction* drag() const { return fDrag; }
    Taction* release() const { return fRelease; }
    Taction* hold() const { return fHold; }
    Taction* doubleClick() const { return fDoubleClick; }
    Taction* update() const { return fUpdate; }
    Taction* ptrMoved() const { return fPtrMoved; }
    Taction* enter() const { return fEnter; }
    Taction* exit() const { return fExit; }

    void setPress(Taction* command) { fPress = command; }
    void setDrag(Taction* command) { fDrag = command; }
    void setRelease(Taction* command) { fRelease = command; }
    void setHold(Taction* command) { fHold = command; }
    void setDoubleClick(Taction* command) { fDoubleClick = command; }
    /** The command that draws the view. A block without one leaves the view undrawn. */
    void setUpdate(Taction* command) { fUpdate = command; }
    /** The pointer moved with no button held. */
    void setPtrMoved(Taction* command) { fPtrMoved = command; }
    void setEnter(Taction* command) { fEnter = command; }
    void setExit(Taction* command) { fExit = command; }

private:
    Taction* fPress = nullptr;
    Taction* fDrag = nullptr;
    Taction* fRelease = nullptr;
    Taction* fHold = nullptr;
    Taction* fDoubleClick = nullptr;
    Taction* fUpdate = nullptr;
    Taction* fPtrMoved = nullptr;
    Taction* fEnter = nullptr;
    Taction* fExit = nullptr;
};
