#pragma once

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/Export.h"
#include "ui/QlirnPaneLayout.h"
#include "ui/TinteractionDirector.h"

#include <QPointer>
#include <QWidget>

/**
 * The port of a view that the user works in. A host hands it the handlers of the active tool in one block; a press in it
 * makes it the current interaction director and tells the panel that holds it. Its metaclass is named "TinteractivePort".
 *
 * @code
 *     auto* pane = new QWidget(area);              // area has a QlirnPaneLayout
 *     new Tpanel(pane, "perspective");
 *     TinteractivePort port(pane, "perspective", false);
 *     port.attachHandlers(handlers);
 * @endcode
 */
class LIRN_3DGRAPHICS_EXPORT TinteractivePort : public T3dPort, public TinteractionDirector
{
public:
    /** As T3dPort. The panel is found now: @p parent must be in its place already, and the pane layout be set. */
    TinteractivePort(QWidget* parent, const char* name, bool stereo);

    /** Detaches the handlers. */
    ~TinteractivePort() override;
    Tmetaclass* typeof() const override;
    /** This port by the metaclass of any of its classes; the director part by the director's. */
    void* cast(Tmetaclass* metaclass) override;
    /**
     * Makes this the current director, tells its panel (Tpanel::pressNotify), and runs the press command. Each of these
     * may delete the port, which then goes no further.
     */
    bool doPress(const Tevent& event) override;
    /** An interactive port leaves keys to the application: runs no command and returns false. */
    bool doKeyPress(const Tevent& event) override;
    bool doEnterRegion(const Tevent& event) override;
    bool doExitRegion(const Tevent& event) override;

    /** The port's control (T3dPort::qControl). */
    QWidget* rootQControl() override;
    /** Does nothing. */
    virtual void refresh(bool force);
    /**
     * Makes the handlers of @p block the port's commands; an event without a handler has none. Double clicks and pointer
     * moves are taken only while enablePointerCommands is on.
     */
    void attachHandlers(ThandlerBlock& block) override;
    /** Takes the nine commands away again. */
    void detachHandlers() override;

    bool isInPaneLayout() const { return fInPaneLayout; }
    /** The nearest pane layout around the port's widget; null without one. */
    QlirnPaneLayout* paneLayout() const { return fPaneLayout; }
    /** The widget in that layout that holds the port; without a layout, the outermost one. Null without a control. */
    QWidget* panelWidget() const { return fPanelWidget; }

    /** The metaclass "TinteractivePort", whose bases are the port's and the director's. */
    static Tmetaclass* sTypeof();
    /** A new object of @p metaclass; null for a null metaclass or one that is no interactive port's. */
    static void* construct(Tmetaclass* metaclass);
    /** As construct, in memory of the metaclass's size. */
    static void* constructInPlace(Tmetaclass* metaclass, void* memory);

private:
    void findPaneLayout();

    bool fInPaneLayout = false;
    QPointer<QlirnPaneLayout> fPaneLayout;
    QPointer<QWidget> fPanelWidget;
};
