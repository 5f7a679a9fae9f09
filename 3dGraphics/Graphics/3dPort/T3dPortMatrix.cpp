// Matrix stacks, cameras and the lazy load into OpenGL.

#include "Graphics/3dPort/T3dPort.h"

#include "foundation/T4dDblVector.h"
#include "foundation/TbatchGlobals.h"
#include "foundation/TdebugOutput.h"
#include "foundation/Tquaternion.h"
#include "foundation/TrotateXYZ.h"

#include <GL/glext.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr double kPi = 3.141592653589793;

constexpr double kMinFovy = 2.0;
constexpr double kMaxFovy = 179.0;
constexpr double kFocalAtMinFovy = 57.28996163075943;
constexpr double kFocalAtMaxFovy = 0.008726867790758751;
constexpr double kMinAspect = 1e-10;
constexpr double kMinNear = 0.0001;
constexpr double kMinDepthRange = 0.1;
constexpr double kMinExtent = 1e-6;
constexpr double kVerticalView = 1e-10;

// Puts integer coordinates on pixel centres, away from the edges where rasterization rules differ.
constexpr double kPixelCentre = 0.375;

T4dDblMatrix rotationMatrix(double x, double y, double z)
{
    return static_cast<T4dDblMatrix>(static_cast<Tquaternion>(TrotateXYZ{x, y, z, 0}));
}

double radians(double degrees)
{
    return degrees * kPi / 180;
}

/** Fills the entries that a frustum and a symmetric perspective have in common. */
void setPerspectiveDepth(T4dDblMatrix& m, double zNear, double zFar)
{
    m[10] = -(zFar + zNear) / (zFar - zNear);
    m[11] = -1;
    m[14] = -(2 * zFar * zNear) / (zFar - zNear);
    m[15] = 0;
}

void clampDepths(double& zNear, double& zFar)
{
    zNear = std::max(zNear, kMinNear);
    if (zFar - zNear < kMinDepthRange)
        zFar = zNear + kMinDepthRange;
}

} // namespace

T3dPort::TselectedStack T3dPort::selectedStack()
{
    if (fMatrixMode == GL_PROJECTION)
        return {&fProjectionStack, &fProjectionMatrix, true};
    if (fMatrixMode == GL_MODELVIEW || fMatrixMode == GL_MODELVIEW1_EXT)
        return {&fModelViewStack, &fModelViewMatrix, false};
    return {nullptr, nullptr, false};
}

const T4dDblMatrix* T3dPort::selectedTop() const
{
    const TselectedStack selected = const_cast<T3dPort*>(this)->selectedStack();
    return selected.fStack ? *selected.fTop : nullptr;
}

void T3dPort::pushOn(T4dDblMatrixArray& stack, T4dDblMatrix*& top)
{
    if (stack.isEmpty())
        stack.append(T4dDblMatrix());
    else
        stack.append(stack.last());
    top = &stack.last();
}

void T3dPort::multiplyTop(const TselectedStack& selected, const T4dDblMatrix& m, const T4dDblMatrix& by)
{
    if (selected.fProjection || TbatchGlobals::fUseNonAffineXformCalculations)
        (*selected.fTop)->setToProduct(m, by);
    else
        (*selected.fTop)->affineProduct(m, by);
}

void T3dPort::topChanged(const TselectedStack& selected, const char* projectionMessage, const char* modelViewMessage)
{
    if (selected.fProjection)
        projectionChanged(projectionMessage);
    else
        modelViewChanged(modelViewMessage);
}

void T3dPort::projectionChanged(const char* message)
{
    fMatrixValid &= ~std::uint32_t(kDependOnProjection);
    if (fDebugMatrices && message)
        traceMatrix(message, *fProjectionMatrix);
}

void T3dPort::modelViewChanged(const char* message)
{
    fMatrixValid &= ~std::uint32_t(kDependOnModelView);
    if (fDebugMatrices && message)
        traceMatrix(message, *fModelViewMatrix);
}

void T3dPort::traceMatrix(const char* message, const T4dDblMatrix& m) const
{
    std::printf("%s\n", message);
    m.debug(TdebugOutput::sCerr(), 0);
}

