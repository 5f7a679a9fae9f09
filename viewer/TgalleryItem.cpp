#include "TgalleryItem.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TglLight.h"
#include "Graphics/glResources/TglBitmap.h"
#include "Graphics/glResources/TglPolyStipple.h"
#include "Graphics/glResources/TgluNurbsObject.h"
#include "TsavedState.h"
#include "foundation/T2Int32.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/Tangle.h"

#include <cmath>

namespace {

const T4dDblPoint kOrigin(0, 0, 0);

// Flat shapes

void drawPoints(T3dPort& port)
{
    port.pointSmoothing(true);
    port.blending(true);
    port.blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
    for (int i = 0; i < 48; ++i) {
        const double a = i * Tangle::fromDegrees(137.508).radians;
        const double r = 0.17 * std::sqrt(i);
        port.pointSize(static_cast<float>(6 + 0.35 * i));
        port.point(T4dDblPoint(r * std::cos(a), r * std::sin(a), 0));
    }
    port.blending(false);
    port.pointSmoothing(false);
}

void drawLines(T3dPort& port)
{
    for (int i = 0; i <= 12; ++i) {
        const float t = static_cast<float>(i) / 6 - 1;
        port.line(-1.4f, -t, t * 1.4f, -1);
        port.line(1.4f, -t, t * 1.4f, 1);
    }
}

template <bool filled> void drawRect(T3dPort& port)
{
    port.rect(-1.3f, -0.8f, 1.3f, 0.8f, filled);
}

template <bool filled> void drawCircle(T3dPort& port)
{
    port.circle(kOrigin, 1.1f, filled);
}

template <bool filled> void drawArc(T3dPort& port)
{
    port.arc(kOrigin, 1.1f, 45, 315, filled);
}

template <bool filled> void drawVectorArc(T3dPort& port)
{
    const T4dDblPoint centre(-0.8, -0.7, 0);
    const T4dDblVector from(1.8, 0, 0);
    const T4dDblVector to(0.4, 1.6, 0);
    port.arc(centre, from, to, filled);
    if (!filled) {
        for (const T4dDblVector& side : {from, to})
            port.line(-0.8f, -0.7f, static_cast<float>(centre.x + side.x), static_cast<float>(centre.y + side.y));
    }
}

// Solids, of about radius 1 about the origin

template <bool filled> void drawBox(T3dPort& port)
{
    port.box(kOrigin, 0.72f, 0.72f, 0.72f, filled);
}

template <bool filled> void drawCone(T3dPort& port)
{
    port.cone({0, 0, -0.85}, 0.85f, 1.8f, filled);
}

void drawOutlineCone(T3dPort& port)
{
    // Under light the outlines' colour counts if colours make the material.
    const TportColor diffuse(0.93f, 0.62f, 0.26f);
    port.enableColorMaterial(T3dPort::kFrontAndBack, T3dPort::kMaterialDiffuse, false);
    port.color(diffuse);
    port.outline_cone({0, 0, -0.85}, 0.85f, 1.8f, 1);
    port.disableColorMaterial(T3dPort::kMaterialDiffuse, false);
}

template <bool filled> void drawSphere(T3dPort& port)
{
    port.sphere(kOrigin, 1.0f, filled);
}

template <bool filled, bool capped> void drawCylinder(T3dPort& port)
{
    port.cylinder({0, 0, -0.8}, 0.75f, 1.6f, filled, capped);
}

template <bool flip> void drawRing(T3dPort& port)
{
    port.setTwoSidedLighting(false);
    port.setLightingModel();
    port.ring(kOrigin, 0.6f, 1.2f, flip);
    port.setTwoSidedLighting(true);
    port.setLightingModel();
}

template <bool filled> void drawOctahedron(T3dPort& port)
{
    port.octahedron(kOrigin, 1.1f, filled);
}

template <bool filled> void drawTetrahedron(T3dPort& port)
{
    // The large face towards the eye.
    port.pushMatrix();
    port.rotate(0, 0, -Tangle::kPi / 2);
    port.tetrahedron({-0.45, -0.45, -0.6}, 1.5f, filled);
    port.popMatrix();
}

// Stipples

void drawLineStipple(T3dPort& port, const TglLineStipple& stipple)
{
    port.lineStipple(stipple);
    port.lineWidth(1);
    port.line(-1.6f, 1.1f, 1.6f, 1.1f);
    port.lineWidth(2);
    port.line(-1.6f, 0.8f, 1.6f, 0.8f);
    port.lineWidth(4);
    port.line(-1.6f, 0.4f, 1.6f, 0.4f);
    port.lineWidth(2);
    port.rect(-1.6f, -1.1f, -0.2f, 0, false);
    port.circle({1, -0.55, 0}, 0.58f, false);
    port.lineWidth(1);
    port.lineStipple(TglLineStipple::kSolid);
}

void drawPolygonStipple(T3dPort& port, const TglPolyStipple& stipple)
{
    port.polygonStipple(stipple);
    port.rect(-1.6f, -1, -0.1f, 1, true);
    port.circle({0.85, 0, 0}, 0.8f, true);
    port.polygonStipple(TglPolyStipple::kSolid);
}

template <const TglLineStipple& stipple> void drawLineStipple(T3dPort& port)
{
    drawLineStipple(port, stipple);
}

template <const TglPolyStipple& stipple> void drawPolygonStipple(T3dPort& port)
{
    drawPolygonStipple(port, stipple);
}

// Text and markers

template <T3dPort::TtextPos pos, bool box> void drawText(T3dPort& port)
{
    constexpr TportColor kLine(0.5f, 0.52f, 0.55f);
    constexpr TportColor kPaper(0.12f, 0.25f, 0.36f);
    const TportColor colour = port.glContextRecord()->fColor;
    const T2Int32 size{70, 24};
    const char* const labels[] = {"vase", "front", "12.5 cm"};
    // The point in x lies on the line.
    port.color(kLine);
    port.line(0, -1.3f, 0, 1.3f);
    port.color(colour);
    double y = 0.65;
    for (const char* label : labels) {
        port.text({0, y, 0}, label, pos, box ? &size : nullptr, box ? kPaper : kCtransparent);
        y -= 0.75;
    }
}

void drawMarkers(T3dPort& port)
{
    const TglBitmap* const markers[] = {&TglBitmap::kSquare,  &TglBitmap::kFilledSquare,
                                        &TglBitmap::kCircle,  &TglBitmap::kFilledCircle,
                                        &TglBitmap::kDiamond, &TglBitmap::kFilledDiamond};
    constexpr double kStep = 0.28;
    for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 9; ++j)
            port.bitmap(T4dDblPoint((j - 4) * kStep, (2.5 - i) * 0.4, 0), markers[i]);
    }
}

