#pragma once

#include "Tenvironment.h"
#include "TmodelLists.h"
#include "TmodelTexture.h"
#include "TobjModel.h"
#include "TsceneLights.h"
#include "Tselection.h"
#include "TviewCamera.h"

#include <QImage>

#include <memory>
#include <string>
#include <vector>

class T3dPort;

/**
 * What the views show: background, ground grid, model, what is selected of it, lamp and the little axes. The model and
 * the grids lie in display lists, made by the first port that draws them and shared by all of them.
 */
class TviewScene
{
public:
    enum Tshading { kWire, kFlat, kSmooth };
    enum Tsurface {
        kClay,
        kTextured,
        kSphereMapped, ///< reflects surroundings that turn with the camera
        kCubeMapped    ///< reflects surroundings that stay
    };
    static constexpr int kSurfaces = 4;

    struct Tstyle
    {
        Tshading fShading = kSmooth;
        Tsurface fSurface = kClay;
        bool fEdges = false;           ///< the polygons' edges over flat or smooth shading
        bool fGhosted = false;         ///< every other pixel of the faces
        bool fXray = false;            ///< the faces as thin glass, of opacity T3dPort::fsXrayAlpha
        bool fLamp = false;            ///< shows the lamp beside the model
        bool fMarks = false;           ///< a mark at each vertex
        bool fLabels = false;          ///< the objects' names, and the measures of what is selected
        bool fHud = false;             ///< the renderer, the time that the last picture took and what is in it
        unsigned short fWireIndex = 1; ///< colour of the wire in the model-view colour table, 1 to kWireColours
    };

    static constexpr unsigned short kWireColours = 8;

    /** Fills the model-view colour table with the colours of the wire. */
    TviewScene();
    TviewScene(const TviewScene&) = delete;
    TviewScene& operator=(const TviewScene&) = delete;

    /** Null shows the ground alone. @p name stands for a model whose only object has none. */
    void setModel(std::shared_ptr<const TobjModel> model, const std::string& name = std::string());
    /** What the user knows an object by. */
    std::string objectName(std::size_t object) const;
    const TobjModel* model() const { return fModel.get(); }

    TmodelTexture& texture() { return fTexture; }
    const Tselection& selection() const { return fSelection; }
    void select(Tselection::Tkind kind, std::vector<Tselection::Titem> items);
    /** A sphere around an object where it is, in scene space. */
    struct Tsphere
    {
        T4dDblVector fCentre;
        double fRadius = 0;
    };
    /** One for each object of the model. */
    const std::vector<Tsphere>& spheres() const { return fSpheres; }
    /** How far an object of the model was moved from its place. */
    const T4dDblVector& offset(std::size_t object) const { return fOffsets[object]; }
    void setOffset(std::size_t object, const T4dDblVector& offset);

    /** The box around everything, in scene space. */
    void wholeBox(T4dDblVector& lower, T4dDblVector& upper) const;
    /** The box around what is selected; that around everything when nothing is. */
    void selectionBox(T4dDblVector& lower, T4dDblVector& upper) const;

    /** Loads the camera's matrices into the port, for drawing, picking and mapping. */
    void loadCamera(T3dPort& port, const TviewCamera& camera) const;

    /**
     * Draws into the port, all but the swap; its recorded state is in force afterwards. Counts the model in the port's
     * geometry statistics, if they are enabled. Leaves the camera's matrices in the port.
     * @param label  drawn into the upper left corner; may be null
     * @param pixelRatio  device pixels for each pixel of the lines and the axes
     */
    void draw(T3dPort& port, const TviewCamera& camera, const Tstyle& style, const QImage& label, double pixelRatio);

private:
    /** A plane of two coordinates, and the lines in it. */
    struct Tgrid
    {
        unsigned fList = 0;
        int fU = 0;
        int fV = 0;
    };

    void prepareLists(T3dPort& port);
    void makeGridList(Tgrid& grid);
    void drawObjects(T3dPort& port, TmodelLists::Tway way);
    void drawObject(T3dPort& port, TmodelLists::Tway way, std::size_t object);
    const Tgrid& gridFor(const TviewCamera& camera) const;

    void drawBackground(T3dPort& port);
    void drawGrid(T3dPort& port, const TviewCamera& camera);
    void applySurface(T3dPort& port, const TviewCamera& camera, Tsurface surface);
    void drawFilled(T3dPort& port, const TviewCamera& camera, const Tstyle& style);
    void drawEdges(T3dPort& port, const TviewCamera& camera, const Tstyle& style, double pixelRatio);
    void drawSelection(T3dPort& port, double pixelRatio);
    void drawLabel(T3dPort& port, const QImage& label, double pixelRatio);
    void count(T3dPort& port, const Tstyle& style) const;

    TsceneLights fLights;
    std::shared_ptr<const TobjModel> fModel;
    std::string fModelName;
    std::vector<T4dDblVector> fOffsets;
    std::vector<Tsphere> fSpheres;
    Tselection fSelection;
    TmodelLists fLists;
    TmodelTexture fTexture;
    Tenvironment fEnvironment;
    bool fListsValid = false;
    double fReach = 1;      ///< radius about the origin of grids and lamp
    double fModelReach = 1; ///< of the model
    Tgrid fGround{0, 0, 2};
    Tgrid fFrontPlane{0, 0, 1};
    Tgrid fSidePlane{0, 2, 1};
};
