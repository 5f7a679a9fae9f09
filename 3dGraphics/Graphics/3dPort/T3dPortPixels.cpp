// Pixel transfer and backing store.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/glResources/TglPixelStoreGuard.h"
#include "Graphics/glResources/TglPixels.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "QtExtensions/QlirnShownPixels.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/TpixelMap.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace {

GLenum formatOf(const TpixelMap& map)
{
    if (map.channels() == 3)
        return map.isRgba() ? GL_RGB : GL_BGR;
    return map.isRgba() ? GL_RGBA : GL_BGRA;
}

bool isUsable(const TpixelMap& map)
{
    return map.width() > 0 && map.height() > 0 && map.pixels();
}

short clampedToShort(int value)
{
    return static_cast<short>(
        std::clamp<int>(value, std::numeric_limits<short>::min(), std::numeric_limits<short>::max()));
}

void drawPixels(const TpixelMap& map)
{
    const TglPixelStoreGuard store(TglPixelStoreGuard::kUnpack);
    glDrawPixels(map.width(), map.height(), formatOf(map), GL_UNSIGNED_BYTE, map.pixels());
}

void moveRaster(float dx, float dy)
{
    glBitmap(0, 0, 0, 0, dx, dy, nullptr);
}

void resetPixelTransfer()
{
    glPixelTransferi(GL_MAP_COLOR, 0);
    for (const GLenum scale : {GL_RED_SCALE, GL_GREEN_SCALE, GL_BLUE_SCALE, GL_ALPHA_SCALE})
        glPixelTransferf(scale, 1);
    for (const GLenum bias : {GL_RED_BIAS, GL_GREEN_BIAS, GL_BLUE_BIAS, GL_ALPHA_BIAS})
        glPixelTransferf(bias, 0);
}

GLenum selectedBuffer(GLenum which)
{
    GLint buffer = 0;
    glGetIntegerv(which, &buffer);
    return static_cast<GLenum>(buffer);
}

/** A frame-buffer object has no front, back or auxiliary buffers; choosing one of these would be an error. */
bool isColorAttachment(GLenum buffer)
{
    return buffer == GL_NONE || (buffer >= GL_COLOR_ATTACHMENT0 && buffer <= GL_COLOR_ATTACHMENT15);
}

/**
 * Mesa's software drivers (seen with 22.3) put a frame that is swapped into the window without GL_FRONT getting to know:
 * what is read from there is what was last drawn to it directly, or black.
 */
bool isFrontBufferStale()
{
    const char* renderer = T3dPort::graphicsHardwareString();
    return renderer && (std::strstr(renderer, "llvmpipe") || std::strstr(renderer, "softpipe"));
}

/**
 * To be called before pixels are read. Mesa (seen with 22.3) cuts the rectangle to the size that the window had when
 * something was last drawn, and takes notice of the size of now only after that; what then lies outside is read from
 * beside its memory. Reading one pixel makes it look. Inside the port nothing can go wrong.
 */
void noticeSize(const TportRect& port, int x, int y, int width, int height)
{
    if (x + width <= port.width() && y + height <= port.height())
        return;
    unsigned char pixel[4];
    glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel);
}

struct CopyBuffers
{
    GLenum fRead;
    GLenum fDraw;
    int fAuxCount; ///< auxiliary buffers that there must be
};

constexpr CopyBuffers kCopyBuffers[] = {
    /* kFrontToBack */ {GL_FRONT, GL_BACK, 0},
    /* kBackToFront */ {GL_BACK, GL_FRONT, 0},
    /* kAux0ToBack */ {GL_AUX0, GL_BACK, 1},
    /* kAux1ToBack */ {GL_AUX1, GL_BACK, 2},
};

/** True when what is drawn into now has the buffers. Asked of OpenGL: it may be a pixmap's buffers, which are others. */
bool hasBuffers(const CopyBuffers& wanted)
{
    GLboolean isDouble = GL_FALSE;
    glGetBooleanv(GL_DOUBLEBUFFER, &isDouble);
    if (!isDouble || wanted.fAuxCount == 0)
        return isDouble;
    GLint count = 0;
    glGetIntegerv(GL_AUX_BUFFERS, &count);
    return count >= wanted.fAuxCount;
}

} // namespace

