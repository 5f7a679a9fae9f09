#pragma once

#include "foundation/Tpoint.h"

class Tview;
class TviewScene;

/** Paints on the model's texture where the pointer goes over the model. */
class Tbrush
{
public:
    explicit Tbrush(TviewScene& scene) : fScene(scene) {}

    bool isOn() const { return fIsOn; }
    void setOn(bool on) { fIsOn = on; }

    // Pixels are those of the view's port. True when the texture was painted on.

    bool press(Tview& view, const Tpoint& pixel);
    bool drag(Tview& view, const Tpoint& pixel);

private:
    bool paint(Tview& view, const Tpoint& pixel);

    TviewScene& fScene;
    bool fIsOn = false;
    Tpoint fLast;
};
