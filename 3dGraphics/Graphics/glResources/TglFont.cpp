#include <QGLWidget>
#include <QX11Info>

#include "Graphics/glResources/TglFont.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnX11.h"
#include "foundation/LirnGetEnv.h"
#include "foundation/TerrorHandler.h"
#include "foundation/TstringArray.h"
#include "graphicsResources/Font.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <iterator>

namespace {

constexpr char kDefaultName[] = "-*-helvetica-bold-r-normal-*-14-*-*-*-p-82-iso8859-1";
constexpr char kSmallName[] = "-*-helvetica-bold-r-normal-*-11-*-*-*-*-*-iso8859-1";
constexpr float kBuiltInSize = 12.0f;
constexpr int kProbeSize = 12;
constexpr int kLargestSize = 1000;   // the server makes any size of a bitmap font, at the cost of its memory
constexpr unsigned kFamilyPiece = 2; // after the empty piece in front of the first "-", and the foundry

const Tstring& smallFontName()
{
    static const Tstring& name = *[] {
        const char* const wanted = LirnGetEnv("LIRN_SMALLFONTNAME");
        return new Tstring(wanted ? wanted : kSmallName);
    }();
    return name;
}

/** Makes the context that all share current while it lives; the one bound before is bound again then. */
class ResourceContext
{
public:
    ResourceContext()
        : fDisplay(glXGetCurrentDisplay()), fContext(glXGetCurrentContext()), fDraw(glXGetCurrentDrawable()),
          fRead(glXGetCurrentReadDrawable())
    {
        // The widget is not made for a font: the first port settles what it is like.
        QGLWidget* const widget = Q3dPort::fsSharedGLWidget;
        const GLXContext resource = widget ? QlirnGLContext::nativeContext(widget->context()) : nullptr;
        Display* const display = resource ? QX11Info::display() : nullptr;
        fIsBound = display && glXMakeCurrent(display, widget->winId(), resource);
    }

    ~ResourceContext()
    {
        if (!fIsBound)
            return;
        if (fContext)
            glXMakeContextCurrent(fDisplay, fDraw, fRead, fContext);
        else
            T3dPort::nativeBindingMoved();
    }

    ResourceContext(const ResourceContext&) = delete;
    ResourceContext& operator=(const ResourceContext&) = delete;

    bool isBound() const { return fIsBound; }

private:
    Display* fDisplay;
    GLXContext fContext;
    GLXDrawable fDraw;
    GLXDrawable fRead;
    bool fIsBound = false;
};

/** An X font as long as it is being looked at. */
class LoadedFont
{
public:
    LoadedFont(void* display, const Tstring& name) : fDisplay(static_cast<Display*>(display)) { load(name); }
    ~LoadedFont() { unload(); }
    LoadedFont(const LoadedFont&) = delete;
    LoadedFont& operator=(const LoadedFont&) = delete;

    bool load(const Tstring& name)
    {
        unload();
        fFont = XLoadQueryFont(fDisplay, name.asChar());
        return fFont != nullptr;
    }
    void unload()
    {
        if (fFont)
            XFreeFont(fDisplay, fFont);
        fFont = nullptr;
    }
    XFontStruct* font() const { return fFont; }

private:
    Display* fDisplay;
    XFontStruct* fFont = nullptr;
};

} // namespace

TglFont* TglFont::fsDefault = nullptr;
TglFont* TglFont::fsSmall = nullptr;
TglFont* TglFont::fsDefaultOvl = nullptr;
TglFont* TglFont::fsSmallOvl = nullptr;
const Tstring TglFont::fsPattern("-*-^1s-bold-r-normal-*-^8d-*-*-*-*-*-iso8859-1");

TglFont::TglFontRef::TglFontRef(const char* name, float size) : fName(name), fSize(size) {}

TglFont::TglFontRef::~TglFontRef()
{
    // The lists behind the reserved block, see makeLists.
    if (fLists && fFirst > 0 && !fLists->isShared() && Q3dPort::ensureContext()) {
        const auto count = static_cast<unsigned>(fLists->count());
        const unsigned behind = std::max(count, fFirst);
        glDeleteLists(fLists->first() + behind, static_cast<GLsizei>(fFirst + count - behind));
    }
}

