#pragma once

#include <QDockWidget>

class QScrollArea;

/**
 * The panel that takes the controls which commands make, in a column. It is their default parent, and the parent
 * "controls" by name. It shows itself with its first control and hides with the last.
 */
class TcontrolPanel : public QDockWidget
{
    Q_OBJECT

public:
    explicit TcontrolPanel(QWidget* parent);

    bool isEmpty() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followControls();

    QScrollArea* fScroll;
    QWidget* fColumn;
    bool fHadControls = false;
    bool fIsBehind = false;
};
