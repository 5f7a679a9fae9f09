#pragma once

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/Tevent.h"

#include <string>
#include <vector>

/** A port that notes which handlers are called, with what. */
class RecordingPort : public T3dPort
{
public:
    using T3dPort::T3dPort;

    struct Call
    {
        std::string what;
        Tevent event;
    };

    const std::vector<Call>& calls() const { return fCalls; }
    void forget() { fCalls.clear(); }

    /** The handlers called since the last take(), as "press 1 (10,20)": name, button, local position. */
    std::vector<std::string> take()
    {
        std::vector<std::string> lines;
        for (const Call& call : fCalls) {
            const Tpoint at = call.event.getLocalPosition(1);
            lines.push_back(call.what + " " + std::to_string(call.event.button()) + " (" + std::to_string(at.x) + "," +
                            std::to_string(at.y) + ")");
        }
        forget();
        return lines;
    }

    bool doPress(const Tevent& event) override { return note("press", event) && T3dPort::doPress(event); }
    bool doDrag(const Tevent& event) override { return note("drag", event) && T3dPort::doDrag(event); }
    bool doRelease(const Tevent& event) override { return note("release", event) && T3dPort::doRelease(event); }
    bool doPtrMoved(const Tevent& event) override { return note("move", event) && T3dPort::doPtrMoved(event); }
    bool doDoubleClick(const Tevent& event) override { return note("double", event) && T3dPort::doDoubleClick(event); }
    bool doMouseWheel(const Tevent& event) override { return note("wheel", event); }
    bool doEnterRegion(const Tevent& event) override { return note("enter", event) && T3dPort::doEnterRegion(event); }
    bool doExitRegion(const Tevent& event) override { return note("exit", event) && T3dPort::doExitRegion(event); }

private:
    bool note(const char* what, const Tevent& event)
    {
        fCalls.push_back({what, event});
        return true;
    }

    std::vector<Call> fCalls;
};
