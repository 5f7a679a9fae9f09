/**
 * portbench: what the port costs, beside the same work written by hand in OpenGL and GLX in the same process.
 *
 * Each row compares ports under a Qt widget with windows and contexts made directly (RawWindow), of the same visual and
 * on a display connection of their own. The two sides run in turn, 41 times, in loops of a millisecond or of as many
 * operations as that takes; each run is warmed up by a shorter one. A row shows the medians per operation, less the
 * median of an empty loop measured in the same way between them. A compiler barrier in every pass keeps the compiler
 * from lifting the compared state out of the loop. Absolute times move with the machine and its load; ratios say more.
 *
 * "Equal value" repeats the value in force, "changing value" alternates between two. The matrix rows leave out the load
 * into OpenGL, which a port does once per drawn object and not per operation, as GL leaves out its own update. Pushes
 * and pops are timed in blocks of 24 (GL's model-view stack need hold 32 matrices only), less the cost of the clock.
 * Opening counts up to the bound context and closing to the destroyed window, both with what the X server does for it.
 * A frame of solids is a clear, the solids and glFinish. The raw lists hold the same geometry, and both sides have to
 * draw the same picture before they are timed; nothing is lit, the depth test is on. The UV quads are outlines sent in
 * immediate mode on both sides.
 * A frame of labels is a clear, the labels and glFinish, and the raw side places them by glRasterPos. In the row beside
 * Qt, "raw GL" is QGLWidget::renderText. A label image comes from the strip of a QlirnFontRaster, on the other side from
 * QPainter.
 *
 *     portbench [--json FILE] [--filter TEXT]
 *
 * The JSON file is an array of {name, port_ns, raw_ns, ratio, aim, aim_of, met}, where aim_of says what the aim limits:
 * "ratio" or "port_ns". The exit status is 0 for a run, whether the aims are met or not, and 1 without OpenGL, on
 * a file that cannot be written, and when the two sides of a row draw different pictures.
 */

#include <QApplication>
#include <QCommandLineParser>
#include <QFile>
#include <QGridLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWidget>
#include <QX11Info>

#include "Comparison.h"
#include "Graphics/3dPort/T3dPort.h"
#include "Mapping.h"
#include "Picking.h"
#include "RawWindow.h"
#include "ReadBack.h"
#include "SolidField.h"
#include "Text.h"
#include "Textures.h"
#include "UvLayout.h"
#include "foundation/T4dDblVector.h"
#include "foundation/Tquaternion.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

constexpr Aim kEqualValue{Aim::kNanoseconds, 1.0};
constexpr Aim kChangingValue{Aim::kRatio, 1.25};
constexpr Aim kAlreadyCurrent{Aim::kNanoseconds, 1.5};
constexpr Aim kSwitch{Aim::kRatio, 1.1};
constexpr Aim kMatrix{Aim::kRatio, 0.7};
constexpr Aim kOpening{Aim::kRatio, 1.6};
constexpr Aim kDrawing{Aim::kRatio, 1.05};

constexpr int kWidth = 200;
constexpr int kHeight = 150;
constexpr int kBlock = 24;
constexpr int kSolids = 10000;
constexpr int kUvQuadsPerSide = 500;
constexpr double kDegree = 3.141592653589793 / 180;

/** A view from some way off, which the matrix rows multiply onto. */
const T4dDblMatrix kCamera = [] {
    T4dDblMatrix m = static_cast<T4dDblMatrix>(Tquaternion::fromAxisAngle({1, -1, 0}, 30 * kDegree));
    m[14] = -10;
    return m;
}();

class Bench
{
public:
    Bench(Display* display, const QString& filter);
    ~Bench();

    bool isValid() const;
    /** False when the two sides of a row do not draw the same; there are reasons on the error output then. */
    bool run();
    void print() const;
    const std::vector<Row>& rows() const { return fRows; }

private:
    void setters();
    void contexts();
    void matrices();
    void opening();
    bool solids();
    bool uvLayout();
    /** @p drawing has draw(T3dPort&) and drawRaw(). */
    template <class Drawing> bool frameRow(const char* name, const Drawing& drawing, int width, int height);

