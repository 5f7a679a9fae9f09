#include "Tselection.h"

#include <algorithm>

bool Tselection::contains(const Titem& item) const
{
    return std::binary_search(fItems.begin(), fItems.end(), item);
}

void Tselection::set(Tkind kind, std::vector<Titem> items)
{
    fKind = kind;
    fItems = std::move(items);
    std::sort(fItems.begin(), fItems.end());
    fItems.erase(std::unique(fItems.begin(), fItems.end()), fItems.end());
}
