#pragma once

#include "commandEngine/TiceBaseCmd.h"

/** The command "deleteUI": deletes the controls of the names given with what is in them, all of them or, when one does not exist, none. */
class TdeleteUICmd : public TiceBaseCmd
{
public:
    using TiceBaseCmd::TiceBaseCmd;

    bool appendSyntax() override;
    int doIt() override;
};
