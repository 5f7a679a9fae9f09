#pragma once

#include "foundation/Tarray.h"
#include "foundation/TclientServer.h"

class QWidget;
class Tpanel;

/**
 * The panels of the program, and which of them has the panel focus: the one that commands without a stated panel mean,
 * whichever widget in it has the keyboard. Clients receive a TserverModifiedMsg when the focus has moved.
 */
class TpanelManager : public TclientServer
{
public:
    /**
     * The panel of @p widget; null when there is none, and for null.
     * @param enclosing  looks at the widgets around it too, the nearest first
     */
    Tpanel* panel(QWidget* widget, bool enclosing) const;
    /** The panel of the name, of several the oldest; null when there is none. */
    Tpanel* panel(const char* name) const;
    /** All panels, in order of creation. */
    const Tarray<Tpanel*>& panels() const { return fPanels; }

    /** Null until a panel was pressed in, and when that one is gone. */
    Tpanel* focusPanel() const { return fFocusPanel; }
    /** Null for none. A pointer that is no panel's is ignored. */
    void setFocusPanel(Tpanel* panel);

private:
    friend class Tpanel;

    void changeFocus(Tpanel* panel);

    Tarray<Tpanel*> fPanels;
    Tpanel* fFocusPanel = nullptr;
};

/** The program's panel manager, never null. It stays until the process ends. */
extern TpanelManager* gThePanelManager;
