// Unit solids and their placed forms.

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/TunitShapes.h"

#include <initializer_list>

using namespace TunitShapes;

namespace {

using Vertex = float[3];

/** Sends the vertices of @p table that @p order names. */
void sendVertices(const Vertex* table, std::initializer_list<int> order)
{
    for (const int i : order)
        glVertex3fv(table[i]);
}

void sendStrip(GLenum mode, const Vertex* table, std::initializer_list<int> order)
{
    glBegin(mode);
    sendVertices(table, order);
    glEnd();
}

void sendFace(float nx, float ny, float nz, const Vertex* table, std::initializer_list<int> order)
{
    glNormal3f(nx, ny, nz);
    sendVertices(table, order);
}

void sendPoint(const T4dDblPoint& p)
{
    glVertex3dv(&p.x);
}

/** On a sphere about the origin the normal is the point. */
void sendSpherePoint(const T4dDblPoint& p)
{
    glNormal3dv(&p.x);
    glVertex3dv(&p.x);
}

// Box

constexpr Vertex kBox[8] = {{1, 1, -1},  {1, 1, 1},    {1, -1, 1}, {1, -1, -1},
                            {-1, -1, 1}, {-1, -1, -1}, {-1, 1, 1}, {-1, 1, -1}};

void emitBox(bool filled)
{
    if (filled) {
        glBegin(GL_QUADS);
        sendFace(1, 0, 0, kBox, {0, 1, 2, 3});
        sendFace(0, -1, 0, kBox, {3, 2, 4, 5});
        sendFace(-1, 0, 0, kBox, {5, 4, 6, 7});
        glEnd();
        glBegin(GL_QUADS);
        sendFace(0, 0, -1, kBox, {3, 5, 7, 0});
        sendFace(0, 1, 0, kBox, {0, 7, 6, 1});
        sendFace(0, 0, 1, kBox, {1, 6, 4, 2});
        glEnd();
    } else {
        sendStrip(GL_LINE_STRIP, kBox, {7, 6, 1, 0, 7, 5, 3, 2, 4, 5});
        sendStrip(GL_LINES, kBox, {4, 6, 1, 2, 0, 3});
    }
}

/** A face of the box as the array path draws it: its axis, and the corners in order. */
struct BoxFace
{
    Vertex fNormal;
    Vertex fCorners[4];
};

constexpr BoxFace kBoxFaces[6] = {
    {{0, 0, -1}, {{-1, -1, -1}, {-1, 1, -1}, {1, 1, -1}, {1, -1, -1}}},
    {{1, 0, 0}, {{1, -1, -1}, {1, 1, -1}, {1, 1, 1}, {1, -1, 1}}},
    {{0, 0, 1}, {{1, -1, 1}, {1, 1, 1}, {-1, 1, 1}, {-1, -1, 1}}},
    {{-1, 0, 0}, {{-1, -1, -1}, {-1, -1, 1}, {-1, 1, 1}, {-1, 1, -1}}},
    {{0, 1, 0}, {{-1, 1, -1}, {-1, 1, 1}, {1, 1, 1}, {1, 1, -1}}},
    {{0, -1, 0}, {{-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}}},
};

void drawBoxArrays(bool filled)
{
    glEnableClientState(GL_VERTEX_ARRAY);
    if (filled) {
        Vertex vertices[24];
        Vertex normals[24];
        GLushort indices[24];
        for (int i = 0; i < 24; ++i) {
            const BoxFace& face = kBoxFaces[i / 4];
            for (int axis = 0; axis < 3; ++axis) {
                vertices[i][axis] = face.fCorners[i % 4][axis];
                normals[i][axis] = face.fNormal[axis];
            }
            indices[i] = static_cast<GLushort>(i);
        }
        glEnableClientState(GL_NORMAL_ARRAY);
        glVertexPointer(3, GL_FLOAT, 0, vertices);
        glNormalPointer(GL_FLOAT, 0, normals);
        glDrawElements(GL_QUADS, 24, GL_UNSIGNED_SHORT, indices);
        glDisableClientState(GL_NORMAL_ARRAY);
    } else {
        Vertex corners[8];
        for (int k = 0; k < 8; ++k) {
            corners[k][0] = k & 2 ? 1.0f : -1.0f;
            corners[k][1] = k & 1 ? 1.0f : -1.0f;
            corners[k][2] = k & 4 ? 1.0f : -1.0f;
        }
        constexpr GLushort kStrip[] = {0, 4, 5, 1, 0, 2, 6, 7, 3, 2};
        constexpr GLushort kLines[] = {4, 6, 5, 7, 1, 3};
        glVertexPointer(3, GL_FLOAT, 0, corners);
        glDrawElements(GL_LINE_STRIP, 10, GL_UNSIGNED_SHORT, kStrip);
        glDrawElements(GL_LINES, 6, GL_UNSIGNED_SHORT, kLines);
    }
    glDisableClientState(GL_VERTEX_ARRAY);
}

// Cone

constexpr int kConePoints = 15;
const T4dDblPoint kTop{0, 1, 0, 1};
const T4dDblPoint kApex{0, 0, 1, 1};

// The slant normals are a hair off unit length: 0.7071 in single precision.
constexpr double kSlant = 0.7071f;
const T4dDblPoint kFirstSlantNormal{0, kSlant, kSlant, 1};

/** The cone's base: its points in the order of their making, and the normals of the slant above them. */
struct Cone
{
    Cone()
    {
        turn(fBase, kTop, k24Degrees);
        turn(fNormals, kFirstSlantNormal, k24Degrees);
        for (int i = 0; i < kConePoints; ++i) {
            fReversedBase[kConePoints - 1 - i][0] = static_cast<float>(fBase[i].x);
            fReversedBase[kConePoints - 1 - i][1] = static_cast<float>(fBase[i].y);
        }
    }

