#include "TcommandLine.h"

#include "Tscripting.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

namespace {

TcommandLine failed(const QString& sentence)
{
    TcommandLine line;
    line.fRequest = TcommandLine::kError;
    line.fText = sentence;
    return line;
}

/** The side lengths in "960x720"; an empty size for anything else. */
QSize parsedSize(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral("\\A(\\d{1,5})x(\\d{1,5})\\z"));
    const QRegularExpressionMatch match = pattern.match(text);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const auto fits = [](int side) { return side >= TcommandLine::kMinSide && side <= TcommandLine::kMaxSide; };
    return fits(size.width()) && fits(size.height()) ? size : QSize();
}

} // namespace

TcommandLine TcommandLine::parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    // Qt's own options start with one dash.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(QStringLiteral("Shows a polygon model in one view or four."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption snapshot(QStringLiteral("snapshot"), QStringLiteral("Write a picture and exit."),
                                      QStringLiteral("OUT.png"));
    const QCommandLineOption gallery(QStringLiteral("gallery"),
                                     QStringLiteral("Write a picture of everything that a port draws, and exit."),
                                     QStringLiteral("DIR"));
    const QCommandLineOption size(QStringLiteral("size"),
                                  QStringLiteral("Size of the view area in device pixels, %1 to %2 each way (960x720).")
                                      .arg(kMinSide)
                                      .arg(kMaxSide),
                                  QStringLiteral("WxH"));
    const QCommandLineOption shading(QStringLiteral("shading"), QStringLiteral("Start with this shading (smooth)."),
                                     QStringLiteral("wire|flat|smooth"));
    const QCommandLineOption texture(QStringLiteral("texture"), QStringLiteral("Show a picture on the model."),
                                     QStringLiteral("IMAGE"));
    const QCommandLineOption surface(QStringLiteral("surface"), QStringLiteral("Start with this surface (clay)."),
                                     QStringLiteral("clay|texture|sphere|cube"));
    const QCommandLineOption filter(QStringLiteral("filter"),
                                    QStringLiteral("Start with this filter of the texture (mipmapped)."),
                                    QStringLiteral("nearest|linear|mipmapped"));
    const QCommandLineOption ghosted(QStringLiteral("ghosted"), QStringLiteral("Start with every other pixel drawn."));
    const QCommandLineOption xray(QStringLiteral("xray"), QStringLiteral("Start with a model of glass."));
    const QCommandLineOption edges(QStringLiteral("edges"), QStringLiteral("Start with edges over the shading."));
    const QCommandLineOption lamp(QStringLiteral("lamp"), QStringLiteral("Start with the lamp in the picture."));
    const QCommandLineOption views(QStringLiteral("views"), QStringLiteral("Start with one view or four (one)."),
                                   QStringLiteral("one|four"));
    const QCommandLineOption uvs(QStringLiteral("uvs"), QStringLiteral("Start with the texture coordinates shown."));
    const QCommandLineOption marks(QStringLiteral("marks"), QStringLiteral("Start with marks at the vertices."));
    const QCommandLineOption labels(QStringLiteral("labels"), QStringLiteral("Start with the objects' names."));
    const QCommandLineOption hud(QStringLiteral("hud"), QStringLiteral("Start with renderer, time and counts shown."));
    parser.addOptions({snapshot, gallery, size, shading, texture, surface, filter, ghosted, xray, edges, lamp, marks,
                       labels, hud, views, uvs});
    const QCommandLineOption script(
        QStringLiteral("script"),
        QStringLiteral("Run Python when the model is there, before the picture of --snapshot."),
        QStringLiteral("FILE.py"));
    if (hasPython())
        parser.addOption(script);
    for (const char* name : {"platform", "display", "style"}) {
        QCommandLineOption option(QString::fromLatin1(name), QString(), QStringLiteral("name"));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
    parser.addPositionalArgument(QStringLiteral("MODEL.obj"), QStringLiteral("The model; without one, a torus knot."),
                                 QStringLiteral("[MODEL.obj]"));

    if (!parser.parse(arguments)) {
        const QString text = parser.errorText();
        return failed(text.left(1).toLower() + text.mid(1) +
                      (text.endsWith(QLatin1Char('.')) ? QString() : QStringLiteral(".")));
    }

    TcommandLine line;
    if (parser.isSet(help)) {
        line.fRequest = kHelp;
        line.fText = parser.helpText();
        return line;
    }
    if (parser.isSet(version)) {
        line.fRequest = kVersion;
        line.fText = QStringLiteral("portview %1\n").arg(QCoreApplication::applicationVersion());
        return line;
    }

    const QStringList models = parser.positionalArguments();
    if (models.size() > 1)
        return failed(QStringLiteral("one model at a time, please; \"%1\" is one too many.").arg(models.at(1)));
    line.fModel = models.value(0);
    if (models.size() == 1 && line.fModel.isEmpty())
        return failed(QStringLiteral("the name of the model is empty."));

    line.fSnapshot = parser.value(snapshot);
    if (parser.isSet(snapshot) && line.fSnapshot.isEmpty())
        return failed(QStringLiteral("--snapshot needs the name of a file."));

    if (hasPython()) {
        line.fScript = parser.value(script);
        if (parser.isSet(script) && line.fScript.isEmpty())
            return failed(QStringLiteral("--script needs the name of a file."));
    }

    line.fGallery = parser.value(gallery);
    if (parser.isSet(gallery) && line.fGallery.isEmpty())
        return failed(QStringLiteral("--gallery needs the name of a folder."));
    if (parser.isSet(gallery) && (parser.isSet(snapshot) || !line.fScript.isEmpty() || !models.isEmpty()))
        return failed(QStringLiteral("--gallery draws scenes of its own, without a model, --snapshot and --script."));

    if (parser.isSet(size)) {
        line.fSize = parsedSize(parser.value(size));
        if (line.fSize.isEmpty()) {
            return failed(QStringLiteral("--size takes WIDTHxHEIGHT, each from %1 to %2, not \"%3\".")
                              .arg(kMinSide)
                              .arg(kMaxSide)
                              .arg(parser.value(size)));
        }
    }

    const QString wantedShading = parser.isSet(shading) ? parser.value(shading) : QStringLiteral("smooth");
    if (wantedShading == QLatin1String("wire"))
        line.fStyle.fShading = TviewScene::kWire;
    else if (wantedShading == QLatin1String("flat"))
        line.fStyle.fShading = TviewScene::kFlat;
    else if (wantedShading != QLatin1String("smooth"))
        return failed(QStringLiteral("--shading takes wire, flat or smooth, not \"%1\".").arg(wantedShading));
    line.fTexture = parser.value(texture);
    if (parser.isSet(texture) && line.fTexture.isEmpty())
        return failed(QStringLiteral("--texture needs the name of an image file."));
    const QStringList surfaces{QStringLiteral("clay"), QStringLiteral("texture"), QStringLiteral("sphere"),
                               QStringLiteral("cube")};
    if (parser.isSet(surface)) {
        const auto index = surfaces.indexOf(parser.value(surface));
        if (index < 0)
            return failed(QStringLiteral("--surface takes clay, texture, sphere or cube, not \"%1\".")
                              .arg(parser.value(surface)));
        line.fStyle.fSurface = static_cast<TviewScene::Tsurface>(index);
    } else if (parser.isSet(texture)) {
        line.fStyle.fSurface = TviewScene::kTextured;
    }
    const QStringList filters{QStringLiteral("nearest"), QStringLiteral("linear"), QStringLiteral("mipmapped")};
    if (parser.isSet(filter)) {
        const auto index = filters.indexOf(parser.value(filter));
        if (index < 0)
            return failed(
                QStringLiteral("--filter takes nearest, linear or mipmapped, not \"%1\".").arg(parser.value(filter)));
        line.fFilter = static_cast<TmodelTexture::Tfilter>(index);
    }
    line.fStyle.fGhosted = parser.isSet(ghosted);
    line.fStyle.fXray = parser.isSet(xray);
    line.fStyle.fEdges = parser.isSet(edges);
    line.fStyle.fLamp = parser.isSet(lamp);
    line.fStyle.fMarks = parser.isSet(marks);
    line.fStyle.fLabels = parser.isSet(labels);
    line.fStyle.fHud = parser.isSet(hud);

    const QString wantedViews = parser.isSet(views) ? parser.value(views) : QStringLiteral("one");
    if (wantedViews == QLatin1String("four"))
        line.fFourViews = true;
    else if (wantedViews != QLatin1String("one"))
        return failed(QStringLiteral("--views takes one or four, not \"%1\".").arg(wantedViews));

    line.fUvs = parser.isSet(uvs);

    line.fPlatform = parser.value(QStringLiteral("platform"));
    line.fDisplay = parser.value(QStringLiteral("display"));
    return line;
}
