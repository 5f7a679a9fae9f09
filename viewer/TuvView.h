#pragma once

#include "Graphics/interaction/TuvCacheArray.h"
#include "foundation/Taction.h"

#include <QImage>

#include <memory>

class QWidget;
class Tevent;
class TinteractivePort;
class TobjModel;
class TviewScene;

/**
 * A port that shows how a model lies in texture space: its polygons as wire, their corners as points, the faces picked in
 * the scene filled, and under them the texture, if there is one. Any button pans, the wheel zooms about the pointer.
 */
class TuvView
{
public:
    /** The scene outlives the view. */
    TuvView(QWidget* parent, TviewScene& scene);
    ~TuvView();
    TuvView(const TuvView&) = delete;
    TuvView& operator=(const TuvView&) = delete;

    /** Null without a display that has GLX. */
    QWidget* widget() const;
    void setWire(bool on);
    void setPoints(bool on);
    /** Takes the texture coordinates of the scene's model, and shows all of them. */
    void takeModel();
    /** Shows the unit square and all texture coordinates. */
    void frame();
    void update();
    /** The view drawn at @p size in device pixels, whatever the widget's; null on failure. */
    QImage picture(const QSize& size);

private:
    void draw();
    void drawSquares();
    void drawTexture();
    void drawPicked();
    bool press(const Tevent& event);
    bool drag(const Tevent& event);
    double unitsPerPixel() const;

    TviewScene& fScene;
    TuvCacheArray fLayouts;
    bool fWire = true;
    bool fPoints = true;
    float fLower[2] = {0, 0};
    float fUpper[2] = {1, 1};
    bool fFramePending = true;
    double fCentre[2] = {0.5, 0.5};
    double fHeight = 1; ///< of texture space in the picture
    int fLastX = 0;
    int fLastY = 0;
    TfunctionAction fDraw;
    TfunctionAction fPress;
    TfunctionAction fDrag;
    std::unique_ptr<TinteractivePort> fPort;
};
