#include "TviewCamera.h"

#include "foundation/Tangle.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

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
    for (const auto projection : {TviewCamera::kPerspective, TviewCamera::kTop, TviewCamera::kSide}) {
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
