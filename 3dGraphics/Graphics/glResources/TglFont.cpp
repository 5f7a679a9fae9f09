#include "Graphics/glResources/TglFont.h"

namespace {

constexpr char kDefaultName[] = "-*-helvetica-bold-r-normal-*-14-*-*-*-p-82-iso8859-1";
constexpr float kDefaultSize = 12.0f;

} // namespace

TglFont* TglFont::fsDefault = nullptr;

TglFont::TglFontRef::TglFontRef(const char* name, float size) : fName(name), fSize(size)
{
}

TglFont::TglFontRef::~TglFontRef() = default;

TglFont::TglFont() : TglFont(defaultFont())
{
}

TglFont::TglFont(const char* name, float size) : fRef(new TglFontRef(name, size))
{
}

TglFont& TglFont::defaultFont()
{
    if (!fsDefault)
        fsDefault = new TglFont(kDefaultName, kDefaultSize);
    return *fsDefault;
}

void TglFont::setDefaultFont(TglFont* font)
{
    fsDefault = font;
}

const char* TglFont::fontName() const
{
    return fRef ? fRef->fName.asChar() : "";
}

float TglFont::fontSize() const
{
    return fRef ? fRef->fSize : 0.0f;
}
