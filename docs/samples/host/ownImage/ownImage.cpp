#include "image/TimageFile.h"
#include "image/TxpmUtil.h"

#include "foundation/TpixelMap.h"

#include <cstdio>
#include <memory>
#include <unistd.h>

bool TimageFile::create(const Tstring& name, int width, int height)
{
    fName = name;
    fWidth = width;
    fHeight = height;
    return width > 0 && height > 0;
}

bool TimageFile::write(const TpixelMap& map)
{
    if (!map.pixels() || map.width() != fWidth || map.height() != fHeight)
        return false;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(fName.asChar(), "wb"), std::fclose);
    if (!file)
        return false;
    std::fprintf(file.get(), "P6 %d %d 255\n", fWidth, fHeight);
    const int red = map.isRgba() ? 0 : 2;
    for (int y = fHeight; y-- > 0;) { // a map has the bottom row first
        const unsigned char* pixel = map.pixels() + static_cast<std::size_t>(y) * map.rowBytes();
        for (int x = 0; x < fWidth; ++x, pixel += map.channels()) {
            const unsigned char rgb[] = {pixel[red], pixel[1], pixel[2 - red]};
            std::fwrite(rgb, 1, 3, file.get());
        }
    }
    return std::ferror(file.get()) == 0;
}

Tstring TxpmUtil::getFullPathName(const Tstring& name)
{
    const Tstring path = Tstring("/usr/share/ownhost/bitmaps/") + name;
    return access(path.asChar(), R_OK) == 0 ? path : Tstring();
}
