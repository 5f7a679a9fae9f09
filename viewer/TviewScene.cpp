#define GL_GLEXT_PROTOTYPES

#include "TviewScene.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/glResources/TglPolyStipple.h"
#include "TsavedState.h"
#include "TsceneGizmos.h"
#include "TsceneLabels.h"

#include <GL/glext.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr TportColor kTopColour{0.345f, 0.376f, 0.408f};
constexpr TportColor kBottomColour{0.149f, 0.161f, 0.176f};
constexpr TportColor kDistanceColour{0.247f, 0.267f, 0.29f};
constexpr TportColor kWireColours[TviewScene::kWireColours] = {
    {0.70f, 0.87f, 0.96f}, {0.93f, 0.93f, 0.93f}, {0.96f, 0.76f, 0.42f}, {0.95f, 0.53f, 0.45f},
    {0.93f, 0.60f, 0.80f}, {0.72f, 0.63f, 0.95f}, {0.52f, 0.72f, 0.98f}, {0.60f, 0.88f, 0.56f}};
constexpr TportColor kOverlayColour{0.25f, 0.27f, 0.30f};
constexpr TportColor kClayDiffuse{0.74f, 0.68f, 0.60f};
constexpr TportColor kClayAmbient{0.12f, 0.12f, 0.13f};
constexpr TportColor kClaySpecular{0.20f, 0.20f, 0.20f};
constexpr double kClayShininess = 28;
constexpr TportColor kPickedColour{0.36f, 0.95f, 0.67f};
constexpr TportColor kPickedFaceColour{0.98f, 0.62f, 0.20f};
constexpr float kPickedVertexSize = 7;
constexpr float kLineColour[3] = {0.80f, 0.84f, 0.88f};

constexpr int kCellsEachWay = 20;
constexpr int kMajorEvery = 5;
constexpr double kLeastReach = 1.9; // the lamp is within
constexpr double kCellsPerRadius = 5;
constexpr double kFarGround = 4; // scene units; a ground plane farther from the model is of no help
// Smooth lines cost software rasterizers several times as much as plain ones.
constexpr std::size_t kMostSmoothEdges = 60000;

constexpr double kFarthestMove = 1e3; // scene units
constexpr double kEmptySceneHalf = 0.6;
constexpr double kLeastFramedHalf = 0.05;

/** Grows around points. */
struct Tbox
{
    void add(const T4dDblVector& p)
    {
        fLower = fEmpty ? p : T4dDblVector(std::min(fLower.x, p.x), std::min(fLower.y, p.y), std::min(fLower.z, p.z));
        fUpper = fEmpty ? p : T4dDblVector(std::max(fUpper.x, p.x), std::max(fUpper.y, p.y), std::max(fUpper.z, p.z));
        fEmpty = false;
    }
    /** A box without extent is given @p half each way. */
    void get(T4dDblVector& lower, T4dDblVector& upper, double half) const
    {
        const bool flat = !((fUpper - fLower).lengthSquared() > 0);
        const T4dDblVector more = flat ? T4dDblVector(half, half, half) : T4dDblVector();
        lower = fLower - more;
        upper = fUpper + more;
    }

    T4dDblVector fLower;
    T4dDblVector fUpper;
    bool fEmpty = true;
};

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

TviewScene::TviewScene()
{
    for (unsigned short i = 0; i < kWireColours; ++i)
        T3dPort::setColorTable(static_cast<unsigned short>(i + 1), ::kWireColours[i]);
}

std::string TviewScene::objectName(std::size_t object) const
{
    const std::string& given = fModel->objects()[object].fName;
    if (!given.empty())
        return given;
    return fModel->objects().size() == 1 && !fModelName.empty() ? fModelName : "object " + std::to_string(object + 1);
}

void TviewScene::setModel(std::shared_ptr<const TobjModel> model, const std::string& name)
{
    fModelName = name;
    fModel = std::move(model);
    fOffsets.assign(fModel ? fModel->objects().size() : 0, T4dDblVector());
    fSpheres.clear();
    for (std::size_t i = 0; i < fOffsets.size(); ++i)
        fSpheres.push_back({fModel->objects()[i].centre(), fModel->objects()[i].radius()});
    fSelection.clear();
    fListsValid = false;
    fModelReach = 1;
}

void TviewScene::select(Tselection::Tkind kind, std::vector<Tselection::Titem> items)
{
    fSelection.set(kind, std::move(items));
}

void TviewScene::setOffset(std::size_t object, const T4dDblVector& offset)
{
    fOffsets[object] = {std::clamp(offset.x, -kFarthestMove, kFarthestMove),
                        std::clamp(offset.y, -kFarthestMove, kFarthestMove),
                        std::clamp(offset.z, -kFarthestMove, kFarthestMove)};
    fSpheres[object].fCentre = fModel->objects()[object].centre() + fOffsets[object];
    fModelReach = 1;
    for (const Tsphere& sphere : fSpheres)
        fModelReach = std::max(fModelReach, sphere.fCentre.length() + sphere.fRadius);
}