    T4dDblPoint fBase[kConePoints];
    T4dDblPoint fNormals[kConePoints];
    float fReversedBase[kConePoints][2]; ///< seen from below
};

const Cone& cone()
{
    static const Cone made;
    return made;
}

void sendConeBase()
{
    glBegin(GL_POLYGON);
    glNormal3f(0, 0, -1);
    for (const float(&point)[2] : cone().fReversedBase)
        glVertex2fv(point);
    glEnd();
}

void emitCone(bool filled)
{
    const Cone& c = cone();
    if (filled) {
        glBegin(GL_TRIANGLE_FAN);
        glNormal3f(0, 0, 1);
        sendPoint(kApex);
        for (int i = 0; i < kConePoints; ++i) {
            glNormal3dv(&c.fNormals[i].x);
            glVertex2dv(&c.fBase[i].x);
        }
        glNormal3dv(&kFirstSlantNormal.x);
        glVertex2dv(&kTop.x);
        glEnd();
        sendConeBase();
    } else {
        glBegin(GL_LINE_LOOP);
        for (const T4dDblPoint& point : c.fBase)
            glVertex2dv(&point.x);
        glEnd();
        glBegin(GL_LINES);
        for (const T4dDblPoint& point : c.fBase) {
            sendPoint(kApex);
            glVertex2dv(&point.x);
        }
        glEnd();
    }
}

/** The cone's outline: of the slant only the lines to every second base point, which edge flags single out. */
void emitConeOutline()
{
    const Cone& c = cone();
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glBegin(GL_TRIANGLES);
    for (int j = 0; j < 7; ++j) {
        glNormal3f(0, 0, 1);
        sendPoint(kApex);
        glEdgeFlag(GL_FALSE);
        glNormal3dv(&c.fNormals[2 * j].x);
        glVertex2fv(c.fReversedBase[14 - 2 * j]);
        glNormal3dv(&c.fNormals[2 * j + 2].x);
        glVertex2fv(c.fReversedBase[12 - 2 * j]);
        glEdgeFlag(GL_TRUE);
    }
    glEnd();
    sendConeBase();
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

// Sphere

/** A ring of points that repeats the first at its end. */
template <int count> struct Ring
{
    Ring(const T4dDblPoint& start, double step)
    {
        turn(fPoints, start, step);
        fPoints[count] = start;
    }

    /** The ring below the equator, walked the other way round. */
    Ring mirrored() const
    {
        Ring made = *this;
        for (int i = 0; i <= count; ++i) {
            made.fPoints[i] = fPoints[count - i];
            made.fPoints[i].z = -made.fPoints[i].z;
        }
        return made;
    }

    const T4dDblPoint& operator[](int i) const { return fPoints[i]; }

    T4dDblPoint fPoints[count + 1];
};

/** A once-subdivided icosahedron, as rings from pole to equator and their mirror images. */
struct Sphere
{
    const T4dDblPoint fNorth{0, 0, 1, 1};
    const T4dDblPoint fSouth{0, 0, -1, 1};
    const Ring<5> fA{{0, 0.5257, 0.8507, 1}, 2 * k36Degrees};
    const Ring<10> fM{{0, 0.8945, 0.4472, 1}, k36Degrees};
    const Ring<10> fE{{-0.309, 0.9512, 0, 1}, k36Degrees};
    const Ring<5> fLowerA = fA.mirrored();
    const Ring<10> fLowerM = fM.mirrored();
};

void sendPoleFan(const T4dDblPoint& pole, const Ring<5>& ring)
{
    glBegin(GL_TRIANGLE_FAN);
    sendSpherePoint(pole);
    for (const T4dDblPoint& point : ring.fPoints)
        sendSpherePoint(point);
    glEnd();
}

void sendBandFan(const Ring<10>& m, const Ring<5>& a, int i)
{
    glBegin(GL_TRIANGLE_FAN);
    for (const T4dDblPoint* point : {&m[2 * i + 1], &m[2 * i + 2], &a[i + 1], &a[i], &m[2 * i]})
        sendSpherePoint(*point);
    glEnd();
}

void sendBandStrip(const Ring<10>& m, const Ring<5>& a, int i)
{
    glBegin(GL_LINE_STRIP);
    for (const T4dDblPoint* point : {&m[2 * i], &a[i], &m[2 * i + 1], &a[i + 1], &m[2 * i + 2]})
        sendSpherePoint(*point);
    glEnd();
}

void sendLoop(const T4dDblPoint* points, int count)
{
    glBegin(GL_LINE_LOOP);
    for (int i = 0; i < count; ++i)
        sendSpherePoint(points[i]);
    glEnd();
}

void sendPoleLines(const T4dDblPoint& pole, const Ring<5>& ring)
{
    for (int k = 0; k < 5; ++k) {
        sendSpherePoint(pole);
        sendSpherePoint(ring[k]);
    }
}

void sendUpperZigzag(const Sphere& s, GLenum mode, int pairs)
{
    glBegin(mode);
    for (int k = 0; k < pairs; ++k) {
        sendSpherePoint(s.fM[k]);
        sendSpherePoint(s.fE[k]);
    }
    glEnd();
}

void sendLowerZigzag(const Sphere& s, GLenum mode, bool closed)
{
    glBegin(mode);
    for (int k = 0; k < 10; ++k) {
        sendSpherePoint(s.fLowerM[k]);
        sendSpherePoint(s.fE[9 - k]);
    }
    if (closed) {
        sendSpherePoint(s.fLowerM[0]);
        sendSpherePoint(s.fE[9]);
    }
    glEnd();
}

void emitSphere(bool filled)
{
    const Sphere s;
    if (filled) {
        sendPoleFan(s.fNorth, s.fA);
        sendPoleFan(s.fSouth, s.fLowerA);
        for (int i = 0; i < 5; ++i) {
            sendBandFan(s.fM, s.fA, i);
            sendBandFan(s.fLowerM, s.fLowerA, i);
        }
        sendUpperZigzag(s, GL_TRIANGLE_STRIP, 11);
        sendLowerZigzag(s, GL_TRIANGLE_STRIP, true);
    } else {
        sendLoop(s.fA.fPoints, 5);
        sendLoop(s.fLowerA.fPoints, 5);
        glBegin(GL_LINES);
        sendPoleLines(s.fNorth, s.fA);
        sendPoleLines(s.fSouth, s.fLowerA);
        glEnd();
        for (int i = 0; i < 5; ++i) {
            sendBandStrip(s.fM, s.fA, i);
            sendBandStrip(s.fLowerM, s.fLowerA, i);
        }
        sendLoop(s.fM.fPoints, 10);
        sendLoop(s.fE.fPoints, 10);
        sendLoop(s.fLowerM.fPoints, 10);
        // The upper zigzag goes out twice, as it always has.
        sendUpperZigzag(s, GL_LINE_LOOP, 10);
        sendUpperZigzag(s, GL_LINE_LOOP, 10);
        sendLowerZigzag(s, GL_LINE_LOOP, false);
    }
}

// Cylinder

void sendRim(GLenum mode, double z)
{
    glBegin(mode);
    for (const T4dDblPoint& point : circlePoints())
        glVertex3d(point.x, point.y, z);
    glEnd();
}

void emitCylinder(bool filled, bool capped)
{
    if (!filled) {
        glBegin(GL_LINE_LOOP);
        for (const T4dDblPoint& point : circlePoints())
            glVertex2d(point.x, point.y);
        glEnd();
        sendRim(GL_LINE_LOOP, 1);
        glBegin(GL_LINES);
        for (const T4dDblPoint& point : circlePoints()) {
            glVertex3d(point.x, point.y, 0);
            glVertex3d(point.x, point.y, 1);
        }
        glEnd();
        return;
    }
    glBegin(GL_TRIANGLE_STRIP);
    for (int i = 0; i <= kCirclePoints; ++i) {
        const T4dDblPoint& point = circlePoints()[i % kCirclePoints];
        glNormal3d(point.x, point.y, 0);
        glVertex3d(point.x, point.y, 1);
        glVertex3d(point.x, point.y, 0);
    }
    glEnd();
    if (capped) {
        // Both caps face up, the bottom one too.
        glNormal3f(0, 0, 1);
        sendRim(GL_POLYGON, 0);
        glNormal3f(0, 0, 1);
        sendRim(GL_POLYGON, 1);
    }
}

// Octahedron

constexpr Vertex kOctahedron[6] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {-1, 0, 0}, {0, -1, 0}, {0, 0, -1}};

// Scales the normals, which are not of unit length with it either.
constexpr float kRootOf3 = 1.732f;

void emitOctahedron(bool filled)
{
    if (!filled) {
        sendStrip(GL_LINE_LOOP, kOctahedron, {2, 0, 5, 3, 2, 1, 5, 4});
        sendStrip(GL_LINE_LOOP, kOctahedron, {0, 1, 3, 4});
        return;
    }
    glBegin(GL_TRIANGLES);
    for (const float x : {-1.0f, 1.0f})
        for (const float y : {-1.0f, 1.0f})
            for (const float z : {-1.0f, 1.0f}) {
                glNormal3f(y * z * kRootOf3, x * z * kRootOf3, x * y * kRootOf3);
                glVertex3f(x, 0, 0);
                glVertex3f(0, y, 0);
                glVertex3f(0, 0, z);
            }
    glEnd();
}

// Tetrahedron

constexpr Vertex kTetrahedron[4] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

void emitTetrahedron(bool filled)
{
    if (!filled) {
        sendStrip(GL_LINE_STRIP, kTetrahedron, {1, 2, 3, 1, 0, 3});
        sendStrip(GL_LINES, kTetrahedron, {0, 2});
        return;
    }
    glBegin(GL_TRIANGLES);
    sendFace(kRootOf3, kRootOf3, kRootOf3, kTetrahedron, {1, 2, 3});
    sendFace(-1, 0, 0, kTetrahedron, {0, 3, 2});
    sendFace(0, -1, 0, kTetrahedron, {0, 1, 3});
    sendFace(0, 0, -1, kTetrahedron, {0, 2, 1});
    glEnd();
}

// Ring

/** The unit circle in single precision, with its first point again at the end. */
struct RingPoints
{
    RingPoints()
    {
        for (int i = 0; i <= kCirclePoints; ++i) {
            fPoints[i][0] = static_cast<float>(circlePoints()[i % kCirclePoints].x);
            fPoints[i][1] = static_cast<float>(circlePoints()[i % kCirclePoints].y);
        }
    }

