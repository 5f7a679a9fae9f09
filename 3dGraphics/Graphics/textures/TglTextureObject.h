#pragma once

#include "Graphics/Export.h"
#include "Graphics/glResources/TglContext.h"
#include "Graphics/textures/TglTexObjUpdater.h"
#include "Graphics/textures/TglTextureObjectPtrArray.h"
#include "Graphics/textures/TtextureNamePtrArray.h"
#include "foundation/TcountedPtr.h"
#include "foundation/TportColor.h"
#include "foundation/TsharedPixelMap.h"

#include <cstdint>

class T3dPort;

/**
 * A texture: one or more images with the filters, wrap modes, environment mode and coordinate generation that they are
 * drawn with, and the OpenGL textures that hold the images.
 *
 * @code
 *     TglTextureObject texture(&map, 0, false); // uploads, in the current context
 *     ...
 *     texture.apply(&port, 0);                  // binds; glEnable(GL_TEXTURE_2D) is the caller's
 * @endcode
 *
 * Copies share the OpenGL textures. Uploads go to the current context's share group, or the ports' when none is
 * current; they are right whatever the pixel-store state, and leave it as it is. Nothing reports an error: an upload
 * that cannot be done, for want of pixels, memory, a context or a usable size, is left out. GUI thread only.
 */
class LIRN_3DGRAPHICS_EXPORT TglTextureObject
{
public:
    /** The format of the last image's pixels. */
    enum TtextureFormat : std::uint32_t { kRgb = GL_RGB, kRgba = GL_RGBA, kBgra = GL_BGRA };
    enum TtextureType : std::uint32_t { kUnsignedByte = GL_UNSIGNED_BYTE };

    /** Bits of flags(). */
    enum Tflags : std::uint32_t {
        kMipmaps = 0x1,           ///< build mipmaps on upload
        kEnvironmentMapped = 0x2, ///< a sphere map or cube map
        kParametersPending = 0x4, ///< uploaded, but setTextureProperties not called since
        kDetectAlpha = 0x8,       ///< look whether the alpha of a map is anything but 255; on at first
        kOwnOptions = 0x10        ///< keep to the own filters and environment mode when setUsePortTextureOptions is on
    };

    /** Without an image; the largest side is T3dPort::fsMaxTextureSize. */
    TglTextureObject();
    /** @param maximumSize  the largest side to upload, in texels, taken as it is; 0 for T3dPort::fsMaxTextureSize */
    explicit TglTextureObject(int maximumSize);
    /** Uploads @p map as image 0, as texImage2D does. */
    TglTextureObject(TpixelMap* map, int maximumSize, bool keepAlpha);
    /** Shares the OpenGL textures of @p other; takes all but the updater. */
    TglTextureObject(const TglTextureObject& other);
    /** Shares the OpenGL textures of @p other from here on. Bias and scale stay, the updater goes. */
    TglTextureObject& operator=(const TglTextureObject& other);
    ~TglTextureObject();

    /** True for the same OpenGL textures in the same order. */
    bool operator==(const TglTextureObject& other) const { return fTextureNames == other.fTextureNames; }
    bool operator!=(const TglTextureObject& other) const { return !(*this == other); }

    // Images

