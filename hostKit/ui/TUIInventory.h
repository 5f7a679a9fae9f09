#pragma once

#include "foundation/Tstring.h"

#include <QPointer>
#include <QWidget>

#include <utility>
#include <vector>

class Tcontrol;

/**
 * The controls of a program by name, and the widgets that commands have made. It owns none of them: a control or widget
 * leaves by itself when it is destroyed. For the thread of the user interface.
 */
class TUIInventory
{
public:
    /**
     * Enters a control; one that is already in gets the new name.
     * @return false for a null control. A null name is an empty one.
     */
    bool add(Tcontrol* control, const char* name);

    /** Takes a control out without deleting it; one that is not in, or null, is ignored. */
    void remove(Tcontrol* control);

    /** The control of the name that was entered first; null when there is none. */
    Tcontrol* find(const char* name) const;

    bool contains(const Tcontrol* control) const;

    /** Number of controls. */
    unsigned count() const { return static_cast<unsigned>(fControls.size()); }

    /** Enters a widget under its object name; false for a null one, and for a name that is empty or in use. */
    bool addWidget(QWidget* widget);

    /** Takes a widget out without deleting it; one that is not in, or null, is ignored. */
    void removeWidget(const QWidget* widget);

    /**
     * The widget of the name.
     * @param className  the Qt class it must be of; null for any
     * @param derived  a class derived from that one will do as well
     * @param report  reports a widget that is missing, or of another class, to the error handler
     * @return null when there is none
     */
    QWidget* find(const char* name, const char* className, bool derived, bool report) const;

private:
    std::vector<std::pair<Tcontrol*, Tstring>> fControls;
    std::vector<QPointer<QWidget>> fWidgets;
};

/** The program's inventory, never null. It stays until the process ends. */
extern TUIInventory* gUIInventory;
