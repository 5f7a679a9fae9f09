#pragma once

/** Bits of the modifier keys held down during an event. */
enum Tmodifier : unsigned { kNoModifier = 0, kShift = 1, kCapsLock = 2, kControl = 4, kAlt = 8 };