bool T3dPort::isDepthTestOn() const
{
    if (!fContext || fContext->fValidBits.test(TglContext::kResendDepthTest))
        return glIsEnabled(GL_DEPTH_TEST) != GL_FALSE;
    return fContext->fDirtyBits.test(TglContext::kDepthTestOn);
}

bool T3dPort::isDitheringOn() const
{
    if (!fContext || fContext->fValidBits.test(TglContext::kResendDithering))
        return glIsEnabled(GL_DITHER) != GL_FALSE;
    return fContext->fDirtyBits.test(TglContext::kDitheringOn);
}

void T3dPort::dithering(bool on)
{
    if (!fContext || (fContext->fDirtyBits.test(TglContext::kDitheringOn) == on &&
                      !fContext->fValidBits.test(TglContext::kResendDithering)))
        return;
    setCurrentContext();
    if (on)
        glEnable(GL_DITHER);
    else
        glDisable(GL_DITHER);
    fContext->fDirtyBits.assign(TglContext::kDitheringOn, on);
    fContext->fValidBits.clear(TglContext::kResendDithering);
}

void T3dPort::pushRasterPosition(double x, double y, double z)
{
    // A raster position outside the viewport would be none at all, but one inside may be moved anywhere.
    constexpr double kFarAway = 1e6;
    const TportRect corner = *fViewport;
    pushOrtho2D();
    setCurrentContext();
    glRasterPos3d(corner.left, corner.bottom, std::clamp(z, -1.0, 1.0));
    moveRaster(static_cast<float>(std::clamp(x - corner.left, -kFarAway, kFarAway)),
               static_cast<float>(std::clamp(y - corner.bottom, -kFarAway, kFarAway)));
}

bool T3dPort::pixelMapGLRead(TpixelMap& map, int x, int y) const
{
    if (!isUsable(map))
        return false;
    const TglPixelStoreGuard store(TglPixelStoreGuard::kPack);
    noticeSize(fPortRect, x, y, map.width(), map.height());
    glReadPixels(x, y, map.width(), map.height(), formatOf(map), GL_UNSIGNED_BYTE, map.pixels());
    return true;
}

void T3dPort::pixelMapGLWrite(const TpixelMap& map, int x, int y, bool flip) const
{
    if (!isUsable(map))
        return;
    if (flip) {
        glPixelZoom(1, -1);
        glRasterPos3f(0, 0, 0);
        moveRaster(static_cast<float>(x), static_cast<float>(y) + static_cast<float>(map.height()));
    } else {
        glRasterPos2i(x, y);
    }
    drawPixels(map);
    glFlush();
    if (flip)
        glPixelZoom(1, 1);
}

bool T3dPort::pixelMapRead(TpixelMap& map, short)
{
    return readPixelMap(map, nullptr);
}

bool T3dPort::pixelMapRead(TgenericPixelMap<float>&, TportRect, PixelMapReadColorSpace)
{
    return false;
}

bool T3dPort::pixelMapRead(TpixelMap& map, short, TportRect& area)
{
    return readPixelMap(map, &area);
}

bool T3dPort::readPixelMap(TpixelMap& map, const TportRect* area)
{
    if (!glWidget() || !isUsable(map))
        return false;
    setCurrentContext();
    const bool scissored = fContext->fDirtyBits.test(TglContext::kScissorOn);
    // The record's extents wrap around beyond 32767.
    const TportRect box(fContext->fScissorX, fContext->fScissorY,
                        static_cast<short>(fContext->fScissorX + fContext->fScissorWidth),
                        static_cast<short>(fContext->fScissorY + fContext->fScissorHeight));
    if (!fUseBackingStore)
        depthTest(false);
    glDisable(GL_SCISSOR_TEST);
    fContext->fDirtyBits.clear(TglContext::kScissorOn);

    bool read = false;
    if (!area) {
        read = pixelMapGLRead(map, 0, 0);
    } else if (!area->isEmpty()) {
        const TglPixelStoreGuard store(TglPixelStoreGuard::kPack);
        glPixelStorei(GL_PACK_ROW_LENGTH, map.width());
        glReadPixels(area->left, area->bottom, std::min<int>(area->right - area->left, map.width()),
                     std::min<int>(area->top - area->bottom, map.height()), formatOf(map), GL_UNSIGNED_BYTE,
                     map.pixels());
        read = true;
    }
    // A scissor that was off stays off, also where the port rectangle does not cover the viewport.
    scissor(scissored ? box : *fViewport, false);
    return read;
}

