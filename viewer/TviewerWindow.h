#pragma once

#include "Tbrush.h"
#include "TobjModel.h"
#include "TselectTool.h"
#include "Tview.h"
#include "TviewScene.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>
#include <thread>
#include <vector>

class QDockWidget;
class QLabel;
class QlirnPaneLayout;
class TcontrolPanel;
class QProgressBar;
class TscriptConsole;
class TstatePanel;
class TuvView;

/** The window of portview: one view or four of a model, and a status bar. */
class TviewerWindow : public QMainWindow
{
    Q_OBJECT

public:
    /** @param size  of the view area, in device pixels */
    TviewerWindow(const QSize& size, const TviewScene::Tstyle& style, bool fourViews);
    ~TviewerWindow() override;

    /** Loads a file in a thread of its own; opened() or failed() follows. The window can be used meanwhile. */
    void open(const QString& path);
    /** Shows the built-in scene; opened() follows at once. */
    void openBuiltIn();

    /** Runs a file of Python; the console shows itself with what went wrong. */
    void runScript(const QString& path);
    bool showsConsole() const;
    void setShowsConsole(bool shows);
    TscriptConsole& console() { return *fConsole; }

    bool isLoading() const { return fLoader.joinable(); }
    bool hasFourViews() const;
    void setFourViews(bool four);
    /** Shows a picture on the model. Returns what is wrong with the file, without a full stop; empty when nothing is. */
    QString setTexture(const QString& path);
    void setFilter(TmodelTexture::Tfilter filter);
    bool showsUvs() const;
    /** Shows or hides the panel of texture coordinates. */
    void setShowsUvs(bool shows);
    /** Shows or hides the panel of the views' OpenGL state. */
    void setShowsState(bool shows);
    const TviewScene::Tstyle& style() const { return fStyle; }
    void setStyle(const TviewScene::Tstyle& style);

    const TviewScene& scene() const { return fScene; }

    /** What the screen shows of the views; null when that can't be told. */
    QImage shown();
    /** The view area, and the panel of texture coordinates if it is shown, drawn at its size in device pixels as it was asked for; null on failure. */
    QImage picture();
    /** The size that was asked for, in device pixels. */
    QSize pictureSize() const { return fSize; }
    /** The views as their cameras stand, drawn at @p size in device pixels; null on failure. */
    QImage shownViews(const QSize& size) { return viewsPicture(size, false); }
    /** The only one, unless there are four. */
    Tview& firstView() { return *fViews.front(); }
    /** Lets every camera see what is selected, or else everything. */
    void frameAll();

Q_SIGNALS:
    void opened();
    void failed(const QString& path, const QString& reason);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void makeUvPanel();
    void makeConsole();
    void listViews();
    QImage viewsPicture(const QSize& size, bool framed);
    void addView(TviewCamera::Tprojection projection);
    void show(std::shared_ptr<const TobjModel> model, const QString& name);
    void loaded(std::shared_ptr<const TobjModel> model, const QString& path, const QString& reason);
    void stopLoading();
    void updateAll();
    void showCounts(const T3dPortGeometryStats& counted);
    void setBrush(bool on);
    void showSelection();
    void saveShown();
    void showKeys();

    QSize fSize;
    TviewScene fScene;
    TviewScene::Tstyle fStyle;
    TselectTool fTool{fScene};
    Tbrush fBrush{fScene};
    QWidget* fArea;
    QlirnPaneLayout* fPanes;
    QLabel* fModelLabel;
    QLabel* fCountLabel;
    QLabel* fPickLabel;
    QLabel* fViewLabel;
    QProgressBar* fProgressBar;
    std::vector<std::unique_ptr<Tview>> fViews;
    QDockWidget* fUvDock = nullptr; ///< made when first shown
    std::unique_ptr<TuvView> fUvView;
    bool fShowsUvs = false;
    TscriptConsole* fConsole;
    QDockWidget* fConsoleDock;
    TcontrolPanel* fControls;
    TstatePanel* fStatePanel = nullptr; ///< made when first shown

    std::thread fLoader;
    TloadProgress fProgress;
    QTimer fProgressTimer;
};
