#include "Picking.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Graphics/3dPort/TpickBuffer.h"
#include "RawWindow.h"
#include "Tpicker.h"
#include "TviewScene.h"
#include "foundation/Tpoint.h"

#include <cstdio>
#include <random>

namespace {

constexpr char kName[] = "pick among 10000 boxes";
constexpr char kViewerName[] = "pick among 10000 boxes, in the viewer";
constexpr int kBoxes = 10000;
constexpr int kWords = 65536;
constexpr float kSize = 0.02f;
constexpr Aim kPicking{Aim::kRatio, 1.05};
constexpr Aim kViewerPicking{Aim::kNanoseconds, 200000};
constexpr short kReach = 3; // pixels around the middle

const float kCorners[8][3] = {{1, 1, -1},  {1, 1, 1},    {1, -1, 1}, {1, -1, -1},
                              {-1, -1, 1}, {-1, -1, -1}, {-1, 1, 1}, {-1, 1, -1}};
const int kFaces[6][4] = {{0, 1, 2, 3}, {3, 2, 4, 5}, {5, 4, 6, 7}, {3, 5, 7, 0}, {0, 7, 6, 1}, {1, 6, 4, 2}};

/** The boxes as the objects of a model. */
std::shared_ptr<const TobjModel> modelOf(const std::vector<T4dDblPoint>& centres)
{
    TobjModel::Tmesh mesh;
    for (const T4dDblPoint& c : centres) {
        mesh.fObjects.push_back({std::string(), mesh.fFaceEnds.size()});
        const auto first = static_cast<std::uint32_t>(mesh.fPoints.size());
        for (const auto& corner : kCorners)
            mesh.fPoints.emplace_back(c.x + double(kSize) * corner[0], c.y + double(kSize) * corner[1],
                                      c.z + double(kSize) * corner[2]);
        for (const auto& face : kFaces) {
            for (const int corner : face)
                mesh.fCorners.push_back(first + static_cast<std::uint32_t>(corner));
            mesh.fFaceEnds.push_back(static_cast<std::uint32_t>(mesh.fCorners.size()));
        }
    }
    return std::make_shared<const TobjModel>(mesh);
}

/** The two blocks of quads that a port's unit box is made of. */
void sendUnitBox()
{
    static const float normals[6][3] = {{1, 0, 0}, {0, -1, 0}, {-1, 0, 0}, {0, 0, -1}, {0, 1, 0}, {0, 0, 1}};
    for (int face = 0; face < 6; ++face) {
        if (face % 3 == 0)
            glBegin(GL_QUADS);
        glNormal3fv(normals[face]);
        for (const int corner : kFaces[face])
            glVertex3fv(kCorners[corner]);
        if (face % 3 == 2)
            glEnd();
    }
}

} // namespace

