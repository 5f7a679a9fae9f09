#include "TsceneLabels.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglBitmap.h"
#include "Graphics/glResources/TglLineStipple.h"
#include "TviewScene.h"
#include "foundation/T2Int32.h"
#include "foundation/T4dDblPoint.h"

#include <cstdio>

namespace {

constexpr TportColor kTextColour{0.94f, 0.95f, 0.97f};
constexpr TportColor kMeasureColour{0.98f, 0.90f, 0.55f};
constexpr TportColor kMarkColour{0.95f, 0.78f, 0.30f};
// Multiplied by its opacity, as a port takes it.
constexpr TportColor kBackground{0.05f, 0.055f, 0.065f, 0.62f};
constexpr int kPadding = 4; // pixels on each side of a text, together

void drawLabel(T3dPort& port, const T4dDblVector& at, const char* text)
{
    const T2Int32 box{static_cast<int>(port.font().textWidth(T3dPort::getDisplay(), text)) + 2 * kPadding,
                      static_cast<int>(port.font().textHeight(T3dPort::getDisplay())) + kPadding};
    port.text(T4dDblPoint(at.x, at.y, at.z), text, T3dPort::kCenter, &box, kBackground);
}

} // namespace

void TsceneLabels::drawNames(T3dPort& port, const TviewScene& scene)
{
    const TobjModel* model = scene.model();
    if (!model || model->objects().size() > kMostLabels)
        return;
    port.depthTest(false);
    port.color(kTextColour);
    for (std::size_t i = 0; i < model->objects().size(); ++i) {
        const TobjModel::Tobject& object = model->objects()[i];
        const T4dDblVector centre = object.centre() + scene.offset(i);
        drawLabel(port, {centre.x, object.fUpper.y + scene.offset(i).y, centre.z}, scene.objectName(i).c_str());
    }
}

void TsceneLabels::drawMeasures(T3dPort& port, const TviewScene& scene, double pixelRatio)
{
    if (!scene.model() || scene.selection().isEmpty() || scene.selection().kind() == Tselection::kVertices)
        return;
    T4dDblVector lower;
    T4dDblVector upper;
    scene.selectionBox(lower, upper);
    const T4dDblVector half = (upper - lower) * 0.5;
    const T4dDblVector centre = (lower + upper) * 0.5;
    port.depthTest(false);
    port.color(kMeasureColour);
    port.lineWidth(static_cast<float>(pixelRatio));
    port.lineStipple(TglLineStipple::kShortDotted);
    port.pushMatrix();
    port.translate(centre);
    port.scale(half.x, half.y, half.z);
    port.box(false);
    port.popMatrix();
    port.lineStipple(TglLineStipple::kSolid);
    port.lineWidth(1);

    const T4dDblVector size = (upper - lower) * (1 / scene.model()->scale());
    const struct
    {
        double length = 0;
        T4dDblVector at;
    } sides[3] = {{size.x, {centre.x, lower.y, upper.z}},
                  {size.y, {upper.x, centre.y, upper.z}},
                  {size.z, {upper.x, lower.y, centre.z}}};
    for (const auto& side : sides) {
        char text[32];
        std::snprintf(text, sizeof text, "%.4g", side.length);
        drawLabel(port, side.at, text);
    }
}

void TsceneLabels::drawMarks(T3dPort& port, const TviewScene& scene)
{
    const TobjModel* model = scene.model();
    if (!model || model->vertexCount() > kMostMarks)
        return;
    port.depthTest(true);
    port.color(kMarkColour);
    for (std::size_t i = 0; i < model->objects().size(); ++i) {
        const bool moved = scene.offset(i) != T4dDblVector();
        if (moved) {
            port.pushMatrix();
            port.translate(scene.offset(i));
        }
        for (const std::uint32_t vertex : model->objects()[i].fVertices) {
            const float* p = model->positions()[vertex].fPosition;
            port.bitmap(p[0], p[1], p[2], TglBitmap::kDiamond);
        }
        if (moved)
            port.popMatrix();
    }
}
