#pragma once

#include "foundation/T4dDblVector.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/** How far a loading thread is, and the wish to end it. */
struct TloadProgress
{
    std::atomic<int> fPercent{0};
    std::atomic<bool> fCancelled{false};
};

/**
 * A polygon model, ready to be drawn: what OpenGL takes, computed without OpenGL.
 *
 * Drawing takes place in scene space, where the model's bounding box has its centre at the origin and corners at
 * distance 1. So models of any size and place are drawn with the same precision.
 */
class TobjModel
{
public:
    /** Polygons by vertex indices; the corners of face i are those from fFaceEnds[i - 1] to fFaceEnds[i]. */
    struct Tmesh
    {
        std::vector<T4dDblVector> fPoints;
        std::vector<std::uint32_t> fCorners;
        std::vector<std::uint32_t> fFaceEnds;
        std::vector<T4dDblVector> fNormals;
        /** Empty, or an index into fNormals for each corner; one that is too large stands for none. */
        std::vector<std::uint32_t> fCornerNormals;
    };

    /** A corner of a triangle as glInterleavedArrays takes it with GL_N3F_V3F. */
    struct TfillVertex
    {
        float fNormal[3];
        float fPosition[3];
    };

    struct Tposition
    {
        float fPosition[3];
    };

    struct Tnormal
    {
        float fNormal[3];
    };

    /**
     * Reads an OBJ file: vertices, faces and their normals, everything else is left out.
     * @param error  set to the reason, without a full stop, when null is returned: a file that can't be read, has no
     *               faces, an index of no vertex, a face of fewer than three corners, or a coordinate that is no number
     */
    static std::shared_ptr<const TobjModel> load(const std::string& path, TloadProgress& progress, std::string& error);

    /** A torus knot that stands on the ground, about 6 units wide. */
    static std::shared_ptr<const TobjModel> torusKnot();

    /** Takes a mesh whose indices are valid. */
    explicit TobjModel(const Tmesh& mesh);

    std::size_t vertexCount() const { return fPositions.size(); }
    std::size_t faceCount() const { return fFaceCount; }

    /** The bounding box of what the faces use, in the file's units. */
    const T4dDblVector& lower() const { return fLower; }
    const T4dDblVector& upper() const { return fUpper; }
    /** Scene space is (p - centre()) * scale(). */
    const T4dDblVector& centre() const { return fCentre; }
    double scale() const { return fScale; }

    /** Three per triangle, in scene space, with the normals of the faces. */
    const std::vector<TfillVertex>& triangles() const { return fTriangles; }
    /** The normals of smooth shading, one per corner of triangles(). */
    const std::vector<Tnormal>& smoothNormals() const { return fSmoothNormals; }
    /** The vertices in scene space. */
    const std::vector<Tposition>& positions() const { return fPositions; }
    /** Two vertex indices per edge of a face, each edge once. */
    const std::vector<std::uint32_t>& edges() const { return fEdges; }

private:
    void measure(const Tmesh& mesh);
    void buildTriangles(const Tmesh& mesh);
    void buildEdges(const Tmesh& mesh);

    std::size_t fFaceCount = 0;
    T4dDblVector fLower;
    T4dDblVector fUpper;
    T4dDblVector fCentre;
    double fScale = 1;
    std::vector<Tposition> fPositions;
    std::vector<TfillVertex> fTriangles;
    std::vector<Tnormal> fSmoothNormals;
    std::vector<std::uint32_t> fEdges;
};
