#pragma once

#include "Graphics/Export.h"
#include "QtExtensions/QlirnColorIndexSliderGrp.h"
#include "commandEngine/TelfBaseGrpCmd.h"

/**
 * The command "colorIndexSliderGrp": a group that picks an entry of the colour table by its index.
 *
 * Flags besides those of every group: label, extraLabel (texts; a group has them only when it was created with them),
 * value, minValue, maxValue (integers), changeCommand, dragCommand (scripts), invisible (clears the invisible index
 * when it lies outside the range), forceDragRefresh (accepted). A range that is refused leaves bounds, value and scripts
 * as they are; the texts are set by then.
 */
class LIRN_3DGRAPHICS_EXPORT TelfColorIndexSliderGrpCmd : public TelfBaseGrpCmd
{
public:
    explicit TelfColorIndexSliderGrpCmd(const char* name);

    int doEditFlags() override;
    int doQueryFlags() override;
    void clear() override;
    bool appendSyntax() override;
    bool makeControl() override;
    void deleteControl() override;
    bool findPtrs() override;
    QWidget* qControl() const override;

private:
    void editRange();
    void editValue();

    QPointer<QlirnColorIndexSliderGrp> fWidget;
};
