#pragma once

#include "foundation/Tstring.h"
#include "ui/QlirnLabel.h"

#include <QPointer>
#include <QWidget>

#include <vector>

class QGridLayout;

/**
 * Controls side by side that the user takes for one. Columns count from 1; a label, if there is one, is the first. An
 * extra label stands behind all columns and is none of them. Widths are in Qt's device-independent pixels. Calls for a
 * column that does not exist change nothing and return false.
 */
class QlirnWidgetGrp : public QWidget
{
    Q_OBJECT

public:
    enum Tattach {
        kLeft,  ///< as wide as it wants to be, at the left edge of its column
        kRight, ///< the same at the right edge
        kBoth   ///< as wide as its column
    };

    static constexpr int kMaxColumns = 8;

    explicit QlirnWidgetGrp(QWidget* parent = nullptr, bool withExtraLabel = false);

    /** Makes @p label, which is taken over, the group's label; it must come before every other column. */
    bool addLabel(QlirnLabel* label);
    /** Appends a column for @p control, which is taken over. */
    bool addControl(QWidget* control);

    /** False, and nothing changes, when the group was made without the label meant. Null has no text either. */
    bool setLabelText(const Tstring& text) { return setText(fLabel, text); }
    bool setExtraLabelText(const Tstring& text) { return setText(fExtraLabel, text); }
    Tstring labelText() const { return textOf(fLabel); }
    Tstring extraLabelText() const { return textOf(fExtraLabel); }

    int columnCount() const { return static_cast<int>(fColumns.size()); }
    /** The column's control, null for one that is gone. */
    QWidget* column(int column) const;

    /**
     * @param width  0 to QWIDGETSIZE_MAX, others are brought there
     * @param takesExtra  the width is the least one, and the column gets what the group has to spare
     */
    bool setColumnWidth(int column, int width, bool takesExtra = false);
    /** The width set last, -1 for none. */
    int columnWidth(int column) const;
    bool setColumnAttach(int column, Tattach attach);
    /** Where in its column a text stands; other controls have no such thing. */
    bool setColumnAlign(int column, Qt::Alignment alignment);

Q_SIGNALS:
    /** The user has changed the group's value and is done with it. */
    void groupChangeCompleted();

private:
    struct Tcolumn
    {
        QPointer<QWidget> widget;
        int width = 0;
        bool takesExtra = false;
        Tattach attach{};
    };

    static bool setText(QlirnLabel* label, const Tstring& text);
    static Tstring textOf(const QlirnLabel* label);
    bool has(int column) const { return column >= 1 && column <= columnCount(); }
    void place(int column);

    QGridLayout* fLayout;
    QPointer<QlirnLabel> fLabel;
    QPointer<QlirnLabel> fExtraLabel;
    std::vector<Tcolumn> fColumns;
};
