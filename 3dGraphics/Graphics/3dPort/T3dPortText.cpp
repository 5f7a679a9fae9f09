// Text and bitmaps.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/glResources/TglBitmap.h"
#include "Graphics/glResources/TglPixelStoreGuard.h"
#include "foundation/T2Int32.h"
#include "foundation/T4dDblPoint.h"
#include "ui/TapplicationShell.h"

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// As in the pixel space of the viewport: off the edges where rasterization rules differ.
constexpr float kPixelCentre = 0.375f;
constexpr double kMappingNoise = 1e-9;
// The bits of a bitmap without pixels. With a null pointer Mesa reports GL_OUT_OF_MEMORY while a list is compiled.
constexpr GLubyte kNoBits[1] = {};

/** The integer of 16 bits next to a whole number. */
short toShort(double value)
{
    using Limits = std::numeric_limits<short>;
    return static_cast<short>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

/** The whole part. What mapping has left a trifle short of a pixel counts as that pixel. */
double wholePart(double value)
{
    const double nearest = std::round(value);
    return std::abs(value - nearest) < kMappingNoise ? nearest : std::trunc(value);
}

/** The box of an extent in pixels, with @p left and @p bottom cut to whole ones. */
TportRect boxAt(double left, double bottom, const T2Int32& size)
{
    const double x = wholePart(left);
    const double y = wholePart(bottom);
    return TportRect(toShort(x), toShort(y), toShort(x + size.width), toShort(y + size.height));
}

/** True if @p box lies between the edges of @p r, in part at least. A box without extent may do so too. */
bool overlaps(const TportRect& box, const TportRect& r)
{
    return box.left < r.right && box.right > r.left && box.bottom < r.top && box.top > r.bottom;
}

} // namespace

void* T3dPort::getDisplay()
{
    const TapplicationShell* const shell = TapplicationShell::current();
    return shell ? shell->display() : nullptr;
}

void T3dPort::setColorWithAlpha(const TportColor& c)
{
    if (fContext->fColor == c)
        return;
    fContext->fColor = c;
    fContext->fColorDisturbed = false;
    fContext->fHardwareIndex = TglContext::kUnknownIndex;
    glColor4fv(&c.r);
}

void T3dPort::drawTextBox(const TportRect& box, const TportColor& background)
{
    pushOrtho2D();
    const TportColor color = fContext->fColor;
    setColorWithAlpha(background);
    if (!fContext->fBlending)
        blendingStateChanged(true);
    blendFunc(kBlendOne, kBlendOneMinusSrcAlpha);
    rect(box.left, box.bottom, box.right, box.top, true);
    // Off from here on, even if it was on before.
    if (fContext->fBlending)
        blendingStateChanged(false);
    setColorWithAlpha(color);
    popOrtho2D();
}

void T3dPort::text(const T4dDblPoint& where, const char* text, TtextPos pos, const T2Int32* boxSize,
                   const TportColor& background)
{
    if (!fContext)
        return;
    setCurrentContext();
    T4dDblPoint at;
    if (worldToPort(where, at) == kPointAtInfinity || !std::isfinite(at.x) || !std::isfinite(at.y))
        return;
    void* const display = getDisplay();
    const T2Int32 textSize{fFont.textWidth(display, text), fFont.textHeight(display)};
    T2Int32 size = textSize;
    if (boxSize)
        size = T2Int32{std::max(0, boxSize->width), std::max(0, boxSize->height)};

    double left = at.x;
    double x = at.x;
    if (pos == kRight) {
        left -= size.width;
        x -= textSize.width;
    } else if (pos == kCenter) {
        const int half = size.width / 2; // whole pixels
        left -= half;
        x -= static_cast<double>(static_cast<float>(textSize.width) * 0.5f);
    }
    const TportRect box = boxAt(left, at.y, size);
    const TportRect& view = viewport();
    if (!overlaps(box, view))
        return;

    if (background.a > 0)
        drawTextBox(box, background);
    if (isGLCoreViewport())
        return;

    const int below = (size.height - textSize.height) / 2;
    const double y = at.y + below;
    const GLenum mode = fContext->fMatrixMode;
    sendMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluOrtho2D(view.left, view.right, view.bottom, view.top);
    sendMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glTranslatef(kPixelCentre, kPixelCentre, 0);
    // A raster position outside the viewport is none. One inside may be moved out of it, by a bitmap without pixels.
    glRasterPos3f(view.left, view.bottom, static_cast<float>(std::clamp(at.z, -2.0, 2.0)));
    glBitmap(0, 0, 0, 0, static_cast<float>(x - view.left), static_cast<float>(y - view.bottom), kNoBits);
    sendMatrixMode(GL_PROJECTION);
    glPopMatrix();
    sendMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    sendMatrixMode(mode);
    fFont.apply(display, text);
}

void T3dPort::drawBitmap(const TglBitmap& bm)
{
    if (bm.fList) {
        glCallList(bm.fList->first());
        return;
    }
    const TcountedPtr<TglListId> made = TglListId::toCompile();
    bm.fList = made;
    glPushAttrib(GL_PIXEL_MODE_BIT);
    // The alignment is the client's: it is set when the list is compiled and is no part of it.
    const TglPixelStoreGuard store(TglPixelStoreGuard::kUnpack);
    if (made)
        glNewList(made->first(), GL_COMPILE_AND_EXECUTE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
    const GLubyte* const bits = bm.fBits.get();
    glBitmap(bits ? static_cast<GLsizei>(bm.fWidth) : 0, bits ? static_cast<GLsizei>(bm.fHeight) : 0,
             static_cast<float>(bm.fXorig), static_cast<float>(bm.fYorig), 0, 0, bits ? bits : kNoBits);
    if (made) {
        bm.fBits.reset();
        glEndList();
    }
    glPopAttrib();
}

void T3dPort::bitmap(const T4dDblPoint& where, const TglBitmap& bm)
{
    setCurrentContext();
    glRasterPos3dv(&where.x);
    drawBitmap(bm);
}

void T3dPort::bitmap(const T4dDblPoint& where, const TglBitmap* bm)
{
    if (bm)
        bitmap(where, *bm);
}

void T3dPort::bitmap(float x, float y, float z, const TglBitmap& bm)
{
    setCurrentContext();
    glRasterPos3f(x, y, z);
    drawBitmap(bm);
}

void T3dPort::bitmap(float x, float y, float z, const TglBitmap* bm)
{
    if (bm)
        bitmap(x, y, z, *bm);
}
