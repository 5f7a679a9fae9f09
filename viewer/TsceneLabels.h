#pragma once

class T3dPort;
class TviewScene;

/** Words and marks at the things of a scene. The port's matrices are those that the scene is seen with. */
namespace TsceneLabels {

/** Beyond as many, objects have no labels and vertices no marks: nobody could read them. */
inline constexpr unsigned kMostLabels = 300;
inline constexpr unsigned kMostMarks = 30000;

/** The objects' names, each above its object. */
void drawNames(T3dPort& port, const TviewScene& scene);

/** The box around what is selected, with its width, height and depth in the file's units. */
void drawMeasures(T3dPort& port, const TviewScene& scene, double pixelRatio);

/** A mark at each vertex, where the surface does not hide it. */
void drawMarks(T3dPort& port, const TviewScene& scene);

} // namespace TsceneLabels
