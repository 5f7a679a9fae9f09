#pragma once

#include <QLayout>

#include <vector>

/**
 * Arranges up to four panes in a panel, in rows and columns of equal size. The configuration says how many are shown
 * and how; the first ones are, the others are hidden. A pane that the host hid itself keeps its place, empty. Sizes are
 * in Qt's device-independent pixels.
 */
class QlirnPaneLayout : public QLayout
{
    Q_OBJECT

public:
    enum Tconfiguration {
        kSingle,     ///< one pane
        kQuad,       ///< four panes in two rows; the last of three takes the whole lower row
        kHorizontal, ///< two panes side by side
        kVertical    ///< two panes, one above the other
    };

    static constexpr int kMaxPanes = 4;

    /** A layout without margins whose panes stand 2 pixels apart, of the configuration kSingle. */
    explicit QlirnPaneLayout(QWidget* parent = nullptr);
    ~QlirnPaneLayout() override;

    /** An unknown value is ignored. */
    void setConfiguration(Tconfiguration configuration);
    Tconfiguration configuration() const { return fConfiguration; }

    /** Appends a pane; false for null, for one that is already in, and for a fifth. */
    bool addPane(QWidget* pane);

    /** The widget of a pane; null when there is no such pane. */
    QWidget* pane(int index) const;

    /** Number of panes that the configuration shows. */
    int shownCount() const;

    /** Takes the item over. A widget beyond the fourth is kept, but stays hidden. */
    void addItem(QLayoutItem* item) override;
    QLayoutItem* itemAt(int index) const override;

    /** Gives the item back, its widget as visible as it was; null when there is no such item. */
    QLayoutItem* takeAt(int index) override;
    int count() const override;

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    Qt::Orientations expandingDirections() const override;

    /** Places the panes shown; a pixel that can't be shared out goes to the last of a row or column. */
    void setGeometry(const QRect& rect) override;

private:
    struct Tpane
    {
        QLayoutItem* item;
        bool hiddenByLayout;
    };

    int rowCount() const;
    int firstOfRow(int row) const;
    QSize totalSize(QSize (QLayoutItem::*size)() const) const;
    void updateVisibility();

    std::vector<Tpane> fPanes;
    Tconfiguration fConfiguration = kSingle;
};