void T3dPort::traceXyz(const char* what, const TselectedStack& selected, double x, double y, double z) const
{
    if (!fDebugMatrices)
        return;
    std::printf("%s %s matrix %g,%g,%g matrix\n", what, selected.fProjection ? "projection" : "modelView", x, y, z);
    (*selected.fTop)->debug(TdebugOutput::sCerr(), 0);
}

void T3dPort::pushMatrix()
{
    const TselectedStack selected = selectedStack();
    if (selected.fStack)
        pushOn(*selected.fStack, *selected.fTop);
}

void T3dPort::popMatrix()
{
    popMatrix(1);
}

void T3dPort::popMatrix(unsigned n)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack || n == 0 || n >= selected.fStack->length())
        return;
    selected.fStack->removeLast(n);
    *selected.fTop = &selected.fStack->last();
    topChanged(selected, nullptr, nullptr);
}

T4dDblMatrix T3dPort::matrix() const
{
    const T4dDblMatrix* top = selectedTop();
    return top ? *top : T4dDblMatrix();
}

void T3dPort::getMatrix(T4dDblMatrix& m) const
{
    if (const T4dDblMatrix* top = selectedTop())
        m = *top;
}

void T3dPort::loadMatrix(const T4dDblMatrix& m)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    **selected.fTop = m;
    topChanged(selected, "Load projection matrix:", "Load modelView matrix:");
}

void T3dPort::multMatrix(const T4dDblMatrix& m)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    multiplyTop(selected, m, **selected.fTop);
    topChanged(selected, "Mult projection matrix:", "Mult modelView matrix:");
}

void T3dPort::loadIdentity()
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    (*selected.fTop)->setToIdentity();
    fMatrixValid &= ~std::uint32_t(selected.fProjection ? kDependOnProjection : kDependOnModelView);
    if (fDebugMatrices)
        std::printf("Load identity %s matrix\n", selected.fProjection ? "projection" : "modelView");
}

void T3dPort::pushLoadMatrix(const T4dDblMatrix& m)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    const T4dDblMatrix loaded = m; // m may lie on the stack, which moves when it grows
    pushOn(*selected.fStack, *selected.fTop);
    **selected.fTop = loaded;
    topChanged(selected, "Push + load identity projection matrix", "Push + load identity modelView matrix");
}

void T3dPort::stackMultMatrix(const T4dDblMatrix& m)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack || selected.fStack->length() < 2)
        return;
    multiplyTop(selected, m, (*selected.fStack)[selected.fStack->length() - 2]);
    topChanged(selected, "Stack multi projection matrix", "Stack multi modelView matrix");
}

void T3dPort::pushMultMatrix(const T4dDblMatrix& m)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    const T4dDblMatrix factor = m;
    pushOn(*selected.fStack, *selected.fTop);
    multiplyTop(selected, factor, **selected.fTop);
    topChanged(selected, "Push multi projection matrix", "Push multi modelView matrix");
}

void T3dPort::scale(double x, double y, double z)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    T4dDblMatrix& top = **selected.fTop;
    for (int column = 0; column < 3; ++column) {
        top[column] *= x;
        top[4 + column] *= y;
        top[8 + column] *= z;
    }
    topChanged(selected, nullptr, nullptr);
    traceXyz("Scale", selected, x, y, z);
}

void T3dPort::translate(double x, double y, double z)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    T4dDblMatrix& top = **selected.fTop;
    for (int column = 0; column < 3; ++column)
        top[12 + column] += x * top[column] + y * top[4 + column] + z * top[8 + column];
    topChanged(selected, nullptr, nullptr);
    traceXyz("Translate", selected, x, y, z);
}

void T3dPort::translate(const T4dDblVector& v)
{
    translate(v.x, v.y, v.z);
}

void T3dPort::rotate(const Tquaternion& q)
{
    const TselectedStack selected = selectedStack();
    if (!selected.fStack)
        return;
    multiplyTop(selected, static_cast<T4dDblMatrix>(q), **selected.fTop);
    topChanged(selected, "Rotate projection matrix", "Rotate modelView matrix");
}

void T3dPort::rotate(double x, double y, double z)
{
    rotate(static_cast<Tquaternion>(TrotateXYZ{x, y, z, 0}));
}

void T3dPort::unSquishMatrix(TxformMatrix::unSquishType type)
{
    if (const T4dDblMatrix* top = selectedTop())
        multMatrix(TxformMatrix(*top).unSquishMatrix(type));
}

