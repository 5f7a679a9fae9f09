#include "foundation/TerrorHandler.h"

#include <algorithm>
#include <cstdio>
#include <mutex>
#include <utility>
#include <vector>

namespace {

struct Treports
{
    std::mutex fMutex;
    TerrorHandler* fCurrent = nullptr;
    std::vector<std::weak_ptr<const TerrorHandler::Tlistener>> fListeners;
};

// Never destroyed: whatever is destroyed at the end of the process may still have something to report.
Treports& theReports()
{
    static Treports* const reports = [] {
        auto* made = new Treports;
        made->fCurrent = new TerrorHandler;
        return made;
    }();
    return *reports;
}

} // namespace

TerrorHandler::Tsubscription& TerrorHandler::Tsubscription::operator=(Tsubscription&&) noexcept = default;

void TerrorHandler::Tsubscription::end()
{
    fListener.reset();
}

TerrorHandler::~TerrorHandler()
{
    Treports& reports = theReports();
    const std::lock_guard<std::mutex> guard(reports.fMutex);
    if (reports.fCurrent == this)
        reports.fCurrent = nullptr;
}

void TerrorHandler::handle(Tseverity severity, const Tstring& message)
{
    const char* const title = severity == kError ? "Error: " : severity == kWarning ? "Warning: " : "";
    std::fprintf(stderr, "%s%s\n", title, message.asChar());
}

TerrorHandler* TerrorHandler::current()
{
    Treports& reports = theReports();
    const std::lock_guard<std::mutex> guard(reports.fMutex);
    return reports.fCurrent;
}

TerrorHandler* TerrorHandler::install(TerrorHandler* handler)
{
    Treports& reports = theReports();
    const std::lock_guard<std::mutex> guard(reports.fMutex);
    return std::exchange(reports.fCurrent, handler);
}

void TerrorHandler::report(Tseverity severity, const Tstring& message)
{
    // Called without the lock: a listener may report, subscribe or install.
    std::vector<std::weak_ptr<const Tlistener>> listeners;
    {
        Treports& reports = theReports();
        const std::lock_guard<std::mutex> guard(reports.fMutex);
        auto& all = reports.fListeners;
        all.erase(std::remove_if(all.begin(), all.end(), [](const auto& each) { return each.expired(); }), all.end());
        listeners = all;
    }
    for (const auto& each : listeners) {
        if (const auto listener = each.lock())
            (*listener)(severity, message);
    }
    if (TerrorHandler* const handler = current())
        handler->handle(severity, message);
}

TerrorHandler::Tsubscription TerrorHandler::subscribe(Tlistener listener)
{
    if (!listener)
        return {};
    const auto kept = std::make_shared<const Tlistener>(std::move(listener));
    Treports& reports = theReports();
    const std::lock_guard<std::mutex> guard(reports.fMutex);
    reports.fListeners.push_back(kept);
    return Tsubscription(kept);
}