    bool isWanted(const char* name) const;
    void bindPort() const;
    void bindRaw() const;
    template <class Port, class Raw> void row(const char* name, Aim aim, Port port, Raw raw);
    template <class Port, class Raw> void setterRows(const char* name, Port port, Raw raw);
    void stackRow(const char* name, bool push);
    void add(const char* name, Aim aim, const Side& port, const Side& raw, const Side& empty);

    Display* fDisplay;
    QString fFilter;
    QWidget fHost;
    std::unique_ptr<T3dPort> fPorts[2];
    Window fRawHost;
    std::unique_ptr<RawWindow> fRawWindows[2];
    std::vector<Row> fRows;
};

Bench::Bench(Display* display, const QString& filter)
    : fDisplay(display), fFilter(filter),
      fRawHost(XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 2 * kWidth, kHeight, 0, 0, 0))
{
    auto* layout = new QGridLayout(&fHost);
    fHost.resize(2 * kWidth, kHeight);
    for (auto& port : fPorts) {
        port = std::make_unique<T3dPort>(&fHost, "bench", false);
        if (port->qControl())
            layout->addWidget(port->qControl(), 0, layout->count());
    }
    fHost.show();
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents();
    XMapWindow(display, fRawHost);
    const bool doubleBuffered = fPorts[0]->isDoubleBuffered();
    for (int i = 0; i < 2; ++i)
        fRawWindows[i] = std::make_unique<RawWindow>(display, fRawHost, unsigned(kWidth), unsigned(kHeight),
                                                     doubleBuffered, i == 0 ? nullptr : fRawWindows[0].get());
}

Bench::~Bench()
{
    for (int i = 1; i >= 0; --i) {
        fRawWindows[i].reset();
        fPorts[i].reset();
    }
    XDestroyWindow(fDisplay, fRawHost);
}

bool Bench::isValid() const
{
    return fPorts[0]->qControl() && fPorts[1]->qControl() && fRawWindows[0]->isBindable() &&
           fRawWindows[1]->isBindable();
}

bool Bench::run()
{
    setters();
    contexts();
    matrices();
    opening();
    addMappingRows(fFilter, fRows);
    const bool sameSolids = solids(); // first, before a port has drawn a solid
    const bool samePicks = addPickingRow(
        fFilter, *fPorts[0], [this] { bindPort(); }, *fRawWindows[0], fRows);
    const bool sameText = addTextRows(
        fFilter, *fPorts[0], [this] { bindPort(); }, *fRawWindows[0], fDisplay, fRows);
    const bool samePixels = addReadBackRow(fFilter, fDisplay, fRawHost, fRawWindows[0].get(), fRows);
    const bool sameTextures = addTextureRows(
        fFilter, *fPorts[0], [this] { bindPort(); }, *fRawWindows[0], fRows);
    return uvLayout() && sameSolids && samePicks && sameText && samePixels && sameTextures;
}

bool Bench::isWanted(const char* name) const
{
    return QString::fromLatin1(name).contains(fFilter, Qt::CaseInsensitive);
}

void Bench::bindPort() const
{
    T3dPort::nativeBindingMoved();
    fPorts[0]->setCurrentContext();
    fPorts[0]->loadMatrix(kCamera);
}

void Bench::bindRaw() const
{
    fRawWindows[0]->makeCurrent();
    glLoadMatrixd(kCamera.data());
}

void Bench::add(const char* name, Aim aim, const Side& port, const Side& raw, const Side& empty)
{
    if (isWanted(name))
        fRows.push_back(compare(QString::fromLatin1(name), aim, port, raw, empty));
}

template <class Port, class Raw> void Bench::row(const char* name, Aim aim, Port port, Raw raw)
{
    add(name, aim, {[this] { bindPort(); }, [&](long count) { return timeLoop(count, port); }},
        {[this] { bindRaw(); }, [&](long count) { return timeLoop(count, raw); }},
        {[] {}, [](long count) { return timeLoop(count, [](long) {}); }});
}

/** @p port and @p raw set the value of the index they are given, 0 or 1. */
template <class Port, class Raw> void Bench::setterRows(const char* name, Port port, Raw raw)
{
    const std::string text(name);
    row((text + ", equal value").c_str(), kEqualValue, [=](long) { port(0); }, [=](long) { raw(0); });
    row((text + ", changing value").c_str(), kChangingValue, [=](long i) { port(i & 1); }, [=](long i) { raw(i & 1); });
}

