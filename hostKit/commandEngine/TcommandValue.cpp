#include "commandEngine/TcommandValue.h"

#include <QByteArray>

Tstring asText(const TcommandResult& result)
{
    struct Tvisitor
    {
        Tstring operator()(std::monostate) const { return Tstring(); }
        Tstring operator()(bool value) const { return value ? "1" : "0"; }
        Tstring operator()(int value) const { return std::to_string(value); }
        Tstring operator()(double value) const { return QByteArray::number(value, 'g', 17).constData(); }
        Tstring operator()(const Tstring& value) const { return value; }
        Tstring operator()(const std::vector<int>& values) const
        {
            std::string text;
            for (const int value : values)
                text += (text.empty() ? "" : " ") + std::to_string(value);
            return text;
        }
    };
    return std::visit(Tvisitor(), result);
}