void TglFont::TglFontRef::buildFont(void* display)
{
    if (fBuilt || !display)
        return;
    LoadedFont loaded(display, fName);
    const auto reportFailure = [this] {
        TerrorHandler::report(TerrorHandler::kError, "Failed trying to load font : " + fName);
    };
    if (!loaded.font()) {
        const TstringArray pieces = fName.split('-');
        const Tstring family = pieces.length() > kFamilyPiece ? pieces[kFamilyPiece] : Tstring();
        if (family.isEmpty() || !loaded.load(Tstring::tFormat(fsPattern, family, kProbeSize))) {
            reportFailure();
            return;
        }
        loaded.unload();
        // At the latest the size that is known to exist is found: the bound reaches it from every size.
        const int wanted = !(fSize > 0) ? 0 : fSize < kLargestSize ? static_cast<int>(fSize) : kLargestSize;
        int found = 0;
        Tstring name;
        const auto tryAt = [&](int size) {
            name = Tstring::tFormat(fsPattern, family, size);
            found = size;
            return loaded.load(name);
        };
        for (int i = 1; i <= kLargestSize + kProbeSize; ++i) {
            if ((wanted - i > 0 && tryAt(wanted - i)) || tryAt(wanted + i))
                break;
        }
        if (!loaded.font()) {
            reportFailure();
            return;
        }
        fName = name;
        fScale = fSize / static_cast<float>(found);
        fSize = static_cast<float>(found);
    }

    XFontStruct* const font = loaded.font();
    fFirst = font->min_char_or_byte2;
    fLast = std::max(fFirst, font->max_char_or_byte2);
    makeLists(font->fid);
    fHeight = fDescent = 0;
    const unsigned end = std::min<unsigned>(fLast, std::size(fWidths));
    for (unsigned c = fFirst; c < end; ++c) {
        const char text = static_cast<char>(c);
        fWidths[c] = static_cast<std::uint16_t>(std::clamp(XTextWidth(font, &text, 1), 0, 0xFFFF));
        int direction = 0;
        int ascent = 0;
        int descent = 0;
        XCharStruct overall;
        XTextExtents(font, &text, 1, &direction, &ascent, &descent, &overall);
        fHeight = std::max(fHeight, static_cast<std::uint32_t>(std::max(0, overall.ascent + overall.descent)));
        fDescent = std::max(fDescent, static_cast<std::uint32_t>(std::max<int>(0, overall.descent)));
    }
    loaded.unload();
    fGRFont = std::make_unique<nbGR::Font>();
    fGRFont->setX11(display, fName);
    fBuilt = true;
}

void TglFont::TglFontRef::makeLists(unsigned long font)
{
    if (Q3dPort::enableGLCoreProfile())
        return;
    // The bound context may be compiling a list of its own, or hold an error that somebody has yet to ask for.
    const ResourceContext resource;
    if (!resource.isBound()) {
        GLint open = 0;
        if (glXGetCurrentContext())
            glGetIntegerv(GL_LIST_INDEX, &open);
        if (!glXGetCurrentContext() || open != 0)
            return;
    }
    const auto count = static_cast<GLsizei>(fLast + 1 - fFirst);
    // Character c goes to list c of a block that begins at the first character: the last ones come to lie behind the
    // block. A block that has lists of somebody else's there is no good.
    TcountedPtr<TglListId> unfit[8];
    for (TcountedPtr<TglListId>& tried : unfit) {
        const TcountedPtr<TglListId> block(new TglListId(count));
        if (block->first() == 0)
            return;
        bool isFree = true;
        for (unsigned i = 0; i < fFirst && isFree; ++i)
            isFree = !glIsList(block->first() + static_cast<GLuint>(count) + i);
        if (isFree) {
            fLists = block;
            break;
        }
        tried = block;
    }
    if (!fLists)
        return;
    glXUseXFont(font, static_cast<int>(fFirst), count, static_cast<int>(fLists->first() + fFirst));
    // Mesa leaves GL_OUT_OF_MEMORY for glyphs without pixels. One reading per error flag there is takes it away.
    for (int i = 0; i < 8 && glGetError() != GL_NO_ERROR; ++i) {
    }
}

