#pragma once

#include "Graphics/3dPort/T3dPortGeometryStats.h"
#include "TviewCamera.h"
#include "TviewScene.h"
#include "foundation/Taction.h"

#include <QImage>

#include <functional>
#include <memory>

class QWidget;
class T3dPort;

/** A port, the camera it is seen through, and the commands that its events run. */
class Tview
{
public:
    /** Builds the port's widget under @p parent. Scene and style are the window's, and outlive the view. */
    Tview(QWidget* parent, TviewCamera::Tprojection projection, TviewScene& scene, const TviewScene::Tstyle& style);
    ~Tview();
    Tview(const Tview&) = delete;
    Tview& operator=(const Tview&) = delete;

    const TviewCamera& camera() const { return fCamera; }
    /** "perspective", "top", "front" or "side". */
    const char* name() const;
    /** The widget to put into a layout; null without a display that has GLX. */
    QWidget* widget() const;
    /** Called with true when the pointer comes in, with false when it leaves. */
    void setPointerHook(std::function<void(bool inside)> hook) { fPointerHook = std::move(hook); }

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
    /** The view drawn at @p size in device pixels, whatever the widget's; null on failure. */
    QImage picture(const QSize& size);

private:
    void draw();
    bool press(const Tevent& event);
    bool drag(const Tevent& event);
    double aspect() const;
    double pixelRatio() const;

    TviewScene& fScene;
    const TviewScene::Tstyle& fStyle;
    TviewCamera fCamera;
    bool fFramePending = true;
    QImage fLabel;
    int fLastX = 0;
    int fLastY = 0;
    std::function<void(bool)> fPointerHook;
    std::function<void()> fDrawnHook;
    T3dPortGeometryStats fStatistics;
    TfunctionAction fDraw;
    TfunctionAction fPress;
    TfunctionAction fDrag;
    TfunctionAction fEnter;
    TfunctionAction fExit;
    std::unique_ptr<T3dPort> fPort; ///< after the commands and statistics, which it refers to
};
