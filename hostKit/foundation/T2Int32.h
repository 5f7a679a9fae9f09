#pragma once

#include <cstdint>

/** A width and a height. */
struct T2Int32
{
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend constexpr bool operator==(const T2Int32& a, const T2Int32& b)
    {
        return a.width == b.width && a.height == b.height;
    }
    friend constexpr bool operator!=(const T2Int32& a, const T2Int32& b) { return !(a == b); }
};