nbGR::Font* TglFont::TglFontRef::getGRFont(void* display)
{
    if (!fGRFont)
        buildFont(display);
    return fGRFont.get();
}

void TglFont::TglFontRef::drawRun(const char* text, std::size_t length) const
{
    while (length > 0) {
        const auto part = static_cast<GLsizei>(std::min<std::size_t>(length, INT_MAX));
        glCallLists(part, GL_UNSIGNED_BYTE, text);
        text += part;
        length -= static_cast<std::size_t>(part);
    }
}

TglFont::TglFont() : TglFont(defaultFont()) {}

TglFont::TglFont(const char* name, float size) : fRef(new TglFontRef(name, size)) {}

const char* TglFont::fontName() const
{
    return fRef ? fRef->fName.asChar() : "";
}

float TglFont::fontSize() const
{
    return fRef ? fRef->fSize : 0.0f;
}

int TglFont::textWidth(void* display, const char* text) const
{
    if (!fRef || !text || !*text)
        return 0;
    fRef->buildFont(display);
    long long width = 0;
    for (; *text; ++text) {
        const auto c = static_cast<unsigned char>(*text);
        width += c < std::size(fRef->fWidths) ? fRef->fWidths[c] : 0;
    }
    return static_cast<int>(std::min<long long>(width, INT_MAX));
}

int TglFont::textHeight(void* display) const
{
    if (!fRef)
        return 0;
    fRef->buildFont(display);
    return static_cast<int>(fRef->fHeight);
}

int TglFont::textDescent(void* display) const
{
    if (!fRef)
        return 0;
    fRef->buildFont(display);
    return static_cast<int>(fRef->fDescent);
}

void TglFont::apply(void* display, const char* text) const
{
    if (Q3dPort::enableGLCoreProfile() || !fRef || !text)
        return;
    if (!fRef->fLists) {
        fRef->buildFont(display);
        if (display && fRef->fBuilt && !fRef->fLists) {
            // Measured at a time when there was no context to have lists in.
            const LoadedFont loaded(display, fRef->fName);
            if (loaded.font())
                fRef->makeLists(loaded.font()->fid);
        }
        if (!fRef->fLists)
            return;
    }
    glListBase(fRef->fLists->first());
    const std::size_t length = std::strlen(text);
    if (fRef->fLast >= 0xFF && fRef->fFirst <= static_cast<unsigned>(fRef->fLists->count())) {
        fRef->drawRun(text, length);
    } else {
        // Names that are neither in the block nor of a character's list are not this font's.
        const char* const end = text + length;
        const auto isDrawn = [first = fRef->fFirst, last = fRef->fLast](char c) {
            const auto code = static_cast<unsigned char>(c);
            return code >= first && code <= last;
        };
        for (const char* run = std::find_if(text, end, isDrawn); run != end;) {
            const char* const runEnd = std::find_if_not(run, end, isDrawn);
            fRef->drawRun(run, static_cast<std::size_t>(runEnd - run));
            run = std::find_if(runEnd, end, isDrawn);
        }
    }
    glListBase(0);
}

TglFont& TglFont::defaultFont()
{
    if (!fsDefault)
        fsDefault = new TglFont(kDefaultName, kBuiltInSize);
    return *fsDefault;
}

TglFont& TglFont::smallFont()
{
    if (!fsSmall)
        fsSmall = new TglFont(smallFontName().asChar(), kBuiltInSize);
    return *fsSmall;
}

TglFont& TglFont::defaultOvlFont()
{
    if (!fsDefaultOvl)
        fsDefaultOvl = new TglFont(kDefaultName, kBuiltInSize);
    return *fsDefaultOvl;
}

TglFont& TglFont::smallOvlFont()
{
    if (!fsSmallOvl)
        fsSmallOvl = new TglFont(smallFontName().asChar(), kBuiltInSize);
    return *fsSmallOvl;
}

void TglFont::setDefaultFont(TglFont* font)
{
    fsDefault = font;
}
