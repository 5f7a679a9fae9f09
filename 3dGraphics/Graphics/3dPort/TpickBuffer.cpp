#include "Graphics/3dPort/TpickBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>

namespace {

constexpr std::ptrdiff_t kHeader = 3; ///< words before the names
constexpr unsigned kFarthest = 0xFFFFFFFFu;

} // namespace

TpickBuffer::TpickBuffer(int size, unsigned* buffer)
    : fBuffer(buffer), fSize(std::max(size, 0)), fOwned(buffer == nullptr)
{
    if (!fOwned)
        return;
    fBuffer = new (std::nothrow) unsigned[std::size_t(fSize)]();
    if (!fBuffer)
        fSize = 0;
}

TpickBuffer::~TpickBuffer()
{
    if (fOwned)
        delete[] fBuffer;
}

unsigned* TpickBuffer::nextElem(unsigned* prev, unsigned& zmin, unsigned& count) const
{
    zmin = kFarthest;
    count = 0;
    std::ptrdiff_t start = 0;
    if (prev) {
        // Not every pointer is one of a record's names.
        const std::less<const unsigned*> before;
        if (fSize < kHeader || before(prev, fBuffer + kHeader) || before(fBuffer + fSize, prev))
            return nullptr;
        const std::uint64_t next = std::uint64_t(prev - fBuffer) + prev[-kHeader];
        if (next > std::uint64_t(fSize))
            return nullptr;
        start = std::ptrdiff_t(next);
    }
    const std::ptrdiff_t room = fSize - start - kHeader;
    if (room < 0 || std::ptrdiff_t(fBuffer[start]) > room)
        return nullptr;
    count = fBuffer[start];
    zmin = fBuffer[start + 1];
    return fBuffer + start + kHeader;
}

unsigned* TpickBuffer::closestElem(int hits, unsigned& zmin, unsigned& count) const
{
    unsigned priority = 0;
    return closestElem(hits, 0, zmin, count, priority);
}

unsigned* TpickBuffer::closestElem(int hits, unsigned mask, unsigned& zmin, unsigned& count, unsigned& priority) const
{
    unsigned* closest = nullptr;
    zmin = kFarthest;
    count = 0;
    priority = 0;
    unsigned* names = nullptr;
    for (int hit = 0; hit < hits; ++hit) {
        unsigned depth = 0;
        unsigned length = 0;
        names = nextElem(names, depth, length);
        if (!names)
            break;
        if (length == 0)
            continue;
        const unsigned rank = names[length - 1] & mask;
        if (rank > priority || (rank == priority && depth < zmin)) {
            closest = names;
            zmin = depth;
            count = length;
            priority = rank;
        }
    }
    return closest;
}