    /** Makes OpenGL textures until there are @p count of them, or no more to be had. */
    void createTextures(unsigned count);
    /**
     * Uploads image @p index (glTexImage2D, gluBuild2DMipmaps).
     * @param width, height  in texels, 1 to 65535, their product less than 2^29
     * @param pixels  rows without gaps, the bottom one first: bytes of RGB for 3 @p components, of RGBA for 4. With
     * other counts they are of the format of the image before; without one there is no image.
     */
    void texImage2D(int width, int height, unsigned* pixels, unsigned char components, unsigned index);
    /**
     * Uploads @p map as image @p index. The map itself is brought to RGBA order and, where it has to be, to a size that
     * can be uploaded. An alpha channel that is full everywhere is left out unless @p keepAlpha; without kDetectAlpha
     * every one is. It stays where scale or bias change it.
     */
    void texImage2D(TpixelMap* map, bool keepAlpha, unsigned index);
    /** Makes this a sphere map: uploads @p map, with its alpha, as image 0, and generates GL_SPHERE_MAP coordinates. */
    void texImageSphereMap(TpixelMap* map, bool keepAlpha);
    /**
     * Makes this a cube map of the six @p maps +X, -X, +Y, -Y, +Z, -Z, and generates GL_REFLECTION_MAP coordinates. All
     * are brought to one size in place; their channel order stays. False without one of the maps or its pixels; there
     * is no OpenGL texture then.
     */
    bool texImageCubeMap(TpixelMap** maps);
    /** Keeps @p map as that of image @p index and describes it in getTextureInfo. Uploads nothing. */
    void setPixelMap(const TsharedPixelMap& map, unsigned index);
    const TsharedPixelMapArray& pixelMaps() const { return fPixelMaps; }
    /**
     * Resamples @p map to a size that can be uploaded: no side above the maximum, and without
     * T3dPort::haveNonPowerTwoTexture each rounded to the nearer power of two, the smaller one from half way. Rounding
     * may lead above a maximum that is no power of two.
     */
    void conformPixelMapHardwareSize(TpixelMap* map);
    /** Copies the first three of every four bytes. False, and nothing done, for a @p count of 0 pixels or null. */
    static bool stripAlphaChannel(unsigned count, const unsigned* source, unsigned char* destination);

    // Use

    /**
     * Makes image @p index the current texture of @p port, with this object's state; nothing for an image that does not
     * exist. Part of the parameters are sent before the binding too, and so reach the texture bound before.
     */
    void apply(T3dPort* port, unsigned index) const;
    /** Sends filters, border colour and wrap modes to the texture bound to the target. */
    void setTextureProperties() const;
    /**
     * Adds a region of the image, in texels and without @p xMax and @p yMax, to the rectangle that has changed: the
     * updater is called for it at the next apply.
     */
    void changed(unsigned short xMin, unsigned short xMax, unsigned short yMin, unsigned short yMax);
    void setTextureUpdater(TglTexObjUpdater* updater) { fUpdater.reset(updater); }

    /** Sets what is bound and uploaded to, and the image target that goes with it. */
    void setTextureTarget(TglContext::TtextureTarget target);
    void setTextureImageTarget(TglContext::TtextureTarget_TexImage target) { fImageTarget = target; }
    /** The largest side to upload, held between 2 and T3dPort::fsMaxTextureSize. */
    void setMaximumSize(int size);

    /**
     * Describes the last image; -1, and nothing written, when there is none, else 0.
     * @param reserved  ignored
     */
    int getTextureInfo(int& width, int& height, int& components, TtextureFormat& format, TtextureType& type,
                       int reserved) const;

    std::uint32_t flags() const { return fFlags; }
    void setFlag(Tflags flag, bool on) { fFlags = on ? fFlags | flag : fFlags & ~std::uint32_t(flag); }
    /** True when the image needs blending. */
    bool hasAlpha() const { return fHasAlpha; }
    TglContext::TtextureTarget textureTarget() const { return fTarget; }
    TglContext::TtextureTarget_TexImage textureImageTarget() const { return fImageTarget; }
    int maximumSize() const { return fMaximumSize; }
    /** The size that the last conforming chose. */
    short conformedWidth() const { return fConformedWidth; }
    short conformedHeight() const { return fConformedHeight; }
    const TtextureNamePtrArray& textureNames() const { return fTextureNames; }

    /** What uploads multiply each component with (GL_RED_SCALE and so on), and then add (GL_RED_BIAS and so on). */
    const TportColor& scale() const { return fScale; }
    const TportColor& bias() const { return fBias; }
    void setScale(const TportColor& scale) { fScale = scale; }
    void setBias(const TportColor& bias) { fBias = bias; }