void T3dPort::pixelMapDraw(const T4dDblPoint& p, const TpixelMap& map, bool)
{
    if (!glWidget() || !isUsable(map))
        return;
    setCurrentContext();
    glRasterPos3dv(&p.x);
    drawPixels(map);
    glFlush();
}

void T3dPort::pixelMapDrawClipped(const T4dDblPoint& p, const TpixelMap& map)
{
    if (!glWidget() || !isUsable(map))
        return;
    pushRasterPosition(p.x, p.y, p.z);
    drawPixels(map);
    glFlush();
    popOrtho2D();
}

void T3dPort::pixelMapDraw(const TportRect& dst, const TpixelMap& map, const TportRect& src, bool flip)
{
    drawPixelMap(dst, map, dst == src || dst.intersects(fPortRect), flip);
}

void T3dPort::pixelMapDraw(short x, short y, const TpixelMap& map, bool flip)
{
    const TportRect dst(x, y, clampedToShort(x + map.width() - 1), clampedToShort(y + map.height() - 1));
    // This rectangle ends with the last pixel and not after it; for that reason it is never the map's own.
    const bool meets = dst.left < fPortRect.right && dst.right >= fPortRect.left && dst.bottom < fPortRect.top &&
                       dst.top >= fPortRect.bottom;
    drawPixelMap(dst, map, meets, flip);
}

void T3dPort::pixelMapDraw(const TportRect& dst, const TpixelMap& map, bool flip)
{
    pixelMapDraw(dst, map, map.rect(), flip);
}

void T3dPort::drawPixelMap(const TportRect& dst, const TpixelMap& map, bool isSeen, bool flip)
{
    if (!glWidget())
        return;
    setCurrentContext();
    const bool depthTested = isDepthTestOn();
    if (!fUseBackingStore)
        depthTest(false);
    if (isSeen)
        pixelMapGLWrite(map, dst.left, dst.bottom, flip);
    if (!fUseBackingStore)
        depthTest(depthTested);
}

void T3dPort::writePixelMap(const TpixelMap& map, float x, float y)
{
    if (!glWidget() || !isUsable(map))
        return;
    setCurrentContext();
    glRasterPos2f(x, y);
    drawPixels(map);
    glFlush();
}

void T3dPort::readPixels(TglPixels& block, short x, short y)
{
    if (!glWidget())
        return;
    setCurrentContext();
    const TglPixelStoreGuard store(TglPixelStoreGuard::kPack);
    noticeSize(fPortRect, x, y, block.width(), block.height());
    block.read(x, y);
}

void T3dPort::writePixels(const TglPixels& block, short x, short y)
{
    if (!glWidget())
        return;
    setCurrentContext();
    const TglPixelStoreGuard store(TglPixelStoreGuard::kUnpack);
    block.write(x, y);
}

bool T3dPort::snapShot(TpixelMap& map)
{
    const int width = fSnapShotRect.right - fSnapShotRect.left;
    const int height = fSnapShotRect.top - fSnapShotRect.bottom;
    if (fSnapShotRect.left < 0 || fSnapShotRect.bottom < 0 || width < 1 || height < 1 || !glWidget())
        return false;
    setCurrentContext();
    const GLenum before = selectedBuffer(GL_READ_BUFFER);
    if (isColorAttachment(before))
        return false;
    pushOrtho2D();
    const bool sized = map.setSize(width, height);
    if (sized) {
        glReadBuffer(GL_FRONT);
        pixelMapGLRead(map, fSnapShotRect.left, fSnapShotRect.bottom);
        glReadBuffer(before);
        if (fDoubleBuffered && isFrontBufferStale() && !glWidget()->isRenderingPixmap()) {
            glFlush(); // shows what was drawn to the front buffer directly
            QlirnShownPixels::read(glWidget()->glWindow(), fSnapShotRect.left, fSnapShotRect.bottom, map);
        }
    }
    popOrtho2D();
    return sized;
}

