// Points, lines, rectangles, circles and arcs.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/TunitShapes.h"
#include "foundation/Tangle.h"

#include <cmath>
#include <utility>

using namespace TunitShapes;

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kArcStepDegrees = 6.0;
constexpr double kNoTurn = 1e-10;
constexpr double kMostArcSteps = 100.0 * kCirclePoints;

/** The points of a flat shape, sent in the one way or the other. */
template <int count> void drawFlat(GLenum mode, const float (&points)[count][2], bool arrays)
{
    if (arrays) {
        GLushort indices[count];
        for (int i = 0; i < count; ++i)
            indices[i] = static_cast<GLushort>(i);
        glEnableClientState(GL_VERTEX_ARRAY);
        glVertexPointer(2, GL_FLOAT, 0, points);
        glDrawElements(mode, count, GL_UNSIGNED_SHORT, indices);
        glDisableClientState(GL_VERTEX_ARRAY);
    } else {
        glBegin(mode);
        for (const float(&point)[2] : points)
            glVertex2f(point[0], point[1]);
        glEnd();
    }
}

/** The unit circle as client arrays. */
struct CircleArrays
{
    CircleArrays()
    {
        for (int i = 0; i < kCirclePoints; ++i) {
            fVertices[i][0] = circlePoints()[i].x;
            fVertices[i][1] = circlePoints()[i].y;
            fNormals[i][0] = 0;
            fNormals[i][1] = 0;
            fNormals[i][2] = 1;
            fIndices[i] = static_cast<GLushort>(i);
        }
    }

    double fVertices[kCirclePoints][2];
    float fNormals[kCirclePoints][3];
    GLushort fIndices[kCirclePoints];
};

void drawCircleArrays(bool filled, bool draw)
{
    static const CircleArrays& circle = *new CircleArrays;
    if (!draw)
        return;
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(2, GL_DOUBLE, 0, circle.fVertices);
    if (filled) {
        glEnableClientState(GL_NORMAL_ARRAY);
        glNormalPointer(GL_FLOAT, 0, circle.fNormals);
    }
    glDrawElements(filled ? GL_POLYGON : GL_LINE_LOOP, kCirclePoints, GL_UNSIGNED_SHORT, circle.fIndices);
    if (filled)
        glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_VERTEX_ARRAY);
}

void emitCircle(bool filled)
{
    if (filled)
        glNormal3f(0, 0, 1);
    glBegin(filled ? GL_POLYGON : GL_LINE_LOOP);
    for (const T4dDblPoint& point : circlePoints())
        glVertex2dv(&point.x);
    glEnd();
}

void drawCircle(bool filled, bool draw)
{
    if (T3dPort::fsDepreciateFixedFunction) {
        drawCircleArrays(filled, draw);
        return;
    }
    static TglDisplayList outline;
    static TglDisplayList disc;
    drawCompiled(filled ? disc : outline, draw, [filled] { emitCircle(filled); });
}

/** Whole steps in an angle. Arcs of very many turns are cut to some, which end where the whole arc would. */
int arcSteps(double degrees)
{
    const double steps = std::abs(degrees / kArcStepDegrees);
    if (steps <= kMostArcSteps)
        return static_cast<int>(steps);
    const double rest = std::fmod(std::trunc(steps), kCirclePoints);
    return std::isfinite(rest) ? kCirclePoints + static_cast<int>(rest) : 0;
}

/** The first vertices of an arc: for a filled one the centre that its points fan out from. */
void beginArc(bool filled)
{
    glBegin(filled ? GL_POLYGON : GL_LINE_STRIP);
    if (filled) {
        glNormal3f(0, 0, 1);
        glVertex2f(0, 0);
    }
}

} // namespace

void T3dPort::point(const T4dDblPoint& p)
{
    setCurrentContext();
    glBegin(GL_POINTS);
    glVertex3dv(&p.x);
    glEnd();
}

void T3dPort::point(float x, float y, float z)
{
    setCurrentContext();
    glBegin(GL_POINTS);
    glVertex3f(x, y, z);
    glEnd();
}

void T3dPort::rect(float x1, float y1, float x2, float y2, bool filled)
{
    setCurrentContext();
    if (x1 > x2)
        std::swap(x1, x2);
    if (y1 > y2)
        std::swap(y1, y2);
    const float corners[4][2] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    drawFlat(filled ? GL_QUADS : GL_LINE_LOOP, corners, fsDepreciateFixedFunction);
}

void T3dPort::rect(const T4dDblPoint& a, const T4dDblPoint& b, bool filled)
{
    rect(static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(b.x), static_cast<float>(b.y), filled);
}

void T3dPort::line(float x1, float y1, float x2, float y2)
{
    setCurrentContext();
    const float ends[2][2] = {{x1, y1}, {x2, y2}};
    drawFlat(GL_LINES, ends, fsDepreciateFixedFunction);
}

void T3dPort::circle(bool filled, bool draw)
{
    setCurrentContext();
    drawCircle(filled, draw);
}

void T3dPort::circle(const T4dDblPoint& centre, float radius, bool filled)
{
    setCurrentContext();
    drawPlaced(centre, radius, radius, radius, [&] { drawCircle(filled, true); });
}

void T3dPort::arc(const T4dDblPoint& centre, float radius, double startDegrees, double endDegrees, bool filled)
{
    setCurrentContext();
    static const T4dDblMatrix step = rotationAboutZ(-k6Degrees);
    const T4dDblPoint top{0, 1, 0, 1};
    drawPlaced(centre, radius, radius, radius, [&] {
        T4dDblPoint point = top;
        if (std::abs(startDegrees) > kNoTurn)
            point = point * rotationAboutZ(-startDegrees * kPi / 180);
        beginArc(filled);
        // Always in the sense of a growing angle, also when the end lies below the start.
        const int steps = arcSteps(endDegrees - startDegrees);
        for (int i = 0; i <= steps; ++i) {
            glVertex2dv(&point.x);
            point = point * step;
        }
        point = top * rotationAboutZ(-endDegrees * kPi / 180);
        glVertex2dv(&point.x);
        glEnd();
    });
}

void T3dPort::arc(float x, float y, float radius, double startDegrees, double endDegrees, bool filled)
{
    arc(T4dDblPoint{x, y, 0, 1}, radius, startDegrees, endDegrees, filled);
}

void T3dPort::arc(const T4dDblPoint& centre, const T4dDblVector& from, const T4dDblVector& to, bool filled)
{
    setCurrentContext();
    const T4dDblVector axis{from.y * to.z - to.y * from.z, from.z * to.x - to.z * from.x,
                            to.y * from.x - to.x * from.y};
    const T4dDblMatrix step = rotation(k6Degrees, axis);
    const int steps = arcSteps(from.angleBetween(to).degrees());
    T4dDblPoint point{from.x, from.y, from.z, 1};
    glPushMatrix();
    glTranslated(centre.x, centre.y, centre.z);
    beginArc(filled);
    for (int i = 0; i <= steps; ++i) {
        glVertex3dv(&point.x);
        point = point * step;
    }
    glVertex3dv(&to.x);
    glEnd();
    glPopMatrix();
}
