// Colour index and colour tables.

#include "Graphics/3dPort/T3dPort.h"

TglColorTablePtrArray& T3dPort::fsAllColorTables = *new TglColorTablePtrArray(8);
TglColorTable* T3dPort::fsModelViewDefaultColorTable = nullptr;

TglColorTable* T3dPort::getColorTable(unsigned short base, bool& created)
{
    created = false;
    for (TglColorTable* table : fsAllColorTables)
        if (table->base() == base)
            return table;
    auto* table = new TglColorTable(static_cast<short>(base));
    fsAllColorTables.append(table);
    created = true;
    if (base == kModelViewColorBase)
        fsModelViewDefaultColorTable = table;
    return table;
}
