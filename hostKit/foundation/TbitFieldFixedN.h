#pragma once

#include <cstdint>

/** A stated number of flags, 32 at most, addressed by masks. Bits of a mask beyond that number have no effect. */
class TbitFieldFixedN
{
public:
    /** @p bits flags, all clear; more than 32 are taken as 32. */
    constexpr explicit TbitFieldFixedN(unsigned bits = 0) { resize(bits); }

    /** Changes the number of flags; those that stay keep their values, new ones are clear. */
    constexpr void resize(unsigned bits)
    {
        fSize = bits < 32 ? bits : 32;
        fValue &= all();
    }
    constexpr unsigned size() const { return fSize; }

    constexpr void setAll() { fValue = all(); }
    constexpr void clearAll() { fValue = 0; }
    /** True if any bit of @p mask is set. */
    constexpr bool test(std::uint32_t mask) const { return (fValue & mask) != 0; }
    constexpr void set(std::uint32_t mask) { fValue |= mask & all(); }
    constexpr void clear(std::uint32_t mask) { fValue &= ~mask; }
    /** Sets or clears the bits of @p mask. */
    constexpr void assign(std::uint32_t mask, bool on) { on ? set(mask) : clear(mask); }
    constexpr std::uint32_t value() const { return fValue; }

private:
    constexpr std::uint32_t all() const { return fSize == 32 ? 0xFFFFFFFFu : (1u << fSize) - 1u; }

    std::uint32_t fValue = 0;
    std::uint32_t fSize = 0;
};
