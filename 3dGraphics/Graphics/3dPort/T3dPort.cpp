#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/TglLight.h"
#include "Graphics/3dPort/TviewportRendererChangedMsg.h"
#include "Graphics/3dPort/TviewportVisibilityChangedMsg.h"
#include "Graphics/glResources/TglPixels.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "QtExtensions/QlirnStackedWidget.h"
#include "foundation/LirnGetEnv.h"
#include "foundation/Taction.h"
#include "foundation/TerrorHandler.h"
#include "foundation/Tevent.h"
#include "foundation/Tmetaclass.h"
#include "foundation/TresourceMap.h"
#include "foundation/TserverWatch.h"

#include <QGLFormat>
#include <QVariant>

#include <cstdlib>
#include <new>
#include <thread>

namespace {

constexpr char kXreRenderer[] = "vp2Renderer";
constexpr char kHardwareRenderer[] = "hwRender_OpenGL_Renderer";
constexpr char kBaseRenderer[] = "base_OpenGL_Renderer";

// The core-profile request: the version, with the profile in which fixed-function code still compiles.
constexpr int kCoreMajor = 4;
constexpr int kCoreMinor = 1;

constexpr int kWheelButton = 1024;
constexpr unsigned kWheelModifiers = 8;

Tmetaclass& metaclassOf()
{
    static Tmetaclass metaclass(
        "port3D", sizeof(T3dPort), Tcontrol::sTypeof(), []() -> void* { return new T3dPort(nullptr, nullptr, false); },
        [](void* memory) -> void* { return new (memory) T3dPort(nullptr, nullptr, false); });
    return metaclass;
}

// Registers the type at library load.
[[maybe_unused]] const Tmetaclass& gRegistered = metaclassOf();

bool runCommand(Taction* command, const Tevent& event)
{
    if (command)
        command->run(event);
    return false;
}

QGLFormat wantedFormat(const char* name, bool coreProfile, bool stereo)
{
    QGLFormat format;
    if (const QGLWidget* resource = Q3dPort::resourceWidget())
        format = resource->format();
    format.setOverlay(false);
    format.setStencilBufferSize(8);
    format.setDepthBufferSize(24);
    format.setStereo(stereo);
    const Tstring mode = TresourceMap::GetResourceString(name, "saFrameBufferMode", "single");
    format.setDoubleBuffer(mode.equalsIgnoreCase("double"));
    if (TresourceMap::GetResourceNumber(name, "saZbuffer", 1) == 0)
        format.setDepth(false);
    if (TresourceMap::GetResourceNumber(name, "saAccumbuffer", 0) != 0)
        format.setAccum(true);
    if (TresourceMap::GetResourceNumber(name, "saAlphabuffer", 0) == 0)
        format.setAlpha(false);
    if (TresourceMap::GetResourceNumber(name, "saStencilbuffer", 0) == 0 || LirnGetEnv("LIRN_DISABLE_STENCIL_BUFFER"))
        format.setStencil(false);
    if (coreProfile) {
        format.setVersion(kCoreMajor, kCoreMinor);
        format.setProfile(QGLFormat::CompatibilityProfile);
    }
    return format;
}

} // namespace

T3dPortPtrArray& T3dPort::fsAllPorts = *new T3dPortPtrArray(8);
TglContextPtrArray& T3dPort::fsAllContexts = *new TglContextPtrArray(8);
TbitField64 T3dPort::fsGraphicsFlags;
TsortedStringArray& T3dPort::fRegisteredRenderers = *new TsortedStringArray(8);
T3dPort* T3dPort::fsTexturePort = nullptr;
unsigned* T3dPort::fsSelectBuffer = nullptr;
bool T3dPort::fsSecondaryBufferAsPrimary = false;
bool T3dPort::fsFirstPort = true;

Tmetaclass* T3dPort::sTypeof()
{
    return &metaclassOf();
}

Tmetaclass* T3dPort::typeof() const
{
    return sTypeof();
}

void* T3dPort::cast(Tmetaclass* metaclass)
{
    return metaclass == sTypeof() ? this : Tcontrol::cast(metaclass);
}

void* T3dPort::construct(Tmetaclass* metaclass)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->construct() : nullptr;
}

