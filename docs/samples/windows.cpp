// A window with two ports and a line that tells what they report.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TviewportVisibilityChangedMsg.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/Taction.h"
#include "foundation/Tclient.h"
#include "foundation/Tevent.h"
#include "foundation/TresourceMap.h"
#include "ui/TUIInventory.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

namespace {

/** A port with its commands. The port stands last, so that it goes first. */
class Tview : public Tclient
{
public:
    Tview(QWidget* parent, const char* name, bool fromAbove, QLabel& status)
        : fName(name), fFromAbove(fromAbove), fStatus(status), fUpdate([this](const Tevent&) { draw(); }),
          fDrag([this](const Tevent& event) { drag(event); })
    {
        TresourceMap::Set(name, "saFrameBufferMode", "double");
        fPort = std::make_unique<T3dPort>(parent, name, false);
        gUIInventory->add(fPort.get(), name);
        fPort->addClient(this);
        fPort->setUpdateCommand(&fUpdate);
        fPort->setDragCommand(&fDrag);
    }

    void receive(const TserverModifiedMsg& message) override
    {
        if (auto* changed = dynamic_cast<const TviewportVisibilityChangedMsg*>(&message))
            fStatus.setText(
                fStatus.text() +
                QStringLiteral("  %1 is %2.").arg(QLatin1String(fName), changed->isVisible() ? "shown" : "hidden"));
    }
    /** The widget went first, with its window, and took the port along. */
    void serverDeleted(TclientServer*) override { static_cast<void>(fPort.release()); }

    T3dPort* port() { return fPort.get(); }

private:
    void draw()
    {
        const TportRect& r = fPort->portRect();
        fPort->clearColor(fFromAbove ? TportColor(0.22f, 0.24f, 0.27f) : TportColor(0.17f, 0.19f, 0.21f));
        fPort->clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        fPort->perspective(26, double(r.width()) / std::max<int>(r.height(), 1), 1, 40);
        fPort->polarView(12, fAzimuth, fFromAbove ? 0 : 68, 0);
        fPort->depthTest(true);
        fPort->shadeModel(T3dPort::kShadeSmooth);
        fPort->setGlobalAmbient(kCwhite);
        fPort->setLightingModel();
        fPort->setDefaultLight(0, T4dDblVector(-1, -1, 2));
        fPort->setDiffuseColor(TportColor(0.90f, 0.55f, 0.20f));
        fPort->cone(T4dDblPoint(-1.2, 0, -0.8), 0.8f, 1.8f, true);
        fPort->setDiffuseColor(TportColor(0.35f, 0.60f, 0.80f));
        fPort->box(T4dDblPoint(1.2, 0, -0.1), 0.7f, 0.7f, 0.7f, true);
        fPort->disableLighting();
        fPort->color(TportColor(0.45f, 0.48f, 0.52f));
        for (int i = -3; i <= 3; ++i) {
            fPort->pushMatrix();
            fPort->translate(0, 0, -0.8);
            fPort->line(-3, float(i), 3, float(i));
            fPort->line(float(i), -3, float(i), 3);
            fPort->popMatrix();
        }
        fPort->swapBuffers();
    }

    void drag(const Tevent& event)
    {
        fAzimuth = 0.5 * event.getLocalPosition().x; // window pixels, from the upper left corner
        fPort->glWidget()->update();
    }

    const char* fName;
    bool fFromAbove;
    double fAzimuth = 20;
    QLabel& fStatus;
    TfunctionAction fUpdate;
    TfunctionAction fDrag;
    std::unique_ptr<T3dPort> fPort;
};

QImage run()
{
    QWidget window;
    window.setWindowFlag(Qt::X11BypassWindowManagerHint);
    window.setGeometry(0, 0, 560, 320);
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(4, 4, 4, 4);
    auto* status = new QLabel(QStringLiteral("Messages:"));
    auto* splitter = new QSplitter;
    layout->addWidget(splitter, 1);
    layout->addWidget(status);
    Tview side(splitter, "side", false, *status);
    Tview above(splitter, "above", true, *status);
    splitter->addWidget(side.port()->qControl());
    splitter->addWidget(above.port()->qControl());
    splitter->setSizes({330, 220});

    window.show();
    window.raise();
    QElapsedTimer time;
    for (time.start(); time.elapsed() < 300;)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    QImage shown = window.screen()->grabWindow(window.winId()).toImage();
    Sample::expect(above.port()->error() == 0, "OpenGL reports no error");
    Sample::expect(above.port()->portRect().width() > 100, "the splitter sizes the port");
    delete splitter; // the widgets go, and the ports with them
    Sample::expect(!above.port() && !side.port(), "a port goes with its widget");
    return shown;
}

const Sample sample("windows", run);

} // namespace