void Bench::setters()
{
    T3dPort* const port = fPorts[0].get();
    static const float sizes[] = {2.0f, 3.0f};
    static const bool switches[] = {true, false};
    static const TportColor colors[] = {{0.2f, 0.4f, 0.6f, 1.0f}, {0.2f, 0.4f, 0.7f, 1.0f}};
    static const T3dPort::TdepthFunc depths[] = {T3dPort::kDepthLess, T3dPort::kDepthLequal};
    static const T3dPort::TblendFunc blends[] = {T3dPort::kBlendSrcAlpha, T3dPort::kBlendOne};

    setterRows(
        "pointSize", [=](long i) { port->pointSize(sizes[i]); }, [](long i) { glPointSize(sizes[i]); });
    setterRows(
        "lineWidth", [=](long i) { port->lineWidth(sizes[i]); }, [](long i) { glLineWidth(sizes[i]); });
    setterRows(
        "depthMask", [=](long i) { port->depthMask(switches[i]); }, [](long i) { glDepthMask(switches[i]); });
    setterRows(
        "depthFunc", [=](long i) { port->depthFunc(depths[i]); }, [](long i) { glDepthFunc(depths[i]); });
    setterRows(
        "color", [=](long i) { port->color(colors[i]); }, [](long i) { glColor3fv(&colors[i].r); });
    setterRows(
        "clearColor", [=](long i) { port->clearColor(colors[i]); },
        [](long i) { glClearColor(colors[i].r, colors[i].g, colors[i].b, colors[i].a); });
    setterRows(
        "blendFunc", [=](long i) { port->blendFunc(blends[i], T3dPort::kBlendOneMinusSrcAlpha); },
        [](long i) { glBlendFunc(blends[i], GL_ONE_MINUS_SRC_ALPHA); });
}

void Bench::contexts()
{
    const T3dPort* const port = fPorts[0].get();
    const RawWindow* const raw = fRawWindows[0].get();
    row(
        "setCurrentContext, already current", kAlreadyCurrent, [=](long) { port->setCurrentContext(); },
        [=](long) {
            if (glXGetCurrentContext() != raw->context())
                raw->makeCurrent();
        });

    const T4dDblMatrix matrix;
    row(
        "switch between two idle ports", kSwitch, [this](long i) { fPorts[i & 1]->setCurrentContext(); },
        [this, &matrix](long i) {
            fRawWindows[i & 1]->makeCurrent();
            glViewport(0, 0, kWidth, kHeight);
            glMatrixMode(GL_PROJECTION);
            glLoadMatrixd(matrix.data());
            glMatrixMode(GL_MODELVIEW);
            glLoadMatrixd(matrix.data());
        });
}

void Bench::stackRow(const char* name, bool push)
{
    T3dPort* const port = fPorts[0].get();
    // The clock is read around the half of the block that the row is about; the other half only makes room for it.
    const auto timeBlocks = [push](long count, auto pushOne, auto popOne) {
        double sum = 0;
        for (long block = 0; block < count; ++block) {
            const auto start = Clock::now();
            for (int i = 0; i < kBlock; ++i)
                pushOne();
            const auto middle = Clock::now();
            for (int i = 0; i < kBlock; ++i)
                popOne();
            sum += push ? std::chrono::duration<double, std::nano>(middle - start).count() : nanosecondsSince(middle);
        }
        return sum / double(count * kBlock);
    };
    add(name, kMatrix,
        {[this] { bindPort(); },
         [&](long count) {
             return timeBlocks(
                 count, [=] { port->pushMatrix(); }, [=] { port->popMatrix(); });
         }},
        {[this] { bindRaw(); },
         [&](long count) {
             return timeBlocks(
                 count, [] { glPushMatrix(); }, [] { glPopMatrix(); });
         }},
        {[] {},
         [&](long count) {
             return timeBlocks(
                 count, [] { forgetMemory(); }, [] { forgetMemory(); });
         }});
}