void* T3dPort::constructInPlace(Tmetaclass* metaclass, void* memory)
{
    return metaclass && metaclass->istype(sTypeof()) ? metaclass->constructInPlace(memory) : nullptr;
}

Tcontrol* T3dPort::constructPort(const char* name)
{
    return Tcontrol::constructControl(name);
}

T3dPort::T3dPort(QWidget* parent, const char* name, bool stereo)
{
    checkThread();
    fPortFlags.assign(kPortStereoRequested, stereo);
    markInitialized();
    fCoreProfile = Q3dPort::enableGLCoreProfile();

    fDefaultLight = std::make_unique<TglLight>(TglLight::kSpot);
    fDefaultLight->fPort = this;

    fPortFlags.clear(kPortFlag8 | kPortInteractiveMode | kPortFlag20);
    fPortFlags.set(kPortFirstPaintPending | kPortFlag10 | kPortFlag21);

    pushOn(fProjectionStack, fProjectionMatrix);
    pushOn(fModelViewStack, fModelViewMatrix);
    fViewportStack.append(TportRect());
    fViewport = &fViewportStack.last();

    // Before the widget is made, which reads it: a port built here always draws into the primary buffer.
    fsSecondaryBufferAsPrimary = false;
    fRendererName = kBaseRenderer;
    fRegisteredRenderers.insert(fRendererName);
    if (!fsSelectBuffer)
        fsSelectBuffer = static_cast<unsigned*>(std::malloc(kSelectBufferSize * sizeof(unsigned)));
    try {
        setQControl(T3dPort::constructQControl(parent, fCoreProfile, name));
    } catch (...) {
        fsAllPorts.removeItem(this);
        closeWidget();
        throw;
    }
}

T3dPort::~T3dPort()
{
    fsAllPorts.removeItem(this);
    fDefaultLight.reset();
    discardBackingStore();
    closeWidget();
}

void T3dPort::closeWidget()
{
    if (!fQ3dPort)
        return;
    // A widget that goes with the port must not delete it once more.
    if (QlirnGLWidget* widget = glWidget())
        widget->setPortDeleted();
    fQ3dPort.reset();
}

QWidget* T3dPort::constructQControl(QWidget* parent, bool coreProfile, const char* name)
{
    if (fsFirstPort) {
        fsFirstPort = false;
        getHardwareConfig(parent, coreProfile);
    }
    if (!Q3dPort::resourceWidget())
        return nullptr;

    if (LirnGetEnv("LIRN_DEBUG_Q3DPORTS"))
        fDebugPorts = true;
    if (LirnGetEnv("LIRN_DEBUG_Q3DPORT_MATRICES"))
        fDebugMatrices = true;
    if (LirnGetEnv("LIRN_DEBUG_Q3DPORT_STATE"))
        fDebugState = true;

    const bool stereo = fPortFlags.test(kPortStereoRequested) && fsGraphicsFlags.test(kStereoAvailable);
    fPortFlags.clear(kPortFlag6 | kPortFlag15);
    if (fsSecondaryBufferAsPrimary) {
        fPrimaryContext = getSharedContext(getContextType(false, false, true, false, false, stereo, false, 0));
        fDoubleBuffered = 0;
    } else {
        fPrimaryContext = getSharedContext(getContextType(false, true, true, false, false, stereo, false, 0));
    }
    fContext = fPrimaryContext;

    bool created = false;
    if (TglColorTable* table = getColorTable(kModelViewColorBase, created)) {
        if (!table->hasTopology())
            table->setColorTableTopology(kModelViewColorBase, 5, 5, 1);
        fRequestedColorTable = table;
        fActiveColorTable = table;
        fColorIndexSpan = table->indexSpan();
    }

    QWidget* outer = parent ? constructGLWidget(parent, coreProfile, name, stereo) : nullptr;
    fsAllPorts.append(this);
    return outer;
}

