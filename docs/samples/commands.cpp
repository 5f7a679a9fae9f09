// A panel of controls that a script makes.

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TiceControlBaseCmd.h"
#ifdef HAS_PYTHON
#include "script/TpythonInterpreter.h"
#endif

#include <QApplication>
#include <QImage>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <QWidget>

namespace {

void fillColourTable()
{
    for (unsigned short i = 0; i <= 8; ++i) {
        const float t = static_cast<float>(i) / 8;
        T3dPort::setColorTable(i, TportColor(0.2f + 0.7f * t, 0.45f + 0.2f * t, 0.75f - 0.5f * t));
    }
}

bool makePanel(QWidget& panel, const QString& picture)
{
    TiceControlBaseCmd::setDefaultParent(&panel); // takes the controls for which no parent is named
    const Tstring command = Tstring::tFormat("image -image \"^1s\" -annotation \"The view\" preview",
                                             Tstring(picture.toUtf8().constData()));
    const TcommandOutcome outcome = TcommandEngine::execute(command);
    return outcome.ok;
}

QImage run()
{
    fillColourTable();
    QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("preview.png"));
    QImage preview = Sample::drawing(QSize(384, 130), 3, [](T3dPort& port) {
        port.clearColor(TportColor(0.17f, 0.19f, 0.21f));
        port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        port.perspective(30, 384.0 / 130, 1, 20);
        port.polarView(7.5, 30, 60, 0);
        port.depthTest(true);
        port.setGlobalAmbient(kCwhite);
        port.setLightingModel();
        port.setDefaultLight(0, T4dDblVector(-1, -1, 2));
        port.setDiffuseColor(T3dPort::colorTable(6));
        port.box(true);
        port.disableLighting();
        port.depthFunc(T3dPort::kDepthLequal);
        port.lineWidth(4);
        port.color(T3dPort::colorTable(5));
        port.box(false);
        port.depthFunc(T3dPort::kDepthLess);
    });
    preview.save(file);

    QWidget panel;
    new QVBoxLayout(&panel);
    Sample::expect(makePanel(panel, file), "the picture's control is made");
#ifdef HAS_PYTHON
    const auto outcome = TpythonInterpreter::instance()->executeFile(GUIDE_SAMPLES "/commands.py");
    Sample::expect(outcome.ok, outcome.error.asChar());
#endif
    panel.resize(400, 240);
    panel.show();
    QApplication::processEvents();
    return panel.grab().toImage();
}

const Sample sample("commands", run);

} // namespace
