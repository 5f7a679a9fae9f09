#include "ui/QlirnUiObjectType.h"

#include <QVariant>
#include <QWidget>

#include <algorithm>
#include <vector>

namespace {

struct Ttype
{
    Tstring command;
    const QMetaObject* metaObject;
    Tstring name;
};

// Never deleted: commands with static storage register before and after everything else.
std::vector<Ttype>& types()
{
    static auto* all = new std::vector<Ttype>;
    return *all;
}

} // namespace

bool QlirnUiObjectType::registerUiObjectType(const char* commandName, const QMetaObject* metaObject,
                                             const char* typeName)
{
    Ttype type{Tstring(commandName), metaObject, Tstring(typeName)};
    if (type.command.isEmpty() || !metaObject || type.name.isEmpty())
        return false;
    auto& all = types();
    all.erase(std::remove_if(all.begin(), all.end(), [&](const Ttype& t) { return t.command == type.command; }),
              all.end());
    all.push_back(std::move(type));
    return true;
}

Tstring QlirnUiObjectType::typeName(const char* commandName)
{
    const Tstring command(commandName);
    for (const Ttype& type : types())
        if (type.command == command)
            return type.name;
    return Tstring();
}

Tstring QlirnUiObjectType::typeName(const QWidget* widget)
{
    if (!widget)
        return Tstring();
    const QVariant own = widget->property("objectTypeUI");
    if (own.isValid())
        return Tstring(own.toString().toStdString());
    for (const QMetaObject* meta = widget->metaObject(); meta; meta = meta->superClass())
        for (const Ttype& type : types())
            if (type.metaObject == meta)
                return type.name;
    return Tstring();
}