QWidget* T3dPort::constructGLWidget(QWidget* parent, bool coreProfile, const char* name, bool stereo)
{
    const QGLFormat wanted = wantedFormat(name, coreProfile, stereo);
    if (!fQ3dPort)
        fQ3dPort = std::make_unique<Q3dPort>();
    fQ3dPort->setDebugMode(fDebugPorts);
    QlirnStackedWidget* outer = fQ3dPort->createStackedWidget(parent);
    outer->setProperty("LirnPort", QVariant::fromValue(static_cast<void*>(this)));

    QlirnGLWidget* widget = fQ3dPort->createGLWidget(wanted, this, outer);
    const QGLFormat& got = fQ3dPort->format();
    fDoubleBuffered = got.testOption(QGL::DoubleBuffer);
    if (got.testOption(QGL::AlphaChannel))
        fsGraphicsFlags.set(kHasAlphaBuffer);
    if (got.testOption(QGL::StencilBuffer))
        fsGraphicsFlags.set(kHasStencilBuffer);

    widget->makeCurrent();
    if (!coreProfile)
        unclampColors();
    primeTwoSidedLighting();
    primePolygonOffset();
    if (stereo)
        queryStereo();
    fQ3dPort->setActiveWidget(Q3dPort::kGLWidget);
    if (fPortRect.left == fPortRect.right && fPortRect.bottom == fPortRect.top) {
        fPortRect.right = static_cast<short>(fPortRect.left + 1);
        fPortRect.top = static_cast<short>(fPortRect.bottom + 1);
    }
    return outer;
}

void T3dPort::initBuffer()
{
    if (!fContext)
        return;
    setDrawingPlanes(kMainPlanes);

    fContext->fClearColor = kCblack;
    clearColor(TportColor(0.75f, 0.75f, 0.75f, 1.0f));

    fContext->fColor = kCwhite;
    fContext->fHardwareIndex = TglContext::kUnknownIndex;
    glColor3fv(&fContext->fColor.r);
    color(kCblack);

    glEnable(GL_NORMALIZE);
    glShadeModel(GL_FLAT);
    fContext->fShadeModel = GL_FLAT;
    glDisable(GL_DITHER);
    if (fContext->fDirtyBits.test(TglContext::kDitheringOn)) {
        glDisable(GL_DITHER);
        fContext->fDirtyBits.clear(TglContext::kDitheringOn);
    }
    fContext->fValidBits.clear(TglContext::kResendDithering);

    primeTwoSidedLighting();
    primePolygonOffset();
    if (fPortFlags.test(kPortStereoRequested))
        queryStereo();
}

void T3dPort::primeTwoSidedLighting()
{
    fTwoSidedLighting = true;
    if (isGLCoreViewport())
        return;
    setCurrentContext();
    if (fContext->fDirtyBits.test(TglContext::kTwoSidedOn) && !fContext->fValidBits.test(TglContext::kResendTwoSided))
        return;
    fContext->fDirtyBits.set(TglContext::kTwoSidedOn);
    fContext->fValidBits.clear(TglContext::kResendTwoSided);
    glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, 1.0f);
}

void T3dPort::primePolygonOffset()
{
    if (!fNoPolygonOffset && !fPolygonOffsetFillOn) {
        glEnable(GL_POLYGON_OFFSET_FILL);
        fPolygonOffsetFillOn = true;
    }
    polygonOffsetLower();
    glDisable(GL_POLYGON_OFFSET_FILL);
    glDisable(GL_POLYGON_OFFSET_LINE);
    glDisable(GL_POLYGON_OFFSET_POINT);
    fPolygonOffsetFillOn = false;
}

void T3dPort::queryStereo()
{
    GLboolean active = GL_FALSE;
    glGetBooleanv(GL_STEREO, &active);
    fPortFlags.assign(kPortStereoActive, active != GL_FALSE);
}

QlirnGLWidget* T3dPort::glWidget() const
{
    return fQ3dPort ? fQ3dPort->glWidget() : nullptr;
}

void T3dPort::make3dVisible(bool visible)
{
    if (QWidget* widget = qControl())
        widget->setVisible(visible);
}

const char* T3dPort::graphicsHardwareString()
{
    return reinterpret_cast<const char*>(glGetString(GL_RENDERER));
}

void T3dPort::setDoubleClickCommand(Taction* command)
{
    if (fPointerCommandsEnabled)
        fDoubleClickCommand = command;
}

