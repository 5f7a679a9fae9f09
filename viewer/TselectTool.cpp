#include "TselectTool.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglLineStipple.h"
#include "Tview.h"
#include "foundation/Tmodifier.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr double kClickReach = 3;  // pixels that a click may wander
constexpr double kVertexReach = 8; // pixels from a vertex
constexpr TportColor kMarqueeColour{0.95f, 0.97f, 1.0f};

} // namespace

bool TselectTool::hasManipulator() const
{
    return !fScene.selection().isEmpty() && fScene.selection().kind() == Tselection::kObjects;
}

T4dDblPoint TselectTool::manipulatorPlace() const
{
    T4dDblVector lower;
    T4dDblVector upper;
    fScene.selectionBox(lower, upper);
    const T4dDblVector centre = (lower + upper) * 0.5;
    return {centre.x, centre.y, centre.z};
}

void TselectTool::press(Tview& view, const Tpoint& pixel, unsigned modifiers)
{
    fView = &view;
    fStart = fEnd = pixel;
    fKind = modifiers & kControl ? Tselection::kVertices
            : modifiers & kShift ? Tselection::kFaces
                                 : Tselection::kObjects;
    fGesture = kClick;
    if (!hasManipulator())
        return;
    view.loadCamera();
    const T4dDblPoint at = manipulatorPlace();
    const auto handle = TmoveManipulator::handleAt(view.port(), at, view.pixelRatio(), pixel);
    if (handle == TmoveManipulator::kNone)
        return;
    fManipulator.grab(view.port(), handle, at, pixel);
    fGesture = kMove;
    fStartOffsets.clear();
    for (const Tselection::Titem& item : fScene.selection().items())
        fStartOffsets.push_back(fScene.offset(item.fObject));
    changed();
}

void TselectTool::drag(Tview& view, const Tpoint& pixel)
{
    if (fView != &view || fGesture == kIdle)
        return;
    fEnd = pixel;
    if (fGesture == kMove) {
        view.loadCamera();
        const T4dDblVector by = fManipulator.moved(view.port(), pixel);
        const auto& items = fScene.selection().items();
        for (std::size_t i = 0; i < std::min(items.size(), fStartOffsets.size()); ++i)
            fScene.setOffset(items[i].fObject, fStartOffsets[i] + by);
        changed();
        return;
    }
    const double reach = kClickReach * view.pixelRatio();
    if (std::abs(pixel.x - fStart.x) > reach || std::abs(pixel.y - fStart.y) > reach)
        fGesture = kMarquee;
    if (fGesture == kMarquee)
        view.drawOver([this, &view] { drawMarquee(view); });
}

void TselectTool::release(Tview& view, const Tpoint& pixel)
{
    if (fView != &view || fGesture == kIdle)
        return;
    if (fGesture == kMove)
        drag(view, pixel); // the button may come up farther on than it was last seen
    const Tgesture gesture = fGesture;
    fGesture = kIdle;
    fView = nullptr;
    if (gesture == kMove) {
        fManipulator.release();
    } else if (gesture == kClick) {
        pick(view, fStart);
    } else {
        fEnd = pixel;
        view.endDrawingOver();
        TportRect region = marquee();
        view.loadCamera();
        view.port().clipSelectRect(region);
        fScene.select(fKind, Tpicker(view.port(), fScene, fWay).within(region, fKind));
    }
    changed();
}

void TselectTool::pick(Tview& view, const Tpoint& pixel)
{
    view.loadCamera();
    Tpicker picker(view.port(), fScene, fWay);
    const auto found = fKind == Tselection::kVertices
                           ? picker.nearestVertex(pixel, static_cast<int>(kVertexReach * view.pixelRatio()))
                           : picker.nearest(pixel, fKind);
    if (found)
        fScene.select(fKind, {*found});
    else
        fScene.select(Tselection::kObjects, {});
}

TportRect TselectTool::marquee() const
{
    const auto [left, right] = std::minmax(fStart.x, fEnd.x);
    const auto [bottom, top] = std::minmax(fStart.y, fEnd.y);
    return {left, bottom, static_cast<short>(right + 1), static_cast<short>(top + 1)};
}

void TselectTool::draw(Tview& view)
{
    T3dPort& port = view.port();
    if (hasManipulator())
        TmoveManipulator::draw(port, manipulatorPlace(), view.pixelRatio(), fManipulator.grabbed());
}

void TselectTool::drawMarquee(Tview& view)
{
    if (fView != &view || fGesture != kMarquee)
        return;
    T3dPort& port = view.port();
    const TportRect r = marquee();
    port.pushOrtho2D();
    port.color(kMarqueeColour);
    port.lineWidth(static_cast<float>(view.pixelRatio()));
    port.lineStipple(TglLineStipple::kDashed);
    port.rect(r.left, r.bottom, static_cast<float>(r.right - 1), static_cast<float>(r.top - 1), false);
    port.lineStipple(TglLineStipple::kSolid);
    port.lineWidth(1);
    port.popOrtho2D();
}

void TselectTool::changed()
{
    if (fChangedHook)
        fChangedHook();
}
