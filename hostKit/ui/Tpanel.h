#pragma once

#include "foundation/Tstring.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

/**
 * A part of the window that the host treats as one: a view with its menus and bars. Making one registers the widget with
 * gThePanelManager; the panel belongs to the widget and goes with it, or before.
 *
 * @code
 *     new Tpanel(pane, "perspective");
 * @endcode
 */
class Tpanel : public QObject
{
public:
    /** @param name  need not be unique; null is an empty one */
    Tpanel(QWidget* widget, const char* name);
    ~Tpanel() override;

    QWidget* widget() const { return fWidget; }
    const Tstring& name() const { return fName; }
    bool hasFocus() const;

    /** A view inside was pressed in, before it deals with the press itself. Takes the panel focus here. */
    virtual void pressNotify();

private:
    QPointer<QWidget> fWidget;
    Tstring fName;
};
