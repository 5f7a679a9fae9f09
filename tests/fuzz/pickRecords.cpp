// Searches through hit buffers of any content, with any number of hits.

#include "fuzz/FuzzInput.h"

#include "Graphics/3dPort/TpickBuffer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    const int hits = input.take<int>();
    const auto mask = input.take<unsigned>();
    const bool owned = input.flag();
    const auto stray = input.take<std::int16_t>();
    const std::size_t words = input.size() / sizeof(unsigned);
    const GuardedBytes memory(words * sizeof(unsigned));
    TpickBuffer records(int(words), owned ? nullptr : reinterpret_cast<unsigned*>(memory.get()));
    unsigned* const first = records.buffer();
    FUZZ_CHECK(records.size() == int(words));
    if (words > 0)
        std::memcpy(first, input.text(words * sizeof(unsigned)).data(), words * sizeof(unsigned));
    const auto isWhole = [&](const unsigned* names, unsigned count) {
        return names >= first + 3 && count <= words && names + count <= first + words && names[-3] == count;
    };

    unsigned zmin = 0;
    unsigned count = 0;
    std::size_t found = 0;
    unsigned nearest = 0xFFFFFFFFu;
    for (unsigned* names = nullptr; (names = records.nextElem(names, zmin, count)); ++found) {
        FUZZ_CHECK(isWhole(names, count) && found < words);
        if (count > 0 && hits > 0 && found < std::size_t(hits))
            nearest = std::min(nearest, zmin);
    }
    FUZZ_CHECK(zmin == 0xFFFFFFFFu && count == 0);

    if (const unsigned* closest = records.closestElem(hits, zmin, count))
        FUZZ_CHECK(isWhole(closest, count) && count > 0 && zmin == nearest);
    unsigned priority = 0;
    if (const unsigned* closest = records.closestElem(hits, mask, zmin, count, priority))
        FUZZ_CHECK(isWhole(closest, count) && count > 0 && (closest[count - 1] & mask) == priority && zmin >= nearest);

    // A pointer into the buffer that is not a record's.
    if (words > 0) {
        unsigned* const any = first + std::size_t(std::uint16_t(stray)) % words;
        if (const unsigned* next = records.nextElem(any, zmin, count))
            FUZZ_CHECK(isWhole(next, count));
    }
    return 0;
}
