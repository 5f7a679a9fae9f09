#pragma once

#include "Graphics/Export.h"
#include "Graphics/interaction/TuvCache.h"
#include "foundation/Tarray.h"

/** UV caches by value, beside what every array of objects offers with the operations of their type. */
class LIRN_3DGRAPHICS_EXPORT TuvCacheArray : public TobjArray<TuvCache>
{
public:
    using TobjArray<TuvCache>::TobjArray;
    using TobjArray<TuvCache>::remove;

    // Runs of @p n elements outside any array. Memory has room for them and their alignment.

    /** Makes empty caches in raw memory. */
    static void construct(TuvCache* at, unsigned n = 1);
    /** Ends elements, and leaves raw memory. */
    static void destruct(TuvCache* at, unsigned n = 1);
    /** Copies elements into raw memory that does not overlap theirs. */
    static void initialize(TuvCache* at, const TuvCache* from, unsigned n);
    /** Assigns elements to others; the runs may overlap. */
    static void shuffle(TuvCache* to, const TuvCache* from, unsigned n);

    /** Ends all elements and gives their memory back. */
    void destroy();
    /** Puts a copy of @p item, which may be an element, before element @p index; false beyond the end. */
    bool insert(const TuvCache& item, unsigned index);
    void addLast(const TuvCache& item) { append(item); }
    /** Appends copies of @p n elements, which may be this array's own. */
    void addLast(const TuvCache* items, unsigned n);
    /** Takes the elements of @p other in the place of its own. */
    void copy(const TuvCacheArray& other) { *this = other; }
    /** Sets @p index to the first element equal to @p item and returns 0, or to the length and returns -1. */
    int find(const TuvCache& item, unsigned& index) const;
    /** 0 when an element is equal to @p item, else -1. */
    int find(const TuvCache& item) const;
    /** Removes the first element equal to @p item, which may be an element; false when there is none. */
    bool remove(const TuvCache& item);
};
