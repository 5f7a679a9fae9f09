// Opens, moves, draws in, picks in and closes ports at random, and counts what goes wrong and what is left behind.

#include "Tcensus.h"
#include "Tdesk.h"
#include "Tproblems.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QX11Info>

#include "QtExtensions/QlirnX11.h"

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

constexpr double kMostOwnRate = 1; // KB per 1000 operations

Tproblems gProblems;

int noteXError(Display* display, XErrorEvent* error)
{
    char text[160] = {};
    XGetErrorText(display, error->error_code, text, sizeof text);
    gProblems.note(Tproblems::kXError, std::string("X error ") + text + ", request " +
                                           std::to_string(error->request_code) + "." +
                                           std::to_string(error->minor_code));
    return 0;
}

// Qt takes errors of its own requests out of the queue and logs them.
void noteQtMessage(QtMsgType, const QMessageLogContext&, const QString& message)
{
    if (message.contains(QLatin1String("XCB error")))
        gProblems.note(Tproblems::kXError, message.toStdString());
    else
        std::fprintf(stderr, "%s\n", qPrintable(message));
}

void printHead()
{
    std::printf("%8s %9s %7s | %9s %9s %8s %7s | %8s %8s %8s | %5s %8s | %8s %8s | %5s %5s %5s\n", "seconds", "actions",
                "opened", "RSS KB", "heap KB", "own KB", "blocks", "windows", "pixmaps", "contexts", "lists",
                "textures", "created", "alive", "diff", "GL", "X");
}

void print(const Tcensus& c)
{
    std::printf("%8.1f %9ld %7ld | %9ld %9.1f %8.1f %7ld | %8ld %8ld %8ld | %5ld %8ld | %8ld %8ld | %5ld %5ld %5ld\n",
                c.fSeconds, c.fOperations, c.fPortsOpened, c.fResident, double(c.fHeap) / 1024, double(c.fOwn) / 1024,
                c.fOwnBlocks, c.server("WINDOW"), c.server("PIXMAP"), c.server("GLXContext"), c.fLists, c.fTextures,
                Tcensus::contextsCreated(), c.fContexts, gProblems.count(Tproblems::kDifference),
                gProblems.count(Tproblems::kGlError), gProblems.count(Tproblems::kXError));
    std::fflush(stdout);
}

bool judge(const std::vector<Tcensus>& counts)
{
    const Tgrowth growth(counts);
    std::printf(
        "\nFrom the second quarter of the run to the last, with all ports closed but two, in KB per 1000 actions:\n");
    std::printf("  %+8.2f own memory, beyond %ld bytes for each port's record (at most %g)\n", growth.fOwnRate,
                counts.back().explained() / std::max(1L, counts.back().fPortsOpened), kMostOwnRate);
    std::printf("  %+8.2f heap, %+8.2f resident: the driver's among it\n", growth.fHeapRate, growth.fResidentRate);
    for (const std::string& type : growth.fServerTypes)
        std::printf("  X resources of type %s grew\n", type.c_str());
    if (growth.fContextsGrew)
        std::printf("  native contexts grew\n");
    if (growth.fObjectsGrew)
        std::printf("  display lists or textures grew\n");
    std::printf("%ld differences, %ld OpenGL errors, %ld X errors, %ld ports not destroyed once\n",
                gProblems.count(Tproblems::kDifference), gProblems.count(Tproblems::kGlError),
                gProblems.count(Tproblems::kXError), gProblems.count(Tproblems::kLeftPort));
    constexpr double kWarmUp = 60; // seconds, in which caches fill
    if (counts.back().fSeconds < kWarmUp)
        return gProblems.total() == 0;
    return gProblems.total() == 0 && growth.fServerTypes.empty() && !growth.fContextsGrew && !growth.fObjectsGrew &&
           growth.fOwnRate <= kMostOwnRate;
}

bool soak(double seconds, std::uint64_t seed, const std::string& only)
{
    Tdesk desk(seed, gProblems);
    if (!desk.isValid()) {
        std::fputs("portsoak: the display gives no window with OpenGL\n", stderr);
        return false;
    }
    if (!only.empty() && !desk.setOnly(only)) {
        std::fprintf(stderr, "portsoak: there is no action %s\n", only.c_str());
        return false;
    }
    constexpr int kBetweenCounts = 60; // actions, so that a seed repeats the closing too
    std::vector<Tcensus> counts;
    QElapsedTimer timer;
    timer.start();
    const auto elapsed = [&] { return double(timer.elapsed()) / 1000; };
    printHead();
    double printed = 0;
    while (elapsed() < seconds) {
        for (int i = 0; i < kBetweenCounts; ++i)
            desk.step();
        desk.closeAll();
        counts.push_back(Tcensus::take(desk.window()));
        Tcensus& last = counts.back();
        last.fSeconds = elapsed();
        last.fOperations = desk.operations();
        last.fPortsOpened = desk.portsOpened();
        if (last.fSeconds - printed >= std::min(15.0, seconds / 10)) {
            printed = last.fSeconds;
            print(last);
        }
    }
    print(counts.back());
    std::printf("\n");
    for (const auto& [name, times] : desk.done())
        std::printf("%9ld  %s\n", times, name.c_str());
    return judge(counts);
}

} // namespace

int main(int argc, char** argv)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Uses ports at random for a while, and fails when something is left behind.");
    parser.addHelpOption();
    parser.addOption({"seed", "Does the same as another run with seed <number>.", "number"});
    parser.addOption({"only", "Does action <name> only, and opens, docks and closes ports.", "name"});
    parser.addOption({"trace", "Prints every action before it is done."});
    parser.addPositionalArgument("seconds", "How long; 60 without.", "[seconds]");
    {
        const QCoreApplication early(argc, argv);
        parser.process(early);
    }
    bool isNumber = true;
    const QStringList arguments = parser.positionalArguments();
    const double seconds = arguments.isEmpty() ? 60 : arguments.front().toDouble(&isNumber);
    gProblems.setTraced(parser.isSet("trace"));
    const bool isGiven = parser.isSet("seed");
    bool isSeed = true;
    const std::uint64_t seed = isGiven ? parser.value("seed").toULongLong(&isSeed) : std::random_device()();
    if (arguments.size() > 1 || !isNumber || !isSeed || !(seconds > 0)) {
        std::fputs("portsoak: wanted is [--seed NUMBER] [SECONDS]\n", stderr);
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "xcb"); // GLX needs it, whatever else the desktop prefers
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    qInstallMessageHandler(noteQtMessage);
    XSetErrorHandler(noteXError);
    if (parser.isSet("trace"))
        XSynchronize(QX11Info::display(), 1); // an X error is told of with the action that caused it
    std::printf("seed %llu, %g s\n", static_cast<unsigned long long>(seed), seconds);
    return soak(seconds, seed, parser.value("only").toStdString()) ? 0 : 1;
}
