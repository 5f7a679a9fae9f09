#include "TviewerWindow.h"

#include "TcontrolPanel.h"
#include "TscriptConsole.h"
#include "TstatePanel.h"
#include "TuvView.h"
#include "TviewportCmd.h"
#include "pictures.h"
#include "ui/QlirnPaneLayout.h"

#include <QAction>
#include <QCheckBox>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kProgressInterval = 40; // milliseconds
constexpr int kMessageTime = 5000;
constexpr int kConsoleHeight = 190;
constexpr TviewCamera::Tprojection kProjections[] = {TviewCamera::kPerspective, TviewCamera::kTop, TviewCamera::kFront,
                                                     TviewCamera::kSide};

QColor gapColour()
{
    return QColor(24, 26, 29);
}

} // namespace

TviewerWindow::TviewerWindow(const QSize& size, const TviewScene::Tstyle& style, bool fourViews)
    : fSize(size), fStyle(style), fArea(new QWidget(this)), fPanes(new QlirnPaneLayout(fArea)), fModelLabel(new QLabel),
      fCountLabel(new QLabel), fPickLabel(new QLabel), fViewLabel(new QLabel), fProgressBar(new QProgressBar),
      fConsole(new TscriptConsole), fConsoleDock(new QDockWidget(tr("Console"), this)),
      fControls(new TcontrolPanel(this))
{
    setWindowTitle(QStringLiteral("portview"));
    setFocusPolicy(Qt::StrongFocus);
    fArea->setMinimumSize(64, 48);
    QPalette palette = fArea->palette();
    palette.setColor(QPalette::Window, gapColour());
    fArea->setPalette(palette);
    fArea->setAutoFillBackground(true);
    setCentralWidget(fArea);

    fProgressBar->setMaximumWidth(180);
    fProgressBar->setRange(0, 100);
    fProgressBar->hide();
    statusBar()->addWidget(fModelLabel);
    statusBar()->addWidget(fCountLabel);
    statusBar()->addWidget(fProgressBar);
    statusBar()->addPermanentWidget(fPickLabel);
    statusBar()->addPermanentWidget(fViewLabel);
    statusBar()->addPermanentWidget(new QLabel(tr("h: keys")));

    fProgressTimer.setInterval(kProgressInterval);
    connect(&fProgressTimer, &QTimer::timeout, this, [this] {
        fProgressBar->setValue(fProgress.fPercent);
        fProgressBar->show();
    });

    fTool.setChangedHook([this] {
        showSelection();
        updateAll();
    });
    addView(TviewCamera::kPerspective);
    setFourViews(fourViews);
    makeConsole();
    addDockWidget(Qt::LeftDockWidgetArea, fControls);
    TviewportCmd::setWindow(this);

    const double ratio = devicePixelRatioF();
    QSize wanted(static_cast<int>(std::ceil(size.width() / ratio)), static_cast<int>(std::ceil(size.height() / ratio)));
    wanted.rheight() += statusBar()->sizeHint().height();
    resize(screen() ? wanted.boundedTo(screen()->availableSize()) : wanted);
}

TviewerWindow::~TviewerWindow()
{
    stopLoading();
    if (fStatePanel)
        fStatePanel->setViews({});
    // The ports go before the widgets around them.
    fViews.clear();
    fUvView.reset();
}

void TviewerWindow::open(const QString& path)
{
    stopLoading();
    fModelLabel->setText(tr("Loading %1").arg(QFileInfo(path).fileName()));
    fProgress.fPercent = 0;
    fProgress.fCancelled = false;
    fProgressTimer.start();
    fLoader = std::thread([this, path] {
        std::string reason;
        auto model = TobjModel::load(QFile::encodeName(path).toStdString(), fProgress, reason);
        if (fProgress.fCancelled)
            return;
        QMetaObject::invokeMethod(
            this, [this, model, path, reason] { loaded(model, path, QString::fromStdString(reason)); },
            Qt::QueuedConnection);
    });
}

void TviewerWindow::openBuiltIn()
{
    show(TobjModel::torusKnot(), tr("Torus knot"));
    Q_EMIT opened();
}

void TviewerWindow::stopLoading()
{
    fProgress.fCancelled = true;
    if (fLoader.joinable())
        fLoader.join();
    fProgressTimer.stop();
    fProgressBar->hide();
}

