#include "TstatePanel.h"

#include "Graphics/3dPort/T3dPort.h"
#include "Tview.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kInterval = 300; // milliseconds; asking the driver waits for what is being drawn

QString shown(const Tstring& value)
{
    return value.isEmpty() ? QStringLiteral("–") : QString::fromLatin1(value.asChar());
}

} // namespace

TstatePanel::TstatePanel(QWidget* parent)
    : QDockWidget(tr("OpenGL state"), parent), fView(new QComboBox), fOther(new QComboBox),
      fOnlyDifferent(new QCheckBox(tr("Differences only"))), fTable(new QTreeWidget), fCount(new QLabel)
{
    auto* content = new QWidget(this);
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(6, 6, 6, 6);
    auto* row = new QHBoxLayout;
    for (QComboBox* box : {fView, fOther})
        box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    row->addWidget(fView);
    row->addWidget(new QLabel(tr("beside")));
    row->addWidget(fOther);
    row->addStretch();
    row->addWidget(fOnlyDifferent);
    column->addLayout(row);
    fTable->header()->setMaximumSectionSize(220); // matrices would leave no room for the values beside
    column->addWidget(fTable, 1);
    column->addWidget(fCount);
    setWidget(content);

    fTable->setRootIsDecorated(false);
    fTable->setColumnCount(3);
    fTable->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    // The window's keys go on working.
    for (QWidget* part : std::initializer_list<QWidget*>{fView, fOther, fOnlyDifferent, fTable})
        part->setFocusPolicy(Qt::NoFocus);

    const auto chosen = QOverload<int>::of(&QComboBox::activated);
    connect(fView, chosen, this, [this] { fill(); });
    connect(fOther, chosen, this, [this] { fill(); });
    connect(fOnlyDifferent, &QCheckBox::toggled, this, [this] { fill(); });
    fTimer.setSingleShot(true);
    fTimer.setInterval(kInterval);
    connect(&fTimer, &QTimer::timeout, this, [this] { fill(); });
}

void TstatePanel::setViews(std::vector<Tview*> views)
{
    fViews = std::move(views);
    fView->clear();
    fOther->clear();
    fOther->addItem(tr("the driver"));
    for (const Tview* view : fViews) {
        fView->addItem(QString::fromLatin1(view->name()));
        fOther->addItem(QString::fromLatin1(view->name()));
    }
    noteDrawn();
}

void TstatePanel::noteDrawn()
{
    if (isVisible() && !fTimer.isActive())
        fTimer.start();
}

void TstatePanel::showEvent(QShowEvent* event)
{
    QDockWidget::showEvent(event);
    noteDrawn();
}

void TstatePanel::fill()
{
    if (fViews.empty())
        return;
    const auto viewAt = [this](int i) { return fViews[static_cast<std::size_t>(std::max(0, i))]; };
    T3dPort& port = viewAt(fView->currentIndex())->port();
    const int other = fOther->currentIndex() - 1;
    const TstateValues recorded = port.recordedState();
    const TstateValues beside = other < 0 ? port.driverState() : viewAt(other)->port().recordedState();
    fTable->setHeaderLabels({tr("State"), fView->currentText(), fOther->currentText()});
    const int count = static_cast<int>(std::min(recorded.size(), beside.size()));
    while (fTable->topLevelItemCount() > count)
        delete fTable->takeTopLevelItem(count);
    int different = 0;
    for (int i = 0; i < count; ++i) {
        QTreeWidgetItem* item = fTable->topLevelItem(i);
        if (!item)
            fTable->addTopLevelItem(item = new QTreeWidgetItem);
        const TstateValue& left = recorded[static_cast<std::size_t>(i)];
        const TstateValue& right = beside[static_cast<std::size_t>(i)];
        const bool differs = !T3dPort::stateDifferences({left}, {right}).isEmpty();
        different += differs ? 1 : 0;
        item->setText(0, shown(left.fName));
        item->setText(1, shown(left.fValue));
        item->setText(2, shown(right.fValue));
        for (int part = 0; part < 3; ++part) {
            item->setToolTip(part, item->text(part));
            item->setBackground(part, differs ? QBrush(QColor(255, 214, 150)) : QBrush());
        }
        item->setHidden(fOnlyDifferent->isChecked() && !differs);
    }
    fCount->setText(count == 0 ? tr("%1 is not on the screen").arg(fOther->currentText())
                               : tr("%1 of %2 states differ").arg(different).arg(count));
}
