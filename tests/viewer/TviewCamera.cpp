#include "TviewCamera.h"

#include "foundation/Tangle.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr TviewCamera::Tprojection kAll[] = {TviewCamera::kPerspective, TviewCamera::kTop, TviewCamera::kFront,
                                             TviewCamera::kSide};

/** The place in the picture, from -1 to 1 each way. */
T4dDblVector seen(const TviewCamera& camera, double aspect, const T4dDblVector& p)
{
    const T4dDblPoint at = T4dDblPoint(p.x, p.y, p.z) * camera.view();
    const double slope = std::tan(Tangle::fromDegrees(camera.fovy(aspect)).radians / 2);
    const double height = camera.isPerspective() ? -at.z * slope : camera.halfHeight(aspect);
    return {at.x / (height * aspect), at.y / height, at.z};
}

} // namespace

TEST(TviewCamera, FramesTheWholeBoxAndNotMuchMore)
{
    const T4dDblVector boxes[][2] = {
        {{-0.6, -0.6, -0.6}, {0.6, 0.6, 0.6}}, {{-1, -0.01, -0.02}, {1, 0.01, 0.02}}, {{0.3, 2, -9}, {0.4, 7, -8}}};
    for (const auto projection : kAll) {
        for (const double aspect : {0.25, 1.0, 4.0 / 3, 5.0}) {
            for (const auto& box : boxes) {
                TviewCamera camera(projection);
                camera.tumble(1.1, -0.9);
                camera.frame(box[0], box[1], aspect);
                double outermost = 0;
                for (int i = 0; i < 8; ++i) {
                    const T4dDblVector corner(box[i & 1].x, box[i >> 1 & 1].y, box[i >> 2].z);
                    const T4dDblVector p = seen(camera, aspect, corner);
                    EXPECT_TRUE(p.z < 0 || !camera.isPerspective());
                    outermost = std::max({outermost, std::fabs(p.x), std::fabs(p.y)});
                }
                EXPECT_LT(outermost, 1) << projection << " " << aspect;
                EXPECT_GT(outermost, 0.7) << projection << " " << aspect;
            }
        }
    }
}

TEST(TviewCamera, LooksAlongTheAxisOfItsName)
{
    const struct
    {
        TviewCamera::Tprojection projection;
        T4dDblVector eye;
        T4dDblVector right;
    } cases[] = {{TviewCamera::kTop, {0, 1, 0}, {1, 0, 0}},
                 {TviewCamera::kFront, {0, 0, 1}, {1, 0, 0}},
                 {TviewCamera::kSide, {1, 0, 0}, {0, 0, -1}}};
    for (const auto& each : cases) {
        const TviewCamera camera(each.projection);
        EXPECT_LT((camera.eye() * (1 / camera.distance()) - each.eye).length(), 1e-12);
        EXPECT_GT(seen(camera, 1, each.right).x, 0);
        TviewCamera tumbled = camera;
        tumbled.tumble(1, 1);
        EXPECT_EQ(tumbled.view(), camera.view());
    }
}

TEST(TviewCamera, OrbitKeepsDistanceAndCentre)
{
    TviewCamera camera(TviewCamera::kPerspective);
    camera.frame({1, 2, 3}, {2, 4, 5}, 1);
    const T4dDblVector centre = camera.centre();
    const double distance = camera.distance();
    T4dDblVector before = camera.eye();
    for (int step = 0; step < 50; ++step) {
        camera.tumble(0.7, step < 25 ? 0.2 : -0.3);
        EXPECT_NEAR((camera.eye() - centre).length(), distance, 1e-9);
        EXPECT_GT((camera.eye() - before).length(), 0) << "at a pole it still turns";
        const T4dDblVector middle = seen(camera, 1, centre);
        EXPECT_NEAR(std::hypot(middle.x, middle.y), 0, 1e-9);
        // Never head over heels.
        EXPECT_GE(camera.orientation()[5], -1e-12);
        before = camera.eye();
        if (std::fabs(camera.orientation()[5]) < 1e-9)
            before = {};
    }
}

TEST(TviewCamera, TrackMovesThePictureByHeights)
{
    for (const auto projection : kAll) {
        TviewCamera camera(projection);
        const T4dDblVector held = camera.centre();
        camera.track(-0.25, 0.1, 2);
        const T4dDblVector p = seen(camera, 2, held);
        EXPECT_NEAR(p.x, 0.25, 1e-9); // half a height to the right is half of the way in a picture twice as wide
        EXPECT_NEAR(p.y, -0.2, 1e-9);
    }
}

TEST(TviewCamera, DollyStaysWithinItsLimits)
{
    TviewCamera camera(TviewCamera::kPerspective);
    const double distance = camera.distance();
    camera.dolly(0.5);
    EXPECT_DOUBLE_EQ(camera.distance(), distance / 2);
    for (const double ignored : {0.0, -1.0, std::nan("")})
        camera.dolly(ignored);
    EXPECT_DOUBLE_EQ(camera.distance(), distance / 2);
    camera.dolly(1e300);
    EXPECT_EQ(camera.distance(), TviewCamera::kMaxDistance);
    camera.dolly(1e-300);
    EXPECT_EQ(camera.distance(), TviewCamera::kMinDistance);

    double zNear = 0;
    double zFar = 0;
    camera.depths(3, zNear, zFar);
    EXPECT_GT(zNear, 0);
    EXPECT_GT(zFar, zNear);
}