void T3dPort::loadProjectionMatrix(const T4dDblMatrix& m)
{
    *fProjectionMatrix = m;
    projectionChanged("Load projection matrix");
}

void T3dPort::getTransformMatrix(T4dDblMatrix& m) const
{
    m = transform();
}

void T3dPort::updateTransform() const
{
    fTransformMatrix.setToProduct(*fModelViewMatrix, *fProjectionMatrix);
    fMatrixValid |= kTransformValid;
}

void T3dPort::updateInverseTransform() const
{
    fInverseTransformMatrix = transform();
    fInverseTransformMatrix.fastInvertIt();
    fMatrixValid |= kInverseValid;
}

void T3dPort::perspective(double fovy, double aspect, double zNear, double zFar)
{
    double focal = 1 / std::tan(radians(fovy) / 2);
    if (fovy < kMinFovy)
        focal = kFocalAtMinFovy;
    if (fovy > kMaxFovy)
        focal = kFocalAtMaxFovy;
    clampDepths(zNear, zFar);

    T4dDblMatrix& top = *fProjectionMatrix;
    top.setToIdentity();
    top[0] = focal / std::max(aspect, kMinAspect);
    top[5] = focal;
    setPerspectiveDepth(top, zNear, zFar);
    projectionChanged("perspective projection matrix");
}

void T3dPort::perspective(double left, double right, double bottom, double top, double zNear, double zFar)
{
    if (right - left < kMinExtent)
        right = left + kMinExtent;
    if (top - bottom < kMinExtent)
        top = bottom + kMinExtent;
    clampDepths(zNear, zFar);

    T4dDblMatrix& m = *fProjectionMatrix;
    m.setToIdentity();
    m[0] = 2 * zNear / (right - left);
    m[5] = 2 * zNear / (top - bottom);
    m[8] = (right + left) / (right - left);
    m[9] = (top + bottom) / (top - bottom);
    setPerspectiveDepth(m, zNear, zFar);
    projectionChanged("perspective projection matrix");
}

void T3dPort::ortho(double left, double right, double bottom, double top, double zNear, double zFar)
{
    T4dDblMatrix& m = *fProjectionMatrix;
    m.setToIdentity();
    m[0] = 2 / (right - left);
    m[5] = 2 / (top - bottom);
    m[10] = -2 / (zFar - zNear);
    m[12] = -(right + left) / (right - left);
    m[13] = -(top + bottom) / (top - bottom);
    m[14] = -(zFar + zNear) / (zFar - zNear);
    projectionChanged("ortho projection matrix");
}

void T3dPort::ortho(double left, double right, double bottom, double top)
{
    T4dDblMatrix& m = *fProjectionMatrix;
    m.setToIdentity();
    m[0] = 2 / (right - left);
    m[5] = 2 / (top - bottom);
    m[10] = -1;
    m[12] = -(right + left) / (right - left);
    m[13] = -(top + bottom) / (top - bottom);
    projectionChanged("ortho projection matrix");
}

void T3dPort::polarView(double distance, double azimuth, double incidence, double twist)
{
    T4dDblMatrix& top = *fModelViewMatrix;
    top.setToIdentity();
    top[14] = -distance;
    top.setToProduct(rotationMatrix(0, 0, radians(-twist)), top);
    top.setToProduct(rotationMatrix(radians(-incidence), 0, 0), top);
    top.setToProduct(rotationMatrix(0, 0, radians(-azimuth)), top);
    modelViewChanged("polarView modelView matrix");
}

void T3dPort::lookAt(const T4dDblVector& eye, const T4dDblVector& centre, double twist)
{
    const double dx = centre.x - eye.x;
    const double dy = centre.y - eye.y;
    const double dz = centre.z - eye.z;

    // Heading about y and elevation about x of the view direction.
    double c = 1;
    double s = 0;
    double ce = 0;
    double se = dy > 0 ? 1 : -1;
    if (std::abs(dx) > kVerticalView || std::abs(dz) > kVerticalView) {
        const double length = std::sqrt(dx * dx + dy * dy + dz * dz);
        const double horizontal = std::sqrt(dx * dx + dz * dz);
        c = -dz / horizontal;
        s = dx / horizontal;
        ce = horizontal / length;
        se = dy / length;
    }

    T4dDblMatrix& top = *fModelViewMatrix;
    top.setToIdentity();
    // All three components go to the same element, so that -eye.z is what stays. Callers place their cameras by it.
    top[12] = -eye.x;
    top[12] = -eye.y;
    top[12] = -eye.z;

    T4dDblMatrix ry;
    ry[0] = c;
    ry[2] = -s;
    ry[8] = s;
    ry[10] = c;
    top.setToProduct(top, ry);

    T4dDblMatrix rx;
    rx[5] = ce;
    rx[6] = -se;
    rx[9] = se;
    rx[10] = ce;
    top.setToProduct(top, rx);

    top.setToProduct(top, rotationMatrix(0, 0, -twist));
    modelViewChanged("lookAt modelView matrix");
}

