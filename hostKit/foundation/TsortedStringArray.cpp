#include "foundation/TsortedStringArray.h"

#include <algorithm>

unsigned TsortedStringArray::lowerBound(const Tstring& text) const
{
    return static_cast<unsigned>(std::lower_bound(fItems.begin(), fItems.end(), text) - fItems.begin());
}

unsigned TsortedStringArray::insert(const Tstring& text)
{
    const unsigned index = lowerBound(text);
    if (index == length() || fItems[index] != text)
        fItems.insert(index, text);
    return index;
}

int TsortedStringArray::find(const Tstring& text) const
{
    const unsigned index = lowerBound(text);
    return index < length() && fItems[index] == text ? static_cast<int>(index) : -1;
}
