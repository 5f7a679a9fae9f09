// Draws the pictures of the guide:  guide-samples [--pictures FOLDER] [--python FILE] [NAME...]

#include "Sample.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/Q3dPort.h"
#include "commandEngine/TiceControlBaseCmd.h"
#include "foundation/Taction.h"
#include "foundation/TresourceMap.h"
#include "pictures.h"
#ifdef HAS_PYTHON
#include "script/TpythonInterpreter.h"
#endif

#include <QApplication>
#include <QDir>
#include <QMap>
#include <QPainter>
#include <QSet>
#include <QVBoxLayout>

#include <cstdio>

namespace {

QMap<QString, std::function<QImage()>>& samples()
{
    static QMap<QString, std::function<QImage()>> all;
    return all;
}

bool gFailed = false;
QString gName;

bool hasSeveralColours(const QImage& picture)
{
    QSet<QRgb> colours;
    for (int y = 0; y < picture.height() && colours.size() < 3; ++y)
        for (int x = 0; x < picture.width(); ++x)
            colours.insert(picture.pixel(x, y));
    return colours.size() >= 3;
}

#ifdef HAS_PYTHON
bool runPython(const QString& file)
{
    QWidget window;
    new QVBoxLayout(&window);
    TiceControlBaseCmd::setDefaultParent(&window);
    const auto outcome = TpythonInterpreter::instance()->executeFile(QFile::encodeName(file).constData());
    if (!outcome.ok)
        std::fprintf(stderr, "%s: %s\n", qPrintable(file), outcome.error.asChar());
    return outcome.ok;
}
#endif

} // namespace

Sample::Sample(const char* name, std::function<QImage()> run)
{
    samples()[QString::fromLatin1(name)] = std::move(run);
}

QImage Sample::drawing(const QSize& size, int fine, const std::function<void(T3dPort&)>& draw)
{
    QWidget parent;
    TresourceMap::Set("guide", "saFrameBufferMode", "double");
    T3dPort port(&parent, "guide", false);
    TfunctionAction update([&](const Tevent&) {
        draw(port);
        port.swapBuffers();
    });
    port.setUpdateCommand(&update);
    return picture(port, size, fine);
}

QImage Sample::picture(T3dPort& port, const QSize& size, int fine)
{
    const QImage drawn = drawnPicture(port, size * fine);
    expect(port.error() == 0, "OpenGL reports no error");
    for (const Tstring& difference : port.stateDifferences())
        expect(false, difference.asChar());
    return drawn.isNull() ? drawn : drawn.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage Sample::sideBySide(const QList<QImage>& pictures)
{
    constexpr int kGap = 6;
    QSize size(-kGap, 0);
    for (const QImage& each : pictures)
        size = QSize(size.width() + each.width() + kGap, std::max(size.height(), each.height()));
    QImage all(size, QImage::Format_RGB32);
    all.fill(Qt::white);
    QPainter painter(&all);
    int left = 0;
    for (const QImage& each : pictures) {
        painter.drawImage(left, 0, each);
        left += each.width() + kGap;
    }
    return all;
}

void Sample::expect(bool good, const char* what)
{
    if (good)
        return;
    std::fprintf(stderr, "guide-samples %s: not so: %s\n", qPrintable(gName), what);
    gFailed = true;
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QStringList names = application.arguments().mid(1);
    if (names.value(0) == QLatin1String("--list")) {
        for (const QString& name : samples().keys())
            std::puts(qPrintable(name));
        return 0;
    }
#ifdef HAS_PYTHON
    if (names.value(0) == QLatin1String("--python"))
        return runPython(names.value(1)) ? 0 : 1;
#endif
    if (!Q3dPort::resourceWidget()) {
        std::fputs("guide-samples: there is no display with OpenGL.\n", stderr);
        return 1;
    }
    // The last port takes the resource widget along, and there is one in a process.
    QWidget place;
    const T3dPort keeper(&place, "guide", false);
    QString folder;
    if (names.value(0) == QLatin1String("--pictures")) {
        folder = names.value(1);
        names = names.mid(2);
    }
    if (names.isEmpty())
        names = samples().keys();
    for (const QString& name : names) {
        gName = name;
        const auto run = samples().value(name);
        if (!run) {
            std::fprintf(stderr, "guide-samples: there is no sample %s.\n", qPrintable(name));
            return 1;
        }
        const QImage picture = run();
        Sample::expect(hasSeveralColours(picture), "there is something in the picture");
        if (!folder.isEmpty() && name != QLatin1String("readme")) {
            const QString problem = writePicture(picture.convertToFormat(QImage::Format_RGB32),
                                                 QDir(folder).filePath(name + QStringLiteral(".png")));
            Sample::expect(problem.isEmpty(), qPrintable(problem));
        }
    }
    return gFailed ? 1 : 0;
}
