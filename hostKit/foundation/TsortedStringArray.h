#pragma once

#include "foundation/TstringArray.h"

/** Different texts in ascending order. */
class TsortedStringArray
{
public:
    explicit TsortedStringArray(unsigned capacity = 0) : fItems(capacity) {}

    /** Puts @p text in its place unless it is in already. Returns its index. */
    unsigned insert(const Tstring& text);
    /** Index of @p text, -1 when it is not in. */
    int find(const Tstring& text) const;

    unsigned length() const { return fItems.length(); }
    bool isEmpty() const { return fItems.isEmpty(); }
    /** Text @p index, which must exist. */
    const Tstring& operator[](unsigned index) const { return fItems[index]; }

private:
    unsigned lowerBound(const Tstring& text) const;

    TstringArray fItems;
};
