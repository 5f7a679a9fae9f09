#include "ui/QlirnPaneLayout.h"

#include "ui_support.h"

#include <QWidget>

#include <vector>

namespace {

class Tpanel : public QWidget
{
public:
    explicit Tpanel(int panes) : fLayout(new QlirnPaneLayout(this))
    {
        for (int index = 0; index < panes; ++index) {
            fPanes.push_back(new QWidget);
            fLayout->addPane(fPanes.back());
        }
    }

    std::vector<QRect> shownRects() const
    {
        std::vector<QRect> rects;
        for (const QWidget* each : fPanes) {
            if (each->isVisible()) {
                rects.push_back(each->geometry());
            }
        }
        return rects;
    }

    QlirnPaneLayout* const fLayout;
    std::vector<QWidget*> fPanes;
};

} // namespace

using QlirnPaneLayoutTest = UiTest;

TEST_F(QlirnPaneLayoutTest, ConfigurationsPlaceAndHidePanes)
{
    struct Tcase {
        QlirnPaneLayout::Tconfiguration configuration;
        int panes;
        std::vector<QRect> rects; // in 101 x 51 pixels with a gap of 3
    };
    const Tcase cases[] = {
        {QlirnPaneLayout::kSingle, 0, {}},
        {QlirnPaneLayout::kSingle, 4, {{0, 0, 101, 51}}},
        {QlirnPaneLayout::kHorizontal, 1, {{0, 0, 101, 51}}},
        {QlirnPaneLayout::kHorizontal, 4, {{0, 0, 49, 51}, {52, 0, 49, 51}}},
        {QlirnPaneLayout::kVertical, 4, {{0, 0, 101, 24}, {0, 27, 101, 24}}},
        {QlirnPaneLayout::kQuad, 4, {{0, 0, 49, 24}, {52, 0, 49, 24}, {0, 27, 49, 24}, {52, 27, 49, 24}}},
        {QlirnPaneLayout::kQuad, 3, {{0, 0, 49, 24}, {52, 0, 49, 24}, {0, 27, 101, 24}}},
        {QlirnPaneLayout::kQuad, 2, {{0, 0, 49, 51}, {52, 0, 49, 51}}},
    };
    for (const Tcase& tested : cases) {
        SCOPED_TRACE(::testing::Message() << "configuration " << tested.configuration << ", panes " << tested.panes);
        Tpanel panel(tested.panes);
        panel.fLayout->setSpacing(3);
        panel.fLayout->setConfiguration(tested.configuration);
        panel.resize(101, 51);
        panel.show();
        EXPECT_EQ(panel.shownRects(), tested.rects);
        EXPECT_EQ(panel.fLayout->shownCount(), int(tested.rects.size()));

        // Changing while visible must lead to the same as starting with it.
        panel.fLayout->setConfiguration(QlirnPaneLayout::kQuad);
        panel.fLayout->setConfiguration(QlirnPaneLayout::kSingle);
        panel.fLayout->setConfiguration(tested.configuration);
        panel.fLayout->activate();
        EXPECT_EQ(panel.shownRects(), tested.rects);
    }
}

TEST_F(QlirnPaneLayoutTest, SharesOutEveryPixelInsideTheMargins)
{
    Tpanel panel(2);
    panel.fLayout->setConfiguration(QlirnPaneLayout::kHorizontal);
    panel.fLayout->setContentsMargins(1, 2, 3, 4);
    panel.fLayout->setGeometry(QRect(10, 20, 105, 50));
    EXPECT_EQ(panel.fPanes[0]->geometry(), QRect(11, 22, 49, 44));
    EXPECT_EQ(panel.fPanes[1]->geometry(), QRect(62, 22, 50, 44));

    for (const QRect& tooSmall : {QRect(), QRect(0, 0, 1, 1), QRect(0, 0, -5, -5)}) {
        panel.fLayout->setGeometry(tooSmall);
        for (const QWidget* pane : panel.fPanes) {
            EXPECT_GE(pane->width(), 0);
            EXPECT_GE(pane->height(), 0);
        }
    }
}

TEST_F(QlirnPaneLayoutTest, SizesFollowTheLargestPaneShown)
{
    Tpanel panel(4);
    const int widths[] = {40, 60, 50, 500};
    for (std::size_t index = 0; index < panel.fPanes.size(); ++index) {
        panel.fPanes[index]->setMinimumSize(widths[index], 30);
    }
    panel.fLayout->setContentsMargins(1, 1, 1, 1);
    const std::pair<QlirnPaneLayout::Tconfiguration, QSize> cases[] = {
        {QlirnPaneLayout::kSingle, {42, 32}},
        {QlirnPaneLayout::kHorizontal, {124, 32}},
        {QlirnPaneLayout::kVertical, {62, 64}},
        {QlirnPaneLayout::kQuad, {1004, 64}},
    };
    for (const auto& [configuration, size] : cases) {
        panel.fLayout->setConfiguration(configuration);
        panel.show();
        EXPECT_EQ(panel.fLayout->minimumSize(), size) << configuration;
        EXPECT_EQ(panel.fLayout->sizeHint(), size) << configuration;
    }
}

TEST_F(QlirnPaneLayoutTest, PanesComeAndGo)
{
    Tpanel panel(4);
    panel.fLayout->setConfiguration(QlirnPaneLayout::kHorizontal);
    panel.show();
    QWidget fifth;
    EXPECT_FALSE(panel.fLayout->addPane(&fifth));
    EXPECT_FALSE(panel.fLayout->addPane(nullptr));
    EXPECT_EQ(panel.fLayout->itemAt(-1), nullptr);
    EXPECT_EQ(panel.fLayout->itemAt(4), nullptr);
    EXPECT_EQ(panel.fLayout->takeAt(4), nullptr);
    EXPECT_EQ(panel.fLayout->pane(4), nullptr);

    // The first hidden pane takes the place of one that was destroyed.
    delete panel.fPanes[0];
    EXPECT_EQ(panel.fLayout->count(), 3);
    EXPECT_EQ(panel.fLayout->pane(0), panel.fPanes[1]);
    EXPECT_TRUE(panel.fPanes[2]->isVisible());
    EXPECT_FALSE(panel.fPanes[3]->isVisible());
    EXPECT_FALSE(panel.fLayout->addPane(panel.fPanes[2]));

    panel.fLayout->removeWidget(panel.fPanes[2]);
    EXPECT_TRUE(panel.fPanes[3]->isVisible());

    // What the host hid itself is not shown by a configuration.
    panel.fPanes[3]->hide();
    panel.fLayout->setConfiguration(QlirnPaneLayout::kSingle);
    panel.fLayout->setConfiguration(QlirnPaneLayout::kQuad);
    EXPECT_FALSE(panel.fPanes[3]->isVisible());
}