void Bench::matrices()
{
    T3dPort* const port = fPorts[0].get();
    port->matrixMode(GL_MODELVIEW);
    static const double steps[] = {0.25, -0.25};
    static const double scales[] = {2.0, 0.5};
    const T4dDblVector axis(1, 2, 3);
    const T4dDblMatrix turn = static_cast<T4dDblMatrix>(Tquaternion::fromAxisAngle(axis, kDegree));

    stackRow("pushMatrix", true);
    stackRow("popMatrix", false);
    row(
        "multMatrix", kMatrix, [=](long) { port->multMatrix(turn); }, [=](long) { glMultMatrixd(turn.data()); });
    row(
        "rotate, about an axis", kMatrix, [=](long) { port->rotate(Tquaternion::fromAxisAngle(axis, kDegree)); },
        [=](long) { glRotated(1, axis.x, axis.y, axis.z); });
    row(
        "rotate, one angle", kMatrix, [=](long) { port->rotate(0, 0, kDegree); }, [](long) { glRotated(1, 0, 0, 1); });
    row(
        "rotate, three angles", kMatrix, [=](long) { port->rotate(kDegree, 2 * kDegree, 3 * kDegree); },
        [](long) {
            glRotated(3, 0, 0, 1);
            glRotated(2, 0, 1, 0);
            glRotated(1, 1, 0, 0);
        });
    row(
        "translate", kMatrix, [=](long i) { port->translate(steps[i & 1], 1, 2); },
        [](long i) { glTranslated(steps[i & 1], 1, 2); });
    row(
        "scale", kMatrix, [=](long i) { port->scale(scales[i & 1], scales[i & 1], scales[i & 1]); },
        [](long i) { glScaled(scales[i & 1], scales[i & 1], scales[i & 1]); });
    port->loadIdentity();
}

void Bench::opening()
{
    const bool doubleBuffered = fPorts[0]->isDoubleBuffered();
    row(
        "open and close", kOpening,
        [this](long) {
            const T3dPort port(&fHost, "bench", false);
            XSync(QX11Info::display(), 0);
        },
        [&](long) {
            const RawWindow window(fDisplay, fRawHost, unsigned(kWidth), unsigned(kHeight), doubleBuffered,
                                   fRawWindows[0].get());
            XSync(fDisplay, 0);
        });
}

/** The colours of the frame that has been drawn, of which there are @p width by @p height. */
std::vector<GLubyte> picture(int width, int height)
{
    std::vector<GLubyte> pixels(std::size_t(3 * width * height));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
    return pixels;
}

template <class Drawing> bool Bench::frameRow(const char* name, const Drawing& drawing, int width, int height)
{
    if (!isWanted(name))
        return true;
    QWidget host;
    host.resize(std::max(width, kWidth), std::max(height, kHeight)); // window managers keep to a least size
    T3dPort port(&host, "frames", false);
    if (QWidget* control = port.qControl())
        control->setGeometry(0, 0, width, height);
    host.show();
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents();
    XResizeWindow(fDisplay, fRawHost, unsigned(host.width()), unsigned(host.height()));
    const RawWindow raw(fDisplay, fRawHost, unsigned(width), unsigned(height), port.isDoubleBuffered(),
                        fRawWindows[0].get());

    // Single-buffered frames go to the screen, at a cost that depends on what of the window can be seen.
    const auto bindPort = [&] {
        host.raise();
        XSync(QX11Info::display(), 0);
        T3dPort::nativeBindingMoved();
        port.setCurrentContext();
    };
    const auto bindRaw = [&] {
        XRaiseWindow(fDisplay, fRawHost);
        XSync(fDisplay, 0);
        raw.makeCurrent();
    };
    bindPort();
    port.depthTest(true);
    port.color(kCwhite);
    port.clearColor(kCblack);
    port.ortho(-2, 2, -2, 2, 5, 15);
    port.matrixMode(GL_MODELVIEW);
    port.loadMatrix(kCamera);
    T4dDblMatrix projection;
    port.getProjectionMatrix(projection);
    bindRaw();
    glViewport(0, 0, width, height);
    glEnable(GL_DEPTH_TEST);
    // What a port starts with.
    glDisable(GL_DITHER);
    glEnable(GL_NORMALIZE);
    glShadeModel(GL_FLAT);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection.data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixd(kCamera.data());

    const auto drawPort = [&port, &drawing](long) {
        port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        drawing.draw(port);
        glFinish();
    };
    const auto drawRaw = [&drawing](long) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        drawing.drawRaw();
        glFinish();
    };

    bindPort();
    drawPort(0);
    const std::vector<GLubyte> portPicture = picture(width, height);
    bindRaw();
    drawRaw(0);
    const std::vector<GLubyte> rawPicture = picture(width, height);
    const bool isSame = portPicture == rawPicture && std::count(rawPicture.begin(), rawPicture.end(), 255) > 0;
    if (isSame)
        add(name, kDrawing, {bindPort, [&](long count) { return timeLoop(count, drawPort); }},
            {bindRaw, [&](long count) { return timeLoop(count, drawRaw); }},
            {[] {}, [](long count) { return timeLoop(count, [](long) {}); }});
    else
        std::fprintf(stderr, "portbench: %s: the two sides draw different pictures, or nothing\n", name);
    bindPort(); // its end deletes what it has in OpenGL
    return isSame;
}

