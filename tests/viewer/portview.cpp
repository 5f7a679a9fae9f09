#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

const char kBoxCorners[] = "v -1 0 -1\nv 1 0 -1\nv 1 2 -1\nv -1 2 -1\nv -1 0 1\nv 1 0 1\nv 1 2 1\nv -1 2 1\n";
const char kBoxFaces[] = "f 1 4 3 2\nf 5 6 7 8\nf 1 2 6 5\nf 3 4 8 7\nf 1 5 8 4\nf 2 3 7 6\n";

class Portview : public ::testing::Test
{
protected:
    struct Tresult
    {
        int status;
        QString output;
        QString complaint;
    };

    QString path(const char* name) const { return fFolder.filePath(QString::fromLatin1(name)); }

    QString write(const char* name, const QByteArray& text) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }

    static Tresult run(const QStringList& arguments, const QProcessEnvironment& environment)
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(PORTVIEW_PROGRAM), arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        Tresult result{process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()), QString()};
        // Qt has its own remarks about the surroundings.
        for (const QString& line : QString::fromLocal8Bit(process.readAllStandardError()).split(QLatin1Char('\n'))) {
            if (!line.startsWith(QLatin1String("QStandardPaths")) && !line.isEmpty())
                result.complaint += line + QLatin1Char('\n');
        }
        return result;
    }

    static QProcessEnvironment auditing()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LIRN_DEBUG_Q3DPORT_STATE"), QStringLiteral("1"));
        return environment;
    }

    /** The picture of a model of which nothing must be said. */
    QImage picture(const QString& model, const QStringList& options)
    {
        QFile::remove(path("out.png"));
        const Tresult result =
            run(QStringList{model, QStringLiteral("--snapshot"), path("out.png")} + options, auditing());
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.output.toStdString(), "") << "state that the port did not record";
        EXPECT_EQ(result.complaint.toStdString(), "");
        return QImage(path("out.png")).convertToFormat(QImage::Format_RGB32);
    }

    QTemporaryDir fFolder;
};

int difference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)), std::abs(qBlue(a) - qBlue(b))});
}

int differingPixels(const QImage& a, const QImage& b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += difference(a.pixel(x, y), b.pixel(x, y)) > 12;
    }
    return count;
}

} // namespace

TEST_F(Portview, SnapshotsShowTheModel)
{
    const QString box = write("box.obj", QByteArray(kBoxCorners) + kBoxFaces);
    // The same box to frame, but nothing to fill.
    const QString nothing = write("nothing.obj", QByteArray(kBoxCorners) + "f 1 7 7\n");
    const QSize sizes[] = {QSize(320, 240), QSize(161, 300)};
    const char* views[] = {"one", "four"};
    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(views[i]);
        const QStringList options{
            QStringLiteral("--size"), QStringLiteral("%1x%2").arg(sizes[i].width()).arg(sizes[i].height()),
            QStringLiteral("--views"), QString::fromLatin1(views[i]), QStringLiteral("--shading")};
        const QImage flat = picture(box, options + QStringList{QStringLiteral("flat")});
        const QImage wire = picture(box, options + QStringList{QStringLiteral("wire")});
        const QImage empty = picture(nothing, options + QStringList{QStringLiteral("flat")});
        for (const QImage* each : {&flat, &wire, &empty})
            ASSERT_EQ(each->size(), sizes[i]);

        const int all = flat.width() * flat.height();
        const int filled = differingPixels(flat, empty);
        const int lines = differingPixels(wire, empty);
        EXPECT_GT(filled, all / 6);
        EXPECT_LT(filled, all * 9 / 10);
        EXPECT_GT(lines, all / 200);
        EXPECT_LT(lines, filled / 3);
        const QPoint middle = views[i][0] == 'o' ? flat.rect().center() : flat.rect().center() / 2;
        EXPECT_GT(difference(flat.pixel(middle), empty.pixel(middle)), 25);
    }
}