bool addPickingRow(const QString& filter, T3dPort& port, const std::function<void()>& bindPort, const RawWindow& raw,
                   std::vector<Row>& rows)
{
    if (!QString(kViewerName).contains(filter, Qt::CaseInsensitive))
        return true;
    std::mt19937 random;
    std::vector<T4dDblPoint> centres(kBoxes);
    for (T4dDblPoint& c : centres) {
        const auto coordinate = [&random] { return random() / double(0xffffffffu) * 2 - 1; };
        c = T4dDblPoint(coordinate(), coordinate(), coordinate());
    }
    std::vector<unsigned> hits(kWords);

    bindPort();
    T4dDblMatrix formerProjection, formerModelView;
    port.getProjectionMatrix(formerProjection);
    port.matrixMode(GL_MODELVIEW);
    port.getModelViewMatrix(formerModelView);
    port.ortho(-1, 1, -1, 1, -2, 2);
    const TportRect area = port.viewport();
    const Tpoint middle{short(area.width() / 2), short(area.height() / 2)};
    port.fSelectRect = port.makeSelectRect(middle, kReach);
    T4dDblMatrix projection, pick;
    port.getProjectionMatrix(projection);
    port.selectInitialization();
    glGetDoublev(GL_PROJECTION_MATRIX, pick.data());
    port.selectFinalization();

    const auto pickInPort = [&] {
        port.beginSelect(hits.data(), kWords);
        port.pushName(0);
        for (int i = 0; i < kBoxes; ++i) {
            port.loadName(unsigned(i));
            port.box(centres[std::size_t(i)], kSize, kSize, kSize, true);
        }
        return port.endSelect();
    };

    raw.makeCurrent();
    glViewport(0, 0, area.width(), area.height());
    const GLuint box = glGenLists(1);
    glNewList(box, GL_COMPILE);
    sendUnitBox();
    glEndList();
    glMatrixMode(GL_MODELVIEW);
    const auto pickInRaw = [&] {
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(pick.data());
        glMatrixMode(GL_MODELVIEW);
        glSelectBuffer(kWords, hits.data());
        glRenderMode(GL_SELECT);
        glInitNames();
        glPushName(0);
        for (int i = 0; i < kBoxes; ++i) {
            const T4dDblPoint& c = centres[std::size_t(i)];
            glLoadName(GLuint(i));
            glPushMatrix();
            glTranslated(c.x, c.y, c.z);
            glScalef(kSize, kSize, kSize);
            glCallList(box);
            glPopMatrix();
        }
        const int found = glRenderMode(GL_RENDER);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(projection.data());
        glMatrixMode(GL_MODELVIEW);
        return found;
    };
    const auto bindPortView = [&] {
        bindPort();
        port.loadIdentity();
    };
    const auto bindRawView = [&] {
        raw.makeCurrent();
        glLoadIdentity();
    };

    bindPortView();
    const int portHits = pickInPort();
    const std::vector<unsigned> portRecords = hits;
    std::fill(hits.begin(), hits.end(), 0);
    bindRawView();
    const int rawHits = pickInRaw();
    bool isSame = portHits == rawHits && rawHits > 0 && hits == portRecords;
    if (isSame && QString(kName).contains(filter, Qt::CaseInsensitive))
        rows.push_back(compare(kName, kPicking,
                               {bindPortView, [&](long count) { return timeLoop(count, [&](long) { pickInPort(); }); }},
                               {bindRawView, [&](long count) { return timeLoop(count, [&](long) { pickInRaw(); }); }},
                               {[] {}, [](long count) { return timeLoop(count, [](long) {}); }}));
    if (!isSame)
        std::fprintf(stderr, "portbench: %s: %d hits in the port and %d by hand, or other ones\n", kName, portHits,
                     rawHits);

    TviewScene scene;
    scene.setModel(modelOf(centres));
    const auto bindViewerView = [&] {
        bindPort();
        port.loadIdentity();
        const T4dDblVector& centre = scene.model()->centre();
        port.translate(centre);
        const double scale = 1 / scene.model()->scale();
        port.scale(scale, scale, scale);
    };
    const TportRect region(short(middle.x - kReach), short(middle.y - kReach), short(middle.x + kReach),
                           short(middle.y + kReach));
    Tpicker picker(port, scene, Tpicker::kSelection);
    bindViewerView();
    const auto picked = picker.nearest(region, Tselection::kObjects);
    unsigned depth = 0;
    unsigned count = 0;
    const unsigned* nearest = TpickBuffer(kWords, hits.data()).closestElem(rawHits, depth, count);
    if (isSame && picked && nearest && picked->fObject == nearest[0]) {
        rows.push_back(compare(kViewerName, kViewerPicking,
                               {bindViewerView,
                                [&](long passes) {
                                    return timeLoop(passes,
                                                    [&](long) { picker.nearest(region, Tselection::kObjects); });
                                }},
                               {bindRawView, [&](long passes) { return timeLoop(passes, [&](long) { pickInRaw(); }); }},
                               {[] {}, [](long passes) { return timeLoop(passes, [](long) {}); }}));
    } else {
        std::fprintf(stderr, "portbench: %s: not the box that is nearest by hand\n", kViewerName);
        isSame = false;
    }
    bindRawView();
    glDeleteLists(box, 1);
    bindPort();
    port.loadProjectionMatrix(formerProjection);
    port.loadMatrix(formerModelView);
    return isSame;
}