void TviewScene::wholeBox(T4dDblVector& lower, T4dDblVector& upper) const
{
    Tbox box;
    for (std::size_t i = 0; i < fOffsets.size(); ++i) {
        box.add(fModel->objects()[i].fLower + fOffsets[i]);
        box.add(fModel->objects()[i].fUpper + fOffsets[i]);
    }
    box.get(lower, upper, kEmptySceneHalf);
}

void TviewScene::selectionBox(T4dDblVector& lower, T4dDblVector& upper) const
{
    if (fSelection.isEmpty())
        return wholeBox(lower, upper);
    Tbox box;
    const auto addVertex = [&](std::size_t object, std::size_t vertex) {
        const float* p = fModel->positions()[vertex].fPosition;
        box.add(T4dDblVector(p[0], p[1], p[2]) + fOffsets[object]);
    };
    for (const Tselection::Titem& item : fSelection.items()) {
        const TobjModel::Tobject& object = fModel->objects()[item.fObject];
        if (fSelection.kind() == Tselection::kObjects) {
            box.add(object.fLower + fOffsets[item.fObject]);
            box.add(object.fUpper + fOffsets[item.fObject]);
        } else if (fSelection.kind() == Tselection::kVertices) {
            addVertex(item.fObject, item.fElement);
        } else {
            const TobjModel::Trange corners = fModel->cornersOf(item.fElement);
            for (std::size_t corner = corners.fBegin; corner < corners.fEnd; ++corner)
                addVertex(item.fObject, fModel->corners()[corner]);
        }
    }
    // A single vertex is shown with something of its surroundings.
    box.get(lower, upper, kLeastFramedHalf);
}

void TviewScene::loadCamera(T3dPort& port, const TviewCamera& camera) const
{
    const TportRect& r = port.portRect();
    const double aspect = double(std::max(1, int(r.width()))) / std::max(1, int(r.height()));
    double zNear = 0;
    double zFar = 0;
    camera.depths(std::max(fReach, fModelReach), zNear, zFar);
    if (camera.isPerspective()) {
        port.perspective(camera.fovy(aspect), aspect, zNear, zFar);
    } else {
        const double y = camera.halfHeight(aspect);
        port.ortho(-y * aspect, y * aspect, -y, y, zNear, zFar);
    }
    port.matrixMode(GL_MODELVIEW);
    port.loadMatrix(camera.view());
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

    loadCamera(port, camera);

    // Seen along an axis the grid is graph paper behind the model, from anywhere else it is the ground.
    if (!camera.isPerspective())
        drawGrid(port, camera);
    port.depthTest(true);
    port.depthFunc(T3dPort::kDepthLequal);
    // The grid shines through a model of glass, which hides nothing from it.
    if (camera.isPerspective() && style.fXray)
        drawGrid(port, camera);
    if (fModel && style.fShading != kWire)
        drawFilled(port, camera, style);
    if (camera.isPerspective() && !style.fXray)
        drawGrid(port, camera);
    if (fModel && (style.fShading == kWire || style.fEdges))
        drawEdges(port, camera, style, pixelRatio);
    if (style.fLamp)
        TsceneGizmos::drawLamp(port, camera, pixelRatio);
    drawSelection(port, pixelRatio);
    if (style.fMarks)
        TsceneLabels::drawMarks(port, *this);
    if (style.fLabels) {
        TsceneLabels::drawNames(port, *this);
        TsceneLabels::drawMeasures(port, *this, pixelRatio);
    }
    port.depthTest(false);
    count(port, style);

    TsceneGizmos::drawAxes(port, camera, pixelRatio);
    drawLabel(port, label, pixelRatio);
    loadCamera(port, camera);
}

