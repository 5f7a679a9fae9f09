#pragma once

#include "foundation/Tarray.h"

#include <algorithm>
#include <functional>

/**
 * The host's array with operations that move elements by assignment, and result codes: 0 for success, -1 for failure.
 * Elements that an operation is given may be the array's own.
 */
template <class T> class TelementArray : public TobjArray<T>
{
public:
    using TobjArray<T>::TobjArray;
    using TobjArray<T>::length;

    /** Puts @p item before element @p index, or at the end; -1, and nothing done, beyond it. */
    int insert(const T& item, unsigned index)
    {
        if (index > length())
            return -1;
        if (isOwn(&item)) {
            const T copied(item);
            return insertForeign(copied, index);
        }
        return insertForeign(item, index);
    }
    int addLast(const T& item) { return insert(item, length()); }
    /** Appends @p count elements from @p items on; -1, and nothing done, for null. */
    int addLast(const T* items, unsigned count)
    {
        if (!items)
            return -1;
        const unsigned before = length();
        const bool own = isOwn(items);
        const auto start = own ? static_cast<unsigned>(items - this->data()) : 0;
        this->setLength(before + count);
        for (unsigned i = 0; i < count; ++i)
            (*this)[before + i] = own ? (*this)[start + i] : items[i];
        return 0;
    }
    /** Sets @p index to that of the first element equal to @p item; -1, and the length, when there is none. */
    int find(const T& item, unsigned& index) const
    {
        const auto found = std::find(this->begin(), this->end(), item);
        index = static_cast<unsigned>(found - this->begin());
        return found == this->end() ? -1 : 0;
    }
    int find(const T& item) const
    {
        unsigned index = 0;
        return find(item, index);
    }
    /** Removes the first element equal to @p item. */
    int remove(const T& item)
    {
        unsigned index = 0;
        if (find(item, index) != 0)
            return -1;
        shuffle(index, 0, 1);
        this->setLength(length() - 1);
        return 0;
    }
    /** Appends the elements of @p other. */
    void catenate(const TelementArray& other) { addLast(other.data(), other.length()); }
    /** Takes the elements of @p other in the place of the own ones. */
    void copy(const TelementArray& other)
    {
        if (&other == this)
            return;
        this->clear();
        catenate(other);
    }
    /**
     * Assigns the elements from @p position on to the places @p count further up, to open a gap, or from @p position +
     * @p count on to those further down, to close one. The length stays; what would get outside is dropped.
     */
    void shuffle(unsigned position, int open, unsigned count)
    {
        if (position >= length() || count >= length() - position)
            return;
        const auto first = this->begin() + position;
        if (open)
            std::copy_backward(first, this->end() - count, this->end());
        else
            std::copy(first + count, this->end(), first);
    }

private:
    bool isOwn(const T* item) const
    {
        const std::less<const T*> before;
        return !before(item, this->data()) && before(item, this->data() + length());
    }
    int insertForeign(const T& item, unsigned index)
    {
        this->setLength(length() + 1);
        shuffle(index, 1, 1);
        (*this)[index] = item;
        return 0;
    }
};
