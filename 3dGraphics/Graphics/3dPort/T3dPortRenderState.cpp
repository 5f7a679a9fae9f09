// Render state.

#include "Graphics/3dPort/T3dPort.h"

#include "QtExtensions/QlirnGLWidget.h"

#include <GL/glext.h>

float T3dPort::fsGlobalLineWidth = 1.0f;
bool T3dPort::fsSmoothWireFrame = false;
bool T3dPort::fsUseSeparateSpecularColor = true;
float T3dPort::fsXrayAlpha = 0.3f;

namespace {

struct BlendPair
{
    T3dPort::TblendFunc fSource;
    T3dPort::TblendFunc fDestination;
};

constexpr BlendPair kLayerBlends[] = {
    /* 0 */ {T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha},
    /* 1 */ {T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha},
    /* 2 */ {T3dPort::kBlendZero, T3dPort::kBlendSrcAlpha},
    /* 3 */ {T3dPort::kBlendZero, T3dPort::kBlendOneMinusSrcAlpha},
    /* 4 */ {T3dPort::kBlendSrcAlpha, T3dPort::kBlendOne},
    /* 5 */ {T3dPort::kBlendDstColor, T3dPort::kBlendOneMinusSrcAlpha},
    /* 6 */ {T3dPort::kBlendDstColor, T3dPort::kBlendOneMinusSrcAlpha},
    /* 7 */ {T3dPort::kBlendOne, T3dPort::kBlendZero},
    /* 8 */ {T3dPort::kBlendZero, T3dPort::kBlendOneMinusSrcColor},
    /* 9 */ {T3dPort::kBlendDstColor, T3dPort::kBlendOne},
    /* 10 */ {T3dPort::kBlendZero, T3dPort::kBlendOneMinusSrcColor},
};
constexpr BlendPair kUnknownLayerBlend = {T3dPort::kBlendOne, T3dPort::kBlendOne};

void setCapability(GLenum capability, bool on)
{
    if (on)
        glEnable(capability);
    else
        glDisable(capability);
}

} // namespace

void T3dPort::colorChanged(const TportColor& c)
{
    if (!fPortFlags.test(kPortInPrimitive))
        setCurrentContext();
    fContext->fColor = c;
    fContext->fColorDisturbed = false;
    fContext->fHardwareIndex = TglContext::kUnknownIndex;
    glColor3fv(&c.r);
}

void T3dPort::pointSizeChanged(float size)
{
    setCurrentContext();
    fContext->fPointSize = size;
    glPointSize(size);
}

void T3dPort::pointSmoothing(bool on)
{
    setCurrentContext();
    setCapability(GL_POINT_SMOOTH, on);
}

void T3dPort::lineWidthStateChanged(float width)
{
    setCurrentContext();
    if (fContext)
        fContext->fLineWidth = width;
    glLineWidth(width);
}

void T3dPort::blendingStateChanged(bool on)
{
    setCurrentContext();
    setCapability(GL_BLEND, on);
    if (fContext)
        fContext->fBlending = on;
}

void T3dPort::blendFuncChanged(TblendFunc source, TblendFunc destination)
{
    fContext->fValidBits.clear(TglContext::kResendBlendFunc);
    fContext->fBlendSource = source;
    fContext->fBlendDestination = destination;
    glBlendFunc(source, destination);
}

void T3dPort::setLayerBlendMode(TlayeredBlendMode mode)
{
    const BlendPair& pair = mode < std::size(kLayerBlends) ? kLayerBlends[mode] : kUnknownLayerBlend;
    blendFunc(pair.fSource, pair.fDestination);
}

void T3dPort::lineSmoothing(bool on)
{
    setCurrentContext();
    setCapability(GL_LINE_SMOOTH, on);
    blending(on);
    if (on)
        blendFunc(kBlendSrcAlpha, kBlendOneMinusSrcAlpha);
}

void T3dPort::polygonMode(TpolygonFace face, TpolygonMode mode)
{
    setCurrentContext();
    glPolygonMode(face, mode);
}