void TviewScene::prepareLists(T3dPort& port)
{
    if (fListsValid)
        return;
    fListsValid = true;
    port.setCurrentContext();
    fLists.reset(port, fModel.get());
    for (Tgrid* grid : {&fGround, &fFrontPlane, &fSidePlane}) {
        if (grid->fList)
            glDeleteLists(grid->fList, 1);
        grid->fList = 0;
    }
    // The colours inside must not be taken for the port's.
    const TsavedState state(GL_CURRENT_BIT);
    fReach = kLeastReach;
    for (Tgrid* grid : {&fGround, &fFrontPlane, &fSidePlane})
        makeGridList(*grid);
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
        level = fModel ? (fModel->lower().y - fModel->centre().y) * fModel->scale() : -kEmptySceneHalf;
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

void TviewScene::applySurface(T3dPort& port, const TviewCamera& camera, Tsurface surface)
{
    if (surface == kTextured)
        fTexture.apply(port);
    else if (surface == kSphereMapped)
        fEnvironment.applySphereMap(port);
    else if (surface == kCubeMapped)
        fEnvironment.applyCubeMap(port, camera);
}

void TviewScene::drawFilled(T3dPort& port, const TviewCamera& camera, const Tstyle& style)
{
    const bool smooth = style.fShading == kSmooth;
    port.shadeModel(smooth ? T3dPort::kShadeSmooth : T3dPort::kShadeFlat);
    fLights.turnOn(port);
    // Diffuse comes last: the current colour of OpenGL then is the recorded one.
    port.setSpecularColor(kClaySpecular);
    port.setShininess(kClayShininess);
    port.setAmbientMaterialColor(kClayAmbient);
    const bool textured = style.fSurface == kTextured && !fTexture.isEmpty() && !fModel->triangleUvs().empty();
    const Tsurface surface = style.fSurface == kTextured && !textured ? kClay : style.fSurface;
    port.setDiffuseColor(textured ? kCwhite : kClayDiffuse, style.fXray ? T3dPort::fsXrayAlpha : 1);
    if (style.fGhosted)
        port.polygonStipple(TglPolyStipple::kHalftone);
    if (style.fXray) {
        port.blending(true);
        port.blendFunc(T3dPort::kBlendSrcAlpha, T3dPort::kBlendOneMinusSrcAlpha);
        port.depthMask(false);
    }
    port.polygonOffsetLower();
    applySurface(port, camera, surface);
    port.setCurrentContext();

    const auto call = [&] {
        const TsavedState state(GL_ENABLE_BIT | GL_CURRENT_BIT);
        if (surface == kTextured || surface == kSphereMapped)
            glEnable(GL_TEXTURE_2D);
        if (style.fEdges || style.fMarks || (fSelection.kind() == Tselection::kObjects && !fSelection.isEmpty()))
            glEnable(GL_POLYGON_OFFSET_FILL);
        drawObjects(port, smooth ? TmodelLists::kSmooth : TmodelLists::kFlat);
    };
    if (style.fXray) {
        // What faces away lies behind what faces the eye.
        port.cullFace(T3dPort::kCullFront);
        call();
        port.cullFace(T3dPort::kCullBack);
    }
    call();
    port.cullFace(T3dPort::kCullNone);
    if (surface == kCubeMapped)
        Tenvironment::endCubeMap(port);
    port.setTextureGenMode(TglContext::kGenOff);

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
    port.color(isWire ? T3dPort::colorTable(style.fWireIndex) : kOverlayColour);
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
        drawObjects(port, TmodelLists::kEdges);
    }
    port.depthMask(true);
    port.lineSmoothing(false);
}

void TviewScene::drawObjects(T3dPort& port, TmodelLists::Tway way)
{
    for (std::size_t i = 0; i < fOffsets.size(); ++i)
        drawObject(port, way, i);
}

void TviewScene::drawObject(T3dPort& port, TmodelLists::Tway way, std::size_t object)
{
    const bool moved = fOffsets[object] != T4dDblVector();
    if (moved) {
        port.pushMatrix();
        port.translate(fOffsets[object]);
    }
    port.setCurrentContext();
    fLists.draw(way, object);
    if (moved)
        port.popMatrix();
}

void TviewScene::drawSelection(T3dPort& port, double pixelRatio)
{
    if (fSelection.isEmpty())
        return;
    const auto& items = fSelection.items();
    if (fSelection.kind() == Tselection::kObjects) {
        port.color(kPickedColour);
        port.lineWidth(static_cast<float>(pixelRatio));
        for (const Tselection::Titem& item : items)
            drawObject(port, TmodelLists::kEdges, item.fObject);
        port.lineWidth(1);
        return;
    }

    const bool faces = fSelection.kind() == Tselection::kFaces;
    port.color(faces ? kPickedFaceColour : kPickedColour);
    if (!faces) {
        port.pointSize(static_cast<float>(kPickedVertexSize * pixelRatio));
        port.depthTest(false);
    }
    std::size_t next = 0;
    while (next < items.size()) {
        const std::uint32_t object = items[next].fObject;
        port.pushMatrix();
        port.translate(fOffsets[object]);
        port.setCurrentContext();
        glBegin(faces ? GL_TRIANGLES : GL_POINTS);
        for (; next < items.size() && items[next].fObject == object; ++next) {
            if (faces) {
                const TobjModel::Trange range = fModel->trianglesOf(items[next].fElement);
                for (std::size_t i = range.fBegin; i < range.fEnd; ++i)
                    glVertex3fv(fModel->triangles()[i].fPosition);
            } else {
                glVertex3fv(fModel->positions()[items[next].fElement].fPosition);
            }
        }
        glEnd();
        port.popMatrix();
    }
    port.pointSize(1);
    port.depthTest(true);
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
