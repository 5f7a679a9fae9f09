#include "commandEngine/TelfBaseGrpCmd.h"

#include "commandEngine/TfailedException.h"
#include "commandEngine/commandFlags.h"
#include "ui/QlirnWidgetGrp.h"

namespace {

template <class T> struct Tnamed
{
    const char* name;
    T value;
};

constexpr Tnamed<QlirnWidgetGrp::Tattach> kAttachments[] = {
    {"left", QlirnWidgetGrp::kLeft}, {"right", QlirnWidgetGrp::kRight}, {"both", QlirnWidgetGrp::kBoth}};
constexpr Tnamed<Qt::AlignmentFlag> kAlignments[] = {
    {"left", Qt::AlignLeft}, {"center", Qt::AlignHCenter}, {"right", Qt::AlignRight}};

template <class T, std::size_t N> T valueOf(const Tnamed<T> (&table)[N], const Tstring& name)
{
    for (const auto& each : table)
        if (name == each.name)
            return each.value;
    throw TfailedException(Tstring::tFormat("'^1s' is no place in a column.", name));
}

} // namespace

bool TelfBaseGrpCmd::appendSyntax()
{
    return TiceControlBaseCmd::appendSyntax() &&
           flags().addFlag(kELFcolumnWidthFlag, kELFcolumnWidthFlagLong, Tsyntax::kInteger, Tsyntax::kInteger) &&
           flags().makeFlagMultiUse(kELFcolumnWidthFlag) &&
           flags().addFlag(kELFcolumnAttachFlag, kELFcolumnAttachFlagLong, Tsyntax::kInteger, Tsyntax::kString) &&
           flags().makeFlagMultiUse(kELFcolumnAttachFlag) &&
           flags().addFlag(kELFcolumnAlignFlag, kELFcolumnAlignFlagLong, Tsyntax::kInteger, Tsyntax::kString) &&
           flags().makeFlagMultiUse(kELFcolumnAlignFlag);
}

int TelfBaseGrpCmd::doEditFlags()
{
    auto* group = qobject_cast<QlirnWidgetGrp*>(qControl());
    if (!group)
        return 0;
    const auto column = [&](const char* flag, unsigned use) {
        const int number = args().integer(flag, 0, use);
        if (!group->column(number))
            throw TfailedException(Tstring::tFormat("The group has no column ^1d.", number));
        return number;
    };
    try {
        for (unsigned i = 0; i < args().uses(kELFcolumnWidthFlag); ++i)
            group->setColumnWidth(column(kELFcolumnWidthFlag, i), args().integer(kELFcolumnWidthFlag, 1, i));
        for (unsigned i = 0; i < args().uses(kELFcolumnAttachFlag); ++i)
            group->setColumnAttach(column(kELFcolumnAttachFlag, i),
                                   valueOf(kAttachments, args().string(kELFcolumnAttachFlag, 1, i)));
        for (unsigned i = 0; i < args().uses(kELFcolumnAlignFlag); ++i)
            group->setColumnAlign(column(kELFcolumnAlignFlag, i),
                                  valueOf(kAlignments, args().string(kELFcolumnAlignFlag, 1, i)) | Qt::AlignVCenter);
    } catch (const TfailedException& e) {
        setError(e.key());
        return 0;
    }
    return TiceControlBaseCmd::doEditFlags();
}

int TelfBaseGrpCmd::doQueryFlags()
{
    const auto* group = qobject_cast<QlirnWidgetGrp*>(qControl());
    if (!group || !args().isFlagSet(kELFcolumnWidthFlag))
        return TiceControlBaseCmd::doQueryFlags();
    std::vector<int> widths;
    for (int i = 1; i <= group->columnCount(); ++i)
        widths.push_back(group->columnWidth(i));
    setResult(std::move(widths));
    return 1;
}
