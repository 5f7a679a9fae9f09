#include "ui/QlirnWidgetGrp.h"

#include <QGridLayout>

#include <algorithm>

QlirnWidgetGrp::QlirnWidgetGrp(QWidget* parent, bool withExtraLabel) : QWidget(parent), fLayout(new QGridLayout(this))
{
    fLayout->setContentsMargins(0, 0, 0, 0);
    fLayout->setHorizontalSpacing(4);
    if (withExtraLabel) {
        fExtraLabel = new QlirnLabel(this);
        fLayout->addWidget(fExtraLabel, 0, kMaxColumns + 1);
    }
}

bool QlirnWidgetGrp::addLabel(QlirnLabel* label)
{
    if (!fColumns.empty() || !addControl(label))
        return false;
    fLabel = label;
    return true;
}

bool QlirnWidgetGrp::addControl(QWidget* control)
{
    if (!control || columnCount() == kMaxColumns)
        return false;
    fColumns.push_back({control, -1, false, kBoth});
    place(columnCount());
    return true;
}

QWidget* QlirnWidgetGrp::column(int column) const
{
    return has(column) ? fColumns[column - 1].widget.data() : nullptr;
}

bool QlirnWidgetGrp::setColumnWidth(int column, int width, bool takesExtra)
{
    if (!has(column))
        return false;
    fColumns[column - 1].width = std::clamp(width, 0, QWIDGETSIZE_MAX);
    fColumns[column - 1].takesExtra = takesExtra;
    place(column);
    return true;
}

int QlirnWidgetGrp::columnWidth(int column) const
{
    return has(column) ? fColumns[column - 1].width : -1;
}

bool QlirnWidgetGrp::setColumnAttach(int column, Tattach attach)
{
    if (!has(column))
        return false;
    fColumns[column - 1].attach = attach;
    place(column);
    return true;
}

bool QlirnWidgetGrp::setColumnAlign(int column, Qt::Alignment alignment)
{
    if (!has(column))
        return false;
    if (auto* label = qobject_cast<QLabel*>(fColumns[column - 1].widget))
        label->setAlignment(alignment);
    return true;
}

bool QlirnWidgetGrp::setText(QlirnLabel* label, const Tstring& text)
{
    if (label)
        label->setText(QString::fromUtf8(text.asChar()));
    return label != nullptr;
}

Tstring QlirnWidgetGrp::textOf(const QlirnLabel* label)
{
    return label ? Tstring(label->text().toStdString()) : Tstring();
}

void QlirnWidgetGrp::place(int column)
{
    const Tcolumn& c = fColumns[column - 1];
    if (!c.widget)
        return;
    const Qt::Alignment side = c.attach == kLeft    ? Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter)
                               : c.attach == kRight ? Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter)
                                                    : Qt::Alignment();
    fLayout->addWidget(c.widget, 0, column, side);
    fLayout->setColumnStretch(column, c.takesExtra ? 1 : 0);
    if (c.width < 0)
        return;
    fLayout->setColumnMinimumWidth(column, c.width);
    c.widget->setMinimumWidth(c.attach == kBoth ? c.width : 0);
    c.widget->setMaximumWidth(c.takesExtra ? QWIDGETSIZE_MAX : c.width);
}
