#include "Graphics/glResources/TglBitmap.h"

#include "foundation/TbatchGlobals.h"
#include "foundation/TerrorHandler.h"
#include "foundation/TmtCriticalSection.h"
#include "foundation/Tstring.h"
#include "image/TxpmUtil.h"
#include "ui/TapplicationShell.h"

#include <X11/Xlib.h>
#include <X11/xpm.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>

namespace {

constexpr unsigned kMarkerSize = 5;
constexpr unsigned kMarkerOrigin = 2;

const char* const kSquareRows[] = {".....", ".   .", ".   .", ".   .", "....."};
const char* const kFilledSquareRows[] = {".....", ".....", ".....", ".....", "....."};
const char* const kCircleRows[] = {" ... ", ".   .", ".   .", ".   .", " ... "};
const char* const kFilledCircleRows[] = {" ... ", ".....", ".....", ".....", " ... "};
const char* const kDiamondRows[] = {"  .  ", " . . ", ".   .", " . . ", "  .  "};
const char* const kFilledDiamondRows[] = {"  .  ", " ... ", ".....", " ... ", "  .  "};

void report(const char* what, const Tstring& path, const char* name)
{
    TerrorHandler::report(TerrorHandler::kError, Tstring(what) + path + "/" + name);
}

TmtCriticalSection& loading()
{
    static TmtCriticalSection section;
    return section;
}

/** The text of an XPM file after its comments: up to "*" and "/", or the rest of a line. */
std::size_t afterComments(const std::string& text, std::size_t at, bool inLines)
{
    const char* const begin = inLines ? "!" : "/*";
    const char* const end = inLines ? "\n" : "*/";
    for (;;) {
        at = std::min(text.find_first_not_of(" \t\r\n", at), text.size());
        if (text.compare(at, std::strlen(begin), begin) != 0)
            return at;
        at = std::min(text.find(end, at + 1), text.size());
        at = std::min(at + std::strlen(end), text.size());
    }
}

/**
 * Whether a file is long enough for the pixels and colours that its head announces. Asked first, as libXpm takes memory
 * for all of them before it reads one. Of compressed files, which it unpacks itself, nothing is known here.
 */
bool canHoldWhatItAnnounces(const Tstring& path)
{
    std::ifstream file(path.asChar(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.compare(0, 1, "\x1f") == 0) // gzip's and compress's first byte
        return true;
    const std::uint64_t size = text.size();
    std::istringstream words(text);
    for (std::string word; words >> word && word == "#define";) { // the first version
        std::uint64_t number = 0;
        words >> word >> number;
        if (number > size) // also what has too many digits
            return false;
    }
    const bool inLines = text.compare(0, 1, "!") == 0; // the format without quotes
    // libXpm skips the first words whatever they are, so that their comment need not end.
    std::size_t at = inLines ? afterComments(text, 0, true) : std::min(text.find("XPM"), text.size());
    while (!inLines && at < text.size() && text[at] != '"')
        at = afterComments(text, at + 1, false);
    std::uint64_t announced[4] = {}; // width, height, colours, characters per pixel
    std::istringstream head(text.substr(std::min(at + (inLines ? 0 : 1), text.size()), 100));
    for (std::uint64_t& number : announced)
        head >> number;
    for (const std::uint64_t number : announced)
        if (number > size)
            return false;
    return announced[0] * announced[1] <= size; // both are below 2^32 where this is
}

/** An XPM file as an image of depth 1. */
class XpmFile
{
public:
    XpmFile(const TapplicationShell& shell, const Tstring& path)
    {
        if (!canHoldWhatItAnnounces(path))
            return;
        Display* const display = shell.display();
        fAttributes.valuemask = XpmVisual | XpmColormap | XpmDepth;
        fAttributes.visual = DefaultVisual(display, shell.screen());
        fAttributes.colormap = DefaultColormap(display, shell.screen());
        fAttributes.depth = 1;
        // Beyond success there are warnings (above it), with which there is an image.
        const int status =
            XpmReadFileToImage(display, const_cast<char*>(path.asChar()), &fImage, nullptr, &fAttributes);
        fIsRead = status >= XpmSuccess;
    }

    ~XpmFile()
    {
        if (fImage)
            XDestroyImage(fImage);
        if (fIsRead)
            XpmFreeAttributes(&fAttributes);
    }

    XpmFile(const XpmFile&) = delete;
    XpmFile& operator=(const XpmFile&) = delete;

    XImage* image() const { return fIsRead ? fImage : nullptr; }
    const XpmAttributes& attributes() const { return fAttributes; }

private:
    XpmAttributes fAttributes{};
    XImage* fImage = nullptr;
    bool fIsRead = false;
};

} // namespace

const TglBitmap TglBitmap::kSquare(kSquareRows, kMarkerSize, kMarkerSize, kMarkerOrigin, kMarkerOrigin);
const TglBitmap TglBitmap::kFilledSquare(kFilledSquareRows, kMarkerSize, kMarkerSize, kMarkerOrigin, kMarkerOrigin);
const TglBitmap TglBitmap::kCircle(kCircleRows, kMarkerSize, kMarkerSize, kMarkerOrigin, kMarkerOrigin);
const TglBitmap TglBitmap::kFilledCircle(kFilledCircleRows, kMarkerSize, kMarkerSize, kMarkerOrigin, kMarkerOrigin);
const TglBitmap TglBitmap::kDiamond(kDiamondRows, kMarkerSize, kMarkerSize, kMarkerOrigin, kMarkerOrigin);
const TglBitmap TglBitmap::kFilledDiamond(kFilledDiamondRows, kMarkerSize, kMarkerSize, kMarkerOrigin, kMarkerOrigin);

TglBitmap::TglBitmap(const char* const* rows, unsigned width, unsigned height, unsigned xorig, unsigned yorig)
    : fXorig(xorig), fYorig(yorig)
{
    if (!rows || !allocate(width, height))
        return;
    for (std::size_t row = 0; row < height; ++row) {
        const char* const text = rows[row];
        for (std::size_t x = 0; x < width && text && text[x]; ++x) {
            if (text[x] != ' ')
                setPixel(x, row);
        }
    }
}

TglBitmap::TglBitmap(const unsigned char* bytes, unsigned width, unsigned height, unsigned xorig, unsigned yorig)
    : fXorig(xorig), fYorig(yorig)
{
    if (bytes && allocate(width, height))
        std::memcpy(fBits.get(), bytes, (std::size_t(width) + 7) / 8 * height);
}

TglBitmap::TglBitmap(const char* name)
{
    loadPixmap(name);
}

TglBitmap::TglBitmap(const TglBitmap& other)
{
    *this = other;
}

TglBitmap& TglBitmap::operator=(const TglBitmap& other)
{
    if (this == &other)
        return *this;
    clear();
    fXorig = other.fXorig;
    fYorig = other.fYorig;
    if (other.fBits && allocate(other.fWidth, other.fHeight))
        std::memcpy(fBits.get(), other.fBits.get(), rowBytes() * fHeight);
    fWidth = other.fWidth;
    fHeight = other.fHeight;
    fList = other.fList;
    return *this;
}

TglBitmap::~TglBitmap() = default;

void TglBitmap::clear()
{
    fBits.reset();
    fList.reset();
    fWidth = fHeight = fXorig = fYorig = 0;
}

bool TglBitmap::allocate(std::uint64_t width, std::uint64_t height)
{
    const std::uint64_t row = 2 * ((width + 15) / 16);
    // OpenGL takes sizes of 31 bits.
    if (width == 0 || height == 0 || width > INT_MAX || height > INT_MAX || height > (PTRDIFF_MAX - 2) / row)
        return false;
    const std::uint64_t size = row * height;
    fBits.reset(static_cast<unsigned char*>(std::calloc(size + (size & 2), 1)));
    if (!fBits)
        return false;
    fWidth = static_cast<std::uint32_t>(width);
    fHeight = static_cast<std::uint32_t>(height);
    return true;
}

void TglBitmap::setPixel(std::size_t x, std::size_t rowFromTop)
{
    fBits.get()[(fHeight - 1 - rowFromTop) * rowBytes() + x / 8] |= static_cast<unsigned char>(0x80u >> (x % 8));
}

void TglBitmap::loadPixmap(const char* name)
{
    std::optional<TmtCriticalSection::Guard> guard;
    if (TbatchGlobals::fMultithreaded)
        guard.emplace(loading());
    const TapplicationShell* const shell = TapplicationShell::current();
    if (!name || !shell)
        return;
    clear();

    Tstring path = TxpmUtil::getFullPathName(name);
    if (path.isEmpty())
        path = TxpmUtil::getFullPathName(Tstring(name) + ".xpm");
    if (path.isEmpty()) {
        report("Unable to find bitmap: ", path, name);
        return;
    }
    const XpmFile file(*shell, path);
    XImage* const image = file.image();
    const XpmAttributes& attributes = file.attributes();
    if (!image || !allocate(attributes.width, attributes.height)) {
        report("Unable to load bitmap: ", path, name);
        return;
    }
    fXorig = attributes.x_hotspot;
    fYorig = attributes.y_hotspot;
    const unsigned long black = BlackPixel(shell->display(), shell->screen());
    for (unsigned row = 0; row < fHeight; ++row) {
        for (unsigned x = 0; x < fWidth; ++x) {
            if (XGetPixel(image, static_cast<int>(x), static_cast<int>(row)) == black)
                setPixel(x, row);
        }
    }
}
