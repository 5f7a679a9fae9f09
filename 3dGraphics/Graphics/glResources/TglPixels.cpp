#include "Graphics/glResources/TglPixels.h"

#include "QtExtensions/Q3dPort.h"
#include "foundation/TpixelMap.h"
#include "foundation/Tstring.h"
#include "image/TimageFile.h"

#include <GL/glu.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();

TglPixels::TpixelType defaultType(TglPixels::TpixelFormat format)
{
    return format == TglPixels::kDepth || format == TglPixels::kAlpha ? TglPixels::kUnsignedInt
                                                                      : TglPixels::kUnsignedByte;
}

int componentCount(TglPixels::TpixelFormat format)
{
    switch (format) {
    case TglPixels::kRgb:
        return 3;
    case TglPixels::kRgba:
    case TglPixels::kBgra:
        return 4;
    default:
        return format >= TglPixels::kDepth && format <= TglPixels::kAlpha ? 1 : 0;
    }
}

/** One component of a pixel as a byte. */
std::uint8_t byteOf(const std::uint8_t* component, TglPixels::TpixelType type)
{
    switch (type) {
    case TglPixels::kUnsignedShort: {
        std::uint16_t value = 0;
        std::memcpy(&value, component, sizeof value);
        return static_cast<std::uint8_t>(value >> 8);
    }
    case TglPixels::kUnsignedInt: {
        std::uint32_t value = 0;
        std::memcpy(&value, component, sizeof value);
        return static_cast<std::uint8_t>(value >> 24);
    }
    case TglPixels::kFloat: {
        float value = 0;
        std::memcpy(&value, component, sizeof value);
        return static_cast<std::uint8_t>(value > 0 ? std::min(value, 1.0f) * 255 + 0.5f : 0);
    }
    default:
        return *component;
    }
}

int componentBytes(TglPixels::TpixelType type)
{
    switch (type) {
    case TglPixels::kUnsignedByte:
        return 1;
    case TglPixels::kUnsignedShort:
        return 2;
    case TglPixels::kUnsignedInt:
    case TglPixels::kFloat:
        return 4;
    default:
        return 0;
    }
}

} // namespace

TglPixels::TglPixelsData::TglPixelsData(TpixelFormat format, TpixelType type, int width, int height)
    : fWidth(width), fHeight(height), fFormat(format)
{
    setType(type);
}

TglPixels::TglPixelsData::TglPixelsData(const TglPixelsData& other)
    : TsharedObject(other), fAlignment(other.fAlignment), fWidth(other.fWidth), fHeight(other.fHeight),
      fFormat(other.fFormat), fType(other.fType), fExact(other.fExact)
{
}

TglPixels::TglPixelsData::~TglPixelsData()
{
    free();
}

void TglPixels::TglPixelsData::setType(TpixelType type)
{
    fType = type;
    fAlignment = std::max(componentBytes(type), 1);
}

int TglPixels::TglPixelsData::rowBytes(bool padded) const
{
    const std::int64_t pixels = std::int64_t(fWidth) + (padded ? 1 : 0);
    if (fWidth < 0)
        return 0;
    const std::int64_t perComponent = fType == kBitmap ? (pixels + 7) / 8 : pixels * componentBytes(fType);
    const std::int64_t bytes = componentCount(fFormat) * perComponent;
    return bytes <= kLargest ? static_cast<int>(bytes) : 0;
}

int TglPixels::TglPixelsData::needed() const
{
    if (fWidth <= 0 || fHeight <= 0)
        return 0;
    const std::int64_t bytes = std::int64_t(rowBytes(true)) * (std::int64_t(fHeight) + 1);
    return bytes <= kLargest ? static_cast<int>(bytes) : 0;
}

bool TglPixels::TglPixelsData::alloc()
{
    const int size = needed();
    if (size > fByteSize || (fExact && size != fByteSize)) {
        if (size == 0) {
            free();
        } else {
            const auto bytes = static_cast<std::size_t>(size);
            void* data = fData ? std::realloc(fData, bytes) : std::calloc(bytes, 1);
            if (!data)
                return false;
            if (fData && size > fByteSize)
                std::memset(static_cast<std::uint8_t*>(data) + fByteSize, 0,
                            static_cast<std::size_t>(size - fByteSize));
            fData = static_cast<std::uint8_t*>(data);
            fByteSize = size;
        }
    }
    return size > 0 && fData;
}

void TglPixels::TglPixelsData::free()
{
    std::free(fData);
    fData = nullptr;
    fByteSize = 0;
}

bool TglPixels::TglPixelsData::isComplete() const
{
    const int size = needed();
    return fData && size > 0 && fByteSize >= size;
}

TglPixels::TglPixels(TpixelFormat format) : TglPixels(format, 0, 0) {}

TglPixels::TglPixels(TpixelFormat format, TpixelType type) : TglPixels(format, 0, 0, type) {}

TglPixels::TglPixels(TpixelFormat format, int width, int height) : TglPixels(format, width, height, defaultType(format))
{
}

TglPixels::TglPixels(TpixelFormat format, int width, int height, TpixelType type)
    : fData(new TglPixelsData(format, type, width, height))
{
}

std::uint8_t* TglPixels::pixels()
{
    return fData && fData->alloc() ? fData->fData : nullptr;
}

