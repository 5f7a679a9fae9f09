#pragma once

/** Base of what handles events. */
class TeventHandler
{
public:
    virtual ~TeventHandler();

    static bool fsUseScrollWheel; ///< false: wheel events are dropped
};
