#include "ui/QlirnPaneLayout.h"

#include <QWidget>

#include <algorithm>

namespace {

constexpr int kPaneSpacing = 2;

int panesOf(QlirnPaneLayout::Tconfiguration configuration)
{
    switch (configuration) {
    case QlirnPaneLayout::kSingle:
        return 1;
    case QlirnPaneLayout::kHorizontal:
    case QlirnPaneLayout::kVertical:
        return 2;
    case QlirnPaneLayout::kQuad:
        return QlirnPaneLayout::kMaxPanes;
    }
    return 0;
}

struct Tspan
{
    int start;
    int length;
};

/** True of a widget that somebody hid; a widget that was never shown may read as hidden too (QWidget::isHidden). */
bool isHiddenExplicitly(const QWidget& widget)
{
    return widget.isHidden() && widget.testAttribute(Qt::WA_WState_ExplicitShowHide);
}

/** The part of a length that falls to one of several equal shares with gaps between them. */
Tspan share(int start, int length, int gap, int index, int shares)
{
    const int each = std::max(0, (length - gap * (shares - 1)) / shares);
    const int offset = index * (each + gap);
    const bool isLast = index == shares - 1;
    return {start + offset, isLast ? std::max(0, length - offset) : each};
}

} // namespace

QlirnPaneLayout::QlirnPaneLayout(QWidget* parent) : QLayout(parent)
{
    setContentsMargins(0, 0, 0, 0);
    setSpacing(kPaneSpacing);
}

QlirnPaneLayout::~QlirnPaneLayout()
{
    for (const Tpane& each : fPanes) {
        delete each.item;
    }
}

void QlirnPaneLayout::setConfiguration(Tconfiguration configuration)
{
    if (configuration == fConfiguration || panesOf(configuration) == 0) {
        return;
    }
    fConfiguration = configuration;
    updateVisibility();
    invalidate();
}

bool QlirnPaneLayout::addPane(QWidget* pane)
{
    if (!pane || count() >= kMaxPanes || indexOf(pane) >= 0) {
        return false;
    }
    addWidget(pane);
    return true;
}

QWidget* QlirnPaneLayout::pane(int index) const
{
    QLayoutItem* item = itemAt(index);
    return item ? item->widget() : nullptr;
}

int QlirnPaneLayout::shownCount() const
{
    return std::min(count(), panesOf(fConfiguration));
}

void QlirnPaneLayout::addItem(QLayoutItem* item)
{
    if (!item) {
        return;
    }
    fPanes.push_back({item, false});
    updateVisibility();
    invalidate();
}

QLayoutItem* QlirnPaneLayout::itemAt(int index) const
{
    return index >= 0 && index < count() ? fPanes[static_cast<std::size_t>(index)].item : nullptr;
}

QLayoutItem* QlirnPaneLayout::takeAt(int index)
{
    QLayoutItem* item = itemAt(index);
    if (item) {
        fPanes.erase(fPanes.begin() + index);
        updateVisibility();
        invalidate();
    }
    return item;
}

int QlirnPaneLayout::count() const
{
    return static_cast<int>(fPanes.size());
}

QSize QlirnPaneLayout::sizeHint() const
{
    return totalSize(&QLayoutItem::sizeHint);
}

QSize QlirnPaneLayout::minimumSize() const
{
    return totalSize(&QLayoutItem::minimumSize);
}

Qt::Orientations QlirnPaneLayout::expandingDirections() const
{
    return Qt::Horizontal | Qt::Vertical;
}

void QlirnPaneLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    const QRect area = rect.marginsRemoved(contentsMargins());
    const int gap = std::max(0, spacing());
    const int rows = rowCount();
    for (int row = 0; row < rows; ++row) {
        const Tspan vertical = share(area.y(), area.height(), gap, row, rows);
        const int first = firstOfRow(row);
        const int columns = firstOfRow(row + 1) - first;
        for (int column = 0; column < columns; ++column) {
            const Tspan horizontal = share(area.x(), area.width(), gap, column, columns);
            itemAt(first + column)
                ->setGeometry(QRect(horizontal.start, vertical.start, horizontal.length, vertical.length));
        }
    }
}

int QlirnPaneLayout::rowCount() const
{
    const int shown = shownCount();
    switch (fConfiguration) {
    case kVertical:
        return shown;
    case kQuad:
        return (shown + 1) / 2;
    default:
        return std::min(shown, 1);
    }
}

int QlirnPaneLayout::firstOfRow(int row) const
{
    const int panesInRow = fConfiguration == kVertical ? 1 : 2;
    return std::min(row * panesInRow, shownCount());
}

QSize QlirnPaneLayout::totalSize(QSize (QLayoutItem::*size)() const) const
{
    const QMargins margins = contentsMargins();
    QSize total(margins.left() + margins.right(), margins.top() + margins.bottom());
    const int rows = rowCount();
    if (rows == 0) {
        return total;
    }
    QSize pane(0, 0);
    for (int index = 0; index < shownCount(); ++index) {
        pane = pane.expandedTo((itemAt(index)->*size)());
    }
    const int gap = std::max(0, spacing());
    const int columns = firstOfRow(1);
    total += QSize(columns * pane.width() + (columns - 1) * gap, rows * pane.height() + (rows - 1) * gap);
    return total;
}

void QlirnPaneLayout::updateVisibility()
{
    const int shown = shownCount();
    for (int index = 0; index < count(); ++index) {
        Tpane& each = fPanes[static_cast<std::size_t>(index)];
        QWidget* widget = each.item->widget();
        if (!widget) {
            continue;
        }
        if (index < shown) {
            if (each.hiddenByLayout) {
                each.hiddenByLayout = false;
                widget->show();
            }
        } else if (!isHiddenExplicitly(*widget)) {
            each.hiddenByLayout = true;
            widget->hide();
        }
    }
}