    float fPoints[kCirclePoints + 1][2];
};

// The unit shapes. Placed ones draw these too: making a port current may load matrices, which would undo the placing.

void drawBox(bool filled)
{
    if (T3dPort::fsDepreciateFixedFunction) {
        drawBoxArrays(filled);
        return;
    }
    static TglDisplayList lists[2];
    drawCompiled(lists[filled], true, [filled] { emitBox(filled); });
}

void drawCone(bool filled)
{
    static TglDisplayList lists[2];
    drawCompiled(lists[filled], true, [filled] { emitCone(filled); });
}

void drawSphere(bool filled, bool isSelecting)
{
    // Mesa (seen with 22.3) crashes in GL selection on a list whose primitives are not all of one kind.
    if (isSelecting) {
        emitSphere(filled);
        return;
    }
    static TglDisplayList lists[2];
    drawCompiled(lists[filled], true, [filled] { emitSphere(filled); });
}

void drawCylinder(bool filled, bool capped)
{
    static TglDisplayList wire;
    static TglDisplayList filledLists[2];
    drawCompiled(filled ? filledLists[capped] : wire, true, [=] { emitCylinder(filled, capped); });
}

void drawRing(float innerRatio, bool flip)
{
    static const RingPoints ring;
    glBegin(GL_QUAD_STRIP);
    glNormal3f(0, 0, flip ? -1.0f : 1.0f);
    for (const float(&point)[2] : ring.fPoints) {
        glVertex2fv(point);
        glVertex2f(point[0] * innerRatio, point[1] * innerRatio);
    }
    glEnd();
}

void drawOctahedron(bool filled)
{
    static TglDisplayList lists[2];
    drawCompiled(lists[filled], true, [filled] { emitOctahedron(filled); });
}

void drawTetrahedron(bool filled)
{
    static TglDisplayList lists[2];
    drawCompiled(lists[filled], true, [filled] { emitTetrahedron(filled); });
}

void drawOutlineCone(T3dPort& port, TglContext* record, TglColorTable* table, short colorIndex)
{
    static TglDisplayList solid;
    static TglDisplayList outline;
    drawCompiled(solid, false, [] { emitCone(true); });
    drawCompiled(outline, false, emitConeOutline);

    drawCompiled(solid, true, [] { emitCone(true); });
    if (!record) {
        drawCompiled(outline, true, emitConeOutline);
        return;
    }
    // An index that is unknown cannot be set again, but the colour can, so that the caller's is not lost.
    const bool indexKnown = record->fHardwareIndex != TglContext::kUnknownIndex;
    const short index = record->fColorIndex;
    const TportColor color = record->fColor;
    const bool changes = !indexKnown || colorIndex != index;
    if (changes)
        record->colorIndex(table, colorIndex);
    drawCompiled(outline, true, emitConeOutline);
    if (changes && indexKnown)
        record->colorIndex(table, index);
    else if (changes)
        port.color(color);
}

} // namespace