void T3dPort::setPtrMovedCommand(Taction* command)
{
    if (fPointerCommandsEnabled)
        fPtrMovedCommand = command;
}

void T3dPort::setKeyPressCommand(Taction* command)
{
    if (fKeyCommandsEnabled)
        fKeyPressCommand = command;
}

void T3dPort::setKeyReleaseCommand(Taction* command)
{
    if (fKeyCommandsEnabled)
        fKeyReleaseCommand = command;
}

void T3dPort::setKeyRepeatCommand(Taction* command)
{
    if (fKeyCommandsEnabled)
        fKeyRepeatCommand = command;
}

void T3dPort::setUpdateCommand(Taction* command)
{
    fUpdateCommand = command;
}

bool T3dPort::doPress(const Tevent& event)
{
    makeCurrent();
    return fPointerCommandsEnabled && Tcontrol::doPress(event);
}

bool T3dPort::doDoubleClick(const Tevent& event)
{
    return runCommand(doubleClickCommand(), event);
}

bool T3dPort::doPtrMoved(const Tevent& event)
{
    return runCommand(ptrMovedCommand(), event);
}

bool T3dPort::doEnterRegion(const Tevent& event)
{
    makeCurrent();
    return Tcontrol::doEnterRegion(event);
}

bool T3dPort::doExitRegion(const Tevent& event)
{
    return Tcontrol::doExitRegion(event);
}

bool T3dPort::doMouseWheel(const Tevent& event)
{
    if (!fPointerCommandsEnabled)
        return false;
    const TserverWatch self(this); // a command may delete the port
    Tpoint position = event.getLocalPosition(1);
    doPress(TpressEvent(position, kWheelModifiers, kWheelButton));
    if (!self.isAlive())
        return false;
    position.x = static_cast<short>(position.x + event.mouseDelta());
    doDrag(TdragEvent(position, kWheelModifiers, kWheelButton));
    if (!self.isAlive())
        return false;
    TreleaseEvent release(position, kWheelModifiers, kWheelButton);
    release.setPrimaryPointer(true);
    doRelease(release);
    return false;
}

bool T3dPort::doStow(const Tevent&)
{
    return false;
}

bool T3dPort::doUnStow(const Tevent&)
{
    return false;
}

void T3dPort::visibleNotify(bool visible)
{
    Tcontrol::visibleNotify(visible);
    notify(TviewportVisibilityChangedMsg(this, visible));
}

bool T3dPort::isStowed() const
{
    return !isOpen();
}

void T3dPort::doUpdateNow() {}

void T3dPort::resizeHook(unsigned short, unsigned short) {}

TbitField64 T3dPort::setToInteractiveMode()
{
    fPortFlags.set(kPortInteractiveMode);
    return fPortFlags;
}

TbitField64 T3dPort::setToNormalMode()
{
    fPortFlags.clear(kPortInteractiveMode);
    return fPortFlags;
}

Tstring T3dPort::renderStringOverride() const
{
    return Tstring();
}

bool T3dPort::makeExternalRendererCurrent(bool b)
{
    return b;
}

void T3dPort::setRendererString(const Tstring& name)
{
    Tstring renderer = name;
    const Tstring override = renderStringOverride();
    if (!override.isEmpty())
        renderer = override;
    if (isGLCoreViewport() && (renderer == kHardwareRenderer || renderer == kBaseRenderer))
        renderer = kXreRenderer;
    if (renderer == fRendererName)
        return;

    const TviewportRendererChangedMsg message(this, fRendererName, renderer);
    fRendererName = renderer;
    if (isXREViewport() && fContext && fContext->fShadeModel != GL_SMOOTH)
        shadeModelChanged(kShadeSmooth);
    notify(message);
}

bool T3dPort::isXREViewport() const
{
    return fRendererName == kXreRenderer;
}

bool T3dPort::isGLCoreViewport() const
{
    return Q3dPort::enableGLCoreProfile();
}

void T3dPort::checkThread()
{
#ifndef NDEBUG
    static const std::thread::id guiThread = std::this_thread::get_id();
    if (std::this_thread::get_id() != guiThread)
        TerrorHandler::report(TerrorHandler::kError, "T3dPort used outside the thread of the user interface");
#endif
}