// Light and surfaces

/** A floor of small squares, for lights that fall off are worked out at corners only. */
void drawFloor(T3dPort& port, double height, int half)
{
    constexpr float kSide = 0.07f;
    port.pushMatrix();
    port.translate(0, 0, height);
    port.setCurrentContext();
    glNormal3f(0, 0, 1);
    for (int i = -half; i < half; ++i) {
        for (int j = -half; j < half; ++j)
            port.rect(kSide * static_cast<float>(i), kSide * static_cast<float>(j), kSide * static_cast<float>(i + 1),
                      kSide * static_cast<float>(j + 1), true);
    }
    port.popMatrix();
}

/** Where a light hangs, turned about x by an angle in degrees. */
T4dDblMatrix placed(const T4dDblVector& at, double degrees)
{
    const double a = Tangle::fromDegrees(degrees).radians;
    T4dDblMatrix m;
    m[5] = m[10] = std::cos(a);
    m[6] = std::sin(a);
    m[9] = -m[6];
    m[12] = at.x;
    m[13] = at.y;
    m[14] = at.z;
    return m;
}

void setSceneLight(T3dPort& port, short i, TglLight::TglLightType type, const TportColor& colour,
                   const T4dDblMatrix& place, float spotCutoff = 24)
{
    TglLight light(type);
    light.fColor = colour;
    light.fSpotCutoff = spotCutoff;
    light.fSpotExponent = 4;
    if (type != TglLight::kDirectional)
        light.fQuadraticAttenuation = 0.12f;
    port.setCurrentContext();
    light.setLight(i, place);
}

