#pragma once

/** A pixel position. */
class Tpoint
{
public:
    short x = 0;
    short y = 0;

    friend constexpr bool operator==(const Tpoint& a, const Tpoint& b) { return a.x == b.x && a.y == b.y; }
    friend constexpr bool operator!=(const Tpoint& a, const Tpoint& b) { return !(a == b); }
};