void T3dPort::setSnapShotMode(bool on)
{
    constexpr int kHalfSide = 50;
    fSnapShotMode = on;
    if (fSnapShotRect.left != fSnapShotRect.right && fSnapShotRect.bottom != fSnapShotRect.top)
        return;
    const int cx = fPortRect.width() / 2;
    const int cy = fPortRect.height() / 2;
    fSnapShotRect = TportRect(clampedToShort(cx - kHalfSide), clampedToShort(cy - kHalfSide),
                              clampedToShort(cx + kHalfSide), clampedToShort(cy + kHalfSide));
}

void T3dPort::copyPixels(TcopyMode mode)
{
    if (!glWidget())
        return;
    setCurrentContext();
    const CopyBuffers* buffers = mode < std::size(kCopyBuffers) ? &kCopyBuffers[mode] : nullptr;
    if (buffers && !hasBuffers(*buffers))
        return;
    const GLenum readBefore = selectedBuffer(GL_READ_BUFFER);
    const GLenum drawBefore = selectedBuffer(GL_DRAW_BUFFER);
    if (buffers) {
        glReadBuffer(buffers->fRead);
        glDrawBuffer(buffers->fDraw);
    }
    dithering(false);
    // The raster position is in the middle of the depth range, where the scene could hide it.
    const bool depthTested = isDepthTestOn();
    depthTest(false);
    pushOrtho2D();
    setCurrentContext();
    glRasterPos2s(fViewport->left, fViewport->bottom);
    if (mode == kAux1ToBack) {
        glEnable(GL_ALPHA_TEST);
        glAlphaFunc(GL_EQUAL, 1.0f);
    }
    moveRaster(static_cast<float>(-fViewport->left), static_cast<float>(-fViewport->bottom));
    glCopyPixels(0, 0, fPortRect.width(), fPortRect.height(), GL_COLOR);
    glFlush();
    if (mode == kAux1ToBack)
        glDisable(GL_ALPHA_TEST);
    glReadBuffer(readBefore);
    glDrawBuffer(drawBefore);
    popOrtho2D();
    depthTest(depthTested);
    if (fsGraphicsFlags.test(kDithering))
        dithering(true);
}

void T3dPort::saveBackingStore()
{
    if (!glWidget())
        return;
    if (!fBackingStore)
        fBackingStore = std::make_unique<TglPixels>(TglPixels::kRgb, fViewport->right - fViewport->left,
                                                    fViewport->top - fViewport->bottom);
    setCurrentContext();
    resetPixelTransfer();
    readPixels(*fBackingStore, fViewport->left, fViewport->bottom);
    fBackingSaved = true;
}

void T3dPort::restoreBackingStore()
{
    if (!glWidget() || !fBackingStore)
        return;
    setCurrentContext();
    const bool dithered = isDitheringOn();
    dithering(false);
    glPixelZoom(1, 1);
    resetPixelTransfer();
    pushOrtho2D();
    writePixels(*fBackingStore, fViewport->left, fViewport->bottom);
    popOrtho2D();
    if (dithered)
        dithering(true);
}

void T3dPort::discardBackingStore()
{
    fBackingStore.reset();
    fBackingSaved = false;
}

void T3dPort::setUseBackingStore(bool on)
{
    if (!on)
        discardBackingStore();
    if (on == fUseBackingStore)
        return;
    fUseBackingStore = on;
    if (!glWidget())
        return;
    if (on) {
        setCurrentContext();
        fDepthTestFound = isDepthTestOn();
        depthTest(false);
    } else {
        depthTest(fDepthTestFound);
    }
}