template <TglLight::TglLightType type> void drawLightOnFloor(T3dPort& port)
{
    port.disableAllLights();
    const bool far = type == TglLight::kDirectional;
    const bool isPoint = type == TglLight::kPoint;
    port.translate(0, 0, 0.25);
    const T4dDblMatrix place = far       ? placed({}, 50)
                               : isPoint ? placed({-0.55, -0.8, 0.7}, 0)
                                         : placed({0, -0.6, 1.5}, 18);
    setSceneLight(port, 0, type, {1, 0.93f, 0.8f}, place, 15);
    port.setDiffuseColor({0.5f, 0.55f, 0.62f});
    drawFloor(port, -0.7, 14);
    port.setDiffuseColor({0.93f, 0.62f, 0.26f});
    port.sphere({0, 0, -0.25}, 0.45f, true);
}

void drawLitScene(T3dPort& port)
{
    port.disableAllLights();
    port.translate(0, 0, 0.2);
    setSceneLight(port, 0, TglLight::kDirectional, {0.55f, 0.54f, 0.5f}, placed({}, 40));
    setSceneLight(port, 1, TglLight::kPoint, {0.25f, 0.42f, 0.85f}, placed({-1.3, 0.6, 0.5}, 0));
    setSceneLight(port, 2, TglLight::kSpot, {1, 0.72f, 0.36f}, placed({0.3, -0.2, 2.4}, 0));

    port.setDiffuseColor({0.62f, 0.64f, 0.68f});
    drawFloor(port, -0.7, 22);
    port.setDiffuseColor({0.86f, 0.36f, 0.31f});
    port.box({-0.75, 0.55, -0.35}, 0.35f, 0.35f, 0.35f, true);
    port.setDiffuseColor({0.93f, 0.74f, 0.30f});
    port.cone({0.75, 0.45, -0.7}, 0.45f, 1.2f, true);
    port.setDiffuseColor({0.36f, 0.66f, 0.42f});
    port.sphere({0.1, -0.55, -0.3}, 0.4f, true);
    port.setDiffuseColor({0.35f, 0.55f, 0.88f});
    port.cylinder({-0.9, -0.6, -0.7}, 0.28f, 0.6f, true, true);
    port.setDiffuseColor({0.70f, 0.48f, 0.84f});
    port.octahedron({0.95, -0.65, -0.28}, 0.4f, true);
}

/** A bicubic patch: four by four control points, with two humps. */
void drawPatch(T3dPort& port, TgluNurbsObject& surface, float tolerance)
{
    constexpr int kOrder = 4;
    constexpr int kKnots = 2 * kOrder;
    const double knots[kKnots] = {0, 0, 0, 0, 1, 1, 1, 1};
    const double heights[kOrder][kOrder] = {
        {-0.4, 0.3, 0.2, 0.6}, {0.2, 2.4, -1.6, 0.1}, {0.3, -2.2, 1.9, 0.4}, {-0.6, 0.4, 0.1, -0.3}};
    double control[kKnots * kKnots * 3] = {};
    for (int s = 0; s < kOrder; ++s) {
        for (int t = 0; t < kOrder; ++t) {
            double* point = control + (s * kKnots + t) * 3;
            point[0] = (s - 1.5) * 0.62;
            point[1] = (t - 1.5) * 0.62;
            point[2] = heights[s][t] * 0.75;
        }
    }
    port.setCurrentContext();
    const TsavedState state(GL_ENABLE_BIT | GL_EVAL_BIT | GL_CURRENT_BIT | GL_POLYGON_BIT);
    glEnable(GL_AUTO_NORMAL);
    gluNurbsProperty(surface.renderer(), GLU_SAMPLING_TOLERANCE, tolerance);
    surface.begin();
    surface.nurbsSurface(kKnots, knots, kKnots, knots, kKnots * 3, 3, control, kOrder, kOrder,
                         TgluNurbsObject::kVertex3);
    surface.end();
}

template <TgluNurbsObject::TnurbsFillMode mode> void drawPatch(T3dPort& port)
{
    static TgluNurbsObject surface(mode);
    drawPatch(port, surface, mode == TgluNurbsObject::kFill ? 25 : 80);
}

} // namespace

