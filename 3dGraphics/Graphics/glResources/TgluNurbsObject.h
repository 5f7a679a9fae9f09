#pragma once

#include "Graphics/Export.h"

#include <GL/glu.h>

#include <cstdint>

/**
 * A GLU NURBS renderer for double-precision knots and control points. Surfaces are drawn between begin and end, trim
 * curves and properties go to renderer().
 */
class LIRN_3DGRAPHICS_EXPORT TgluNurbsObject
{
public:
    /** GLU_DISPLAY_MODE. */
    enum TnurbsFillMode : std::uint32_t {
        kFill = GLU_FILL,
        kOutlinePolygon = GLU_OUTLINE_POLYGON,
        kOutlinePatch = GLU_OUTLINE_PATCH
    };

    /** The evaluator that a surface feeds. */
    enum TnurbsType : std::uint32_t {
        kVertex3 = GL_MAP2_VERTEX_3,
        kVertex4 = GL_MAP2_VERTEX_4,
        kNormal = GL_MAP2_NORMAL,
        kColor4 = GL_MAP2_COLOR_4,
        kTextureCoord2 = GL_MAP2_TEXTURE_COORD_2
    };

    explicit TgluNurbsObject(TnurbsFillMode mode);
    /** The renderer stays: GLU may still be drawing with it. */
    ~TgluNurbsObject() = default;
    TgluNurbsObject(const TgluNurbsObject&) = delete;
    /** Copies nothing, so that two objects never share a renderer. */
    // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned
    TgluNurbsObject& operator=(const TgluNurbsObject&) { return *this; }

    void apply() const {}

    /** gluBeginSurface. */
    void begin() const;
    /** gluEndSurface: the surface is drawn. */
    void end() const;
    GLUnurbs* renderer() const { return fRenderer; }

    /**
     * gluNurbsSurface, in single precision. Strides count floats and are handed on.
     * @param control  at least @p sKnotCount * @p tKnotCount points of three doubles, point (s, t) at
     *                 (s * tKnotCount + t) * 3, which is more than GLU reads
     */
    void nurbsSurface(int sKnotCount, const double* sKnots, int tKnotCount, const double* tKnots, int sStride,
                      int tStride, const double* control, int sOrder, int tOrder, TnurbsType type) const;

private:
    GLUnurbs* fRenderer;
};
