#include "foundation/TresourceMap.h"

#include "foundation/LirnGetEnv.h"

#include <charconv>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

struct Tvalues
{
    std::mutex fMutex;
    std::map<std::string, std::string, std::less<>> fSet;
    std::map<std::string, std::string, std::less<>> fFromFile;
    bool fFileIsRead = false;
};

Tvalues& theValues()
{
    static Tvalues values;
    return values;
}

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string fullKey(std::string_view name, std::string_view key)
{
    return std::string(name).append(".").append(key);
}

void readFile(Tvalues& values)
{
    values.fFileIsRead = true;
    const char* const path = LirnGetEnv("LIRN_RESOURCES");
    if (!path || !*path)
        return;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        const std::string_view text = trimmed(line);
        const std::size_t colon = text.find(':');
        if (text.empty() || text.front() == '!' || colon == std::string_view::npos)
            continue;
        values.fFromFile[std::string(trimmed(text.substr(0, colon)))] = trimmed(text.substr(colon + 1));
    }
}

bool lookUp(const char* name, const char* key, std::string& value)
{
    Tvalues& values = theValues();
    const std::lock_guard<std::mutex> guard(values.fMutex);
    if (!values.fFileIsRead)
        readFile(values);
    for (const std::string& full : {fullKey(name ? name : "", key ? key : ""), fullKey("*", key ? key : "")}) {
        for (const auto* map : {&values.fSet, &values.fFromFile}) {
            const auto found = map->find(full);
            if (found != map->end()) {
                value = found->second;
                return true;
            }
        }
    }
    return false;
}

} // namespace

Tstring TresourceMap::GetResourceString(const char* name, const char* key, const char* def)
{
    std::string value;
    return lookUp(name, key, value) ? Tstring(value) : Tstring(def);
}

int TresourceMap::GetResourceNumber(const char* name, const char* key, int def)
{
    std::string value;
    if (!lookUp(name, key, value))
        return def;
    const std::string_view text = trimmed(value);
    const char* const end = text.data() + text.size();
    int number = 0;
    const auto [after, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && after == end ? number : def;
}

bool TresourceMap::Set(const char* name, const char* key, const char* value)
{
    if (!name || !key)
        return false;
    Tvalues& values = theValues();
    const std::lock_guard<std::mutex> guard(values.fMutex);
    values.fSet[fullKey(name, key)] = value ? value : "";
    return true;
}

void TresourceMap::Clear()
{
    Tvalues& values = theValues();
    const std::lock_guard<std::mutex> guard(values.fMutex);
    values.fSet.clear();
    values.fFromFile.clear();
    values.fFileIsRead = false;
}
