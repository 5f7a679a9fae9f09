// The interactive port between the host's director, its panels and the port that it is.

#include "Graphics/interaction/TinteractivePort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Tmetaclass.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "ui/ThandlerBlock.h"
#include "ui/Tpanel.h"
#include "ui/TpanelManager.h"

#include <QMouseEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <list>

namespace {

const struct
{
    void (ThandlerBlock::*set)(Taction*);
    bool (Tcontrol::*send)(const Tevent&);
} kHandlers[] = {{&ThandlerBlock::setPress, &Tcontrol::doPress},
                 {&ThandlerBlock::setDrag, &Tcontrol::doDrag},
                 {&ThandlerBlock::setRelease, &Tcontrol::doRelease},
                 {&ThandlerBlock::setHold, &Tcontrol::doHold},
                 {&ThandlerBlock::setDoubleClick, &Tcontrol::doDoubleClick},
                 {&ThandlerBlock::setUpdate, &Tcontrol::doUpdate},
                 {&ThandlerBlock::setPtrMoved, &Tcontrol::doPtrMoved},
                 {&ThandlerBlock::setEnter, &Tcontrol::doEnterRegion},
                 {&ThandlerBlock::setExit, &Tcontrol::doExitRegion}};

TEST(InteractivePort, HandlersComeAndGoAsABlock)
{
    PortWindow<TinteractivePort> window(40, 30);
    TinteractivePort& port = window.port();
    std::string notes;
    std::list<TfunctionAction> commands;
    ThandlerBlock block;
    for (const auto& handler : kHandlers) {
        const char digit = char('0' + commands.size());
        (block.*handler.set)(&commands.emplace_back([&notes, digit](const Tevent&) { notes += digit; }));
    }
    port.setKeyPressCommand(block.press());
    const auto sendAll = [&] {
        notes.clear();
        for (const auto& handler : kHandlers)
            (port.*handler.send)(Tevent());
        EXPECT_FALSE(port.doKeyPress(Tevent(Tevent::kKeyPress)));
        return notes;
    };
    port.attachHandlers(block);
    EXPECT_EQ("012345678", sendAll());
    port.detachHandlers();
    EXPECT_EQ("", sendAll());
    ThandlerBlock other;
    other.setDrag(block.hold());
    port.attachHandlers(block);
    port.attachHandlers(other);
    EXPECT_EQ("3", sendAll());

    port.enablePointerCommands(false);
    port.attachHandlers(block);
    port.enablePointerCommands(true);
    EXPECT_FALSE(port.doubleClickCommand() || port.ptrMovedCommand()) << "kept out by the gate";
    EXPECT_EQ(port.pressCommand(), block.press());
}

TEST(InteractivePort, FindsThePaneThatHoldsIt)
{
    QWidget top;
    auto* area = new QWidget(&top);
    auto* panes = new QlirnPaneLayout(area);
    auto* pane = new QWidget(area);
    auto* frame = new QWidget(pane);
    new QVBoxLayout(frame);
    TinteractivePort direct(area, "direct", false);
    TinteractivePort deep(frame, "deep", false);
    TinteractivePort outside(&top, "outside", false);
    EXPECT_TRUE(direct.isInPaneLayout() && deep.isInPaneLayout() && !outside.isInPaneLayout());
    EXPECT_TRUE(direct.paneLayout() == panes && deep.paneLayout() == panes && !outside.paneLayout());
    EXPECT_EQ(direct.panelWidget(), direct.rootQControl());
    EXPECT_EQ(outside.panelWidget(), &top);
    deep.qControl()->setParent(&top);
    EXPECT_EQ(deep.panelWidget(), pane);
    delete pane;
    EXPECT_EQ(deep.panelWidget(), nullptr);
    deep.doPress(Tevent(Tevent::kPress));
    EXPECT_TRUE(deep.isActive());
}

/** Who heard of a press in a pane and of one in a plain window; each may delete the port, which ends the press. */
TEST(InteractivePort, PressGoesToDirectorPanelAndCommand)
{
    QWidget plainParent;
    Tpanel plainPanel(&plainParent, "plain");
    TinteractivePort plain(&plainParent, "plain", false);
    for (int round = 0; round < 12; ++round) {
        const char deletedBy = "dpc-"[round % 4];
        const bool inPane = round < 8;
        QWidget area;
        auto* pane = new QWidget(&area);
        if (inPane)
            (new QlirnPaneLayout(&area))->addPane(pane);
        auto* panel = new Tpanel(pane, "pane");
        auto* port = new TinteractivePort(pane, "port", false);
        plain.doPress(Tevent(Tevent::kPress));
        std::string notes; // of d, the director; p, the panel; c, the command
        const auto note = [&](char by) {
            notes += by;
            if (by == deletedBy)
                delete std::exchange(port, nullptr);
        };
        MessageCollector directors([&](const TserverModifiedMsg&) {
            if (port && port->isActive())
                note('d');
            return "";
        });
        MessageCollector focus([&](const TserverModifiedMsg&) {
            if (panel->hasFocus())
                note('p');
            return "";
        });
        TinteractionDirector::currentChanges().addClient(&directors);
        gThePanelManager->addClient(&focus);
        TfunctionAction command([&](const Tevent&) { note('c'); });
        port->setPressCommand(&command);
        QMouseEvent press(QEvent::MouseButtonPress, {3, 3}, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        if (round < 4)
            port->doMouseWheel(Tevent(Tevent::kWheel));
        else
            QApplication::sendEvent(port->glWidget(), &press);
        std::string wanted = inPane ? "dpc" : "dc";
        if (wanted.find(deletedBy) != std::string::npos)
            wanted.resize(wanted.find(deletedBy) + 1);
        EXPECT_EQ(wanted, notes) << round;
        EXPECT_EQ(TinteractionDirector::current(), port);
        gThePanelManager->setFocusPanel(reinterpret_cast<Tpanel*>(pane));
        EXPECT_EQ(panel->hasFocus(), notes.size() > 1 && inPane) << "what is no panel takes no focus";
        delete pane; // its panel and its port go with it
        EXPECT_EQ(TinteractionDirector::current(), nullptr);
        EXPECT_EQ(gThePanelManager->focusPanel(), nullptr);
    }
    EXPECT_EQ(gThePanelManager->panels().length(), 1u);
    EXPECT_EQ(gThePanelManager->panel(plain.qControl(), true), &plainPanel);
}

TEST(InteractivePort, IsMadeAndCastByMetaclass)
{
    EXPECT_EQ(TinteractivePort::construct(T3dPort::sTypeof()), nullptr);
    auto* port = static_cast<TinteractivePort*>(T3dPort::construct(Tmetaclass::find("TinteractivePort")));
    TinteractionDirector* director = port;
    for (Tmetaclass* base : {director->typeof(), T3dPort::sTypeof(), Tcontrol::sTypeof()})
        EXPECT_EQ(director->cast(base), port);
    EXPECT_EQ(port->cast(TinteractionDirector::sTypeof()), director);
    delete director;
}

} // namespace