void T3dPort::cullFace(TcullingMethod method)
{
    setCurrentContext();
    if (method == kCullBack || method == kCullFront) {
        glCullFace(method == kCullBack ? GL_BACK : GL_FRONT);
        glEnable(GL_CULL_FACE);
        if (fContext)
            fContext->fDirtyBits.set(TglContext::kCullingOn);
    } else if (method == kCullNone) {
        glDisable(GL_CULL_FACE);
        glCullFace(GL_BACK);
        if (fContext)
            fContext->fDirtyBits.clear(TglContext::kCullingOn);
    }
}

T3dPort::TcullingMethod T3dPort::cullFace() const
{
    if (!fContext || !fContext->fDirtyBits.test(TglContext::kCullingOn))
        return kCullNone;
    setCurrentContext();
    GLint face = GL_BACK;
    glGetIntegerv(GL_CULL_FACE_MODE, &face);
    return face == GL_BACK ? kCullBack : kCullFront;
}

void T3dPort::depthRange(double zNear, double zFar)
{
    setCurrentContext();
    glDepthRange(zNear, zFar);
}

void T3dPort::getDepthRange(double& zNear, double& zFar) const
{
    setCurrentContext();
    double range[2] = {0, 1};
    glGetDoublev(GL_DEPTH_RANGE, range);
    zNear = range[0];
    zFar = range[1];
}

void T3dPort::depthTestChanged(bool on)
{
    if (!fContext->fDirtyBits.test(TglContext::kHasDepthBuffer))
        return;
    setCurrentContext();
    setCapability(GL_DEPTH_TEST, on);
    fContext->fDirtyBits.assign(TglContext::kDepthTestOn, on);
    fContext->fValidBits.clear(TglContext::kResendDepthTest);
}

void T3dPort::depthMaskChanged(bool on)
{
    setCurrentContext();
    fContext->fDepthMask = on;
    glDepthMask(on);
}

void T3dPort::depthFuncChanged(TdepthFunc func)
{
    setCurrentContext();
    fContext->fDepthFunc = func;
    glDepthFunc(func);
}

bool T3dPort::accum(TaccumOp op, float value)
{
    if (!hasAccumBuffer())
        return false;
    setCurrentContext();
    glAccum(op, value);
    return true;
}

void T3dPort::clearAccum(float r, float g, float b, float a)
{
    if (!hasAccumBuffer())
        return;
    setCurrentContext();
    glClearAccum(r, g, b, a);
}

void T3dPort::clearColorChanged(const TportColor& c)
{
    setCurrentContext();
    fContext->fClearColor = c;
    glClearColor(c.r, c.g, c.b, c.a);
}

TportColor T3dPort::clearColor() const
{
    setCurrentContext();
    return fDrawingPlanes == kMainPlanes && fContext ? fContext->fClearColor : kCblack;
}

void T3dPort::clear(int mask)
{
    setCurrentContext();
    auto bits = static_cast<GLbitfield>(mask);
    if (fContext && fContext->fDirtyBits.test(TglContext::kHasStencilBuffer)) {
        glClearStencil(0);
        bits |= GL_STENCIL_BUFFER_BIT;
    } else {
        bits &= ~GLbitfield(GL_STENCIL_BUFFER_BIT);
    }
    glClear(bits);
}

void T3dPort::scissor(const TportRect& r, bool force)
{
    setCurrentContext();
    if (!fContext)
        return;
    const bool coversAll = r.left <= fViewport->left && r.right >= fViewport->right && r.bottom <= fViewport->bottom &&
                           r.top >= fViewport->top;
    if (coversAll && !force) {
        glDisable(GL_SCISSOR_TEST);
        fContext->fDirtyBits.clear(TglContext::kScissorOn);
        return;
    }
    // An empty rectangle is an empty box: nothing is drawn.
    const TportRect box = r.isEmpty() ? TportRect() : r;
    fContext->fScissorX = box.left;
    fContext->fScissorY = box.bottom;
    fContext->fScissorWidth = box.width();
    fContext->fScissorHeight = box.height();
    glEnable(GL_SCISSOR_TEST);
    glScissor(box.left, box.bottom, box.right - box.left, box.top - box.bottom);
    fContext->fDirtyBits.set(TglContext::kScissorOn);
}