const std::vector<TgalleryItem>& TgalleryItem::all()
{
    static const char kShapes[] = "Flat shapes";
    static const char kSolids[] = "Solids";
    static const char kLines[] = "Line stipples";
    static const char kPolygons[] = "Polygon stipples";
    static const char kText[] = "Text and markers";
    static const char kLight[] = "Light and surfaces";
    static const std::vector<TgalleryItem> items{
        {kShapes, "points", kFlat, drawPoints},
        {kShapes, "lines", kFlat, drawLines},
        {kShapes, "rect-wire", kFlat, drawRect<false>},
        {kShapes, "rect-filled", kFlat, drawRect<true>},
        {kShapes, "circle-wire", kFlat, drawCircle<false>},
        {kShapes, "circle-filled", kFlat, drawCircle<true>},
        {kShapes, "arc-wire", kFlat, drawArc<false>},
        {kShapes, "arc-filled", kFlat, drawArc<true>},
        {kShapes, "arc-vectors-wire", kFlat, drawVectorArc<false>},
        {kShapes, "arc-vectors-filled", kFlat, drawVectorArc<true>},
        {kShapes, "ring", kLit, drawRing<false>},
        {kShapes, "ring-flipped", kLit, drawRing<true>},
        {kSolids, "box-wire", kWire, drawBox<false>},
        {kSolids, "box-filled", kLit, drawBox<true>},
        {kSolids, "cone-wire", kWire, drawCone<false>},
        {kSolids, "cone-filled", kLit, drawCone<true>},
        {kSolids, "cone-outlined", kLit, drawOutlineCone},
        {kSolids, "sphere-wire", kWire, drawSphere<false>},
        {kSolids, "sphere-filled", kLit, drawSphere<true>},
        {kSolids, "cylinder-wire", kWire, drawCylinder<false, false>},
        {kSolids, "cylinder-filled", kLit, drawCylinder<true, false>},
        {kSolids, "cylinder-capped", kLit, drawCylinder<true, true>},
        {kSolids, "octahedron-wire", kWire, drawOctahedron<false>},
        {kSolids, "octahedron-filled", kLit, drawOctahedron<true>},
        {kSolids, "tetrahedron-wire", kWire, drawTetrahedron<false>},
        {kSolids, "tetrahedron-filled", kLit, drawTetrahedron<true>},
        {kLines, "line-solid", kStipple, drawLineStipple<TglLineStipple::kSolid>},
        {kLines, "line-dotted", kStipple, drawLineStipple<TglLineStipple::kDotted>},
        {kLines, "line-long-dotted", kStipple, drawLineStipple<TglLineStipple::kLongDotted>},
        {kLines, "line-short-dotted", kStipple, drawLineStipple<TglLineStipple::kShortDotted>},
        {kLines, "line-dashed", kStipple, drawLineStipple<TglLineStipple::kDashed>},
        {kLines, "line-long-dashed", kStipple, drawLineStipple<TglLineStipple::kLongDashed>},
        {kLines, "line-short-dashed", kStipple, drawLineStipple<TglLineStipple::kShortDashed>},
        {kPolygons, "polygon-solid", kStipple, drawPolygonStipple<TglPolyStipple::kSolid>},
        {kPolygons, "polygon-25-percent", kStipple, drawPolygonStipple<TglPolyStipple::k25Percent>},
        {kPolygons, "polygon-halftone", kStipple, drawPolygonStipple<TglPolyStipple::kHalftone>},
        {kPolygons, "polygon-75-percent", kStipple, drawPolygonStipple<TglPolyStipple::k75Percent>},
        {kPolygons, "polygon-slash", kStipple, drawPolygonStipple<TglPolyStipple::kSlash>},
        {kText, "text-left", kStipple, drawText<T3dPort::kLeft, false>},
        {kText, "text-left-box", kStipple, drawText<T3dPort::kLeft, true>},
        {kText, "text-center", kStipple, drawText<T3dPort::kCenter, false>},
        {kText, "text-center-box", kStipple, drawText<T3dPort::kCenter, true>},
        {kText, "text-right", kStipple, drawText<T3dPort::kRight, false>},
        {kText, "text-right-box", kStipple, drawText<T3dPort::kRight, true>},
        {kText, "markers", kStipple, drawMarkers},
        {kLight, "light-directional", kLit, drawLightOnFloor<TglLight::kDirectional>},
        {kLight, "light-point", kLit, drawLightOnFloor<TglLight::kPoint>},
        {kLight, "light-spot", kLit, drawLightOnFloor<TglLight::kSpot>},
        {kLight, "lit-scene", kLit, drawLitScene},
        {kLight, "nurbs-patch", kLit, drawPatch<TgluNurbsObject::kFill>},
        {kLight, "nurbs-polygons", kLit, drawPatch<TgluNurbsObject::kOutlinePolygon>},
        {kLight, "nurbs-outline", kLit, drawPatch<TgluNurbsObject::kOutlinePatch>},
    };
    return items;
}
