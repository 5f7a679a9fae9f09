#include "QtExtensions/Q3dPort.h"
#include "TcommandLine.h"
#include "Tgallery.h"
#include "Tscripting.h"
#include "TviewerWindow.h"
#include "pictures.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

// Last: Xlib's macros take names that Qt uses.
#include <GL/glx.h>

namespace {

int complain(const QString& sentence)
{
    std::fprintf(stderr, "portview: %s\n", qPrintable(sentence));
    return 1;
}

/** What keeps a window with OpenGL from being opened; empty if nothing does. Qt would end the program instead. */
QString displayProblem(const TcommandLine& line)
{
    QString platform = line.fPlatform.isEmpty() ? qEnvironmentVariable("QT_QPA_PLATFORM") : line.fPlatform;
    platform = platform.section(QLatin1Char(';'), 0, 0).section(QLatin1Char(':'), 0, 0);
    if (!platform.isEmpty() && platform != QLatin1String("xcb"))
        return QStringLiteral("drawing needs X11, that is Qt's platform \"xcb\" instead of \"%1\".").arg(platform);

    const QByteArray name = line.fDisplay.isEmpty() ? qgetenv("DISPLAY") : line.fDisplay.toLocal8Bit();
    if (name.isEmpty())
        return QStringLiteral("there is no X display, DISPLAY is not set.");
    Display* display = XOpenDisplay(name.constData());
    if (!display)
        return QStringLiteral("cannot connect to the X display \"%1\".").arg(QString::fromLocal8Bit(name));
    const bool hasGlx = glXQueryExtension(display, nullptr, nullptr);
    XCloseDisplay(display);
    if (!hasGlx)
        return QStringLiteral("the X display \"%1\" has no OpenGL (GLX).").arg(QString::fromLocal8Bit(name));
    return QString();
}

/** The exit status of what ended with @p problem, which is empty if all is well. */
int concluded(const QString& problem)
{
    return problem.isEmpty() ? 0 : complain(problem);
}

/** Draws the picture of --snapshot, after the script. */
int snapshotStatus(TviewerWindow& window, const TcommandLine& line)
{
    if (!line.fScript.isEmpty()) {
        const TscriptOutcome outcome = runScriptFile(line.fScript);
        if (!outcome.ok)
            return complain(QStringLiteral("the script %1 failed.\n%2").arg(line.fScript, outcome.error));
    }
    return concluded(writePicture(window.picture(), line.fSnapshot));
}

int runWindow(const TcommandLine& line)
{
    if (!line.fScript.isEmpty()) {
        const QString problem = scriptFileProblem(line.fScript);
        if (!problem.isEmpty())
            return complain(QStringLiteral("cannot read %1: %2.").arg(line.fScript, problem));
    }
    TviewerWindow window(line.fSize, line.fStyle, line.fFourViews);
    if (!line.fTexture.isEmpty()) {
        const QString problem = window.setTexture(line.fTexture);
        if (!problem.isEmpty())
            return complain(QStringLiteral("cannot read %1: %2.").arg(line.fTexture, problem));
    }
    window.setStyle(line.fStyle);
    window.setFilter(line.fFilter);
    window.setShowsUvs(line.fUvs);
    QObject::connect(&window, &TviewerWindow::failed, [](const QString& path, const QString& reason) {
        complain(QStringLiteral("cannot open %1: %2.").arg(path, reason));
        QCoreApplication::exit(1);
    });
    if (!line.fSnapshot.isEmpty()) {
        QObject::connect(&window, &TviewerWindow::opened,
                         [&] { QCoreApplication::exit(snapshotStatus(window, line)); });
    } else {
        window.QWidget::show();
        if (!line.fScript.isEmpty())
            QObject::connect(&window, &TviewerWindow::opened, [&] { window.runScript(line.fScript); });
    }
    QTimer::singleShot(0, &window, [&] {
        if (line.fModel.isEmpty())
            window.openBuiltIn();
        else
            window.open(line.fModel);
    });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("portview"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PORTVIEW_VERSION));
    TcommandLine line;
    {
        const QCoreApplication early(argc, argv);
        line = TcommandLine::parse(early.arguments());
    }
    switch (line.fRequest) {
    case TcommandLine::kHelp:
    case TcommandLine::kVersion:
        std::fputs(qPrintable(line.fText), stdout);
        return 0;
    case TcommandLine::kError:
        return complain(line.fText + QStringLiteral(" See portview --help."));
    case TcommandLine::kRun:
        break;
    }

    const QString problem = displayProblem(line);
    if (!problem.isEmpty())
        return complain(problem);
    // Elsewhere Qt might prefer another platform although there is an X display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");

    QApplication application(argc, argv);
    if (!Q3dPort::resourceWidget())
        return complain(QStringLiteral("the X display offers no OpenGL that can be drawn with."));
    if (!line.fGallery.isEmpty())
        return concluded(Tgallery().write(line.fGallery));
    return runWindow(line);
}
