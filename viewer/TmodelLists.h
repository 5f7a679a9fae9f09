#pragma once

#include "TobjModel.h"

class T3dPort;

/**
 * The display lists of a model's objects. They are made by the first port that draws them, and shared by all ports; that
 * of a way of drawing when it is first wanted.
 */
class TmodelLists
{
public:
    enum Tway { kFlat, kSmooth, kEdges };

    TmodelLists() = default;
    TmodelLists(const TmodelLists&) = delete;
    TmodelLists& operator=(const TmodelLists&) = delete;

    /** Deletes the lists of the model before. @p model outlives this or the next reset; @p port is made current. */
    void reset(T3dPort& port, const TobjModel* model);
    /** Draws an object at its place in the model (glCallList). The port is current. */
    void draw(Tway way, std::size_t object);

private:
    unsigned makeLists(Tway way) const;

    static constexpr int kWays = 3;
    const TobjModel* fModel = nullptr;
    unsigned fFirst[kWays] = {};
    std::size_t fCount = 0;
};
