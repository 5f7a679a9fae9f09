#pragma once

#include "commandEngine/TiceControlBaseCmd.h"

/**
 * A command whose control is a QlirnWidgetGrp. Its flags set the columns: columnWidth (column, width), columnAttach
 * (column, "left", "right" or "both") and columnAlign (column, "left", "center" or "right"), each as often as need be;
 * a query of columnWidth tells the widths of all.
 */
class TelfBaseGrpCmd : public TiceControlBaseCmd
{
public:
    using TiceControlBaseCmd::TiceControlBaseCmd;

    int doEditFlags() override;
    int doQueryFlags() override;
    bool appendSyntax() override;
};
