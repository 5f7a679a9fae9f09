#pragma once

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

/** A growable array. Positions that do not exist are refused: nothing changes, and the result is false. */
template <class T> class Tarray
{
    static_assert(!std::is_same_v<T, bool>, "use TuInt8Array: elements must be addressable");

public:
    using iterator = typename std::vector<T>::iterator;
    using const_iterator = typename std::vector<T>::const_iterator;

    /** An empty array with room for @p capacity elements. */
    explicit Tarray(unsigned capacity = 0) { fItems.reserve(capacity); }

    unsigned length() const { return static_cast<unsigned>(fItems.size()); }
    bool isEmpty() const { return fItems.empty(); }

    void append(const T& item) { fItems.push_back(item); }
    void append(T&& item) { fItems.push_back(std::move(item)); }
    /** Puts @p item before element @p index, or at the end when @p index is the length. */
    bool insert(unsigned index, const T& item)
    {
        if (index > length())
            return false;
        fItems.insert(fItems.begin() + index, item);
        return true;
    }
    bool remove(unsigned index)
    {
        if (index >= length())
            return false;
        fItems.erase(fItems.begin() + index);
        return true;
    }
    /** Removes the first element equal to @p item; false when there is none. */
    bool removeItem(const T& item)
    {
        const int index = find(item);
        return index >= 0 && remove(static_cast<unsigned>(index));
    }
    /** Removes the last @p n elements, or none when there are fewer. */
    bool removeLast(unsigned n = 1)
    {
        if (n > length())
            return false;
        fItems.erase(fItems.end() - n, fItems.end());
        return true;
    }
    void clear() { fItems.clear(); }

    /** Index of the first element equal to @p item, -1 when there is none. */
    int find(const T& item) const
    {
        const auto found = std::find(fItems.begin(), fItems.end(), item);
        return found == fItems.end() ? -1 : static_cast<int>(found - fItems.begin());
    }

    /** Cuts the array, or makes it longer by value-initialised elements. */
    void setLength(unsigned length) { fItems.resize(length); }
    /** Exchanges two elements. */
    bool swap(unsigned i, unsigned j)
    {
        if (i >= length() || j >= length())
            return false;
        if (i != j)
            std::swap(fItems[i], fItems[j]);
        return true;
    }
    /** Appends the elements of @p other, which may be this array. */
    void catenate(const Tarray& other)
    {
        const unsigned count = other.length();
        fItems.reserve(fItems.size() + count);
        for (unsigned i = 0; i < count; ++i)
            fItems.push_back(other.fItems[i]);
    }

    /** Element @p index, which must exist. */
    T& operator[](unsigned index)
    {
        assert(index < fItems.size());
        return fItems[index];
    }
    const T& operator[](unsigned index) const
    {
        assert(index < fItems.size());
        return fItems[index];
    }
    /** The last element; the array must not be empty. */
    T& last()
    {
        assert(!fItems.empty());
        return fItems.back();
    }
    const T& last() const
    {
        assert(!fItems.empty());
        return fItems.back();
    }

    iterator begin() { return fItems.begin(); }
    iterator end() { return fItems.end(); }
    const_iterator begin() const { return fItems.begin(); }
    const_iterator end() const { return fItems.end(); }
    T* data() { return fItems.data(); }
    const T* data() const { return fItems.data(); }

    friend bool operator==(const Tarray& a, const Tarray& b) { return a.fItems == b.fItems; }
    friend bool operator!=(const Tarray& a, const Tarray& b) { return !(a == b); }

private:
    std::vector<T> fItems;
};

/** The array of objects held by value. */
template <class T> using TobjArray = Tarray<T>;

using TuInt8Array = Tarray<std::uint8_t>;
using TuInt32Array = Tarray<std::uint32_t>;