void T3dPort::polygonOffset(float factor, float units)
{
    if (fNoPolygonOffset)
        return;
    setCurrentContext();
    glPolygonOffset(factor, units);
}

void T3dPort::polygonOffsetLower()
{
    polygonOffset(0.95f, 1.0f);
}

void T3dPort::polygonOffsetRaise()
{
    polygonOffset(1.1f, -1.0f);
}

bool T3dPort::getPolygonOffset(float& factor, float& units)
{
    setCurrentContext();
    factor = 0;
    units = 0;
    glGetFloatv(GL_POLYGON_OFFSET_FACTOR, &factor);
    if (!isGLCoreViewport())
        glGetFloatv(GL_POLYGON_OFFSET_UNITS, &units);
    return true;
}

void T3dPort::shadeModelChanged(TshadeModel model)
{
    if (isGLViewport() && !isGLCoreViewport()) {
        setCurrentContext();
        glShadeModel(model);
    }
    if (fContext)
        fContext->fShadeModel = model;
}

bool T3dPort::edgeFlag() const
{
    GLboolean flag = GL_TRUE;
    glGetBooleanv(GL_EDGE_FLAG, &flag);
    return flag != GL_FALSE;
}

void T3dPort::edgeFlag(bool on)
{
    glEdgeFlag(on);
}

namespace {

/** Draws into the main planes while it lives. */
class MainPlanes
{
public:
    explicit MainPlanes(T3dPort& port) : fPort(port), fSaved(port.drawingPlanes())
    {
        fPort.setDrawingPlanes(T3dPort::kMainPlanes);
        fPort.setCurrentContext();
    }

    ~MainPlanes()
    {
        if (fSaved != T3dPort::kMainPlanes)
            fPort.setDrawingPlanes(fSaved);
    }

    MainPlanes(const MainPlanes&) = delete;
    MainPlanes& operator=(const MainPlanes&) = delete;

private:
    T3dPort& fPort;
    T3dPort::TdrawingPlanes fSaved;
};

} // namespace

int T3dPort::mainDepth() const
{
    if (!isOpen() || !isGLViewport())
        return 0;
    const MainPlanes planes(const_cast<T3dPort&>(*this));
    return fContext->fRedBits + fContext->fGreenBits + fContext->fBlueBits + fContext->fAlphaBits;
}

int T3dPort::zbufferDepth() const
{
    if (!isOpen() || !fContext->fDirtyBits.test(TglContext::kHasDepthBuffer))
        return 0;
    const MainPlanes planes(const_cast<T3dPort&>(*this));
    GLint bits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &bits);
    return bits;
}

void T3dPort::setFogEnabled(bool on)
{
    if (isGLCoreViewport()) {
        fPortFlags.assign(kPortFogEnabled, on);
        return;
    }
    setCurrentContext();
    if (on) {
        if (!isFogEnabled())
            glEnable(GL_FOG);
        if (!fFogParametersSent)
            sendFogParameters();
    } else if (isFogEnabled()) {
        glDisable(GL_FOG);
    }
    fPortFlags.assign(kPortFogEnabled, on);
}

void T3dPort::sendFogParameters()
{
    glFogi(GL_FOG_MODE, static_cast<GLint>(fFogMode));
    glFogf(GL_FOG_DENSITY, fFogDensity);
    glFogf(GL_FOG_START, static_cast<float>(fFogStart));
    glFogf(GL_FOG_END, static_cast<float>(fFogEnd));
    fFogParametersSent = true;
}

void T3dPort::setFogSource(TglContext::TfogSource source)
{
    if (source == fFogSource)
        return;
    if (!fsGraphicsFlags.test(kHasFogCoord)) {
        fFogSource = TglContext::kFragmentDepth;
        return;
    }
    if (!isGLCoreViewport()) {
        setCurrentContext();
        glFogi(GL_FOG_COORDINATE_SOURCE_EXT, static_cast<GLint>(source));
    }
    fFogSource = source;
}
