#pragma once

#include "TmoveManipulator.h"
#include "Tpicker.h"
#include "foundation/Tpoint.h"

#include <functional>
#include <string>
#include <vector>

class Tview;

/**
 * What the left button does in the views. A click picks the object under the pointer, with shift the face, with control the
 * vertex; dragging a marquee picks all inside it. The arrows at picked objects move them.
 */
class TselectTool
{
public:
    explicit TselectTool(TviewScene& scene) : fScene(scene) {}

    /** Called after the selection, or the place of an object, has changed. */
    void setChangedHook(std::function<void()> hook) { fChangedHook = std::move(hook); }

    Tpicker::Tway way() const { return fWay; }
    void setWay(Tpicker::Tway way) { fWay = way; }

    // Pixels are those of the view's port.

    /** @param modifiers  bits of Tmodifier */
    void press(Tview& view, const Tpoint& pixel, unsigned modifiers);
    void drag(Tview& view, const Tpoint& pixel);
    void release(Tview& view, const Tpoint& pixel);

    /** Draws the arrows; the port's matrices are the camera's. */
    void draw(Tview& view);
    /** Draws the marquee, if one is being dragged in the view. */
    void drawMarquee(Tview& view);

private:
    enum Tgesture { kIdle, kClick, kMarquee, kMove };

    void pick(Tview& view, const Tpoint& pixel);
    TportRect marquee() const;
    bool hasManipulator() const;
    T4dDblPoint manipulatorPlace() const;
    void changed();

    TviewScene& fScene;
    Tpicker::Tway fWay = Tpicker::kSelection;
    std::function<void()> fChangedHook;
    Tgesture fGesture = kIdle;
    const Tview* fView = nullptr; ///< of the gesture
    Tselection::Tkind fKind = Tselection::kObjects;
    Tpoint fStart;
    Tpoint fEnd;
    TmoveManipulator fManipulator;
    std::vector<T4dDblVector> fStartOffsets; ///< of the selected objects
};