    TglContext::TtextureWrap wrapS() const { return fWrapS; }
    TglContext::TtextureWrap wrapT() const { return fWrapT; }
    void setWrap(TglContext::TtextureWrap s, TglContext::TtextureWrap t)
    {
        fWrapS = s;
        fWrapT = t;
    }
    /** Not sent while its red is 0 or less, as at first. */
    const TportColor& borderColor() const { return fBorderColor; }
    void setBorderColor(const TportColor& color) { fBorderColor = color; }
    TglContext::TtextureFilter minFilter() const { return fMinFilter; }
    TglContext::TtextureFilter magFilter() const { return fMagFilter; }
    /** Filters until the next upload, which sets its own. */
    void setFilters(TglContext::TtextureFilter min, TglContext::TtextureFilter mag)
    {
        fMinFilter = min;
        fMagFilter = mag;
    }
    TglContext::TtextureEnv envMode() const { return fEnvMode; }
    void setEnvMode(TglContext::TtextureEnv mode) { fEnvMode = mode; }
    TglContext::TtextureGenMode genMode() const { return fGenMode; }
    void setGenMode(TglContext::TtextureGenMode mode) { fGenMode = mode; }

    // Class-wide

    /** While set, apply does nothing. */
    static void setDisableTexture(bool disable) { fsIsTextureDisabled = disable; }
    static bool isTextureDisabled() { return fsIsTextureDisabled; }
    /** Lets objects without kOwnOptions follow the view: its environment mode, filters and anisotropy (see T3dPort). */
    static void setUsePortTextureOptions(bool use) { fsUsePortTextureOptions = use; }
    /** Bytes of the images of all texture objects, modulo 2^32: one image each, no mipmaps, one face of a cube. */
    static unsigned textureMemoryUsage();

    static bool fsIsTextureDisabled;
    static bool fsUsePortTextureOptions;
    /** All texture objects, in the order they were made. Never destroyed: texture objects may be static ones. */
    static TglTextureObjectPtrArray& fsTextureObjects;

private:
    void init(int maximumSize);
    bool isNameMissing(unsigned index) const { return index >= fTextureNames.length() || !fTextureNames[index]; }
    bool makeName(unsigned index);
    void clearDirtyRegion() const;
    bool isFollowingPort() const;
    void sendImage(GLenum target, int width, int height, GLenum format, const void* pixels, bool generateMipmaps);
    void sendBorderAndWrap() const;

    // Fields, in their declared order

    TtextureNamePtrArray fTextureNames; ///< one per image, counted here; an entry may be null
    TcountedPtr<TglTexObjUpdater> fUpdater;
    TsharedPixelMapArray fPixelMaps;
    TportColor fBias;
    TportColor fScale;
    TglContext::TtextureWrap fWrapS;
    TglContext::TtextureWrap fWrapT;
    TportColor fBorderColor;
    TglContext::TtextureFilter fMinFilter;
    TglContext::TtextureFilter fMagFilter;
    TglContext::TtextureEnv fEnvMode;
    TglContext::TtextureGenMode fGenMode;
    TglContext::TtextureTarget_TexImage fImageTarget;
    TglContext::TtextureTarget fTarget;
    mutable std::uint32_t fFlags = 0;
    TtextureFormat fFormat{};
    TtextureType fType{};
    std::int32_t fMaximumSize;
    std::uint16_t fWidth = 0; ///< of the uploaded image
    std::uint16_t fHeight = 0;
    mutable std::uint16_t fDirtyXMin = 0; ///< changed since the last refresh; empty when min is not below max
    mutable std::uint16_t fDirtyXMax = 0;
    mutable std::uint16_t fDirtyYMin = 0;
    mutable std::uint16_t fDirtyYMax = 0;
    std::uint8_t fComponents = 0; ///< 0 for no image yet
    bool fHasAlpha;
    std::int16_t fConformedWidth;
    std::int16_t fConformedHeight;
};