void TviewerWindow::loaded(std::shared_ptr<const TobjModel> model, const QString& path, const QString& reason)
{
    stopLoading();
    if (!model) {
        Q_EMIT failed(path, reason);
        return;
    }
    show(std::move(model), QFileInfo(path).completeBaseName());
    Q_EMIT opened();
}

void TviewerWindow::show(std::shared_ptr<const TobjModel> model, const QString& name)
{
    fModelLabel->setText(tr("%1:").arg(name));
    setWindowTitle(tr("%1 - portview").arg(name));
    fScene.setModel(std::move(model), name.toStdString());
    showSelection();
    fBrush.setOn(false);
    if (!fScene.model()->texturePath().empty() && fScene.texture().isEmpty()) {
        const QString path = QFile::decodeName(fScene.model()->texturePath().c_str());
        const QString problem = setTexture(path);
        if (!problem.isEmpty())
            statusBar()->showMessage(tr("Cannot read %1: %2").arg(path, problem), kMessageTime);
    }
    if (fUvView)
        fUvView->takeModel();
    frameAll();
}

void TviewerWindow::addView(TviewCamera::Tprojection projection)
{
    auto view = std::make_unique<Tview>(fArea, projection, fScene, fStyle, fTool, fBrush);
    view->setPaintedHook([this] { updateAll(); });
    view->setPointerHook([this, shown = view.get()](bool inside) {
        fViewLabel->setText(inside ? QString::fromLatin1(shown->name()) : QString());
    });
    view->setDrawnHook([this, drawn = view.get()] {
        showCounts(drawn->statistics());
        if (fStatePanel)
            fStatePanel->noteDrawn();
    });
    fPanes->addPane(view->widget());
    fViews.push_back(std::move(view));
}

bool TviewerWindow::hasFourViews() const
{
    return fPanes->configuration() == QlirnPaneLayout::kQuad;
}

void TviewerWindow::setFourViews(bool four)
{
    if (four == hasFourViews())
        return;
    fPanes->setConfiguration(four ? QlirnPaneLayout::kQuad : QlirnPaneLayout::kSingle);
    while (four && fViews.size() < std::size(kProjections))
        addView(kProjections[fViews.size()]);
    for (const auto& view : fViews)
        view->setLabelled(four);
    listViews();
    updateAll();
}

QString TviewerWindow::setTexture(const QString& path)
{
    QString problem = fScene.texture().load(path);
    if (problem.isEmpty()) {
        fStyle.fSurface = TviewScene::kTextured;
        updateAll();
    }
    return problem;
}

void TviewerWindow::setFilter(TmodelTexture::Tfilter filter)
{
    fScene.texture().setFilter(filter);
    updateAll();
}

void TviewerWindow::setBrush(bool on)
{
    if (on && (!fScene.model() || fScene.model()->triangleUvs().empty())) {
        statusBar()->showMessage(tr("The model has no texture coordinates to paint by"), kMessageTime);
        return;
    }
    fBrush.setOn(on);
    statusBar()->showMessage(on ? tr("Left drag paints") : tr("Left drag picks"), kMessageTime);
    TviewScene::Tstyle style = fStyle;
    if (on)
        style.fSurface = TviewScene::kTextured;
    setStyle(style);
}

bool TviewerWindow::showsUvs() const
{
    return fShowsUvs;
}

void TviewerWindow::setShowsUvs(bool shows)
{
    if (shows && !fUvDock)
        makeUvPanel();
    fShowsUvs = shows;
    if (fUvDock)
        fUvDock->setVisible(shows);
}

void TviewerWindow::makeUvPanel()
{
    fUvDock = new QDockWidget(tr("Texture coordinates"), this);
    auto* panel = new QWidget(fUvDock);
    auto* column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    fUvView = std::make_unique<TuvView>(panel, fScene);
    if (QWidget* canvas = fUvView->widget()) {
        canvas->setMinimumSize(200, 200);
        column->addWidget(canvas, 1);
    }
    auto* row = new QHBoxLayout;
    row->setContentsMargins(6, 0, 6, 6);
    const auto addBox = [&](const QString& text, void (TuvView::*set)(bool)) {
        auto* box = new QCheckBox(text);
        box->setFocusPolicy(Qt::NoFocus);
        box->setChecked(true);
        connect(box, &QCheckBox::toggled, this, [this, set](bool on) { (fUvView.get()->*set)(on); });
        row->addWidget(box);
    };
    addBox(tr("Wire"), &TuvView::setWire);
    addBox(tr("Points"), &TuvView::setPoints);
    row->addStretch();
    auto* all = new QPushButton(tr("Show all"));
    all->setFocusPolicy(Qt::NoFocus);
    connect(all, &QPushButton::clicked, this, [this] { fUvView->frame(); });
    row->addWidget(all);
    column->addLayout(row);
    fUvDock->setWidget(panel);
    addDockWidget(Qt::RightDockWidgetArea, fUvDock);
    resizeDocks({fUvDock}, {width() * 2 / 5}, Qt::Horizontal);
    // The user may close the dock by its own button.
    connect(fUvDock->toggleViewAction(), &QAction::triggered, this, [this](bool on) { fShowsUvs = on; });
    fUvView->takeModel();
}

