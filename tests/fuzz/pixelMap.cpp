// Pixel maps of any size, resampled, switched and asked.

#include "fuzz/FuzzInput.h"

#include "foundation/TpixelMap.h"

#include <memory>

namespace {

constexpr int kMost = 100; // larger ones only take longer

/** No channel leaves the range that it had, but for rounding. */
void checkedZoom(TpixelMap& map, const TportRect& r)
{
    const auto channels = std::size_t(map.channels());
    int least[4] = {255, 255, 255, 255};
    int most[4] = {};
    const auto eachByte = [&](auto visit) {
        const std::size_t bytes = map.rowBytes() * std::size_t(map.height());
        for (std::size_t i = 0; i < bytes; ++i)
            visit(i % channels, int(map.pixels()[i]));
    };
    eachByte([&](std::size_t channel, int value) {
        least[channel] = std::min(least[channel], value);
        most[channel] = std::max(most[channel], value);
    });
    if (!map.zoom(r))
        return;
    FUZZ_CHECK(map.rect() == r && std::size_t(map.channels()) == channels);
    eachByte(
        [&](std::size_t channel, int value) { FUZZ_CHECK(value >= least[channel] - 1 && value <= most[channel] + 1); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    std::unique_ptr<GuardedBytes> lent;
    TpixelMap map;
    for (int step = 0; step < 6 && !input.isEmpty(); ++step) {
        switch (input.take<std::uint8_t>() % 6) {
        case 0:
            if (map.setSize(input.within(-2, kMost), input.within(-2, kMost), input.within(2, 5)))
                FUZZ_CHECK(!map.hasNonUnitAlpha() || map.channels() == 4);
            break;
        case 1: {
            const int width = input.within(-2, kMost);
            const int height = input.within(-2, kMost);
            const int channels = input.within(3, 4);
            auto bytes =
                std::make_unique<GuardedBytes>(std::size_t(std::max(width, 0) * std::max(height, 0) * channels));
            map.wrap(bytes->get(), width, height, channels);
            lent = std::move(bytes);
            break;
        }
        case 2: {
            const auto left = input.take<short>();
            const auto bottom = input.take<short>();
            checkedZoom(map, TportRect(left, bottom, short(left + input.within(-2, kMost)),
                                       short(bottom + input.within(-2, kMost))));
            break;
        }
        case 3:
            map.rgbaSwitch();
            break;
        case 4: { // what can't be had must be refused, not tried
            TpixelMap other;
            const int width = input.take<int>();
            const int height = input.take<int>();
            if (width > 32767 || height > 32767 || width <= 0 || height <= 0)
                FUZZ_CHECK(!other.setSize(width, height) && !other.pixels());
            break;
        }
        default:
            map.hasNonUnitAlpha();
        }
        const std::size_t bytes = map.pixels() ? map.rowBytes() * std::size_t(map.height()) : 0;
        const std::string_view colours = input.text(std::min<std::size_t>(bytes, 64));
        for (std::size_t i = 0; i < bytes && !colours.empty(); ++i)
            map.pixels()[i] = std::uint8_t(colours[i % colours.size()]);
    }
    return 0;
}