void TglPixels::read(int x, int y)
{
    if (width() <= 0 || height() <= 0)
        return;
    split(true);
    if (!fData->alloc())
        return;
    glPixelStorei(GL_PACK_ALIGNMENT, fData->fAlignment);
    glReadPixels(x, y, fData->fWidth, fData->fHeight, fData->fFormat, fData->fType, fData->fData);
}

void TglPixels::write(int x, int y) const
{
    if (width() < 1 || height() < 1 || !fData->isComplete() || fData->fByteSize != fData->needed())
        return;
    glRasterPos2i(x, y);
    glPixelStorei(GL_UNPACK_ALIGNMENT, fData->fAlignment);
    glDrawPixels(fData->fWidth, fData->fHeight, fData->fFormat, fData->fType, fData->fData);
}

bool TglPixels::write(const Tstring& fileName)
{
    TimageFile file;
    if (!fData || !file.create(fileName, width(), height()) || !convertToBgra())
        return false;
    // Of the formats only one without this bit gets here, so that files have no alpha.
    file.setAlpha((fData->fFormat & 0x1906) != 0);
    TpixelMap map;
    if (!map.setSize(width(), height()))
        return false;
    map.setRgba(false);
    const auto row = static_cast<std::size_t>(fData->rowBytes(false));
    for (int y = 0; y < height(); ++y)
        std::memcpy(map.pixels() + y * map.rowBytes(), fData->fData + y * row, row);
    const bool written = file.write(map);
    file.close();
    return written;
}

bool TglPixels::convertToBgra()
{
    const TpixelFormat format = fData->fFormat;
    const bool isRgb = format == kRgb || format == kRgba;
    const int bytes = componentBytes(fData->fType);
    if ((!isRgb && format != kBgra) || bytes == 0 || !fData->alloc())
        return false;
    TcountedPtr<TglPixelsData> made(new TglPixelsData(kBgra, kUnsignedByte, width(), height()));
    made->fExact = fData->fExact;
    if (!made->alloc())
        return false;
    const int components = componentCount(format);
    for (int y = 0; y < height(); ++y) {
        const std::uint8_t* from = fData->fData + std::ptrdiff_t(y) * fData->rowBytes(false);
        std::uint8_t* to = made->fData + std::ptrdiff_t(y) * made->rowBytes(false);
        for (int x = 0; x < width(); ++x, from += components * bytes, to += 4) {
            to[isRgb ? 2 : 0] = byteOf(from, fData->fType);
            to[1] = byteOf(from + bytes, fData->fType);
            to[isRgb ? 0 : 2] = byteOf(from + 2 * bytes, fData->fType);
            to[3] = components == 4 ? byteOf(from + 3 * bytes, fData->fType) : std::uint8_t(0xFF);
        }
    }
    fData = made;
    return true;
}

void TglPixels::flip()
{
    if (!fData || !fData->isComplete())
        return;
    TcountedPtr<TglPixelsData> made(new TglPixelsData(*fData));
    if (!made->alloc())
        return;
    const auto row = static_cast<std::size_t>(fData->rowBytes(false));
    for (int y = 0; y < height(); ++y)
        std::memcpy(made->fData + row * static_cast<std::size_t>(height() - 1 - y),
                    fData->fData + row * static_cast<std::size_t>(y), row);
    fData = made;
}

void TglPixels::resize(int width, int height, bool exact)
{
    if (!fData || (width == fData->fWidth && height == fData->fHeight && exact == fData->fExact))
        return;
    split(false);
    fData->fWidth = width;
    fData->fHeight = height;
    fData->fExact = exact;
    fData->alloc();
}

void TglPixels::reformat(TpixelFormat format, bool exact)
{
    if (!fData || (format == fData->fFormat && exact == fData->fExact))
        return;
    split(false);
    fData->fFormat = format;
    fData->fExact = exact;
}

void TglPixels::retype(TpixelType type, bool exact)
{
    if (!fData || (type == fData->fType && exact == fData->fExact))
        return;
    split(false);
    fData->setType(type);
    fData->fExact = exact;
}

void TglPixels::scaleTo(TglPixels& dst) const
{
    if (!fData || !fData->isComplete() || dst.width() < 1 || dst.height() < 1 || dst.fData->fFormat != fData->fFormat)
        return;
    const TcountedPtr<TglPixelsData> source = fData; // dst may be this block
    dst.split(true);
    // GLU asks OpenGL how rows are aligned.
    if (!dst.fData->alloc() || !Q3dPort::ensureContext())
        return;
    glPixelStorei(GL_UNPACK_ALIGNMENT, source->fAlignment);
    glPixelStorei(GL_PACK_ALIGNMENT, dst.fData->fAlignment);
    gluScaleImage(source->fFormat, source->fWidth, source->fHeight, source->fType, source->fData, dst.fData->fWidth,
                  dst.fData->fHeight, dst.fData->fType, dst.fData->fData);
}

void TglPixels::split(bool keepPixels)
{
    if (!fData || !fData->isShared())
        return;
    TcountedPtr<TglPixelsData> made(new TglPixelsData(*fData));
    if (keepPixels && fData->fData) {
        const auto size = static_cast<std::size_t>(fData->fByteSize);
        made->fData = static_cast<std::uint8_t*>(std::malloc(size));
        if (made->fData) {
            std::memcpy(made->fData, fData->fData, size);
            made->fByteSize = fData->fByteSize;
        }
    }
    fData = made;
}