void T3dPort::box(bool filled)
{
    setCurrentContext();
    drawBox(filled);
}

void T3dPort::box(const T4dDblPoint& centre, float sx, float sy, float sz, bool filled)
{
    setCurrentContext();
    drawPlaced(centre, sx, sy, sz, [&] { drawBox(filled); });
}

void T3dPort::cone(bool filled)
{
    setCurrentContext();
    drawCone(filled);
}

void T3dPort::cone(const T4dDblPoint& centre, float radius, float height, bool filled)
{
    setCurrentContext();
    drawPlaced(centre, radius, radius, height, [&] { drawCone(filled); });
}

void T3dPort::sphere(bool filled, bool makeCurrent)
{
    if (makeCurrent)
        setCurrentContext();
    drawSphere(filled, fPortFlags.test(kPortGLSelect));
}

void T3dPort::sphere(const T4dDblPoint& centre, float radius, bool filled, bool makeCurrent)
{
    if (makeCurrent)
        setCurrentContext();
    drawPlaced(centre, radius, radius, radius, [&] { drawSphere(filled, fPortFlags.test(kPortGLSelect)); });
}

void T3dPort::cylinder(bool filled, bool capped)
{
    setCurrentContext();
    drawCylinder(filled, capped);
}

void T3dPort::cylinder(const T4dDblPoint& centre, float radius, float height, bool filled, bool capped)
{
    setCurrentContext();
    drawPlaced(centre, radius, radius, height, [&] { drawCylinder(filled, capped); });
}

