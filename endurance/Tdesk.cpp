#include "Tdesk.h"

#include "Graphics/3dPort/TpickBuffer.h"
#include "Graphics/glResources/TglBitmap.h"
#include "Graphics/glResources/TglBuffer.h"
#include "Graphics/glResources/TglDisplayList.h"
#include "Graphics/glResources/TglPixels.h"
#include "Graphics/interaction/TinteractivePort.h"
#include "Graphics/textures/TglTextureObject.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLContext.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "QtExtensions/TglRenderTarget.h"
#include "TgalleryItem.h"
#include "TsceneLights.h"
#include "foundation/T4dDblPoint.h"
#include "foundation/Taction.h"
#include "foundation/Tevent.h"
#include "foundation/TpixelMap.h"
#include "foundation/TresourceMap.h"
#include "ui/TUIInventory.h"

#include <QApplication>
#include <QDockWidget>
#include <QGLFramebufferObject>
#include <QMouseEvent>
#include <QPixmap>
#include <QPixmapCache>
#include <QPointer>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr std::size_t kMostPorts = 7;

long gPortsOpened = 0;
long gPortsAlive = 0;

template <class Port> class Counted : public Port
{
public:
    Counted(QWidget* parent, const char* name) : Port(parent, name, false)
    {
        ++gPortsOpened;
        ++gPortsAlive;
        gUIInventory->add(this, name);
    }
    ~Counted() override { --gPortsAlive; }
};

const TgalleryItem& anyItem(Tdice& dice)
{
    return TgalleryItem::all()[dice.below(TgalleryItem::all().size())];
}

void drawItem(T3dPort& port, const TgalleryItem& item, Tdice& dice)
{
    const TgalleryItem::Tlook look = item.fLook;
    const bool isFlat = look == TgalleryItem::kFlat || look == TgalleryItem::kStipple;
    port.matrixMode(GL_MODELVIEW);
    port.lineWidth(dice.one({1.0f, 2.0f}));
    port.depthTest(!isFlat);
    port.shadeModel(dice.flag() ? T3dPort::kShadeSmooth : T3dPort::kShadeFlat);
    if (isFlat) {
        port.ortho(-2, 2, -1.4, 1.4, -1, 1);
        port.loadIdentity();
    } else {
        port.perspective(24, 1.3, 1, 20);
        port.polarView(6.2, dice.between(0, 90), 62, 0);
    }
    if (look == TgalleryItem::kLit) {
        TsceneLights::turnOnHeadlight(port);
        port.setSpecularColor(dice.colour());
        port.setShininess(24);
        port.setDiffuseColor(dice.colour());
        item.fDraw(port);
        TsceneLights::turnOff(port);
    } else {
        port.color(dice.colour());
        item.fDraw(port);
    }
}

void fill(TpixelMap& map, Tdice& dice)
{
    map.setSize(dice.between(1, 64), dice.between(1, 64), dice.one({3, 4}));
    map.setRgba(dice.flag());
    std::memset(map.pixels(), dice.between(0, 255), map.rowBytes() * static_cast<std::size_t>(map.height()));
}

/** Takes the whole of the buffer as viewport. */
class WholeBuffer : public TglBuffer
{
public:
    explicit WholeBuffer(T3dPort& port) : fPort(port) {}
    void beginBufferNotify() override { fPort.pushViewport(fPort.portRect()); }
    void endBufferNotify() override { fPort.popViewport(); }

private:
    T3dPort& fPort;
};

class Target : public TglRenderTarget
{
public:
    bool render() override { return true; }
};

} // namespace

/** A port and the window or dock it is in. */
struct Tdesk::Topen
{
    Topen() : fDraw([this](const Tevent&) { draw(); }) {}