void TviewerWindow::makeConsole()
{
    fConsoleDock->setWidget(fConsole);
    addDockWidget(Qt::BottomDockWidgetArea, fConsoleDock);
    resizeDocks({fConsoleDock}, {kConsoleHeight}, Qt::Vertical);
    fConsoleDock->hide();
    connect(fConsole, &TscriptConsole::left, this, [this] { setShowsConsole(false); });
    connect(fConsole, &TscriptConsole::reported, this, [this](const QString& message) {
        if (!showsConsole())
            statusBar()->showMessage(tr("%1 (` shows the console)").arg(message), kMessageTime);
    });
}

bool TviewerWindow::showsConsole() const
{
    return !fConsoleDock->isHidden();
}

void TviewerWindow::setShowsConsole(bool shows)
{
    fConsoleDock->setVisible(shows);
    if (shows)
        fConsole->takeFocus();
    else
        setFocus();
}

void TviewerWindow::runScript(const QString& path)
{
    if (!fConsole->runFile(path))
        setShowsConsole(true);
}

void TviewerWindow::setShowsState(bool shows)
{
    if (shows && !fStatePanel) {
        fStatePanel = new TstatePanel(this);
        addDockWidget(Qt::RightDockWidgetArea, fStatePanel);
        resizeDocks({fStatePanel}, {width() / 2}, Qt::Horizontal);
        listViews();
    }
    if (fStatePanel)
        fStatePanel->setVisible(shows);
}

void TviewerWindow::listViews()
{
    if (!fStatePanel)
        return;
    std::vector<Tview*> views;
    for (const auto& view : fViews)
        if (views.empty() || hasFourViews())
            views.push_back(view.get());
    fStatePanel->setViews(std::move(views));
}

void TviewerWindow::setStyle(const TviewScene::Tstyle& style)
{
    fStyle = style;
    if (fStyle.fSurface == TviewScene::kTextured && fScene.texture().isEmpty())
        fScene.texture().makeBoard();
    updateAll();
}

void TviewerWindow::frameAll()
{
    for (const auto& view : fViews)
        view->frame();
}

void TviewerWindow::updateAll()
{
    for (const auto& view : fViews)
        view->update();
    if (fUvView)
        fUvView->update();
}

QImage TviewerWindow::picture()
{
    if (!fShowsUvs)
        return viewsPicture(fSize, true);
    const int gap = std::max(1, static_cast<int>(std::lround(fPanes->spacing() * devicePixelRatioF())));
    const int left = std::max(1, (fSize.width() - gap) * 3 / 5);
    const QImage views = viewsPicture(QSize(left, fSize.height()), true);
    const QImage layout = fUvView->picture(QSize(std::max(1, fSize.width() - gap - left), fSize.height()));
    if (views.isNull() || layout.isNull())
        return QImage();
    QImage image(fSize, QImage::Format_RGB32);
    image.fill(gapColour());
    QPainter painter(&image);
    painter.drawImage(0, 0, views);
    painter.drawImage(left + gap, 0, layout);
    return image;
}

QImage TviewerWindow::viewsPicture(const QSize& size, bool framed)
{
    const int shown = hasFourViews() ? 4 : 1;
    const int gap =
        shown == 1 ? 0 : std::max(1, static_cast<int>(std::lround(fPanes->spacing() * devicePixelRatioF())));
    const auto spanOf = [&](int index, int length, int& start) {
        const int first = (length - gap) / 2;
        start = index == 0 ? 0 : first + gap;
        return shown == 1 ? length : index == 0 ? first : length - start;
    };
    QImage image(size, QImage::Format_RGB32);
    image.fill(gapColour());
    QPainter painter(&image);
    for (int i = 0; i < shown; ++i) {
        QPoint at;
        const int width = spanOf(i % 2, size.width(), at.rx());
        const int height = spanOf(i / 2, size.height(), at.ry());
        Tview& view = *fViews[static_cast<std::size_t>(i)];
        const QImage part = view.picture(QSize(width, height), framed);
        if (part.isNull())
            return QImage();
        painter.drawImage(at, part);
    }
    return image;
}

