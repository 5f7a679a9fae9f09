#include "Graphics/interaction/TuvCacheArray.h"

#include <algorithm>
#include <functional>
#include <memory>

void TuvCacheArray::construct(TuvCache* at, unsigned n)
{
    std::uninitialized_value_construct_n(at, n);
}

void TuvCacheArray::destruct(TuvCache* at, unsigned n)
{
    std::destroy_n(at, n);
}

void TuvCacheArray::initialize(TuvCache* at, const TuvCache* from, unsigned n)
{
    std::uninitialized_copy_n(from, n, at);
}

void TuvCacheArray::shuffle(TuvCache* to, const TuvCache* from, unsigned n)
{
    if (std::less<const TuvCache*>()(from, to))
        std::copy_backward(from, from + n, to + n);
    else
        std::copy_n(from, n, to);
}

void TuvCacheArray::destroy()
{
    *this = TuvCacheArray();
}

bool TuvCacheArray::insert(const TuvCache& item, unsigned index)
{
    return TobjArray<TuvCache>::insert(index, item);
}

void TuvCacheArray::addLast(const TuvCache* items, unsigned n)
{
    TuvCacheArray run(n);
    for (unsigned i = 0; i < n; ++i)
        run.append(items[i]);
    for (TuvCache& item : run)
        append(std::move(item));
}

int TuvCacheArray::find(const TuvCache& item, unsigned& index) const
{
    const auto found = std::find(begin(), end(), item);
    index = static_cast<unsigned>(found - begin());
    return found == end() ? -1 : 0;
}

int TuvCacheArray::find(const TuvCache& item) const
{
    unsigned index = 0;
    return find(item, index);
}

bool TuvCacheArray::remove(const TuvCache& item)
{
    return removeItem(item);
}
