#include "Tpicker.h"

#include "Graphics/3dPort/T3dPort.h"
#include "TviewScene.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/Tpoint.h"
#include "support/PortWindow.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using Titem = Tselection::Titem;

constexpr int kWidth = 331;
constexpr int kHeight = 247;

/** Three tori, one behind another. */
std::shared_ptr<const TobjModel> tori()
{
    constexpr std::uint32_t kAlong = 40;
    constexpr std::uint32_t kAround = 14;
    TobjModel::Tmesh mesh;
    for (std::uint32_t copy = 0; copy < 3; ++copy) {
        mesh.fObjects.push_back({"torus", mesh.fFaceEnds.size()});
        const std::uint32_t first = copy * kAlong * kAround;
        for (std::uint32_t i = 0; i < kAlong; ++i) {
            for (std::uint32_t j = 0; j < kAround; ++j) {
                const double t = 2 * 3.14159265358979 * i / kAlong;
                const double u = 2 * 3.14159265358979 * j / kAround;
                const double r = 1 + 0.45 * std::cos(u);
                mesh.fPoints.emplace_back(r * std::cos(t) + 0.4 * copy, r * std::sin(t),
                                          0.45 * std::sin(u) - 0.9 * copy);
                const std::uint32_t i2 = (i + 1) % kAlong;
                const std::uint32_t j2 = (j + 1) % kAround;
                for (const std::uint32_t corner :
                     {i * kAround + j, i2 * kAround + j, i2 * kAround + j2, i * kAround + j2})
                    mesh.fCorners.push_back(first + corner);
                mesh.fFaceEnds.push_back(static_cast<std::uint32_t>(mesh.fCorners.size()));
            }
        }
    }
    return std::make_shared<const TobjModel>(mesh);
}

/** The first face on the line of sight through a place in the picture, by Möller and Trumbore; -1 for none. */
long faceOnRay(const TviewScene& scene, const TviewCamera& camera, double x, double y)
{
    const double aspect = double(kWidth) / kHeight;
    const T4dDblMatrix m = camera.orientation();
    const T4dDblVector right(m[0], m[4], m[8]), up(m[1], m[5], m[9]), back(m[2], m[6], m[10]);
    const double half = camera.halfHeight(aspect);
    const T4dDblVector onPlane =
        camera.centre() + right * ((2 * x / kWidth - 1) * half * aspect) + up * ((2 * y / kHeight - 1) * half);
    const T4dDblVector origin = camera.isPerspective() ? camera.eye() : onPlane + back * 100;
    const T4dDblVector direction = (onPlane - origin).normalised();

    const TobjModel& model = *scene.model();
    long nearest = -1;
    double least = 1e30;
    for (std::size_t face = 0; face < model.faceCount(); ++face) {
        const T4dDblVector offset = scene.offset(model.objectOf(face));
        for (std::size_t t = model.trianglesOf(face).fBegin; t < model.trianglesOf(face).fEnd; t += 3) {
            const auto at = [&](std::size_t i) {
                const float* p = model.triangles()[t + i].fPosition;
                return T4dDblVector(p[0], p[1], p[2]) + offset;
            };
            const T4dDblVector a = at(1) - at(0), b = at(2) - at(0), s = origin - at(0);
            const double det = a.dot(direction.cross(b));
            if (std::fabs(det) < 1e-18)
                continue;
            const double u = s.dot(direction.cross(b)) / det;
            const double v = direction.dot(s.cross(a)) / det;
            const double distance = b.dot(s.cross(a)) / det;
            if (u >= 0 && v >= 0 && u + v <= 1 && distance > 0 && distance < least) {
                least = distance;
                nearest = static_cast<long>(face);
            }
        }
    }
    return nearest;
}

class TpickerPort : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(fWindow.show());
        fScene.setModel(tori());
        fScene.setOffset(2, {0.2, 0.35, 0.1});
    }

    void see(TviewCamera::Tprojection projection, double turn)
    {
        fCamera = TviewCamera(projection);
        T4dDblVector lower, upper;
        fScene.wholeBox(lower, upper);
        fCamera.frame(lower, upper, double(kWidth) / kHeight);
        fCamera.tumble(turn, turn / 3);
        fCamera.dolly(0.7);
        fScene.loadCamera(port(), fCamera);
    }

    T3dPort& port() { return fWindow.port(); }
    Tpicker picker(Tpicker::Tway way) { return Tpicker(port(), fScene, way); }

    PortWindow<T3dPort> fWindow{kWidth, kHeight, Buffering::kDouble};
    TviewScene fScene;
    TviewCamera fCamera{TviewCamera::kFront};
};

} // namespace

