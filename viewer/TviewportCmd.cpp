#include "TviewportCmd.h"

#include "TcommandLine.h"
#include "TviewerWindow.h"
#include "commandEngine/TfailedException.h"
#include "commandEngine/TmetaCommandActionRegistration.h"
#include "commandEngine/commandFlags.h"
#include "foundation/Tangle.h"
#include "pictures.h"

#include <QPointer>

#include <cmath>

namespace {

TmetaCommandActionRegistration<TviewportCmd> gViewportCmd("viewport");

constexpr char kShading[] = "-sh";
constexpr char kSurface[] = "-sf";
constexpr char kWireIndex[] = "-wi";
constexpr char kFourViews[] = "-fv";
constexpr char kCamera[] = "-cam";
constexpr char kTumble[] = "-tu";
constexpr char kFrame[] = "-fr";
constexpr char kSnapshot[] = "-ss";
constexpr char kSize[] = "-sz";

const QStringList& shadings()
{
    static const QStringList all{"wire", "flat", "smooth"};
    return all;
}

const QStringList& surfaces()
{
    static const QStringList all{"clay", "texture", "sphere", "cube"};
    return all;
}

const QStringList& cameras()
{
    static const QStringList all{TviewCamera::nameOf(TviewCamera::kPerspective), TviewCamera::nameOf(TviewCamera::kTop),
                                 TviewCamera::nameOf(TviewCamera::kFront), TviewCamera::nameOf(TviewCamera::kSide)};
    return all;
}

struct Tswitch
{
    const char* shortName;
    const char* longName;
    bool TviewScene::Tstyle::*field;
};
constexpr Tswitch kSwitches[] = {
    {"-ed", "-edges", &TviewScene::Tstyle::fEdges}, {"-gh", "-ghosted", &TviewScene::Tstyle::fGhosted},
    {"-xr", "-xray", &TviewScene::Tstyle::fXray},   {"-lp", "-lamp", &TviewScene::Tstyle::fLamp},
    {"-mk", "-marks", &TviewScene::Tstyle::fMarks}, {"-lb", "-labels", &TviewScene::Tstyle::fLabels},
    {"-hud", "-hud", &TviewScene::Tstyle::fHud},
};

QPointer<TviewerWindow>& windowPointer()
{
    static QPointer<TviewerWindow> window;
    return window;
}

TviewerWindow& window()
{
    if (!windowPointer())
        throw TfailedException("There is no window.");
    return *windowPointer();
}

/** The place of a flag's word in a list. */
int choice(const TargParser& args, const char* flag, const char* what, const QStringList& words)
{
    const QString word = QString::fromUtf8(args.string(flag).asChar());
    const auto index = words.indexOf(word);
    if (index < 0) {
        throw TfailedException(QStringLiteral("The %1 is one of %2, not \"%3\".")
                                   .arg(QString::fromLatin1(what), words.join(QStringLiteral(", ")), word)
                                   .toStdString());
    }
    return index;
}

int inRange(int value, int least, int most, const char* what)
{
    if (value < least || value > most)
        throw TfailedException(QStringLiteral("%1 is from %2 to %3, not %4.")
                                   .arg(QString::fromLatin1(what))
                                   .arg(least)
                                   .arg(most)
                                   .arg(value)
                                   .toStdString());
    return value;
}

} // namespace

void TviewportCmd::setWindow(TviewerWindow* window)
{
    windowPointer() = window;
}

bool TviewportCmd::appendSyntax()
{
    flags().setMaxObjects(0);
    bool added = TiceBaseCmd::appendSyntax() && flags().addFlag(kELFeditFlag, kELFeditFlagLong) &&
                 flags().addFlag(kELFqueryFlag, kELFqueryFlagLong) &&
                 flags().addFlag(kShading, "-shading", Tsyntax::kString) &&
                 flags().addFlag(kSurface, "-surface", Tsyntax::kString) &&
                 flags().addFlag(kWireIndex, "-wireIndex", Tsyntax::kInteger) &&
                 flags().addFlag(kFourViews, "-fourViews", Tsyntax::kBoolean) &&
                 flags().addFlag(kCamera, "-camera", Tsyntax::kString) &&
                 flags().addFlag(kTumble, "-tumble", Tsyntax::kDouble, Tsyntax::kDouble) &&
                 flags().addFlag(kFrame, "-frame") && flags().addFlag(kSnapshot, "-snapshot", Tsyntax::kString) &&
                 flags().addFlag(kSize, "-size", Tsyntax::kInteger, Tsyntax::kInteger);
    for (const Tswitch& each : kSwitches)
        added = added && flags().addFlag(each.shortName, each.longName, Tsyntax::kBoolean);
    return added;
}

