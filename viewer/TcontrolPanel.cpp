#include "TcontrolPanel.h"

#include "commandEngine/TiceControlBaseCmd.h"
#include "ui/TUIInventory.h"

#include <QEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

TcontrolPanel::TcontrolPanel(QWidget* parent)
    : QDockWidget(tr("Controls"), parent), fScroll(new QScrollArea), fColumn(new QWidget)
{
    fColumn->setObjectName(QStringLiteral("controls"));
    auto* layout = new QVBoxLayout(fColumn);
    layout->setAlignment(Qt::AlignTop);
    layout->setContentsMargins(10, 10, 10, 10);
    layout->setSpacing(8);
    fScroll->setFrameShape(QFrame::NoFrame);
    fScroll->setWidgetResizable(true);
    fScroll->setFocusPolicy(Qt::NoFocus);
    fScroll->setWidget(fColumn);
    setWidget(fScroll);
    fColumn->installEventFilter(this);
    gUIInventory->addWidget(fColumn);
    TiceControlBaseCmd::setDefaultParent(fColumn);
    hide();
}

bool TcontrolPanel::isEmpty() const
{
    const auto controls = fColumn->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    return std::all_of(controls.begin(), controls.end(), [](const QWidget* each) { return each->isHidden(); });
}

bool TcontrolPanel::eventFilter(QObject* watched, QEvent* event)
{
    // Not at once: a control that is being made can still fail, and one that is deleted takes its time.
    const bool matters = event->type() == QEvent::ChildAdded || event->type() == QEvent::ChildRemoved ||
                         event->type() == QEvent::LayoutRequest;
    if (watched == fColumn && matters && !fIsBehind) {
        fIsBehind = true;
        QTimer::singleShot(0, this, &TcontrolPanel::followControls);
    }
    return QDockWidget::eventFilter(watched, event);
}

void TcontrolPanel::followControls()
{
    fIsBehind = false;
    const int most = parentWidget() ? parentWidget()->width() / 2 : QWIDGETSIZE_MAX;
    const int wanted = fColumn->minimumSizeHint().width() + fScroll->verticalScrollBar()->sizeHint().width();
    fScroll->setMinimumWidth(std::min(wanted, most));
    // In between the user decides.
    if (fHadControls == isEmpty()) {
        fHadControls = !fHadControls;
        setVisible(fHadControls);
    }
}
