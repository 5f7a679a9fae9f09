#pragma once

#include "TobjModel.h"

#include <vector>

/** Faces that meet at a larger angle than this, in degrees, keep an edge between them. */
constexpr double kCreaseDegrees = 45;

/**
 * The unit normals of smooth shading, one for each of the mesh's corners: the mesh's own where it has a usable one,
 * turned to the side that the face faces; else the mean of the faces around the vertex, weighted by their areas,
 * without those beyond the crease angle.
 * @param areas  a vector for each face along its normal, as long as the face is large; the corners of a face without
 * area get null vectors
 */
std::vector<T4dDblVector> cornerNormals(const TobjModel::Tmesh& mesh, const std::vector<T4dDblVector>& areas);
