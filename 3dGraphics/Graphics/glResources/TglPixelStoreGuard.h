#pragma once

/**
 * Gives pixel transfers a plain pixel store while it lives: rows without gaps, nothing skipped or swapped, no buffer object.
 * Afterwards there is what was found (glPushClientAttrib).
 */
class TglPixelStoreGuard
{
public:
    /** The side that is set; both are put back. */
    enum Tdirection { kPack, kUnpack };

    explicit TglPixelStoreGuard(Tdirection direction);
    ~TglPixelStoreGuard();
    TglPixelStoreGuard(const TglPixelStoreGuard&) = delete;
    TglPixelStoreGuard& operator=(const TglPixelStoreGuard&) = delete;
};
