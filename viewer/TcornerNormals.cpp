#include "TcornerNormals.h"

#include "foundation/Tangle.h"

#include <cmath>

namespace {

// Comparing each face at a vertex with each other one takes too long where very many meet.
constexpr std::size_t kMostFacesCompared = 2000;

/** The unit vector; null for one that has no direction. */
T4dDblVector direction(const T4dDblVector& v)
{
    const double length = v.length();
    return length > 0 && std::isfinite(length) ? v * (1 / length) : T4dDblVector();
}

/** The corners at each vertex: those of vertex i from fStarts[i] to fStarts[i + 1]. */
struct TcornersByVertex
{
    explicit TcornersByVertex(const TobjModel::Tmesh& mesh)
        : fStarts(mesh.fPoints.size() + 1), fCorners(mesh.fCorners.size())
    {
        for (const std::uint32_t vertex : mesh.fCorners)
            ++fStarts[vertex + 1];
        for (std::size_t i = 1; i < fStarts.size(); ++i)
            fStarts[i] += fStarts[i - 1];
        std::vector<std::uint32_t> next(fStarts.begin(), fStarts.end() - 1);
        for (std::size_t corner = 0; corner < mesh.fCorners.size(); ++corner)
            fCorners[next[mesh.fCorners[corner]]++] = static_cast<std::uint32_t>(corner);
    }

    std::vector<std::uint32_t> fStarts;
    std::vector<std::uint32_t> fCorners;
};

} // namespace

std::vector<T4dDblVector> cornerNormals(const TobjModel::Tmesh& mesh, const std::vector<T4dDblVector>& areas)
{
    const double leastCosine = std::cos(Tangle::fromDegrees(kCreaseDegrees).radians);
    std::vector<T4dDblVector> units;
    units.reserve(areas.size());
    std::vector<std::uint32_t> faceOf;
    faceOf.reserve(mesh.fCorners.size());
    for (std::size_t face = 0; face < areas.size(); ++face) {
        units.push_back(direction(areas[face]));
        faceOf.resize(mesh.fFaceEnds[face], static_cast<std::uint32_t>(face));
    }

    std::vector<T4dDblVector> normals(mesh.fCorners.size());
    const TcornersByVertex around(mesh);
    for (std::size_t vertex = 0; vertex < mesh.fPoints.size(); ++vertex) {
        const auto first = around.fCorners.begin() + around.fStarts[vertex];
        const auto last = around.fCorners.begin() + around.fStarts[vertex + 1];
        const bool compares = static_cast<std::size_t>(last - first) <= kMostFacesCompared;
        for (auto corner = first; compares && corner != last; ++corner) {
            T4dDblVector sum;
            for (auto other = first; other != last; ++other) {
                if (units[faceOf[*corner]].dot(units[faceOf[*other]]) >= leastCosine)
                    sum += areas[faceOf[*other]];
            }
            normals[*corner] = direction(sum);
        }
        for (auto corner = first; !compares && corner != last; ++corner)
            normals[*corner] = units[faceOf[*corner]];
    }

    for (std::size_t corner = 0; corner < mesh.fCornerNormals.size(); ++corner) {
        if (mesh.fCornerNormals[corner] >= mesh.fNormals.size())
            continue;
        const T4dDblVector& face = units[faceOf[corner]];
        const T4dDblVector given = direction(mesh.fNormals[mesh.fCornerNormals[corner]]);
        if (given.dot(face) != 0)
            normals[corner] = given.dot(face) > 0 ? given : -given;
    }
    return normals;
}
