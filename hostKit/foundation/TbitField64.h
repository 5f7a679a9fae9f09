#pragma once

#include <cstdint>

/** 64 flags, addressed by masks. */
class TbitField64
{
public:
    constexpr TbitField64(std::uint64_t value = 0) : fValue(value) {}

    /** True if any bit of @p mask is set. */
    constexpr bool test(std::uint64_t mask) const { return (fValue & mask) != 0; }
    constexpr void set(std::uint64_t mask) { fValue |= mask; }
    constexpr void clear(std::uint64_t mask) { fValue &= ~mask; }
    /** Sets or clears the bits of @p mask. */
    constexpr void assign(std::uint64_t mask, bool on) { on ? set(mask) : clear(mask); }
    constexpr std::uint64_t value() const { return fValue; }

    friend constexpr bool operator==(TbitField64 a, TbitField64 b) { return a.fValue == b.fValue; }
    friend constexpr bool operator!=(TbitField64 a, TbitField64 b) { return a.fValue != b.fValue; }

private:
    std::uint64_t fValue;
};