void TviewportCmd::readStyle(TviewScene::Tstyle& style) const
{
    if (args().uses(kShading))
        style.fShading = static_cast<TviewScene::Tshading>(choice(args(), kShading, "shading", shadings()));
    if (args().uses(kSurface))
        style.fSurface = static_cast<TviewScene::Tsurface>(choice(args(), kSurface, "surface", surfaces()));
    if (args().uses(kWireIndex))
        style.fWireIndex = static_cast<unsigned short>(
            inRange(args().integer(kWireIndex), 1, TviewScene::kWireColours, "The index of the wire"));
    for (const Tswitch& each : kSwitches) {
        if (args().uses(each.shortName))
            style.*each.field = args().boolean(each.shortName);
    }
}

std::optional<TviewCamera::Tprojection> TviewportCmd::readCamera() const
{
    if (!args().uses(kCamera))
        return std::nullopt;
    return static_cast<TviewCamera::Tprojection>(choice(args(), kCamera, "camera", cameras()));
}

int TviewportCmd::doEditFlags()
{
    TviewerWindow& window = ::window();
    TviewScene::Tstyle style = window.style();
    readStyle(style);
    const auto projection = readCamera();
    if (args().uses(kSize)) {
        if (!args().uses(kSnapshot))
            throw TfailedException("The size is that of a snapshot, which is missing.");
        for (const unsigned side : {0u, 1u})
            inRange(args().integer(kSize, side), TcommandLine::kMinSide, TcommandLine::kMaxSide,
                    "A side of a snapshot");
    }

    window.setStyle(style);
    if (args().uses(kFourViews))
        window.setFourViews(args().boolean(kFourViews));
    Tview& view = window.firstView();
    if (projection) {
        view.setCamera(TviewCamera(*projection));
        view.frame();
    }
    if (args().uses(kTumble)) {
        TviewCamera camera = view.camera();
        camera.tumble(Tangle::fromDegrees(args().real(kTumble, 0)).radians,
                      Tangle::fromDegrees(args().real(kTumble, 1)).radians);
        view.setCamera(camera);
    }
    if (args().uses(kFrame))
        window.frameAll();
    if (args().uses(kSnapshot))
        writeSnapshot();
    return 1;
}

void TviewportCmd::writeSnapshot() const
{
    QSize size = window().pictureSize();
    if (args().uses(kSize))
        size = QSize(args().integer(kSize, 0), args().integer(kSize, 1));
    const QString problem =
        writePicture(window().shownViews(size), QString::fromUtf8(args().string(kSnapshot).asChar()));
    if (!problem.isEmpty())
        throw TfailedException(problem.toStdString());
}

int TviewportCmd::doQueryFlags()
{
    TviewerWindow& window = ::window();
    const TviewScene::Tstyle& style = window.style();
    const auto word = [this](const QString& text) { setResult(Tstring(text.toStdString())); };
    if (args().isFlagSet(kShading)) {
        word(shadings().at(style.fShading));
        return 1;
    }
    if (args().isFlagSet(kSurface)) {
        word(surfaces().at(style.fSurface));
        return 1;
    }
    if (args().isFlagSet(kWireIndex)) {
        setResult(int(style.fWireIndex));
        return 1;
    }
    if (args().isFlagSet(kFourViews)) {
        setResult(window.hasFourViews());
        return 1;
    }
    if (args().isFlagSet(kCamera)) {
        word(QString::fromLatin1(window.firstView().name()));
        return 1;
    }
    for (const Tswitch& each : kSwitches) {
        if (args().isFlagSet(each.shortName)) {
            setResult(style.*each.field);
            return 1;
        }
    }
    throw TfailedException("There is no flag that could be queried.");
}
