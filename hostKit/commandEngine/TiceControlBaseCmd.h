#pragma once

#include "commandEngine/TiceBaseCmd.h"

class QWidget;

/**
 * A command that creates, edits and queries controls of one kind: it creates one unless the edit or the query flag is
 * given. Controls have a name that no other has, by which gUIInventory finds them, and can die at any time.
 *
 * The order of the virtual functions is part of the interface.
 */
class TiceControlBaseCmd : public TiceBaseCmd
{
public:
    using TiceBaseCmd::TiceBaseCmd;

    /** Sets what the common flags say: visible, enable, width, height, annotation. */
    int doEditFlags() override;
    int doQueryFlags() override;
    void clear() override;
    bool appendSyntax() override;
    int doIt() override;

    /** Makes the control in qParent(); false when it can't be made. */
    virtual bool makeControl() = 0;
    virtual void deleteControl() = 0;
    /** Finds the control of the name objectName(); false when there is none. */
    virtual bool findPtrs() = 0;
    /** The control of this run, null for none. */
    virtual QWidget* qControl() const = 0;

    /**
     * The widget that takes controls for which no parent is named, null for none. It is not taken over and may die at
     * any time. A control goes to the end of its parent's layout, when that has one.
     */
    static void setDefaultParent(QWidget* parent);
    static QWidget* defaultParent();

protected:
    const Tstring& objectName() const { return fObjectName; }
    QWidget* qParent() const { return fParent; }

private:
    int create();

    Tstring fObjectName;
    QWidget* fParent = nullptr;
};
