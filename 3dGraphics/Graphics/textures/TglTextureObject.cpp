#include <QWidget>

#include "Graphics/textures/TglTextureObject.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPixelStoreGuard.h"
#include "QtExtensions/Q3dPort.h"
#include "foundation/mmapAlloc.h"

#include <GL/glext.h>
#include <GL/glu.h>

#include <algorithm>
#include <climits>
#include <cmath>

bool TglTextureObject::fsIsTextureDisabled = false;
bool TglTextureObject::fsUsePortTextureOptions = false;
TglTextureObjectPtrArray& TglTextureObject::fsTextureObjects = *new TglTextureObjectPtrArray(8);

namespace {

constexpr int kLargestSide = 65535;      ///< that the fields can hold
constexpr int kMostTexels = INT_MAX / 4; ///< GLU and some drivers count the bytes of an image in an int
constexpr int kUpdateStep = 32;

constexpr GLenum kScaleNames[] = {GL_RED_SCALE, GL_GREEN_SCALE, GL_BLUE_SCALE, GL_ALPHA_SCALE};
constexpr GLenum kBiasNames[] = {GL_RED_BIAS, GL_GREEN_BIAS, GL_BLUE_BIAS, GL_ALPHA_BIAS};

/** The nearer power of two, the smaller one from half way, and none that 16 bits cannot hold. */
int nearPowerOfTwo(int size)
{
    if (size <= 1)
        return size;
    int power = 2;
    while (3 * power < 2 * size && power < 16384)
        power *= 2;
    return power;
}

void release(TtextureName* name)
{
    if (name && name->remove() == 0)
        delete name;
}

/** Pixel-transfer scale and bias, where they do something, for as long as it lives. */
class ScopedPixelTransfer
{
public:
    ScopedPixelTransfer(const TportColor& scale, const TportColor& bias) : fScale(scale), fBias(bias)
    {
        send(fScale, kScaleNames, 1.0f, false);
        send(fBias, kBiasNames, 0.0f, false);
    }
    ~ScopedPixelTransfer()
    {
        send(fScale, kScaleNames, 1.0f, true);
        send(fBias, kBiasNames, 0.0f, true);
    }

    ScopedPixelTransfer(const ScopedPixelTransfer&) = delete;
    ScopedPixelTransfer& operator=(const ScopedPixelTransfer&) = delete;

private:
    static void send(const TportColor& values, const GLenum* names, float neutral, bool restore)
    {
        const float components[] = {values.r, values.g, values.b, values.a};
        for (int i = 0; i < 4; ++i)
            if (components[i] != neutral)
                glPixelTransferf(names[i], restore ? neutral : components[i]);
    }

    const TportColor fScale;
    const TportColor fBias;
};

} // namespace

TglTextureObject::TglTextureObject() : TglTextureObject(T3dPort::fsMaxTextureSize) {}

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): init gives all fields their values
TglTextureObject::TglTextureObject(int maximumSize)
{
    init(maximumSize);
}

TglTextureObject::TglTextureObject(TpixelMap* map, int maximumSize, bool keepAlpha) : TglTextureObject(maximumSize)
{
    texImage2D(map, keepAlpha, 0);
}

TglTextureObject::TglTextureObject(const TglTextureObject& other)
    : fTextureNames(other.fTextureNames), fPixelMaps(other.fPixelMaps), fBias(other.fBias), fScale(other.fScale),
      fWrapS(other.fWrapS), fWrapT(other.fWrapT), fBorderColor(other.fBorderColor), fMinFilter(other.fMinFilter),
      fMagFilter(other.fMagFilter), fEnvMode(other.fEnvMode), fGenMode(other.fGenMode),
      fImageTarget(other.fImageTarget), fTarget(other.fTarget), fFlags(other.fFlags), fFormat(other.fFormat),
      fType(other.fType), fMaximumSize(other.fMaximumSize), fWidth(other.fWidth), fHeight(other.fHeight),
      fComponents(other.fComponents), fHasAlpha(other.fHasAlpha), fConformedWidth(other.fConformedWidth),
      fConformedHeight(other.fConformedHeight)
{
    for (TtextureName* name : fTextureNames)
        if (name)
            name->add();
    clearDirtyRegion();
    fsTextureObjects.addLast(this);
}