void T3dPort::ring(float innerRatio, bool flip)
{
    setCurrentContext();
    drawRing(innerRatio, flip);
}

void T3dPort::ring(const T4dDblPoint& centre, float radiusA, float radiusB, bool flip)
{
    setCurrentContext();
    drawPlaced(centre, radiusB, radiusB, 1, [&] { drawRing(radiusA / radiusB, flip); });
}

void T3dPort::octahedron(bool filled)
{
    setCurrentContext();
    drawOctahedron(filled);
}

void T3dPort::octahedron(const T4dDblPoint& centre, float size, bool filled)
{
    setCurrentContext();
    drawPlaced(centre, size, size, size, [&] { drawOctahedron(filled); });
}

void T3dPort::tetrahedron(bool filled)
{
    setCurrentContext();
    drawTetrahedron(filled);
}

void T3dPort::tetrahedron(const T4dDblPoint& centre, float size, bool filled)
{
    setCurrentContext();
    drawPlaced(centre, size, size, size, [&] { drawTetrahedron(filled); });
}

void T3dPort::outline_cone(short colorIndex)
{
    setCurrentContext();
    drawOutlineCone(*this, fContext, activeColorTable(), colorIndex);
}

void T3dPort::outline_cone(const T4dDblPoint& centre, float radius, float height, short colorIndex)
{
    setCurrentContext();
    drawPlaced(centre, radius, radius, height,
               [&] { drawOutlineCone(*this, fContext, activeColorTable(), colorIndex); });
}
