// Pixel maps and blocks on a real port: drawn anywhere, flipped, clipped, read back. The record must stay true.

#include "fuzz/FuzzInput.h"
#include "support/PortWindow.h"

#include "Graphics/glResources/TglPixels.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/TpixelMap.h"

namespace {

constexpr int kMost = 200;

/** A map whose last byte is the last that can be touched. */
class LentMap
{
public:
    explicit LentMap(FuzzInput& input)
        : fWidth(input.within(1, kMost)), fHeight(input.within(1, kMost)), fChannels(input.within(3, 4)),
          fBytes(std::size_t(fWidth * fHeight * fChannels))
    {
        std::memset(fBytes.get(), input.take<std::uint8_t>(), std::size_t(fWidth * fHeight * fChannels));
        FUZZ_CHECK(fMap.wrap(fBytes.get(), fWidth, fHeight, fChannels));
        fMap.setRgba(input.flag());
    }
    TpixelMap& operator*() { return fMap; }

private:
    int fWidth;
    int fHeight;
    int fChannels;
    GuardedBytes fBytes;
    TpixelMap fMap;
};

TportRect takeRect(FuzzInput& input)
{
    const auto left = input.take<short>();
    const auto bottom = input.take<short>();
    const auto right = input.take<short>();
    return TportRect(left, bottom, right, input.take<short>());
}

double takeCoordinate(FuzzInput& input)
{
    return input.flag() ? input.take<double>() : input.within(-kMost, kMost);
}

void step(T3dPort& port, FuzzInput& input)
{
    switch (input.take<std::uint8_t>() % 12) {
    case 0: {
        const T4dDblPoint p(takeCoordinate(input), takeCoordinate(input), takeCoordinate(input), 1);
        port.pixelMapDraw(p, *LentMap(input), input.flag());
        break;
    }
    case 1: {
        const T4dDblPoint p(takeCoordinate(input), takeCoordinate(input), takeCoordinate(input), 1);
        port.pixelMapDrawClipped(p, *LentMap(input));
        break;
    }
    case 2: {
        const TportRect to = takeRect(input);
        const TportRect from = takeRect(input);
        port.pixelMapDraw(to, *LentMap(input), from, input.flag());
        break;
    }
    case 3: {
        const auto x = input.take<short>();
        const auto y = input.take<short>();
        port.pixelMapDraw(x, y, *LentMap(input), input.flag());
        break;
    }
    case 4: {
        const auto x = float(takeCoordinate(input));
        port.writePixelMap(*LentMap(input), x, float(takeCoordinate(input)));
        break;
    }
    case 5:
        port.pixelMapRead(*LentMap(input), input.take<short>());
        break;
    case 6: {
        TportRect area = takeRect(input);
        port.pixelMapRead(*LentMap(input), 0, area);
        break;
    }
    case 7: {
        const TportRect box = takeRect(input);
        port.scissor(box, input.flag());
        break;
    }
    case 8:
        port.copyPixels(T3dPort::TcopyMode(input.within(0, 4)));
        break;
    case 9:
        port.setUseBackingStore(input.flag());
        port.saveBackingStore();
        port.restoreBackingStore();
        break;
    case 10: {
        constexpr TglPixels::TpixelFormat kFormats[] = {TglPixels::kRgb, TglPixels::kRgba, TglPixels::kBgra,
                                                        TglPixels::kDepth, TglPixels::kAlpha};
        constexpr TglPixels::TpixelType kTypes[] = {TglPixels::kUnsignedByte, TglPixels::kUnsignedShort,
                                                    TglPixels::kUnsignedInt, TglPixels::kFloat, TglPixels::kBitmap};
        TglPixels block(kFormats[input.within(0, 4)], input.within(-1, kMost), input.within(-1, kMost),
                        kTypes[input.within(0, 4)]);
        const auto x = input.take<short>();
        const auto y = input.take<short>();
        port.readPixels(block, x, y);
        port.writePixels(block, y, x);
        break;
    }
    default: {
        LentMap map(input);
        const TportRect to(0, 0, short(input.within(1, kMost)), short(input.within(1, kMost)));
        FUZZ_CHECK((*map).zoom(to));
        port.pixelMapDraw(to, *map, input.flag());
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    setenv("QT_QPA_PLATFORM", "xcb", 0);
    new QApplication(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static auto* const window = new PortWindow<>(150, 100, Buffering::kDouble);
    static const bool shown = window->show();
    FUZZ_CHECK(shown);
    T3dPort& port = window->port();
    FuzzInput input(data, size);
    for (int i = 0; i < 6 && !input.isEmpty(); ++i)
        step(port, input);
    port.setUseBackingStore(false);
    for (const Tstring& difference : port.stateDifferences()) {
        std::fprintf(stderr, "%s\n", difference.asChar());
        std::abort();
    }
    return 0;
}
