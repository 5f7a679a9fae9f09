#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

/**
 * A stated number of flags. Those of up to 32 flags need no memory of their own; masks address the first 32, positions
 * all of them. What lies beyond the number has no effect.
 */
class TbitFieldFixedN
{
public:
    /** @p bits flags, all clear. */
    explicit TbitFieldFixedN(unsigned bits = 0) { resize(bits); }

    /** Changes the number of flags; those that stay keep their values, new ones are clear. */
    void resize(unsigned bits)
    {
        fSize = bits;
        fRest.resize(bits > 32 ? (bits - 1) / 32 : 0);
        trim();
    }
    unsigned size() const { return fSize; }

    void setAll()
    {
        fValue = ~0u;
        std::fill(fRest.begin(), fRest.end(), ~0u);
        trim();
    }
    void clearAll()
    {
        fValue = 0;
        std::fill(fRest.begin(), fRest.end(), 0u);
    }
    bool isAnySet() const
    {
        return fValue != 0 || std::any_of(fRest.begin(), fRest.end(), [](std::uint32_t word) { return word != 0; });
    }

    /** Flag number @p index; false beyond the last one. */
    bool testBit(unsigned index) const { return index < fSize && (word(index) >> index % 32 & 1) != 0; }
    void setBit(unsigned index, bool on)
    {
        if (index >= fSize)
            return;
        std::uint32_t& bits = index < 32 ? fValue : fRest[index / 32 - 1];
        bits = on ? bits | 1u << index % 32 : bits & ~(1u << index % 32);
    }

    /** True if any bit of @p mask is set. */
    bool test(std::uint32_t mask) const { return (fValue & mask) != 0; }
    void set(std::uint32_t mask) { fValue |= mask & first(); }
    void clear(std::uint32_t mask) { fValue &= ~mask; }
    /** Sets or clears the bits of @p mask. */
    void assign(std::uint32_t mask, bool on) { on ? set(mask) : clear(mask); }
    /** The first 32 flags. */
    std::uint32_t value() const { return fValue; }

    /** Equal are fields of the same number of flags with the same values. */
    friend bool operator==(const TbitFieldFixedN& a, const TbitFieldFixedN& b)
    {
        return a.fSize == b.fSize && a.fValue == b.fValue && a.fRest == b.fRest;
    }
    friend bool operator!=(const TbitFieldFixedN& a, const TbitFieldFixedN& b) { return !(a == b); }

private:
    std::uint32_t first() const { return fSize >= 32 ? ~0u : (1u << fSize) - 1u; }
    std::uint32_t word(unsigned index) const { return index < 32 ? fValue : fRest[index / 32 - 1]; }
    void trim()
    {
        fValue &= first();
        if (!fRest.empty() && fSize % 32 != 0)
            fRest.back() &= (1u << fSize % 32) - 1u;
    }

    std::uint32_t fValue = 0;
    std::uint32_t fSize = 0;
    std::vector<std::uint32_t> fRest; ///< from flag 32 on
};