TEST_F(Portview, WaysOfShowingDifferWhereTheModelIs)
{
    const QString box = write("box.obj", QByteArray(kBoxCorners) + kBoxFaces);
    const QStringList size{QStringLiteral("--size"), QStringLiteral("240x180")};
    const QString nothing = write("nothing.obj", QByteArray(kBoxCorners) + "f 1 7 7\n");
    const QImage plain = picture(box, size);
    const QImage empty = picture(nothing, size);
    const int filled = differingPixels(plain, empty);
    const struct
    {
        const char* option;
        double least; ///< of the model's pixels that differ from the plain picture
        double most;
        double leastSeen; ///< of the model's pixels that differ from the empty picture
        double mostSeen;
    } cases[] = {
        {"--ghosted", 0.4, 0.6, 0.4, 0.6}, // every other pixel
        {"--xray", 0.4, 1.1, 0.5, 1.1},    // thinner, everywhere
        {"--surface=sphere", 0.8, 1.1, 0.5, 1.1}, {"--surface=cube", 0.8, 1.1, 0.5, 1.1},
        {"--marks", 0.001, 0.05, 0.9, 1.1},       {"--labels", 0.001, 0.2, 0.9, 1.2},
        {"--hud", 0.01, 0.7, 0.9, 1.7},           {"--edges", 0.01, 0.15, 0.9, 1.1},
        {"--lamp", 0.001, 0.2, 0.9, 1.2},         {"--shading=flat", 0, 0.9, 0.9, 1.1},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.option);
        const QImage other = picture(box, size + QStringList{QString::fromLatin1(each.option)});
        const double differing = differingPixels(other, plain) / double(filled);
        EXPECT_GE(differing, each.least);
        EXPECT_LE(differing, each.most);
        const double seen = differingPixels(other, empty) / double(filled);
        EXPECT_GE(seen, each.leastSeen);
        EXPECT_LE(seen, each.mostSeen);
    }
}

TEST_F(Portview, TexturesComeFromTheMaterialOrTheCommandLine)
{
    QImage halves(64, 64, QImage::Format_RGB32);
    halves.fill(Qt::red);
    for (int y = 0; y < 64; ++y)
        std::fill_n(reinterpret_cast<QRgb*>(halves.scanLine(y)) + 32, 32, qRgb(0, 0, 255));
    ASSERT_TRUE(halves.save(path("halves.png")));
    write("square.mtl", "newmtl paint\nmap_Kd halves.png\n");
    const QByteArray square = "v -1 0 0\nv 1 0 0\nv 1 2 0\nv -1 2 0\nvt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\n";
    const QByteArray face = "usemtl paint\nf 1/1 2/2 3/3 4/4\n";
    const QString plain = write("plain.obj", square + face);
    const QString painted = write("painted.obj", "mtllib square.mtl\n" + square + face);
    const QStringList size{QStringLiteral("--size"), QStringLiteral("240x180")};
    const QImage byHand = picture(plain, size + QStringList{QStringLiteral("--texture"), path("halves.png")});
    EXPECT_EQ(picture(painted, size), byHand);
    const QPoint middle = byHand.rect().center();
    const QRgb left = byHand.pixel(middle - QPoint(25, 0));
    const QRgb right = byHand.pixel(middle + QPoint(25, 0));
    EXPECT_GT(qRed(left), 2 * qBlue(left));
    EXPECT_GT(qBlue(right), 2 * qRed(right));
    EXPECT_NE(picture(plain, size), byHand);
}

TEST_F(Portview, GalleryHasAPictureOfEverything)
{
    const QString folder = path("new/pictures");
    const Tresult result = run({QStringLiteral("--gallery"), folder}, auditing());
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output.toStdString(), "") << "state that the port did not record";
    EXPECT_EQ(result.complaint.toStdString(), "");
    const QString expected = QStringLiteral(
        "points lines rect-wire rect-filled circle-wire circle-filled arc-wire arc-filled box-wire box-filled "
        "cone-wire cone-filled cone-outlined sphere-wire sphere-filled cylinder-wire cylinder-filled cylinder-capped "
        "ring octahedron-wire octahedron-filled tetrahedron-wire tetrahedron-filled line-dashed polygon-halftone "
        "text-center-box markers light-spot lit-scene nurbs-patch gallery");
    const QStringList files = QDir(folder).entryList({QStringLiteral("*.png")});
    for (const QString& name : expected.split(QLatin1Char(' ')))
        EXPECT_TRUE(files.contains(name + QStringLiteral(".png"))) << name.toStdString();
    std::vector<QImage> seen;
    for (const QString& file : files) {
        const QImage image = QImage(QDir(folder).filePath(file)).convertToFormat(QImage::Format_RGB32);
        ASSERT_FALSE(image.isNull()) << file.toStdString();
        QImage blank(image.size(), QImage::Format_RGB32);
        blank.fill(image.pixel(0, 0));
        EXPECT_GT(differingPixels(image, blank), image.width() * image.height() / 100) << file.toStdString();
        EXPECT_EQ(std::count(seen.begin(), seen.end(), image), 0) << file.toStdString() << " is drawn twice";
        seen.push_back(image);
    }
}

