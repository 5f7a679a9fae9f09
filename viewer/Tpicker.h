#pragma once

#include "TpickVolume.h"
#include "Tselection.h"

#include <GL/gl.h>

#include <optional>
#include <vector>

class T3dPort;
class Tpoint;
class TviewScene;

/**
 * Finds out what of a scene's model is seen in a pixel or a rectangle of a port. What the region can't meet is left out on
 * the CPU, and only the rest drawn for the port's picking: its time depends little on the size of the model.
 */
class Tpicker
{
public:
    /** The two ways that a port can pick in. */
    enum Tway { kSelection, kRasterization };

    /** The port's matrices are those that the scene is seen with. */
    Tpicker(T3dPort& port, const TviewScene& scene, Tway way) : fPort(port), fScene(scene), fWay(way) {}

    /** The object or the face that is seen in the pixel whose lower left corner is @p pixel. */
    std::optional<Tselection::Titem> nearest(const Tpoint& pixel, Tselection::Tkind kind);
    /** The nearest one that is seen in a rectangle. */
    std::optional<Tselection::Titem> nearest(const TportRect& region, Tselection::Tkind kind);
    /**
     * The vertex nearest to the middle of the pixel, not farther from it than @p reach pixels: of the face seen there, or
     * where there is none of any face.
     */
    std::optional<Tselection::Titem> nearestVertex(const Tpoint& pixel, int reach);
    /**
     * Everything of the kind that lies in the rectangle or reaches into it, seen or hidden. Of objects; faces and vertices
     * are too many to be drawn one by one, and picked by selection always.
     */
    std::vector<Tselection::Titem> within(const TportRect& region, Tselection::Tkind kind);

private:
    /** One thing to draw: some triangles, or a vertex. */
    struct Tcandidate
    {
        Tselection::Titem fItem;
        std::size_t fBegin; ///< in fVertices
        std::size_t fEnd;
    };

    void gather(const TportRect& region, Tselection::Tkind kind);
    void gatherVertices(std::size_t object, const TpickVolume& volume);
    void draw(const Tcandidate& candidate);
    /** The names of what was hit, with their depths. */
    template <class F> void select(const TportRect& region, const F& found);
    std::optional<Tselection::Titem> nearestSelected(const TportRect& region);
    std::optional<Tselection::Titem> nearestRasterized(const TportRect& region);
    std::vector<Tselection::Titem> allRasterized(const TportRect& region);
    bool isDrawn(const TportRect& region, const Tcandidate& candidate, float& depth);

    T3dPort& fPort;
    const TviewScene& fScene;
    const Tway fWay;
    std::vector<Tcandidate> fCandidates;
    std::vector<const float*> fVertices; ///< of the candidates, in scene space without offset
    GLenum fPrimitive = GL_TRIANGLES;
};
