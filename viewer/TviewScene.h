#pragma once

#include "TobjModel.h"
#include "TsceneLights.h"
#include "TviewCamera.h"

#include <QImage>

#include <memory>

class T3dPort;

/**
 * What the views show: background, ground grid, model, lamp and the little axes. The model and the grids lie in display
 * lists, made by the first port that draws them and shared by all of them.
 */
class TviewScene
{
public:
    enum Tshading { kWire, kFlat, kSmooth };

    struct Tstyle
    {
        Tshading fShading = kSmooth;
        bool fEdges = false;   ///< the polygons' edges over flat or smooth shading
        bool fGhosted = false; ///< every other pixel of the faces
        bool fXray = false;    ///< the faces as thin glass, of opacity T3dPort::fsXrayAlpha
        bool fLamp = false;    ///< shows the lamp beside the model
    };

    TviewScene() = default;
    TviewScene(const TviewScene&) = delete;
    TviewScene& operator=(const TviewScene&) = delete;

    /** Null shows the ground alone. */
    void setModel(std::shared_ptr<const TobjModel> model);
    const TobjModel* model() const { return fModel.get(); }

    /** The box to frame, in scene space. */
    T4dDblVector lower() const;
    T4dDblVector upper() const { return -lower(); }

    /**
     * Draws into the port, all but the swap; its recorded state is in force afterwards. Counts the model in the port's
     * geometry statistics, if they are enabled.
     * @param label  drawn into the upper left corner; may be null
     * @param pixelRatio  device pixels for each pixel of the lines and the axes
     */
    void draw(T3dPort& port, const TviewCamera& camera, const Tstyle& style, const QImage& label, double pixelRatio);

private:
    /** A plane of two coordinates, and the lines in it. */
    struct Tgrid
    {
        unsigned fList = 0;
        int fU;
        int fV;
    };

    void prepareLists(T3dPort& port);
    void makeEdgeList();
    void makeGridList(Tgrid& grid);
    unsigned fillList(bool smooth);
    const Tgrid& gridFor(const TviewCamera& camera) const;

    void drawBackground(T3dPort& port);
    void drawGrid(T3dPort& port, const TviewCamera& camera);
    void drawFilled(T3dPort& port, const Tstyle& style);
    void drawEdges(T3dPort& port, const TviewCamera& camera, const Tstyle& style, double pixelRatio);
    void drawLabel(T3dPort& port, const QImage& label, double pixelRatio);
    void count(T3dPort& port, const Tstyle& style) const;

    TsceneLights fLights;
    std::shared_ptr<const TobjModel> fModel;
    bool fListsValid = false;
    unsigned fFillLists[2] = {}; ///< flat and smooth, made when first drawn
    unsigned fEdgeList = 0;
    double fReach = 1; ///< radius about the origin of everything drawn
    Tgrid fGround{0, 0, 2};
    Tgrid fFrontPlane{0, 0, 1};
    Tgrid fSidePlane{0, 2, 1};
};