QImage TviewerWindow::shown()
{
    const double ratio = devicePixelRatioF();
    const auto toPixels = [ratio](const QPoint& p) {
        return QPoint(static_cast<int>(std::lround(p.x() * ratio)), static_cast<int>(std::lround(p.y() * ratio)));
    };
    const QPoint corner = toPixels(QPoint(fArea->width(), fArea->height()));
    QImage image(corner.x(), corner.y(), QImage::Format_RGB32);
    image.fill(gapColour());
    const std::size_t count = hasFourViews() ? fViews.size() : 1;
    for (std::size_t i = 0; i < count; ++i) {
        if (!fViews[i]->addShown(image, toPixels(fViews[i]->widget()->pos())))
            return QImage();
    }
    return image;
}

void TviewerWindow::saveShown()
{
    QString name;
    for (int number = 1; name.isEmpty() || QFileInfo::exists(name); ++number)
        name = QStringLiteral("portview-%1.png").arg(number);
    const QString problem = writePicture(shown(), name);
    statusBar()->showMessage(problem.isEmpty() ? tr("Saved %1").arg(QFileInfo(name).absoluteFilePath()) : problem,
                             kMessageTime);
}

void TviewerWindow::showCounts(const T3dPortGeometryStats& counted)
{
    if (counted.fTmeshes == 0) {
        fCountLabel->clear();
        return;
    }
    const QLocale locale;
    QString text =
        tr("%1 faces,  %2 edges,  %3 vertices")
            .arg(locale.toString(counted.fFaces), locale.toString(counted.fEdges), locale.toString(counted.fVerts));
    if (counted.fTriangles)
        text += tr(",  %1 triangles").arg(locale.toString(counted.fTriangles));
    fCountLabel->setText(text);
}

void TviewerWindow::showSelection()
{
    const Tselection& selection = fScene.selection();
    QString text;
    if (selection.items().size() == 1) {
        const Tselection::Titem& item = selection.items().front();
        const QString object = QString::fromStdString(fScene.objectName(item.fObject)).simplified();
        const QString kinds[] = {tr("%2"), tr("face %1 of %2"), tr("vertex %1 of %2")};
        text = selection.kind() == Tselection::kObjects ? object
                                                        : kinds[selection.kind()].arg(item.fElement + 1).arg(object);
    } else if (!selection.isEmpty()) {
        const QString kinds[] = {tr("%1 objects"), tr("%1 faces"), tr("%1 vertices")};
        text = kinds[selection.kind()].arg(QLocale().toString(static_cast<qulonglong>(selection.items().size())));
    }
    if (fTool.way() == Tpicker::kRasterization)
        text += text.isEmpty() ? tr("rasterized picking") : tr(" (rasterized)");
    fPickLabel->setText(text);
}

void TviewerWindow::showKeys()
{
    auto* box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowTitle(tr("Keys"));
    box->setTextFormat(Qt::RichText);
    box->setText(
        tr("<table cellpadding=3>"
           "<tr><td><b>click</b></td><td>pick an object, with shift a face, with control a vertex</td></tr>"
           "<tr><td><b>left drag</b></td><td>pick all in the marquee; on an arrow, move what is picked</td></tr>"
           "<tr><td><b>right drag, alt left drag</b></td><td>tumble</td></tr>"
           "<tr><td><b>middle drag</b></td><td>track</td></tr>"
           "<tr><td><b>wheel, alt right drag</b></td><td>dolly</td></tr>"
           "<tr><td><b>f</b></td><td>frame what is picked, else the model</td></tr>"
           "<tr><td><b>r</b></td><td>pick by selection, by rasterization</td></tr>"
           "<tr><td><b>w, d, s</b></td><td>wire, flat, smooth shading</td></tr>"
           "<tr><td><b>e</b></td><td>edges over the shading</td></tr>"
           "<tr><td><b>g</b></td><td>ghosted</td></tr>"
           "<tr><td><b>x</b></td><td>x-ray</td></tr>"
           "<tr><td><b>l</b></td><td>the lamp</td></tr>"
           "<tr><td><b>t</b></td><td>clay, texture, sphere map, cube map</td></tr>"
           "<tr><td><b>1, 2, 3</b></td><td>texels as they are, mixed, with smaller pictures</td></tr>"
           "<tr><td><b>b</b></td><td>paint on the texture with the left button</td></tr>"
           "<tr><td><b>v</b></td><td>marks at the vertices</td></tr>"
           "<tr><td><b>n</b></td><td>names, and measures of what is picked</td></tr>"
           "<tr><td><b>i</b></td><td>renderer, time of a picture, counts</td></tr>"
           "<tr><td><b>c</b></td><td>the next colour of the wire</td></tr>"
           "<tr><td><b>p</b></td><td>save what is on the screen</td></tr>"
           "<tr><td><b>u</b></td><td>the texture coordinates</td></tr>"
           "<tr><td><b>k</b></td><td>the controls that scripts have made</td></tr>"
           "<tr><td><b>`, F2</b></td><td>the script console</td></tr>"
           "<tr><td><b>o</b></td><td>the views' OpenGL state, beside the driver's or another view's</td></tr>"
           "<tr><td><b>space</b></td><td>one view, four views</td></tr>"
           "<tr><td><b>h, F1</b></td><td>this table</td></tr>"
           "<tr><td><b>Esc</b></td><td>pick nothing; then quit</td></tr>"
           "<tr><td><b>q</b></td><td>quit</td></tr>"
           "</table>"));
    box->setStandardButtons(QMessageBox::Close);
    box->open();
}