    void draw()
    {
        Tdice dice(fScene);
        T3dPort& port = *fPort;
        port.clearColor(dice.colour());
        port.clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        for (int i = dice.between(0, 4); i > 0; --i)
            drawItem(port, anyItem(dice), dice);
        port.swapBuffers();
    }
    bool isShown() const
    {
        const QlirnGLWidget* widget = fPort->glWidget();
        return widget && widget->isVisible();
    }
    /** Makes the port current; false when its context cannot be bound. */
    bool bind() const
    {
        if (!isShown())
            return false;
        fPort->setCurrentContext();
        return fPort->glWidget()->glContext()->isCurrent();
    }

    T3dPort* fPort = nullptr;
    QPointer<QWidget> fOuter;
    TfunctionAction fDraw;
    std::uint64_t fScene = 0; ///< what is drawn
};

constexpr const char* kPickBySelection = "pick by selection";

struct Tdesk::Toperation
{
    const char* fName;
    int fWeight;
    bool fBound; ///< done to a port that is current
    void (*fRun)(Topen& open, Tdice& dice);
};

const Tdesk::Toperation Tdesk::kOperations[] = {
    {"resize", 4, false,
     [](Topen& o, Tdice& d) {
         if (o.fOuter)
             o.fOuter->resize(d.between(1, 300), d.between(1, 240));
     }},
    {"stow", 2, false,
     [](Topen& o, Tdice& d) {
         if (d.flag())
             o.fPort->make3dVisible(!o.isShown());
         else if (o.fOuter)
             o.fOuter->setVisible(!o.fOuter->isVisible());
     }},
    {"show", 3, false,
     [](Topen& o, Tdice&) {
         if (o.fOuter)
             o.fOuter->show();
         o.fPort->make3dVisible(true);
     }},
    {"repaint", 5, false,
     [](Topen& o, Tdice& d) {
         o.fScene += d.below(2);
         if (QlirnGLWidget* widget = o.fPort->glWidget())
             d.flag() ? widget->update() : o.fPort->OnPaint();
     }},
    {"pointer", 2, false,
     [](Topen& o, Tdice& d) {
         QWidget* widget = o.fPort->glWidget();
         const QPointF at(d.between(0, 90), d.between(0, 90));
         QMouseEvent press(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
         QMouseEvent move(QEvent::MouseMove, at + QPointF(3, 4), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
         QMouseEvent release(QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton, Qt::ShiftModifier);
         QWheelEvent wheel(at, at, QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
         for (QEvent* event : std::initializer_list<QEvent*>{&press, &move, &release, &wheel})
             QApplication::sendEvent(widget, event);
     }},
    {"state of whatever is bound", 2, false,
     [](Topen& o, Tdice& d) {
         o.fPort->color(d.colour());
         o.fPort->lineWidth(4 * d.value());
         o.fPort->depthTest(d.flag());
         o.fPort->shadeModel(T3dPort::kShadeFlat);
     }},
    {"picture", 2, false, [](Topen& o, Tdice& d) { o.fPort->renderToPixmap(d.between(1, 90), d.between(1, 90)); }},

    {"item", 14, true, [](Topen& o, Tdice& d) { drawItem(*o.fPort, anyItem(d), d); }},
    {"state", 6, true,
     [](Topen& o, Tdice& d) {
         T3dPort& p = *o.fPort;
         p.color(d.colour());
         p.pointSize(8 * d.value());
         p.blending(d.flag());
         p.blendFunc(d.one({T3dPort::kBlendOne, T3dPort::kBlendSrcAlpha}), T3dPort::kBlendOneMinusSrcAlpha);
         p.setLayerBlendMode(d.below(13));
         p.cullFace(T3dPort::TcullingMethod(d.below(3)));
         p.depthMask(d.flag());
         p.depthFunc(d.one({T3dPort::kDepthLess, T3dPort::kDepthLequal, T3dPort::kDepthAlways}));
         p.depthMask(true);
         p.scissor(d.flag() ? d.rect(p.portRect()) : p.viewport(), false);
         p.setFogEnabled(d.flag());
         p.lineSmoothing(d.flag());
         p.setTextureGenMode(d.one({TglContext::kGenOff, TglContext::kGenSphereMap, TglContext::kGenReflectionMap}));
         p.setTextureEnvMode(d.one({TglContext::kEnvModulate, TglContext::kEnvReplace}));
     }},
    {"viewport", 2, true,
     [](Topen& o, Tdice& d) {
         const TportRect area = d.rect(o.fPort->portRect());
         o.fPort->pushViewport(area);
         drawItem(*o.fPort, anyItem(d), d);
         o.fPort->popViewport();
     }},
    {"text", 5, true,
     [](Topen& o, Tdice& d) {
         if (d.below(8) == 0)
             o.fPort->font(TglFont(d.flag() ? "-adobe-courier-medium-r-normal--*-*-*-*-*-*-iso8859-1" : "fixed",
                                   static_cast<float>(d.between(8, 24))));
         else if (d.flag())
             o.fPort->font(d.flag() ? TglFont::defaultFont() : TglFont::smallFont());
         o.fPort->pushOrtho2D();
         o.fPort->text(T4dDblPoint(d.between(-20, 90), d.between(-20, 90), 0), "portsoak \xE4 123",
                       d.one({T3dPort::kLeft, T3dPort::kCenter, T3dPort::kRight}), nullptr,
                       d.flag() ? d.colour() : kCtransparent);
         o.fPort->bitmap(3, 4, 0, TglBitmap::kDiamond);
         static const unsigned char bits[] = {0xAA, 0x55, 0xAA, 0x55};
         o.fPort->bitmap(8, 9, 0, TglBitmap(bits, 8, 4, 0, 0));
         o.fPort->popOrtho2D();
     }},
    {"texture", 5, true,
     [](Topen& o, Tdice& d) {
         TpixelMap map;
         fill(map, d);
         TglTextureObject texture(&map, d.one({0, 32}), d.flag());
         texture.setFlag(TglTextureObject::kMipmaps, d.flag());
         if (d.flag())
             texture.texImageSphereMap(&map, true);
         texture.apply(o.fPort, 0);
         glEnable(GL_TEXTURE_2D);
         drawItem(*o.fPort, anyItem(d), d);
         glDisable(GL_TEXTURE_2D);
         glBindTexture(GL_TEXTURE_2D, 0);
     }},
    {"pixel maps", 5, true,
     [](Topen& o, Tdice& d) {
         T3dPort& p = *o.fPort;
         TpixelMap map;
         fill(map, d);
         p.pixelMapDraw(short(d.between(-20, 60)), short(d.between(-20, 60)), map, d.flag());
         p.pixelMapDrawClipped(T4dDblPoint(d.between(-30, 30), 5, 0.5), map);
         TportRect area = d.rect(p.portRect());
         p.pixelMapRead(map, 0, area);
         TglPixels block(d.one({TglPixels::kRgba, TglPixels::kRgb, TglPixels::kDepth}), d.between(1, 40),
                         d.between(1, 40));
         p.readPixels(block, 2, 1);
         p.writePixels(block, 3, 4);
         p.copyPixels(d.one({T3dPort::kFrontToBack, T3dPort::kBackToFront}));
     }},
    {"backing store", 3, true,
     [](Topen& o, Tdice& d) {
         o.fPort->setUseBackingStore(true);
         o.fPort->saveBackingStore();
         drawItem(*o.fPort, anyItem(d), d);
         o.fPort->restoreBackingStore();
         if (d.flag())
             o.fPort->setUseBackingStore(false);
     }},
    {"end of backing store", 3, true, [](Topen& o, Tdice&) { o.fPort->setUseBackingStore(false); }},
    {"snapshot", 3, true,
     [](Topen& o, Tdice& d) {
         TpixelMap map;
         o.fPort->setSnapShotRect(d.rect(o.fPort->portRect()));
         o.fPort->setSnapShotMode(d.flag());
         o.fPort->snapShot(map);
     }},
    {"colour tables", 3, true,
     [](Topen& o, Tdice& d) {
         bool created = false;
         T3dPort::getColorTable(static_cast<unsigned short>(2048 + d.below(4)), created);
         const auto guard = T3dPort::pushCopyModelViewColorTable();
         T3dPort::setColorTable(static_cast<unsigned short>(d.below(60)), d.colour());
         o.fPort->colorIndexActive(static_cast<short>(d.below(8)));
         o.fPort->colorIndexRelative(o.fPort->getColorIndex(d.colour()));
     }},
    {kPickBySelection, 4, true,
     [](Topen& o, Tdice& d) {
         T3dPort& p = *o.fPort;
         p.fSelectRect = p.makeSelectRect({short(d.between(-5, 200)), short(d.between(-5, 200))}, 8);
         const TpickBuffer own(256, nullptr);
         const bool isOwn = d.flag();
         p.beginSelect(isOwn ? own.buffer() : nullptr, isOwn ? own.size() : 0);
         p.pushName(7);
         drawItem(p, anyItem(d), d);
         p.loadName(8);
         drawItem(p, anyItem(d), d);
         p.popName();
         p.endSelect();
     }},
    {"pick by drawing", 4, true,
     [](Topen& o, Tdice& d) {
         T3dPort& p = *o.fPort;
         p.fSelectRect = p.makeSelectRect({short(d.between(-5, 200)), short(d.between(-5, 200))}, 8);
         float depth = 0;
         p.beginRasterizationSelect();
         drawItem(p, anyItem(d), d);
         p.endRasterizationSelect(&depth);
     }},
    {"off-screen target", 2, true,
     [](Topen& o, Tdice& d) {
         Target target;
         unsigned short size[3] = {static_cast<unsigned short>(d.between(1, 90)),
                                   static_cast<unsigned short>(d.between(1, 90)), 0};
         if (!target.create(TrenderTarget::TcolorFormat(2), 0, TrenderTarget::TdepthFormat(2),
                            TrenderTarget::TstencilFormat(d.below(2)), size) ||
             !target.beginDraw())
             return;
         drawItem(*o.fPort, anyItem(d), d);
         target.endDraw();
         target.draw(*o.fPort, d.flag());
         target.readImage(*o.fPort);
     }},
    {"off-screen target of the port", 2, true,
     [](Topen& o, Tdice& d) {
         const QGLFormat format = QGLFormat::defaultFormat();
         o.fPort->q3dPort()->createOffscreenTarget(QSize(d.between(1, 90), d.between(1, 90)),
                                                   d.flag() ? &format : nullptr);
         if (d.flag())
             o.fPort->q3dPort()->deleteOffscreenTarget();
     }},
    {"buffer", 2, true,
     [](Topen& o, Tdice& d) {
         TglBuffer::Target target;
         target.fWidth = static_cast<std::uint16_t>(d.between(1, 90));
         target.fHeight = static_cast<std::uint16_t>(d.between(1, 90));
         o.fPort->glWidget()->makeCurrent();
         QGLFramebufferObject object(target.fWidth, target.fHeight, QGLFramebufferObject::Depth);
         T3dPort::nativeBindingMoved();
         target.fFramebufferObject = &object;
         WholeBuffer buffer(*o.fPort);
         buffer.setTarget(&target);
         o.fPort->beginBuffer(&buffer);
         drawItem(*o.fPort, anyItem(d), d);
         o.fPort->endBuffer(&buffer);
         o.fPort->setCurrentContext();
     }},
    {"display list", 3, true,
     [](Topen& o, Tdice& d) {
         TglDisplayList list;
         for (int i = 0; i < 2; ++i) {
             o.fPort->newList(list, T3dPort::kCompile);
             o.fPort->line(0, 0, d.value(), d.value());
             o.fPort->endList();
         }
         list.call();
     }},
    {"foreign OpenGL", 3, true,
     [](Topen& o, Tdice& d) {
         o.fPort->beginForeignGL();
         glLineWidth(3);
         glDepthFunc(GL_GREATER);
         glEnable(d.one({GL_BLEND, GL_FOG, GL_LIGHTING, GL_TEXTURE_GEN_S, GL_DITHER}));
         glMatrixMode(GL_TEXTURE);
         glViewport(1, 2, 3, 4);
         o.fPort->endForeignGL();
     }},
};

Tdesk::Tdesk(std::uint64_t seed, Tproblems& problems) : fSeed(seed), fProblems(problems)
{
    fMain.setDockNestingEnabled(true);
    fMain.resize(640, 480);
    fMain.show();
    Tdice dice(seed);
    open(dice);
    // Mesa (seen with 22.3) loses megabytes of each context in which something was drawn in selection mode.
    fPicker = std::move(fOpen.back());
    fOpen.pop_back();
    open(dice);
}

Tdesk::~Tdesk()
{
    fOpen.push_back(std::move(fPicker));
    while (!fOpen.empty()) {
        const std::unique_ptr<Topen> last = std::move(fOpen.back());
        fOpen.pop_back();
        delete last->fPort;
        delete last->fOuter.data();
    }
}

bool Tdesk::isValid() const
{
    return fOpen.front()->fPort->glWidget() != nullptr;
}

bool Tdesk::setOnly(const std::string& operation)
{
    fOnly = operation;
    return std::any_of(std::begin(kOperations), std::end(kOperations),
                       [&](const Toperation& known) { return operation == known.fName; });
}

long Tdesk::portsOpened() const
{
    return gPortsOpened;
}

unsigned long Tdesk::window() const
{
    return fOpen.front()->fPort->glWidget()->glWindow();
}

void Tdesk::place(Topen& open, Tdice& dice)
{
    QWidget* inner = new QWidget;
    auto* column = new QVBoxLayout(inner);
    column->setContentsMargins(0, 0, 0, 0);
    const QPointer<QWidget> former = open.fOuter;
    // The first one gets a window of its own: how large a dock is depends on those before it.
    if (dice.below(3) == 0 || (fOpen.size() == 1 && !open.fPort)) {
        open.fOuter = inner;
    } else {
        auto* dock = new QDockWidget(&fMain);
        dock->setWidget(inner);
        fMain.addDockWidget(dice.flag() ? Qt::LeftDockWidgetArea : Qt::BottomDockWidgetArea, dock);
        dock->setFloating(dice.flag());
        open.fOuter = dock;
    }
    if (!open.fPort) {
        const char* const names[] = {"soakSingle", "soakDouble", "soakRich"};
        const char* const name = names[dice.below(3)];
        TresourceMap::Set(name, "saFrameBufferMode", name == names[0] ? "single" : "double");
        if (name == names[2]) {
            // Not alpha planes: for a picture of a port that has some, Mesa (seen with 22.3) puts an image of depth 32 into
            // a pixel buffer of depth 24, an X error each time.
            TresourceMap::Set(name, "saStencilbuffer", "1");
            TresourceMap::Set(name, "saAccumbuffer", "1");
        }
        if (dice.flag())
            open.fPort = new Counted<T3dPort>(inner, name);
        else
            open.fPort = new Counted<TinteractivePort>(inner, name);
        open.fPort->setUpdateCommand(&open.fDraw);
    }
    if (QWidget* control = open.fPort->qControl()) {
        column->addWidget(control);
        control->show();
    }
    open.fOuter->resize(dice.between(40, 300), dice.between(30, 240));
    open.fOuter->show();
    delete former.data();
}

void Tdesk::open(Tdice& dice)
{
    fOpen.push_back(std::make_unique<Topen>());
    fOpen.back()->fScene = fSeed + static_cast<std::uint64_t>(fOperations);
    place(*fOpen.back(), dice);
}

void Tdesk::redock(Topen& open, Tdice& dice)
{
    auto* dock = qobject_cast<QDockWidget*>(open.fOuter.data());
    if (!dock || dice.below(3) == 0)
        place(open, dice);
    else if (dice.flag())
        dock->setFloating(!dock->isFloating());
    else
        fMain.addDockWidget(dice.one({Qt::LeftDockWidgetArea, Qt::RightDockWidgetArea, Qt::TopDockWidgetArea}), dock);
}

void Tdesk::close(std::size_t which, Tdice& dice)
{
    const std::unique_ptr<Topen> gone = std::move(fOpen[which]);
    fOpen.erase(fOpen.begin() + static_cast<std::ptrdiff_t>(which));
    const long alive = gPortsAlive;
    switch (dice.below(6)) {
    case 0:
    case 1:
        delete gone->fPort;
        break;
    case 2:
        delete gone->fPort->glWidget();
        break;
    case 3:
        delete gone->fPort->qControl();
        break;
    case 4:
        if (gone->fOuter) {
            gone->fOuter->deleteLater();
            QApplication::sendPostedEvents(gone->fOuter, QEvent::DeferredDelete);
        }
        break;
    default:
        break;
    }
    delete gone->fOuter.data();
    if (gPortsAlive != alive - 1)
        fProblems.note(Tproblems::kLeftPort, "the port was not destroyed once");
}

void Tdesk::closeAll()
{
    fProblems.setOperation("closing all ports");
    Tdice dice(fSeed + static_cast<std::uint64_t>(fOperations));
    while (!fOpen.empty())
        close(fOpen.size() - 1, dice);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // A driver keeps what it compiles, for each combination of states it has met, as long as the context lives. So there
    // is no port that stays, and the one that is open while memory is counted is the same each time.
    Tdice first(fSeed);
    open(first);
    Topen& left = keeper();
    left.fScene = fSeed;
    fMain.resize(640, 480);
    left.fOuter->resize(200, 150);
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
    QPixmapCache::clear(); // it keeps the icons of docks that are gone, up to a limit
    left.fPort->OnPaint();
    if (left.bind())
        glFinish();
    check(keeper());
}

void Tdesk::step()
{
    Tdice dice(fSeed * 1000003 + static_cast<std::uint64_t>(++fOperations));
    const std::size_t which = dice.below(fOpen.size());
    const char* name = nullptr;
    const unsigned kind = dice.below(16);
    const auto tell = [&](const char* operation) {
        name = operation;
        fProblems.setOperation("action " + std::to_string(fOperations) + ", port " + std::to_string(which) + ": " +
                               operation);
    };
    if (kind == 0 && fOpen.size() < kMostPorts) {
        tell("open");
        open(dice);
    } else if (kind == 1 && which > 0) {
        tell("close");
        close(which, dice);
    } else if (kind == 2) {
        tell("re-dock");
        redock(*fOpen[which], dice);
    } else {
        int weights = 0;
        for (const Toperation& operation : kOperations)
            weights += operation.fWeight;
        int left = dice.between(0, weights - 1);
        const Toperation* chosen = kOperations;
        while (left >= chosen->fWeight)
            left -= (chosen++)->fWeight;
        if (!fOnly.empty())
            chosen = std::find_if(std::begin(kOperations), std::end(kOperations),
                                  [&](const Toperation& operation) { return fOnly == operation.fName; });
        tell(chosen->fName);
        Topen& open = chosen->fName == kPickBySelection ? *fPicker : *fOpen[which];
        if (!chosen->fBound || open.bind())
            chosen->fRun(open, dice);
        else
            name = "(of a port that is not shown)";
    }
    ++fDone[name];
    // Asking a port makes it current. Only one is asked, then the others are found as the operation left them.
    check(dice.below(8) == 0 ? *fPicker : *fOpen[dice.below(fOpen.size())]);
    if (dice.below(3) == 0)
        QApplication::processEvents();
}

void Tdesk::check(Topen& open)
{
    for (int i = 0; i < 8; ++i) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR)
            break;
        char text[64];
        std::snprintf(text, sizeof text, "OpenGL error 0x%04X", error);
        fProblems.note(Tproblems::kGlError, text);
    }
    for (const Tstring& line : open.fPort->stateDifferences())
        fProblems.note(Tproblems::kDifference, line.toStdString());
}
