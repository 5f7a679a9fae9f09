#pragma once

#include "TviewCamera.h"
#include "foundation/TportColor.h"

class T3dPort;

/** Small things in the picture that say how one looks at the scene, made of the port's solids. */
namespace TsceneGizmos {

/** Red, green and blue for x, y and z. */
inline constexpr float kAxisColours[3][3] = {{0.87f, 0.33f, 0.31f}, {0.50f, 0.76f, 0.34f}, {0.33f, 0.57f, 0.93f}};

/** The colour of the axis of @p index, from 0 to 2. */
TportColor axisColour(int index);
/** Turns +z of the port's matrix to the axis. */
void turnTo(T3dPort& port, int index);

/** The axes as arrows with letters, in the lower left corner. Leaves its own matrices in the port. */
void drawAxes(T3dPort& port, const TviewCamera& camera, double pixelRatio);

/** The lamp, with rays, and a dotted line to the middle of the scene; the port's model-view matrix is the camera's. */
void drawLamp(T3dPort& port, const TviewCamera& camera, double pixelRatio);

} // namespace TsceneGizmos
