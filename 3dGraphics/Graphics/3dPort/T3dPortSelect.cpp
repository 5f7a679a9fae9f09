// Selection and picking.

#include "Graphics/3dPort/T3dPort.h"

#include "foundation/Tpoint.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int kRasterSelectSize = 16; ///< pixels that are read back at most, in each direction

short pixelPosition(int v)
{
    return static_cast<short>(std::clamp<int>(v, std::numeric_limits<short>::min(), std::numeric_limits<short>::max()));
}

void clipRange(short& low, short& high, short end)
{
    if (low < 0) {
        low = 0;
        high = std::max<short>(high, 0);
    }
    if (high > end) {
        high = end;
        low = std::min(low, end);
    }
}

/** How much of the selection rectangle's extent is drawn and read back. */
int rasterExtent(short extent)
{
    return std::clamp<int>(extent, 0, kRasterSelectSize);
}

GLenum readBuffer()
{
    GLint buffer = 0;
    glGetIntegerv(GL_READ_BUFFER, &buffer);
    return static_cast<GLenum>(buffer);
}

/** Reads depths, row by row without gaps whatever the host has set for its own transfers. */
void readDepths(int x, int y, int width, int height, float* depths)
{
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    for (const GLenum gap : {GL_PACK_ROW_LENGTH, GL_PACK_SKIP_ROWS, GL_PACK_SKIP_PIXELS, GL_PACK_SWAP_BYTES})
        glPixelStorei(gap, 0);
    glReadPixels(x, y, width, height, GL_DEPTH_COMPONENT, GL_FLOAT, depths);
    glPopClientAttrib();
}

} // namespace

TportRect T3dPort::makeSelectRect(const Tpoint& p, unsigned short half) const
{
    TportRect r(pixelPosition(p.x - half), pixelPosition(p.y - half), pixelPosition(p.x + half),
                pixelPosition(p.y + half));
    clipSelectRect(r);
    return r;
}

void T3dPort::clipSelectRect(TportRect& r) const
{
    clipRange(r.left, r.right, fPortRect.width());
    clipRange(r.bottom, r.top, fPortRect.height());
}

void T3dPort::pushSelectProjection()
{
    const GLenum mode = fMatrixMode;
    fMatrixMode = GL_PROJECTION;
    pushMatrix();
    fMatrixMode = mode;
    projectionChanged(nullptr);
    setCurrentContext();
}

void T3dPort::popSelectProjection()
{
    const GLenum mode = fMatrixMode;
    fMatrixMode = GL_PROJECTION;
    popMatrix();
    fMatrixMode = mode;
    projectionChanged(nullptr);
    setCurrentContext();
}

void T3dPort::selectInitialization()
{
    fPortFlags.set(kPortGLSelect);
    const double width = fSelectRect.width();
    const double height = fSelectRect.height();
    // The rectangle counts from the viewport's corner, not from the port's.
    fSelectMatrix.setToIdentity();
    fSelectMatrix[0] = fViewport->width() / width;
    fSelectMatrix[5] = fViewport->height() / height;
    fSelectMatrix[12] = (fViewport->width() - (fSelectRect.left + fSelectRect.right)) / width;
    fSelectMatrix[13] = (fViewport->height() - (fSelectRect.bottom + fSelectRect.top)) / height;
    pushSelectProjection();
}

void T3dPort::selectFinalization()
{
    fPortFlags.clear(kPortGLSelect);
    popSelectProjection();
}

void T3dPort::beginSelect(unsigned* buffer, int size)
{
    selectInitialization();
    if (!buffer || size == 0 || buffer == fsSelectBuffer) {
        buffer = fsSelectBuffer;
        size = kSelectBufferSize;
    }
    fSelectBuffer = buffer;
    glSelectBuffer(std::max(size, 1), buffer);
    glRenderMode(GL_SELECT);
    glInitNames();
}

int T3dPort::endSelect()
{
    setCurrentContext(); // another port may have been drawn in between
    int hits = glRenderMode(GL_RENDER);
    if (hits < 0 && fSelectBuffer == fsSelectBuffer)
        hits = 1;
    selectFinalization();
    return hits;
}

void T3dPort::beginRasterizationSelect()
{
    fPortFlags.set(kPortRasterSelect);
    const int w = rasterExtent(fSelectRect.width());
    const int h = rasterExtent(fSelectRect.height());
    const double scaleX = double(w) / fSelectRect.width();
    const double scaleY = double(h) / fSelectRect.height();
    fSelectMatrix.setToIdentity();
    fSelectMatrix[0] = scaleX;
    fSelectMatrix[5] = scaleY;
    fSelectMatrix[12] = -1 - ((fSelectRect.left - fViewport->left) * 2.0 / fViewport->width() - 1) * scaleX;
    fSelectMatrix[13] = -1 - ((fSelectRect.bottom - fViewport->bottom) * 2.0 / fViewport->height() - 1) * scaleY;
    pushSelectProjection();

    glScissor(fViewport->left, fViewport->bottom, w, h);
    glEnable(GL_SCISSOR_TEST);
    if (fContext) {
        fContext->fScissorX = fViewport->left;
        fContext->fScissorY = fViewport->bottom;
        fContext->fScissorWidth = static_cast<short>(w);
        fContext->fScissorHeight = static_cast<short>(h);
        fContext->fDirtyBits.set(TglContext::kScissorOn);
    }
    // A mask that is off would keep the depths of the picture, and everything would be a hit.
    const bool masked = fContext && !fContext->fDepthMask;
    depthMask(true);
    glClear(GL_DEPTH_BUFFER_BIT);
    if (masked)
        depthMask(false);
}

bool T3dPort::endRasterizationSelect(float* depth)
{
    fPortFlags.clear(kPortRasterSelect);
    setCurrentContext(); // another port may have been drawn in between
    const int w = rasterExtent(fSelectRect.width());
    const int h = rasterExtent(fSelectRect.height());
    float depths[kRasterSelectSize * kRasterSelectSize];
    std::fill(std::begin(depths), std::end(depths), 1.0f); // what stays where nothing can be read
    const GLenum saved = readBuffer();
    glReadBuffer(GL_BACK);
    // A context without a back buffer refuses it. Nobody is to be told of that error.
    if (saved != GL_BACK && readBuffer() != GL_BACK)
        glGetError();
    readDepths(fViewport->left, fViewport->bottom, w, h, depths);
    glReadBuffer(saved);

    float nearest = std::numeric_limits<float>::max();
    for (const float* d = depths; d != depths + w * h; ++d)
        if (*d < 1.0f)
            nearest = std::min(nearest, *d);

    glDisable(GL_SCISSOR_TEST);
    if (fContext)
        fContext->fDirtyBits.clear(TglContext::kScissorOn);
    popSelectProjection();
    if (depth)
        *depth = nearest;
    return nearest < 1.0f;
}