TglTextureObject& TglTextureObject::operator=(const TglTextureObject& other)
{
    fWrapS = other.fWrapS;
    fWrapT = other.fWrapT;
    fBorderColor = other.fBorderColor;
    fMinFilter = other.fMinFilter;
    fMagFilter = other.fMagFilter;
    fEnvMode = other.fEnvMode;
    fGenMode = other.fGenMode;
    fImageTarget = other.fImageTarget;
    fTarget = other.fTarget;
    fFlags = other.fFlags;
    fFormat = other.fFormat;
    fType = other.fType;
    fMaximumSize = other.fMaximumSize;
    fWidth = other.fWidth;
    fHeight = other.fHeight;
    fComponents = other.fComponents;
    fHasAlpha = other.fHasAlpha;
    fConformedWidth = other.fConformedWidth;
    fConformedHeight = other.fConformedHeight;
    clearDirtyRegion();
    fUpdater.reset();
    fPixelMaps = other.fPixelMaps;
    for (TtextureName* name : other.fTextureNames)
        if (name)
            name->add();
    for (TtextureName* name : fTextureNames)
        release(name);
    fTextureNames.copy(other.fTextureNames);
    return *this;
}

TglTextureObject::~TglTextureObject()
{
    for (TtextureName* name : fTextureNames) {
        const bool last = name && name->isCounted() && !name->isShared();
        if (last && fTarget == TglContext::kTextureCubeMap && Q3dPort::ensureContext()) {
            glBindTexture(GL_TEXTURE_CUBE_MAP, 0);
            name->deleteTexture();
        }
        release(name);
    }
    fUpdater.reset();
    fsTextureObjects.remove(this);
}

void TglTextureObject::init(int maximumSize)
{
    fUpdater.reset();
    fBias = TportColor(0, 0, 0, 0);
    fScale = TportColor(1, 1, 1, 1);
    fWrapS = TglContext::kRepeat;
    fWrapT = TglContext::kRepeat;
    fBorderColor = TportColor(-1, -1, -1, -1);
    fMinFilter = TglContext::kLinear;
    fMagFilter = TglContext::kLinear;
    fEnvMode = TglContext::kEnvModulate;
    fGenMode = TglContext::kGenOff;
    fImageTarget = TglContext::kImage2D;
    fTarget = TglContext::kTexture2D;
    fFlags = (fFlags & ~std::uint32_t(kMipmaps | kEnvironmentMapped)) | kDetectAlpha;
    fMaximumSize = maximumSize == 0 ? T3dPort::fsMaxTextureSize : maximumSize;
    fComponents = 0;
    fHasAlpha = false;
    fConformedWidth = 0;
    fConformedHeight = 0;
    fsTextureObjects.addLast(this);
}

void TglTextureObject::createTextures(unsigned count)
{
    while (fTextureNames.length() < count) {
        auto* name = new TtextureName;
        if (name->name() == 0) {
            delete name;
            return;
        }
        fTextureNames.addLast(name);
        name->add();
    }
}

bool TglTextureObject::makeName(unsigned index)
{
    if (index < fTextureNames.length() && !fTextureNames[index]) {
        auto* name = new TtextureName;
        name->add();
        if (name->name() == 0)
            release(name);
        else
            fTextureNames[index] = name;
    } else if (index + 1 > fTextureNames.length()) {
        createTextures(index + 1);
    }
    return !isNameMissing(index);
}

void TglTextureObject::clearDirtyRegion() const
{
    fDirtyXMin = fWidth;
    fDirtyXMax = 0;
    fDirtyYMin = fHeight;
    fDirtyYMax = 0;
}

