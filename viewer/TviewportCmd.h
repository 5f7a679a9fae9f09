#pragma once

#include "TviewCamera.h"
#include "TviewScene.h"
#include "commandEngine/TiceBaseCmd.h"

#include <optional>

class TviewerWindow;

/**
 * The command "viewport": how the viewer shows its model. Flags, short and long: shading ("wire", "flat" or "smooth"),
 * surface ("clay", "texture", "sphere" or "cube"), wireIndex (1 to TviewScene::kWireColours), edges, ghosted, xray,
 * lamp, marks, labels, hud, fourViews (switches), camera ("perspective", "top", "front" or "side") of the first view;
 * all of these can be queried. tumble (right and up, in degrees) turns the first view's camera, frame shows what is
 * selected, or else everything, and snapshot writes what the views show to a PNG file, of the width and height of the
 * flag size if given, after all else is done. A run whose arguments are refused changes nothing.
 */
class TviewportCmd : public TiceBaseCmd
{
public:
    using TiceBaseCmd::TiceBaseCmd;

    /** The window that the command is about, not owned, which may die at any time; null for none. */
    static void setWindow(TviewerWindow* window);

    int doEditFlags() override;
    int doQueryFlags() override;
    bool appendSyntax() override;

private:
    void readStyle(TviewScene::Tstyle& style) const;
    std::optional<TviewCamera::Tprojection> readCamera() const;
    void writeSnapshot() const;
};
