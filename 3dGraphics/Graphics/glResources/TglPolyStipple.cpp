#include "Graphics/glResources/TglPolyStipple.h"

#include <algorithm>
#include <cstring>
#include <iterator>

const TglPolyStipple TglPolyStipple::kSolid(0xFFFF);
const TglPolyStipple TglPolyStipple::kHalftone(0xA5A5);
const TglPolyStipple TglPolyStipple::k25Percent(0xA0A0);
const TglPolyStipple TglPolyStipple::k75Percent(0xAFAF);
const TglPolyStipple TglPolyStipple::kSlash(0x9C63);

TglPolyStipple::TglPolyStipple(unsigned short code)
{
    for (int row = 0; row < kRows; ++row) {
        const unsigned nibble = (code >> (4 * (row % 4))) & 0xFu;
        const auto byte = static_cast<unsigned char>(nibble * 17);
        fillRow(row, byte, byte);
    }
    findOutWhetherSolid();
}

TglPolyStipple::TglPolyStipple(const unsigned char* bytes, int count)
{
    if (bytes && count == kMaskBytes) {
        std::memcpy(fMask, bytes, kMaskBytes);
    } else if (bytes && count == 32) {
        for (int i = 0; i < 16; ++i) {
            fillRow(2 * i, bytes[2 * i], bytes[2 * i + 1]);
            if (i < 4)
                fillRow(25 + 2 * i, bytes[2 * i], bytes[2 * i + 1]);
        }
    } else if (bytes && count == 8) {
        // In steps of seven rows, so that a later byte overwrites where two meet.
        for (int i = 0; i < 8; ++i)
            for (int row = i; row < kRows; row += 7)
                fillRow(row, bytes[i], bytes[i]);
    } else {
        std::fill(std::begin(fMask), std::end(fMask), static_cast<unsigned char>(0xFF));
    }
    findOutWhetherSolid();
}

void TglPolyStipple::fillRow(int row, unsigned char a, unsigned char b)
{
    unsigned char* bytes = fMask + row * kRowBytes;
    bytes[0] = bytes[2] = a;
    bytes[1] = bytes[3] = b;
}

void TglPolyStipple::findOutWhetherSolid()
{
    fSolid = std::all_of(std::begin(fMask), std::end(fMask), [](unsigned char byte) { return byte == 0xFF; });
}
