#include "Graphics/glResources/TglListId.h"

TglListId::TglListId(GLsizei count) : fFirst(count > 0 ? glGenLists(count) : 0), fCount(count)
{
}

TglListId::~TglListId()
{
    if (fFirst != 0)
        glDeleteLists(fFirst, fCount);
}