/** Uploads to the bound texture, and sets the filters that go with the kind of image. */
void TglTextureObject::sendImage(GLenum target, int width, int height, GLenum format, const void* pixels,
                                 bool generateMipmaps)
{
    const GLint internal = fComponents == 3 ? GL_RGB8 : GL_RGBA8;
    const bool mipmaps = (fFlags & kMipmaps) != 0;
    fFlags |= kParametersPending;
    fMinFilter = mipmaps ? TglContext::kLinearMipmapLinear : TglContext::kLinear;
    fMagFilter = TglContext::kLinear;
    // Deliberately on the two-dimensional target, whatever the texture's.
    if (generateMipmaps)
        glTexParameteri(GL_TEXTURE_2D, GL_GENERATE_MIPMAP, mipmaps);
    if (mipmaps && !generateMipmaps)
        gluBuild2DMipmaps(target, internal, width, height, format, GL_UNSIGNED_BYTE, pixels);
    else
        glTexImage2D(target, 0, internal, width, height, 0, format, GL_UNSIGNED_BYTE, pixels);
}

void TglTextureObject::texImage2D(int width, int height, unsigned* pixels, unsigned char components, unsigned index)
{
    if (!pixels || width < 1 || height < 1 || width > kLargestSide || height > kLargestSide ||
        height > kMostTexels / width || !Q3dPort::ensureContext() || !makeName(index))
        return;
    fComponents = components;
    if (components == 3)
        fFormat = kRgb;
    else if (components == 4)
        fFormat = kRgba;
    fType = kUnsignedByte;
    fWidth = static_cast<std::uint16_t>(width);
    fHeight = static_cast<std::uint16_t>(height);
    {
        const TglPixelStoreGuard store(TglPixelStoreGuard::kUnpack);
        const ScopedPixelTransfer transfer(fScale, fBias);
        glBindTexture(fTarget, fTextureNames[index]->name());
        sendImage(fTarget, width, height, fFormat, pixels, T3dPort::haveGenerateMipmap());
    }
    clearDirtyRegion();
}

void TglTextureObject::texImage2D(TpixelMap* map, bool keepAlpha, unsigned index)
{
    if (!map || !map->getPixel())
        return;
    conformPixelMapHardwareSize(map);
    if (!map->getPixel() || map->width() != fConformedWidth || map->height() != fConformedHeight)
        return;
    if (!map->isRgba())
        map->rgbaSwitch();
    unsigned* const pixels = map->getPixel();
    const int width = map->width();
    const int height = map->height();
    const auto channels = static_cast<unsigned char>(map->channels());
    fHasAlpha = false;
    if (channels == 4) {
        constexpr float kTolerance = 1e-5f;
        bool strip = false;
        if (std::fabs(fScale.a - 1.0f) > kTolerance || std::fabs(fBias.a) > kTolerance) {
            fHasAlpha = true;
        } else {
            fHasAlpha = (fFlags & kDetectAlpha) && map->hasNonUnitAlpha();
            strip = !fHasAlpha && !keepAlpha;
        }
        if (strip) {
            const auto count = static_cast<unsigned>(width) * static_cast<unsigned>(height);
            const std::size_t bytes = std::size_t(count) * 4;
            if (void* const block = mmapAlloc(bytes, "Pixmap Alpha Removal")) {
                const bool stripped = stripAlphaChannel(count, pixels, static_cast<unsigned char*>(block));
                texImage2D(width, height, static_cast<unsigned*>(block), stripped ? 3 : 4, index);
                mmapFree(block, bytes);
                return;
            }
        }
    }
    texImage2D(width, height, pixels, channels, index);
}

void TglTextureObject::texImageSphereMap(TpixelMap* map, bool)
{
    if (!map)
        return;
    fFlags |= kEnvironmentMapped;
    fTarget = TglContext::kTexture2D;
    fImageTarget = TglContext::kImage2D;
    fGenMode = TglContext::kGenSphereMap;
    conformPixelMapHardwareSize(map);
    if (!map->isRgba())
        map->rgbaSwitch();
    if (!map->getPixel() || map->width() != fConformedWidth || map->height() != fConformedHeight)
        return;
    texImage2D(map->width(), map->height(), map->getPixel(), static_cast<unsigned char>(map->channels()), 0);
}