#ifdef PORTVIEW_PYTHON
TEST_F(Portview, ScriptsRunBeforeTheSnapshot)
{
    const QString box = write("box.obj", QByteArray(kBoxCorners) + kBoxFaces);
    const QStringList size{QStringLiteral("--size"), QStringLiteral("240x180")};
    const QString script = write("top.py", "from lirn import viewport\nviewport(shading='wire', tumble=(30, 10))\n"
                                           "assert viewport(q=True, camera=True) == 'perspective'\n"
                                           "viewport(camera='top', edges=True)\n");
    const QImage wire = picture(box, size + QStringList{"--shading", "wire"});
    const QImage scripted = picture(box, size + QStringList{"--script", script});
    EXPECT_GT(differingPixels(wire, scripted), 100);

    const QString failing = write("failing.py", "print('so far')\nlirn.viewport(camera='below')\n");
    QFile::remove(path("out.png"));
    const Tresult result = run({box, "--snapshot", path("out.png"), "--script", failing}, auditing());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output.toStdString(), "so far\n");
    EXPECT_TRUE(result.complaint.startsWith(QStringLiteral("portview: the script %1 failed.\n").arg(failing)));
    EXPECT_TRUE(result.complaint.contains("perspective, top, front, side, not \"below\""));
    EXPECT_FALSE(QFile::exists(path("out.png")));
}
#endif

TEST_F(Portview, FailuresAreOneSentenceAndStatus1)
{
    const QProcessEnvironment normal = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment noDisplay = normal;
    noDisplay.remove(QStringLiteral("DISPLAY"));
    noDisplay.remove(QStringLiteral("QT_QPA_PLATFORM"));
    QProcessEnvironment wrongDisplay = noDisplay;
    wrongDisplay.insert(QStringLiteral("DISPLAY"), QStringLiteral(":4711"));
    QProcessEnvironment offscreen = normal;
    offscreen.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));

    const QString missing = path("missing.obj");
    const QString broken = write("broken.obj", QByteArray(kBoxCorners) + "f 1 2 99999999999\n");
    const struct
    {
        QStringList arguments;
        QProcessEnvironment environment;
        QString complaint;
    } cases[] = {
        {{missing}, normal, QStringLiteral("portview: cannot open %1: No such file or directory.\n").arg(missing)},
        {{broken},
         normal,
         QStringLiteral("portview: cannot open %1: line 9: the index in \"99999999999\" is too large.\n").arg(broken)},
#ifdef PORTVIEW_PYTHON
        {{"--script", "/nowhere/a.py"},
         normal,
         QStringLiteral("portview: cannot read /nowhere/a.py: No such file or directory.\n")},
        {{"--script", "/tmp"}, normal, QStringLiteral("portview: cannot read /tmp: Is a directory.\n")},
#endif
        {{"--snapshot", "/nowhere/out.png"},
         normal,
         QStringLiteral("portview: cannot write /nowhere/out.png: No such file or directory.\n")},
        {{"--snapshot", "/dev/full"},
         normal,
         QStringLiteral("portview: cannot write /dev/full: No space left on device.\n")},
        {{"--gallery", "/dev/null/pictures"},
         normal,
         QStringLiteral("portview: cannot make the folder /dev/null/pictures.\n")},
        {{"--shading", "round"},
         noDisplay,
         QStringLiteral("portview: --shading takes wire, flat or smooth, not \"round\". See portview --help.\n")},
        {{}, noDisplay, QStringLiteral("portview: there is no X display, DISPLAY is not set.\n")},
        {{}, wrongDisplay, QStringLiteral("portview: cannot connect to the X display \":4711\".\n")},
        {{},
         offscreen,
         QStringLiteral("portview: drawing needs X11, that is Qt's platform \"xcb\" instead of \"offscreen\".\n")},
    };
    for (const auto& each : cases) {
        const Tresult result = run(each.arguments, each.environment);
        EXPECT_EQ(result.status, 1) << each.complaint.toStdString();
        EXPECT_EQ(result.complaint.toStdString(), each.complaint.toStdString());
        EXPECT_EQ(result.output.toStdString(), "");
    }
}
