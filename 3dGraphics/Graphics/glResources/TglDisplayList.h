#pragma once

#include "Graphics/glResources/TglListId.h"
#include "foundation/TcountedPtr.h"

/** A handle on one display list, which T3dPort::newList compiles into. Copies share the list. */
class TglDisplayList
{
public:
    bool isCompiled() const { return bool(fList); }
    /** The list's name; 0 before anything has been compiled. */
    GLuint name() const { return fList ? fList->first() : 0; }
    /** Draws the list (glCallList); nothing before it is compiled. */
    void call() const
    {
        if (fList)
            glCallList(fList->first());
    }

    TcountedPtr<TglListId> fList;
};