TEST_F(TpickerPort, BothWaysAndARayNameTheSameFace)
{
    std::mt19937 random(4711);
    int compared = 0;
    int edges = 0;
    int hits = 0;
    for (int camera = 0; camera < 6; ++camera) {
        see(camera % 2 ? TviewCamera::kPerspective : TviewCamera::kFront, 0.9 * camera);
        for (int i = 0; i < 400; ++i) {
            const Tpoint pixel{static_cast<short>(random() % kWidth), static_cast<short>(random() % kHeight)};
            // Where the pixel's corners and middle do not see one face, the ways may well differ.
            const long face = faceOnRay(fScene, fCamera, pixel.x + 0.5, pixel.y + 0.5);
            bool edge = false;
            for (int corner = 0; corner < 4; ++corner)
                edge |= faceOnRay(fScene, fCamera, pixel.x + (corner & 1 ? 1.02 : -0.02),
                                  pixel.y + (corner & 2 ? 1.02 : -0.02)) != face;
            if (edge) {
                ++edges;
                continue;
            }
            ++compared;
            hits += face >= 0;
            for (const auto way : {Tpicker::kSelection, Tpicker::kRasterization}) {
                const auto found = picker(way).nearest(pixel, Tselection::kFaces);
                ASSERT_EQ(found ? static_cast<long>(found->fElement) : -1, face)
                    << pixel.x << "," << pixel.y << " camera " << camera << " way " << way;
                const auto object = picker(way).nearest(pixel, Tselection::kObjects);
                ASSERT_EQ(object ? static_cast<long>(object->fObject) : -1,
                          face < 0 ? -1 : static_cast<long>(fScene.model()->objectOf(std::size_t(face))));
            }
        }
    }
    RecordProperty("compared", compared);
    RecordProperty("edges", edges);
    EXPECT_GT(compared, 1200) << edges << " edge pixels";
    EXPECT_GT(hits, 300);
    for (const Tstring& line : port().stateDifferences())
        ADD_FAILURE() << line.asChar();
}

TEST_F(TpickerPort, VerticesAreThoseOfTheFaceUnderThePointer)
{
    see(TviewCamera::kPerspective, 0.4);
    std::mt19937 random(815);
    int found = 0;
    for (int i = 0; i < 300; ++i) {
        const Tpoint pixel{static_cast<short>(random() % kWidth), static_cast<short>(random() % kHeight)};
        const auto face = picker(Tpicker::kSelection).nearest(pixel, Tselection::kFaces);
        const auto vertex = picker(Tpicker::kSelection).nearestVertex(pixel, 6);
        if (!vertex)
            continue;
        ++found;
        const TobjModel& model = *fScene.model();
        const float* p = model.positions()[vertex->fElement].fPosition;
        T4dDblPoint at;
        port().worldToPort(T4dDblPoint(p[0], p[1], p[2]) + fScene.offset(vertex->fObject), at);
        EXPECT_LE(std::hypot(at.x - pixel.x - 0.5, at.y - pixel.y - 0.5), 6.5);
        if (face) {
            const auto corners = model.cornersOf(face->fElement);
            const auto* first = model.corners().data();
            EXPECT_NE(std::find(first + corners.fBegin, first + corners.fEnd, vertex->fElement), first + corners.fEnd);
        }
    }
    EXPECT_GT(found, 20);
}

TEST_F(TpickerPort, AMarqueeTakesAllInsideSeenOrHidden)
{
    see(TviewCamera::kFront, 0);
    const TportRect all(0, 0, kWidth, kHeight);
    EXPECT_EQ(picker(Tpicker::kSelection).within(all, Tselection::kObjects).size(), 3u);
    EXPECT_EQ(picker(Tpicker::kRasterization).within(all, Tselection::kObjects).size(), 3u);
    EXPECT_TRUE(picker(Tpicker::kSelection).within({}, Tselection::kFaces).empty());

    const TportRect part(120, 80, 190, 150);
    std::vector<Titem> expected;
    const TobjModel& model = *fScene.model();
    for (std::uint32_t object = 0; object < 3; ++object) {
        const auto faces = model.objects()[object].fFaces;
        for (std::size_t i = model.cornersOf(faces.fBegin).fBegin; i < model.cornersOf(faces.fEnd - 1).fEnd; ++i) {
            const float* p = model.positions()[model.corners()[i]].fPosition;
            T4dDblPoint at;
            const int place = port().worldToPort(T4dDblPoint(p[0], p[1], p[2]) + fScene.offset(object), at);
            if (place == 0 && at.x >= part.left && at.x <= part.right && at.y >= part.bottom && at.y <= part.top)
                expected.push_back({object, model.corners()[i]});
        }
    }
    Tselection wanted, got;
    wanted.set(Tselection::kVertices, expected);
    got.set(Tselection::kVertices, picker(Tpicker::kSelection).within(part, Tselection::kVertices));
    EXPECT_GT(wanted.items().size(), 30u);
    EXPECT_EQ(got.items(), wanted.items());
}