bool TglTextureObject::texImageCubeMap(TpixelMap** maps)
{
    constexpr int kFaces = 6;
    if (!maps || std::find(maps, maps + kFaces, nullptr) != maps + kFaces)
        return false;
    fWidth = fHeight = 0;
    fConformedWidth = fConformedHeight = 0;
    int side = 0;
    for (int i = 0; i < kFaces; ++i)
        for (const int size : {maps[i]->width(), maps[i]->height()})
            side = std::max(side, std::min(nearPowerOfTwo(size), int(fMaximumSize)));
    if (side == 0)
        return false;
    fFlags |= kEnvironmentMapped;
    fWidth = fHeight = static_cast<std::uint16_t>(side);
    fTarget = TglContext::kTextureCubeMap;
    fImageTarget = TglContext::kImagePositiveX;
    fGenMode = TglContext::kGenReflectionMap;
    fHasAlpha = false;
    if (!Q3dPort::ensureContext() || !makeName(0))
        return false;
    glBindTexture(GL_TEXTURE_CUBE_MAP, fTextureNames[0]->name());
    const TglPixelStoreGuard store(TglPixelStoreGuard::kUnpack);
    for (int i = 0; i < kFaces; ++i) {
        TpixelMap& map = *maps[i];
        const bool switched = !map.isRgba();
        if (switched)
            map.rgbaSwitch();
        const bool isSide = (map.width() == side && map.height() == side) ||
                            map.zoom(TportRect(0, 0, static_cast<short>(side), static_cast<short>(side)));
        if (!isSide || !map.pixels()) {
            release(fTextureNames[0]);
            fTextureNames[0] = nullptr;
            return false;
        }
        fComponents = 4;
        fFormat = kRgba;
        fType = kUnsignedByte;
        sendImage(static_cast<GLenum>(GL_TEXTURE_CUBE_MAP_POSITIVE_X + i), side, side,
                  map.channels() == 3 ? GL_RGB : GL_RGBA, map.pixels(), false);
        if (switched)
            map.rgbaSwitch();
    }
    clearDirtyRegion();
    return true;
}

void TglTextureObject::setPixelMap(const TsharedPixelMap& map, unsigned index)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): map may be an entry of the array that grows
    const TsharedPixelMap kept = map;
    fPixelMaps.setLength(std::max(fPixelMaps.length(), index + 1));
    if (index >= fPixelMaps.length())
        return;
    fPixelMaps[index] = kept;
    if (kept.isNull())
        return;
    fComponents = static_cast<std::uint8_t>(kept.map()->channels());
    fFormat = fComponents == 3 ? kRgb : kept.map()->isRgba() ? kRgba : kBgra;
    fType = kUnsignedByte;
    fHasAlpha = false;
}

void TglTextureObject::conformPixelMapHardwareSize(TpixelMap* map)
{
    if (!map)
        return;
    int size[] = {map->width(), map->height()};
    bool isResized = false;
    for (int& side : size) {
        const int before = side;
        side = std::min(side, int(fMaximumSize));
        if (!T3dPort::haveNonPowerTwoTexture())
            side = nearPowerOfTwo(side);
        isResized = isResized || side != before;
    }
    // A maximum of the client's can be below what 16 bits hold, and is no size then.
    fConformedWidth = static_cast<std::int16_t>(std::max(size[0], 0));
    fConformedHeight = static_cast<std::int16_t>(std::max(size[1], 0));
    if (isResized)
        map->zoom(TportRect(0, 0, fConformedWidth, fConformedHeight));
}

void TglTextureObject::sendBorderAndWrap() const
{
    if (fBorderColor.r > 0.0f)
        glTexParameterfv(fTarget, GL_TEXTURE_BORDER_COLOR, &fBorderColor.r);
    glTexParameteri(fTarget, GL_TEXTURE_WRAP_S, static_cast<GLint>(fWrapS));
    glTexParameteri(fTarget, GL_TEXTURE_WRAP_T, static_cast<GLint>(fWrapT));
}

