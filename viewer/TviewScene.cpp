#define GL_GLEXT_PROTOTYPES

#include "TviewScene.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPolyStipple.h"
#include "TsavedState.h"
#include "TsceneGizmos.h"

#include <GL/glext.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr TportColor kTopColour{0.345f, 0.376f, 0.408f};
constexpr TportColor kBottomColour{0.149f, 0.161f, 0.176f};
constexpr TportColor kDistanceColour{0.247f, 0.267f, 0.29f};
constexpr TportColor kWireColour{0.70f, 0.87f, 0.96f};
constexpr TportColor kOverlayColour{0.25f, 0.27f, 0.30f};
constexpr TportColor kClayDiffuse{0.74f, 0.68f, 0.60f};
constexpr TportColor kClayAmbient{0.12f, 0.12f, 0.13f};
constexpr TportColor kClaySpecular{0.20f, 0.20f, 0.20f};
constexpr double kClayShininess = 28;
constexpr float kLineColour[3] = {0.80f, 0.84f, 0.88f};

constexpr int kCellsEachWay = 20;
constexpr int kMajorEvery = 5;
constexpr double kLeastReach = 1.9; // the lamp is within
constexpr double kCellsPerRadius = 5;
constexpr double kFarGround = 4; // scene units; a ground plane farther from the model is of no help
// Smooth lines cost software rasterizers several times as much as plain ones.
constexpr std::size_t kMostSmoothEdges = 60000;

double component(const T4dDblVector& v, int which)
{
    return which == 0 ? v.x : which == 1 ? v.y : v.z;
}

/** 1, 2 or 5 times a power of ten, not less than @p wanted. */
double roundUnit(double wanted)
{
    const double power = std::pow(10.0, std::floor(std::log10(wanted)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (step * power >= wanted * (1 - 1e-9))
            return step * power;
    }
    return 10 * power;
}

void loadIdentities(T3dPort& port)
{
    port.loadProjectionMatrix(T4dDblMatrix());
    port.matrixMode(GL_MODELVIEW);
    port.loadIdentity();
}

} // namespace

void TviewScene::setModel(std::shared_ptr<const TobjModel> model)
{
    fModel = std::move(model);
    fListsValid = false;
}

T4dDblVector TviewScene::lower() const
{
    if (!fModel)
        return {-0.6, -0.6, -0.6};
    const T4dDblVector half = (fModel->upper() - fModel->lower()) * (0.5 * fModel->scale());
    return half.lengthSquared() > 0 ? -half : T4dDblVector(-0.6, -0.6, -0.6);
}

void TviewScene::draw(T3dPort& port, const TviewCamera& camera, const Tstyle& style, const QImage& label,
                      double pixelRatio)
{
    const TportRect r = port.portRect();
    if (r.isEmpty())
        return;
    prepareLists(port);

    port.depthMask(true);
    port.clearColor(kBottomColour);
    port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawBackground(port);

    const double aspect = double(r.width()) / r.height();
    double zNear = 0;
    double zFar = 0;
    camera.depths(fReach, zNear, zFar);
    if (camera.isPerspective()) {
        port.perspective(camera.fovy(aspect), aspect, zNear, zFar);
    } else {
        const double y = camera.halfHeight(aspect);
        port.ortho(-y * aspect, y * aspect, -y, y, zNear, zFar);
    }
    port.matrixMode(GL_MODELVIEW);
    port.loadMatrix(camera.view());

    // Seen along an axis the grid is graph paper behind the model, from anywhere else it is the ground.
    if (!camera.isPerspective())
        drawGrid(port, camera);
    port.depthTest(true);
    port.depthFunc(T3dPort::kDepthLequal);
    // The grid shines through a model of glass, which hides nothing from it.
    if (camera.isPerspective() && style.fXray)
        drawGrid(port, camera);
    if (fModel && style.fShading != kWire)
        drawFilled(port, style);
    if (camera.isPerspective() && !style.fXray)
        drawGrid(port, camera);
    if (fModel && (style.fShading == kWire || style.fEdges))
        drawEdges(port, camera, style, pixelRatio);
    if (style.fLamp)
        TsceneGizmos::drawLamp(port, camera, pixelRatio);
    port.depthTest(false);
    count(port, style);

    TsceneGizmos::drawAxes(port, camera, pixelRatio);
    drawLabel(port, label, pixelRatio);
}

void TviewScene::prepareLists(T3dPort& port)
{
    if (fListsValid)
        return;
    fListsValid = true;
    port.setCurrentContext();
    for (unsigned* list :
         {&fFillLists[0], &fFillLists[1], &fEdgeList, &fGround.fList, &fFrontPlane.fList, &fSidePlane.fList}) {
        if (*list)
            glDeleteLists(*list, 1);
        *list = 0;
    }
    // The colours inside must not be taken for the port's.
    const TsavedState state(GL_CURRENT_BIT);
    fReach = kLeastReach;
    if (fModel)
        makeEdgeList();
    for (Tgrid* grid : {&fGround, &fFrontPlane, &fSidePlane})
        makeGridList(*grid);
}

