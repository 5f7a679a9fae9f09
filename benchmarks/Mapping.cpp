#include "Mapping.h"

#include "Graphics/3dPort/T3dPort.h"
#include "foundation/T4dDblVector.h"
#include "foundation/Tpoint.h"

#include <GL/glu.h>

#include <cmath>
#include <random>

namespace {

constexpr int kPoints = 1000;
constexpr Aim kBesideGluProject{Aim::kRatio, 1 / 4.0};
constexpr Aim kBesideGluUnProject{Aim::kRatio, 1 / 15.0};
constexpr Aim kBesideOwnCode{Aim::kRatio, 2};

struct Ray
{
    T4dDblPoint fPoint;
    T4dDblVector fDirection;
};

/** The matrices and the viewport as a program keeps them for itself. */
struct OwnCamera
{
    double fToClip[16];
    double fToWorld[16];
    double fLeft, fBottom, fHalfWidth, fHalfHeight;
    double fPixelWidth, fPixelHeight; // of a viewport that is 2 wide and high

    T4dDblPoint project(const T4dDblPoint& p) const
    {
        const double* m = fToClip;
        const double scale = 1 / (p.x * m[3] + p.y * m[7] + p.z * m[11] + m[15]);
        return {(p.x * m[0] + p.y * m[4] + p.z * m[8] + m[12]) * scale * fHalfWidth + fHalfWidth + fLeft,
                (p.x * m[1] + p.y * m[5] + p.z * m[9] + m[13]) * scale * fHalfHeight + fHalfHeight + fBottom,
                (p.x * m[2] + p.y * m[6] + p.z * m[10] + m[14]) * scale * 0.5 + 0.5};
    }

    T4dDblPoint unproject(double x, double y, double z) const
    {
        const double* m = fToWorld;
        const double scale = 1 / (x * m[3] + y * m[7] + z * m[11] + m[15]);
        return {(x * m[0] + y * m[4] + z * m[8] + m[12]) * scale, (x * m[1] + y * m[5] + z * m[9] + m[13]) * scale,
                (x * m[2] + y * m[6] + z * m[10] + m[14]) * scale};
    }

    Ray ray(const Tpoint& p) const
    {
        const double x = (p.x - fLeft) * fPixelWidth - 1;
        const double y = (p.y - fBottom) * fPixelHeight - 1;
        const T4dDblPoint near = unproject(x, y, -1);
        const T4dDblPoint far = unproject(x, y, 1);
        const T4dDblVector d(far.x - near.x, far.y - near.y, far.z - near.z);
        return {near, d * (1 / d.length())};
    }
};

/** Nanoseconds per point. */
template <class One> Side side(One one)
{
    return {[] {},
            [one](long count) {
                const auto block = [one](long) {
                    for (int i = 0; i < kPoints; ++i)
                        one(i);
                };
                return timeLoop(count, block) / kPoints;
            }};
}

} // namespace

void addMappingRows(const QString& filter, std::vector<Row>& rows)
{
    T3dPort port(nullptr, "mapping", false);
    port.pushViewport(TportRect(10, 20, 810, 620));
    port.perspective(50, 800.0 / 600, 0.5, 100);
    port.translate(0, 0, -8);
    port.rotate(0.3, 0.5, 0.1);
    T4dDblMatrix modelView, projection, product;
    port.getModelViewMatrix(modelView);
    port.getProjectionMatrix(projection);
    port.getTransformMatrix(product);
    const TportRect& area = port.viewport();
    const GLint viewport[4] = {area.left, area.bottom, area.width(), area.height()};
    OwnCamera own{{},
                  {},
                  double(area.left),
                  double(area.bottom),
                  area.width() * 0.5,
                  area.height() * 0.5,
                  2.0 / area.width(),
                  2.0 / area.height()};
    std::copy_n(product.data(), 16, own.fToClip);
    std::copy_n(product.invert().data(), 16, own.fToWorld);

    std::mt19937 random;
    std::vector<T4dDblPoint> points(kPoints);
    std::vector<Tpoint> pixels(kPoints);
    for (int i = 0; i < kPoints; ++i) {
        const auto coordinate = [&random] { return random() / double(0xffffffffu) * 6 - 3; };
        points[std::size_t(i)] = T4dDblPoint(coordinate(), coordinate(), coordinate());
        pixels[std::size_t(i)] = Tpoint{short(10 + random() % 800), short(20 + random() % 600)};
    }
    std::vector<T4dDblPoint> mapped(kPoints);
    std::vector<Ray> rays(kPoints);

    const Side empty = side([](int) {});
    const auto row = [&](const char* name, Aim aim, const Side& ours, const Side& theirs) {
        if (QString(name).contains(filter, Qt::CaseInsensitive))
            rows.push_back(compare(name, aim, ours, theirs, empty));
    };
    const T4dDblPoint* const in = points.data();
    const Tpoint* const at = pixels.data();
    T4dDblPoint* const out = mapped.data();
    Ray* const seen = rays.data();
    const Side worldToPort = side([&port, in, out](int i) { port.worldToPort(in[i], out[i]); });
    const Side portToWorld =
        side([&port, at, seen](int i) { port.portToWorld(at[i], seen[i].fPoint, seen[i].fDirection); });
    row("worldToPort, beside gluProject", kBesideGluProject, worldToPort, side([&, in, out](int i) {
            gluProject(in[i].x, in[i].y, in[i].z, modelView.data(), projection.data(), viewport, &out[i].x, &out[i].y,
                       &out[i].z);
        }));
    row("worldToPort, beside own product", kBesideOwnCode, worldToPort,
        side([&own, in, out](int i) { out[i] = own.project(in[i]); }));
    row("portToWorld, beside gluUnProject", kBesideGluUnProject, portToWorld, side([&, at, seen](int i) {
            T4dDblPoint ends[2];
            for (int end = 0; end < 2; ++end)
                gluUnProject(at[i].x, at[i].y, end, modelView.data(), projection.data(), viewport, &ends[end].x,
                             &ends[end].y, &ends[end].z);
            seen[i] = {ends[0], (ends[1] - ends[0]).normalised()};
        }));
    row("portToWorld, beside own product", kBesideOwnCode, portToWorld,
        side([&own, at, seen](int i) { seen[i] = own.ray(at[i]); }));
}
