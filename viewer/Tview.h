#pragma once

#include "Graphics/3dPort/T3dPortGeometryStats.h"
#include "TviewCamera.h"
#include "TviewScene.h"
#include "foundation/Taction.h"

#include <QImage>

#include <functional>
#include <memory>

class QWidget;
class Tbrush;
class TinteractivePort;
class Tpoint;
class TselectTool;
class T3dPort;

/**
 * A port, the camera it is seen through, and the handlers of its events: alt with the left, middle and right button
 * tumbles, tracks and dollies; the middle button alone tracks, the right one tumbles, the wheel dollies. The left button
 * is the tool's.
 */
class Tview
{
public:
    /** Builds the port's widget under @p parent. Scene, style and tool are the window's, and outlive the view. */
    Tview(QWidget* parent, TviewCamera::Tprojection projection, TviewScene& scene, const TviewScene::Tstyle& style,
          TselectTool& tool, Tbrush& brush);
    ~Tview();
    Tview(const Tview&) = delete;
    Tview& operator=(const Tview&) = delete;

    const TviewCamera& camera() const { return fCamera; }
    void setCamera(const TviewCamera& camera);
    T3dPort& port();
    /** Loads the camera into the port, for picking and mapping between two paintings. */
    void loadCamera();
    /** Device pixels for each of Qt's. */
    double pixelRatio() const;
    /** That of the camera's projection. */
    const char* name() const;
    /** The widget to put into a layout, a panel of the program; null without a display that has GLX. */
    QWidget* widget() const;
    /** Called with true when the pointer comes in, with false when it leaves. */
    void setPointerHook(std::function<void(bool inside)> hook) { fPointerHook = std::move(hook); }

    /** Called after the texture was painted on. */
    void setPaintedHook(std::function<void()> hook) { fPaintedHook = std::move(hook); }
    /** Called after each drawing. */
    void setDrawnHook(std::function<void()> hook) { fDrawnHook = std::move(hook); }
    /** What the last drawing drew of the model. */
    const T3dPortGeometryStats& statistics() const { return fStatistics; }

    /** Writes the view's name into its corner, or not. */
    void setLabelled(bool labelled);
    /** Lets the camera see the whole scene, with the next drawing: only then the shape of the picture is known. */
    void frame();
    /** Asks for a repaint. */
    void update();
    /**
     * Shows the view with something drawn over it. The scene is drawn for the first time only; later ones put it back from
     * the port's backing store, until endDrawingOver.
     */
    void drawOver(const std::function<void()>& drawing);
    void endDrawingOver();
    /** Adds what the view shows on the screen to @p picture, at @p at; false when the port can't tell. */
    bool addShown(QImage& picture, const QPoint& at);
    /**
     * The view drawn at @p size in device pixels, whatever the widget's; null on failure. The camera stays, unless
     * @p framed asks for the whole scene.
     */
    QImage picture(const QSize& size, bool framed);

private:
    enum Tmotion { kNoMotion, kTumble, kTrack, kDolly, kTool, kBrush };

    void draw();
    void drawScene();
    void drawHud();
    bool press(const Tevent& event);
    bool drag(const Tevent& event);
    bool release(const Tevent& event);
    Tmotion motionOf(const Tevent& event) const;
    /** The pixel under the pointer, in the port's counting. */
    Tpoint pixelOf(const Tevent& event) const;
    double aspect() const;

    TviewScene& fScene;
    const TviewScene::Tstyle& fStyle;
    TselectTool& fTool;
    Tbrush& fBrush;
    TviewCamera fCamera;
    Tmotion fMotion = kNoMotion;
    bool fFramePending = true;
    QImage fLabel;
    int fLastX = 0;
    int fLastY = 0;
    std::function<void(bool)> fPointerHook;
    std::function<void()> fPaintedHook;
    std::function<void()> fDrawnHook;
    T3dPortGeometryStats fStatistics;
    double fMilliseconds = 0; ///< that the last picture took
    TfunctionAction fDraw;
    TfunctionAction fPress;
    TfunctionAction fDrag;
    TfunctionAction fRelease;
    TfunctionAction fEnter;
    TfunctionAction fExit;
    std::unique_ptr<TinteractivePort> fPort; ///< after the commands and statistics, which it refers to
};