void TviewScene::makeEdgeList()
{
    const auto& edges = fModel->edges();
    fEdgeList = glGenLists(1);
    if (edges.empty())
        return;
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glInterleavedArrays(GL_V3F, 0, fModel->positions().data());
    glNewList(fEdgeList, GL_COMPILE);
    glDrawElements(GL_LINES, static_cast<GLsizei>(edges.size()), GL_UNSIGNED_INT, edges.data());
    glEndList();
    glPopClientAttrib();
}

unsigned TviewScene::fillList(bool smooth)
{
    unsigned& list = fFillLists[smooth];
    const auto& triangles = fModel->triangles();
    if (list || triangles.empty())
        return list;
    list = glGenLists(1);
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glInterleavedArrays(GL_N3F_V3F, 0, triangles.data());
    if (smooth)
        glNormalPointer(GL_FLOAT, 0, fModel->smoothNormals().data());
    glNewList(list, GL_COMPILE);
    glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(triangles.size()));
    glEndList();
    glPopClientAttrib();
    return list;
}

void TviewScene::makeGridList(Tgrid& grid)
{
    const T4dDblVector origin = fModel ? -fModel->centre() * fModel->scale() : T4dDblVector(0, 0.6, 0);
    const double fileScale = fModel ? fModel->scale() : 1;
    const double cell = roundUnit(1 / kCellsPerRadius / fileScale) * fileScale;

    // The lines run through multiples of the unit in the file's coordinates, near the model.
    const double originU = component(origin, grid.fU);
    const double originV = component(origin, grid.fV);
    const double firstU = std::round(-originU / cell);
    const double firstV = std::round(-originV / cell);
    const int normalAxis = 3 - grid.fU - grid.fV;
    double level = component(origin, normalAxis);
    if (normalAxis == 1 && !(std::fabs(level) <= kFarGround))
        level = lower().y;
    if (normalAxis != 1)
        level = 0;
    fReach = std::max(fReach, std::hypot(cell * (kCellsEachWay + 1) * std::sqrt(2.0), level));

    const auto vertex = [&](int u, int v, const float* colour, double strength) {
        const double fall = 1 - double(u * u + v * v) / (kCellsEachWay * kCellsEachWay);
        if (fall <= 0)
            strength = 0;
        glColor4f(colour[0], colour[1], colour[2], static_cast<float>(strength * std::max(fall, 0.0)));
        double p[3];
        p[grid.fU] = originU + (firstU + u) * cell;
        p[grid.fV] = originV + (firstV + v) * cell;
        p[normalAxis] = level;
        glVertex3dv(p);
    };
    const auto strengthOf = [](double index) { return std::fmod(index, kMajorEvery) == 0 ? 0.42 : 0.17; };

    grid.fList = glGenLists(1);
    glNewList(grid.fList, GL_COMPILE);
    glBegin(GL_LINES);
    for (int line = -kCellsEachWay; line <= kCellsEachWay; ++line) {
        // The lines of one coordinate, then of the other; the one through zero is the other one's axis.
        const bool isAxisV = firstU + line == 0;
        const bool isAxisU = firstV + line == 0;
        const float* colourV = isAxisV ? TsceneGizmos::kAxisColours[grid.fV] : kLineColour;
        const float* colourU = isAxisU ? TsceneGizmos::kAxisColours[grid.fU] : kLineColour;
        const double strengthV = isAxisV ? 0.9 : strengthOf(firstU + line);
        const double strengthU = isAxisU ? 0.9 : strengthOf(firstV + line);
        for (int at = -kCellsEachWay; at < kCellsEachWay; ++at) {
            if (line * line + at * at > (kCellsEachWay + 1) * (kCellsEachWay + 1))
                continue;
            vertex(line, at, colourV, strengthV);
            vertex(line, at + 1, colourV, strengthV);
            vertex(at, line, colourU, strengthU);
            vertex(at + 1, line, colourU, strengthU);
        }
    }
    glEnd();
    glEndList();
}

const TviewScene::Tgrid& TviewScene::gridFor(const TviewCamera& camera) const
{
    switch (camera.projection()) {
    case TviewCamera::kFront:
        return fFrontPlane;
    case TviewCamera::kSide:
        return fSidePlane;
    default:
        return fGround;
    }
}

