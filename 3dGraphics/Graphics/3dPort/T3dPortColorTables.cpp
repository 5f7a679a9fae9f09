// Colour index and colour tables.

#include "Graphics/3dPort/T3dPort.h"

TglColorTablePtrArray& T3dPort::fsAllColorTables = *new TglColorTablePtrArray(8);
TglColorTable* T3dPort::fsModelViewDefaultColorTable = nullptr;
Tarray<T3dPort::ColorTableGuard*>& T3dPort::fsColorTableGuards = *new Tarray<ColorTableGuard*>;

TglColorTable* T3dPort::getColorTable(unsigned short base, bool& created)
{
    TglColorTable* table = nullptr;
    for (TglColorTable* each : fsAllColorTables)
        if (!table && each->base() == base)
            table = each;
    created = !table;
    if (created) {
        table = new TglColorTable(static_cast<short>(base));
        fsAllColorTables.append(table);
    }
    // A table that was given the base later (setColorTableTopology) counts too.
    if (base == kModelViewColorBase && !fsModelViewDefaultColorTable)
        fsModelViewDefaultColorTable = table;
    return table;
}

TglColorTable* T3dPort::getModelViewColorTable()
{
    bool created = false;
    return getColorTable(kModelViewColorBase, created);
}

void T3dPort::setModelViewColorTable(TglColorTable* table)
{
    if (!table)
        return;
    for (unsigned i = fsAllColorTables.length(); i-- > 0;) {
        if (fsAllColorTables[i]->base() == kModelViewColorBase) {
            fsAllColorTables[i] = table;
            return;
        }
    }
}

void T3dPort::setColorTable(unsigned short i, const TportColor& c)
{
    getModelViewColorTable()->setColorTable(static_cast<short>(i), c);
}

TportColor T3dPort::colorTable(unsigned short i)
{
    for (const TglColorTable* table : fsAllColorTables)
        if (table->base() == kModelViewColorBase)
            return table->colorRGB(static_cast<short>(i));
    return kCblack;
}

T3dPort::ColorTableGuard::ColorTableGuard(TglColorTable* table) : fTable(table), fFormer(getModelViewColorTable())
{
    fsColorTableGuards.append(this);
    setModelViewColorTable(table);
}

T3dPort::ColorTableGuard::~ColorTableGuard()
{
    fsColorTableGuards.removeItem(this);
    // A table whose base has changed since is not found by its base.
    const int installed = fTable ? fsAllColorTables.find(fTable) : -1;
    if (installed >= 0)
        fsAllColorTables[static_cast<unsigned>(installed)] = fFormer;
    else
        setModelViewColorTable(fFormer);
    if (!fTable || fTable == fsModelViewDefaultColorTable || fTable == fFormer)
        return;
    for (const ColorTableGuard* guard : fsColorTableGuards)
        if (guard->fTable == fTable)
            return; // that one deletes it
    // Nobody may go on with the table: not a guard that is still there, and not a port made under this one.
    for (ColorTableGuard* guard : fsColorTableGuards)
        if (guard->fFormer == fTable)
            guard->fFormer = fFormer;
    for (T3dPort* port : fsAllPorts) {
        for (TglColorTable** table : {&port->fRequestedColorTable, &port->fActiveColorTable})
            if (*table == fTable)
                *table = fFormer;
    }
    delete fTable;
}

std::unique_ptr<T3dPort::ColorTableGuard> T3dPort::pushModelViewColorTable()
{
    getModelViewColorTable();
    return std::make_unique<ColorTableGuard>(fsModelViewDefaultColorTable);
}

std::unique_ptr<T3dPort::ColorTableGuard> T3dPort::pushCopyModelViewColorTable()
{
    getModelViewColorTable();
    auto copy = std::make_unique<TglColorTable>(static_cast<short>(kModelViewColorBase));
    copy->copyColors(*fsModelViewDefaultColorTable);
    return std::make_unique<ColorTableGuard>(copy.release());
}

TglColorTable* T3dPort::activeColorTable() const
{
    return fActiveColorTable ? getModelViewColorTable() : nullptr;
}

short T3dPort::getColorIndex(const TportColor& c) const
{
    const TglColorTable* table = activeColorTable();
    return table && fContext ? table->colorIndex(c, fContext->fIndexBuffer) : short(0);
}

void T3dPort::sendColorIndex(TglColorTable* table, int index)
{
    if (!table || !fContext)
        return;
    if (!fPortFlags.test(kPortInPrimitive))
        setCurrentContext();
    fContext->colorIndex(table, static_cast<short>(index));
}

void T3dPort::colorIndexActive(short i)
{
    if (TglColorTable* table = activeColorTable())
        sendColorIndex(table, i + table->firstIndex(1));
}

void T3dPort::colorIndexRelative(short i)
{
    TglColorTable* table = activeColorTable();
    if (table && fContext)
        sendColorIndex(table, i + table->firstIndex(fContext->fIndexBuffer));
}

short T3dPort::getMarqueeColor(const TportColor& c)
{
    constexpr short kDarkMarquee = 2;
    constexpr short kLightMarquee = 3;
    float hsv[3] = {};
    c.get(TportColor::kModelHsv, hsv);
    return hsv[2] > 0.25f ? kDarkMarquee : kLightMarquee;
}