bool TglTextureObject::isFollowingPort() const
{
    return fsUsePortTextureOptions && !(fFlags & kOwnOptions);
}

void TglTextureObject::setTextureProperties() const
{
    const bool following = isFollowingPort();
    const auto minFilter = following ? T3dPort::viewMinFilterState() : fMinFilter;
    const auto magFilter = following ? T3dPort::viewMagFilterState() : fMagFilter;
    glTexParameteri(fTarget, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(minFilter));
    glTexParameteri(fTarget, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(magFilter));
    sendBorderAndWrap();
    fFlags &= ~std::uint32_t(kParametersPending);
}

void TglTextureObject::apply(T3dPort* port, unsigned index) const
{
    if (fsIsTextureDisabled || !port || isNameMissing(index))
        return;
    const bool following = isFollowingPort();
    port->setTextureEnvMode(following ? T3dPort::textureEnvModeState() : fEnvMode);
    port->setTextureMinFilter(following ? T3dPort::viewMinFilterState() : fMinFilter, fTarget);
    port->setTextureMagFilter(following ? T3dPort::viewMagFilterState() : fMagFilter, fTarget);
    port->setCurrentContext();
    sendBorderAndWrap();
    port->setTextureWrap(fWrapS, fTarget);
    glBindTexture(fTarget, fTextureNames[index]->name());
    setTextureProperties();
    const bool anisotropic = fsUsePortTextureOptions && T3dPort::enableTextureFilterAnisotropic();
    port->setTextureFilterAnisotropic(anisotropic ? port->maxTextureFilterAnistropic() : 1.0f);
    if (fUpdater && fDirtyXMin < fDirtyXMax && fDirtyYMin < fDirtyYMax) {
        const auto down = [](int value) { return value / kUpdateStep * kUpdateStep; };
        const auto up = [down](int value) { return down(value + kUpdateStep - 1); };
        const int x0 = down(std::min(fDirtyXMin, fWidth));
        const int x1 = up(std::min(fDirtyXMax, fWidth));
        const int y0 = down(std::min(fDirtyYMin, fHeight));
        const int y1 = up(std::min(fDirtyYMax, fHeight));
        const TcountedPtr<TglTexObjUpdater> updater = fUpdater; // it may be replaced by what it does
        updater->update(*this, x0, y0, x1 - x0, y1 - y0, 0);
        clearDirtyRegion();
    }
    port->setTextureGenMode(fGenMode);
}

void TglTextureObject::changed(unsigned short xMin, unsigned short xMax, unsigned short yMin, unsigned short yMax)
{
    fDirtyXMin = std::min(fDirtyXMin, xMin);
    fDirtyXMax = std::max(fDirtyXMax, xMax);
    fDirtyYMin = std::min(fDirtyYMin, yMin);
    fDirtyYMax = std::max(fDirtyYMax, yMax);
}

void TglTextureObject::setTextureTarget(TglContext::TtextureTarget target)
{
    if (target == fTarget)
        return;
    fTarget = target;
    switch (target) {
    case TglContext::kTexture1D:
    case TglContext::kTexture2D:
    case TglContext::kTexture3D:
        fImageTarget = static_cast<TglContext::TtextureTarget_TexImage>(target);
        break;
    case TglContext::kTextureCubeMap:
        fImageTarget = TglContext::kImagePositiveX;
        break;
    default:
        break;
    }
}

void TglTextureObject::setMaximumSize(int size)
{
    fMaximumSize = size < 2 ? 2 : std::min(size, T3dPort::fsMaxTextureSize);
}

int TglTextureObject::getTextureInfo(int& width, int& height, int& components, TtextureFormat& format,
                                     TtextureType& type, int) const
{
    if (fComponents == 0)
        return -1;
    width = fWidth;
    height = fHeight;
    components = fComponents;
    format = fFormat;
    type = fType;
    return 0;
}

unsigned TglTextureObject::textureMemoryUsage()
{
    unsigned sum = 0;
    for (const TglTextureObject* texture : fsTextureObjects)
        sum += unsigned(texture->fWidth) * texture->fHeight * texture->fComponents;
    return sum;
}
