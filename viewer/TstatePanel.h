#pragma once

#include <QDockWidget>
#include <QTimer>

#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QTreeWidget;
class Tview;

/** Shows the OpenGL state that a view's port recorded beside that of the driver or of another view, and what differs. */
class TstatePanel : public QDockWidget
{
public:
    explicit TstatePanel(QWidget* parent);

    /** The views to choose from, in place of those before. */
    void setViews(std::vector<Tview*> views);
    /** To be called after a view was drawn: while the panel is shown, it is brought up to date soon after. */
    void noteDrawn();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fill();

    std::vector<Tview*> fViews;
    QComboBox* fView;
    QComboBox* fOther; ///< the driver, then the views
    QCheckBox* fOnlyDifferent;
    QTreeWidget* fTable;
    QLabel* fCount;
    QTimer fTimer;
};