bool Bench::solids()
{
    SolidField field(kSolids);
    fRawWindows[0]->makeCurrent();
    field.compile();
    const bool small = frameRow("10000 solids, 16 x 16", field, 16, 16);
    const bool large = frameRow("10000 solids, 800 x 600", field, 800, 600);
    return small && large;
}

bool Bench::uvLayout()
{
    return frameRow("250000 UV quads, 200 x 150", UvLayout(kUvQuadsPerSide), kWidth, kHeight);
}

void Bench::print() const
{
    bindRaw();
    double load = 0;
    getloadavg(&load, 1);
    std::printf("%s, %s; load %.2f\n\n", reinterpret_cast<const char*>(glGetString(GL_RENDERER)),
                reinterpret_cast<const char*>(glGetString(GL_VERSION)), load);
    std::printf("%-36s %12s %12s %8s  %-12s\n", "", "port [ns]", "raw GL [ns]", "ratio", "aim");
    for (const Row& row : fRows) {
        const QString aim = QString(row.fAim.fKind == Aim::kRatio ? "ratio %1" : "%1 ns").arg(row.fAim.fLimit);
        std::printf("%-36s %12.2f %12.2f %8.2f  %-12s %s\n", qPrintable(row.fName), row.fPort, row.fRaw, row.ratio(),
                    qPrintable(aim), row.isMet() ? "met" : "MISSED");
    }
}

bool writeJson(const std::vector<Row>& rows, const QString& name)
{
    QJsonArray array;
    for (const Row& row : rows)
        array.append(QJsonObject{{"name", row.fName},
                                 {"port_ns", row.fPort},
                                 {"raw_ns", row.fRaw},
                                 {"ratio", row.ratio()},
                                 {"aim", row.fAim.fLimit},
                                 {"aim_of", row.fAim.fKind == Aim::kRatio ? "ratio" : "port_ns"},
                                 {"met", row.isMet()}});
    QFile file(name);
    const QByteArray text = QJsonDocument(array).toJson();
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
        return true;
    std::fprintf(stderr, "portbench: cannot write %s: %s\n", qPrintable(name), qPrintable(file.errorString()));
    return false;
}

} // namespace

int main(int argc, char** argv)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Times the drawing port beside the same work in raw OpenGL.");
    parser.addHelpOption();
    parser.addOptions({{"json", "Also write the rows to <file>.", "file"},
                       {"filter", "Measure only the rows whose name contains <text>.", "text"}});
    {
        const QCoreApplication early(argc, argv);
        parser.process(early);
    }

    // Not Qt's: a program without Qt has a connection to itself, without a thread that reads along. And before Qt,
    // which ends a program that it finds no display for.
    Display* display = XOpenDisplay(nullptr);
    if (!display || !glXQueryExtension(display, nullptr, nullptr)) {
        std::fputs("portbench: there is no X display with OpenGL\n", stderr);
        if (display)
            XCloseDisplay(display);
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "xcb"); // GLX needs it, whatever else the desktop prefers
    QApplication application(argc, argv);
    int status = 0;
    {
        Bench bench(display, parser.value("filter"));
        if (bench.isValid()) {
            if (!bench.run())
                status = 1;
            bench.print();
            if (parser.isSet("json") && !writeJson(bench.rows(), parser.value("json")))
                status = 1;
        } else {
            std::fputs("portbench: the display gives no window with OpenGL\n", stderr);
            status = 1;
        }
    }
    XCloseDisplay(display);
    return status;
}