void TviewerWindow::keyPressEvent(QKeyEvent* event)
{
    TviewScene::Tstyle style = fStyle;
    switch (event->key()) {
    case Qt::Key_F:
        frameAll();
        return;
    case Qt::Key_W:
        style.fShading = TviewScene::kWire;
        break;
    case Qt::Key_D:
        style.fShading = TviewScene::kFlat;
        break;
    case Qt::Key_S:
        style.fShading = TviewScene::kSmooth;
        break;
    case Qt::Key_E:
        style.fEdges = !style.fEdges;
        break;
    case Qt::Key_G:
        style.fGhosted = !style.fGhosted;
        break;
    case Qt::Key_X:
        style.fXray = !style.fXray;
        break;
    case Qt::Key_L:
        style.fLamp = !style.fLamp;
        break;
    case Qt::Key_Space:
        setFourViews(!hasFourViews());
        return;
    case Qt::Key_H:
    case Qt::Key_F1:
        showKeys();
        return;
    case Qt::Key_T:
        style.fSurface = static_cast<TviewScene::Tsurface>((style.fSurface + 1) % TviewScene::kSurfaces);
        break;
    case Qt::Key_1:
    case Qt::Key_2:
    case Qt::Key_3:
        setFilter(static_cast<TmodelTexture::Tfilter>(event->key() - Qt::Key_1));
        statusBar()->showMessage(QStringList{tr("Texels as they are"), tr("Texels mixed"),
                                             tr("Texels mixed, smaller pictures far away")}[event->key() - Qt::Key_1],
                                 kMessageTime);
        return;
    case Qt::Key_B:
        setBrush(!fBrush.isOn());
        return;
    case Qt::Key_V:
        style.fMarks = !style.fMarks;
        break;
    case Qt::Key_N:
        style.fLabels = !style.fLabels;
        break;
    case Qt::Key_I:
        style.fHud = !style.fHud;
        break;
    case Qt::Key_C:
        style.fWireIndex = static_cast<unsigned short>(style.fWireIndex % TviewScene::kWireColours + 1);
        break;
    case Qt::Key_P:
        saveShown();
        return;
    case Qt::Key_U:
        setShowsUvs(!showsUvs());
        return;
    case Qt::Key_K:
        fControls->setVisible(fControls->isHidden());
        return;
    case Qt::Key_QuoteLeft:
    case Qt::Key_F2: // there are keyboards on which the other only makes accents
        setShowsConsole(!showsConsole());
        return;
    case Qt::Key_O:
        setShowsState(!fStatePanel || !fStatePanel->isVisible());
        return;
    case Qt::Key_R:
        fTool.setWay(fTool.way() == Tpicker::kSelection ? Tpicker::kRasterization : Tpicker::kSelection);
        showSelection();
        return;
    case Qt::Key_Escape:
        if (!fScene.selection().isEmpty()) {
            fScene.select(Tselection::kObjects, {});
            showSelection();
            updateAll();
            return;
        }
        [[fallthrough]];
    case Qt::Key_Q:
        close();
        return;
    default:
        QMainWindow::keyPressEvent(event);
        return;
    }
    setStyle(style);
}
