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
    /** A place in texture space, where pictures reach from 0 to 1. */
    struct Tuv
    {
        float fU;
        float fV;
    };

    struct TobjectStart
    {
        std::string fName;
        std::size_t fFirstFace;
    };

    /** Polygons by vertex indices; the corners of face i are those from fFaceEnds[i - 1] to fFaceEnds[i]. */
    struct Tmesh
    {
        std::vector<T4dDblVector> fPoints;
        std::vector<std::uint32_t> fCorners;
        std::vector<std::uint32_t> fFaceEnds;
        std::vector<T4dDblVector> fNormals;
        /** Empty, or an index into fNormals for each corner; one that is too large stands for none. */
        std::vector<std::uint32_t> fCornerNormals;
        std::vector<Tuv> fUvs;
        /** As fCornerNormals, into fUvs. */
        std::vector<std::uint32_t> fCornerUvs;
        /** The picture that the first material with one has for its colour; empty without. */
        std::string fTexture;
        /** Where objects begin, in the order of the faces. Without any, all faces are one object without a name. */
        std::vector<TobjectStart> fObjects;
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

    /** Indices from fBegin up to but not including fEnd. */
    struct Trange
    {
        std::size_t fBegin = 0;
        std::size_t fEnd = 0;

        std::size_t size() const { return fEnd - fBegin; }
    };

    /** Some of the faces, under a name. */
    struct Tobject
    {
        std::string fName; ///< may be empty
        Trange fFaces;
        Trange fTriangles;                    ///< in triangles(), three entries a triangle
        Trange fEdges;                        ///< in edges(), two entries an edge
        std::vector<std::uint32_t> fVertices; ///< that the faces use, in ascending order
        T4dDblVector fLower;                  ///< of the bounding box, in scene space
        T4dDblVector fUpper;

        T4dDblVector centre() const { return (fLower + fUpper) * 0.5; }
        double radius() const { return (fUpper - fLower).length() / 2; }
    };

    /**
     * Reads an OBJ file: vertices, faces with their normals and texture coordinates, and the names of objects and groups,
     * each of which becomes an object, and the colour picture of the first material that has one. Everything else is left
     * out.
     * @param error  set to the reason, without a full stop, when null is returned: a file that can't be read, has no
     *               faces, an index of no vertex, a face of fewer than three corners, or a coordinate that is no number
     */
    static std::shared_ptr<const TobjModel> load(const std::string& path, TloadProgress& progress, std::string& error);

    /** A torus knot that stands on the ground, about 6 units wide. */
    static std::shared_ptr<const TobjModel> torusKnot();

    /** Takes a mesh whose indices are valid. */
    explicit TobjModel(const Tmesh& mesh);

    std::size_t vertexCount() const { return fPositions.size(); }
    std::size_t faceCount() const { return fFaceEnds.size(); }

    /** The bounding box of what the faces use, in the file's units. */
    const T4dDblVector& lower() const { return fLower; }
    const T4dDblVector& upper() const { return fUpper; }
    /** Scene space is (p - centre()) * scale(). */
    const T4dDblVector& centre() const { return fCentre; }
    double scale() const { return fScale; }

    /** At least one, each with faces. */
    const std::vector<Tobject>& objects() const { return fObjects; }
    /** The object of a face. */
    std::size_t objectOf(std::size_t face) const;
    /** The entries of triangles() that fill a face; none for a face without area. */
    Trange trianglesOf(std::size_t face) const;
    /** The entries of corners() that are a face's. */
    Trange cornersOf(std::size_t face) const;
    /** Vertex indices, those of face after face. */
    const std::vector<std::uint32_t>& corners() const { return fCorners; }
    /** One for each of corners(); NaN where the file gives none. Empty for a model without texture coordinates. */
    const std::vector<Tuv>& uvs() const { return fUvs; }

    /** Three per triangle, in scene space, with the normals of the faces. Face after face. */
    const std::vector<TfillVertex>& triangles() const { return fTriangles; }
    /** The normals of smooth shading, one per corner of triangles(). */
    const std::vector<Tnormal>& smoothNormals() const { return fSmoothNormals; }
    /** The texture coordinates, one per corner of triangles(); 0 where there are none. Empty as uvs() may be. */
    const std::vector<Tuv>& triangleUvs() const { return fTriangleUvs; }
    /** The image file of the model's material; empty without. */
    const std::string& texturePath() const { return fTexturePath; }
    /** The vertices in scene space. */
    const std::vector<Tposition>& positions() const { return fPositions; }
    /** Two vertex indices per edge of a face, each edge of an object once. */
    const std::vector<std::uint32_t>& edges() const { return fEdges; }

private:
    void measure(const Tmesh& mesh);
    void buildObjects(const Tmesh& mesh);
    void buildTriangles(const Tmesh& mesh);
    void buildEdges(Tobject& object);
    void takeUvs(const Tmesh& mesh);

    std::vector<std::uint32_t> fCorners;
    std::vector<std::uint32_t> fFaceEnds; ///< in fCorners
    std::vector<std::size_t> fFaceTriangleEnds;
    std::vector<Tobject> fObjects;
    std::vector<Tuv> fUvs;
    std::vector<Tuv> fTriangleUvs;
    std::string fTexturePath;
    T4dDblVector fLower;
    T4dDblVector fUpper;
    T4dDblVector fCentre;
    double fScale = 1;
    std::vector<Tposition> fPositions;
    std::vector<TfillVertex> fTriangles;
    std::vector<Tnormal> fSmoothNormals;
    std::vector<std::uint32_t> fEdges;
};
