// Commands as text, with the commands of the library, and the controls' scripts run by their sliders.

#include "fuzz/FuzzInput.h"

#include "commandEngine/TcommandEngine.h"
#include "commandEngine/TiceControlBaseCmd.h"
#include "foundation/TerrorHandler.h"

#include <QAbstractSlider>
#include <QApplication>
#include <QVBoxLayout>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    new QApplication(*argc, *argv);
    delete TerrorHandler::install(nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    QWidget panel;
    panel.setObjectName("panel");
    new QVBoxLayout(&panel);
    TiceControlBaseCmd::setDefaultParent(&panel);

    const TcommandOutcome outcome = TcommandEngine::execute(Tstring(std::string(FuzzInput(data, size).rest())));
    FUZZ_CHECK(outcome.ok == outcome.error.isEmpty());
    if (!outcome.ok)
        FUZZ_CHECK(std::holds_alternative<std::monostate>(outcome.result));
    asText(outcome.result);

    for (QAbstractSlider* slider : panel.findChildren<QAbstractSlider*>()) {
        slider->setValue(slider->maximum());
        slider->setValue(slider->minimum());
    }
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