void TviewScene::drawBackground(T3dPort& port)
{
    port.depthTest(false);
    port.blending(false);
    port.shadeModel(T3dPort::kShadeSmooth);
    loadIdentities(port);
    port.setCurrentContext();
    {
        const TsavedState state(GL_CURRENT_BIT);
        glBegin(GL_QUADS);
        glColor3fv(&kBottomColour.r);
        glVertex2f(-1, -1);
        glVertex2f(1, -1);
        glColor3fv(&kTopColour.r);
        glVertex2f(1, 1);
        glVertex2f(-1, 1);
        glEnd();
    }
}

void TviewScene::drawGrid(T3dPort& port, const TviewCamera& camera)
{
    port.depthMask(false);
    port.blending(true);
    port.blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
    port.shadeModel(T3dPort::kShadeSmooth);
    port.lineWidth(1);
    port.setCurrentContext();
    {
        const TsavedState state(GL_CURRENT_BIT);
        glCallList(gridFor(camera).fList);
    }
    port.blending(false);
    port.depthMask(true);
}

void TviewScene::drawFilled(T3dPort& port, const Tstyle& style)
{
    const bool smooth = style.fShading == kSmooth;
    port.shadeModel(smooth ? T3dPort::kShadeSmooth : T3dPort::kShadeFlat);
    fLights.turnOn(port);
    // Diffuse comes last: the current colour of OpenGL then is the recorded one.
    port.setSpecularColor(kClaySpecular);
    port.setShininess(kClayShininess);
    port.setAmbientMaterialColor(kClayAmbient);
    port.setDiffuseColor(kClayDiffuse, style.fXray ? T3dPort::fsXrayAlpha : 1);
    if (style.fGhosted)
        port.polygonStipple(TglPolyStipple::kHalftone);
    if (style.fXray) {
        port.blending(true);
        port.blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
        port.depthMask(false);
    }
    port.polygonOffsetLower();
    port.setCurrentContext();

    const unsigned list = fillList(smooth);
    const auto call = [&] {
        const TsavedState state(GL_ENABLE_BIT | GL_CURRENT_BIT);
        if (style.fEdges)
            glEnable(GL_POLYGON_OFFSET_FILL);
        glCallList(list);
    };
    if (style.fXray) {
        // What faces away lies behind what faces the eye.
        port.cullFace(T3dPort::kCullFront);
        call();
        port.cullFace(T3dPort::kCullBack);
    }
    call();
    port.cullFace(T3dPort::kCullNone);

    if (style.fXray) {
        port.depthMask(true);
        port.blending(false);
    }
    if (style.fGhosted)
        port.polygonStipple(TglPolyStipple::kSolid);
    fLights.turnOff(port);
}

void TviewScene::drawEdges(T3dPort& port, const TviewCamera& camera, const Tstyle& style, double pixelRatio)
{
    const bool isWire = style.fShading == kWire;
    const bool smooth = fModel->edges().size() / 2 <= kMostSmoothEdges;
    port.color(isWire ? kWireColour : kOverlayColour);
    port.lineWidth(static_cast<float>(pixelRatio));
    port.lineSmoothing(smooth);
    // Smooth lines are blended, so that one may not keep the next from the pixels that both touch.
    port.depthMask(!smooth);
    port.setCurrentContext();
    {
        const TsavedState state(GL_ENABLE_BIT | GL_FOG_BIT);
        if (isWire) {
            // The far side of the model recedes into the background.
            const double depth = -camera.view()[14];
            glEnable(GL_FOG);
            glFogi(GL_FOG_MODE, GL_LINEAR);
            glFogf(GL_FOG_START, static_cast<GLfloat>(depth - 0.8));
            glFogf(GL_FOG_END, static_cast<GLfloat>(depth + 1.3));
            glFogfv(GL_FOG_COLOR, &kDistanceColour.r);
        }
        glCallList(fEdgeList);
    }
    port.depthMask(true);
    port.lineSmoothing(false);
}

void TviewScene::count(T3dPort& port, const Tstyle& style) const
{
    if (!fModel || !port.isEnabledGeometryStats())
        return;
    const std::size_t triangles = style.fShading == kWire ? 0 : fModel->triangles().size() / 3;
    port.countTmesh(static_cast<int>(fModel->vertexCount()), static_cast<int>(fModel->edges().size() / 2),
                    static_cast<int>(fModel->faceCount()), 0, static_cast<int>(triangles));
}

void TviewScene::drawLabel(T3dPort& port, const QImage& label, double pixelRatio)
{
    if (label.isNull())
        return;
    const int margin = static_cast<int>(8 * pixelRatio);
    port.blending(true);
    port.blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
    port.setCurrentContext();
    {
        const TsavedState state(GL_CURRENT_BIT);
        glWindowPos2i(margin, std::max(0, port.portRect().height() - margin - label.height()));
        glDrawPixels(label.width(), label.height(), GL_RGBA, GL_UNSIGNED_BYTE, label.constBits());
    }
    port.blending(false);
}