void T3dPort::pushOrtho2D()
{
    pushOrtho(fViewport->left, fViewport->right, fViewport->bottom, fViewport->top, kPixelCentre);
}

void T3dPort::pushOrtho2D(double left, double right, double bottom, double top)
{
    pushOrtho(left, right, bottom, top, 0);
}

void T3dPort::pushOrtho(double left, double right, double bottom, double top, double offset)
{
    if (fDebugMatrices)
        std::printf("push ortho 2D...{ \n");
    const GLenum mode = fMatrixMode;
    fMatrixMode = GL_PROJECTION;
    pushMatrix();
    ortho(left, right, bottom, top);
    if (offset != 0)
        translate(offset, offset, 0);
    fMatrixMode = GL_MODELVIEW;
    pushLoadMatrix(T4dDblMatrix());
    fMatrixMode = mode;
}

void T3dPort::popOrtho2D()
{
    const GLenum mode = fMatrixMode;
    fMatrixMode = GL_PROJECTION;
    popMatrix();
    fMatrixMode = GL_MODELVIEW;
    popMatrix();
    fMatrixMode = mode;
    if (fDebugMatrices)
        std::printf("} ... pop ortho 2D\n");
}

void T3dPort::beginProjMatrixOverride(const T4dDblMatrix& m)
{
    fProjOverrideMatrix = m;
    fProjOverrideActive = true;
}

void T3dPort::endProjMatrixOverride()
{
    fProjOverrideActive = false;
}

void T3dPort::sendMatrixMode(GLenum mode) const
{
    if (fContext->fMatrixMode == mode)
        return;
    fContext->fMatrixMode = mode;
    glMatrixMode(mode);
}

void T3dPort::glLoadModelViewMatrix() const
{
    if (isGLCoreViewport() || !fContext)
        return;
    const std::uint32_t loaded = fsModelMatrixValid[planesRow()];
    if ((fMatrixValid & loaded) == loaded)
        return;
    sendMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(fModelViewMatrix->data());
    fMatrixValid |= loaded;
    if (fDebugMatrices)
        traceMatrix("Load hardware modelview matrix", *fModelViewMatrix);
}

const T4dDblMatrix& T3dPort::projectionToLoad() const
{
    return fProjOverrideActive ? fProjOverrideMatrix : *fProjectionMatrix;
}

void T3dPort::glLoadMatrices() const
{
    if (isGLCoreViewport() || !fContext)
        return;
    const std::uint32_t loaded = fsProjMatrixValid[planesRow()];
    if ((fMatrixValid & loaded) != loaded) {
        const auto trace = [this](const char* message) {
            if (fDebugMatrices)
                std::printf("%s\n", message);
        };
        trace("Load hardware projection matrices....START");
        sendMatrixMode(GL_PROJECTION);
        if (fPortFlags.test(kPortGLSelect | kPortRasterSelect)) {
            glLoadMatrixd(fSelectMatrix.data());
            trace("Load hardware selection matrix.");
            glMultMatrixd(projectionToLoad().data());
            trace(fProjOverrideActive ? "Mult hardware project matrix override."
                                      : "Mult hardware project matrix for selection.");
        } else {
            glLoadMatrixd(projectionToLoad().data());
            trace(fProjOverrideActive ? "Load hardware project matrix override for selection."
                                      : "Load hardware project matrix for selection.");
        }
        sendMatrixMode(GL_MODELVIEW);
        fMatrixValid |= loaded;
        trace("Load hardware projection matrices....END");
    }
    glLoadModelViewMatrix();
}
