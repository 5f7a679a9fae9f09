#pragma once

#include "Graphics/3dPort/TstateValue.h"
#include "Graphics/3dPort/TviewportScale.h"
#include "Graphics/Export.h"
#include "Graphics/glResources/TglColorTable.h"
#include "Graphics/glResources/TglContext.h"
#include "Graphics/glResources/TglFont.h"
#include "foundation/T4dDblMatrix.h"
#include "foundation/Tarray.h"
#include "foundation/TbitField64.h"
#include "foundation/TglobalTranslatorBase.h"
#include "foundation/TportColor.h"
#include "foundation/TportRect.h"
#include "foundation/TsortedStringArray.h"
#include "foundation/Tstring.h"
#include "foundation/TstringArray.h"
#include "foundation/TxformMatrix.h"
#include "ui/Tcontrol.h"

#include <GL/gl.h>

#include <cstdint>
#include <memory>

class Q3dPort;
class QlirnGLWidget;
class QPixmap;
class QWidget;
class T3dPort;
class T3dPortAudit;
class T4dFltMatrix;
class Taction;
class Tevent;
class TglBitmap;
class TglBuffer;
class TglDisplayList;
class TglLight;
class TglPixels;
class TglPolyStipple;
class Tmetaclass;
class Tpoint;
class Tquaternion;
class Trect;
struct T2Int32;
struct T3dPortGeometryStats;
struct T4dDblPoint;
struct T4dDblVector;

using T3dPortPtrArray = Tarray<T3dPort*>;
using TglContextPtrArray = Tarray<TglContext*>;

/**
 * The drawing port: one object per 3D drawing surface.
 *
 * A port owns the binding to an OpenGL context, a port rectangle and a viewport stack, model-view and projection matrix
 * stacks in double precision, colour, light and render state. Drawing code calls setCurrentContext (or any operation
 * that does) and then OpenGL. State goes through the port's setters, which compare with what was last sent and send
 * differences only; OpenGL's own matrix stacks are not used, the tops of the port's are loaded when something is drawn.
 *
 * @code
 *     T3dPort port(parentWidget, "perspView", false);
 *     port.setUpdateCommand(&draw);            // runs on every paint; ends with port.swapBuffers()
 * @endcode
 *
 * Coordinates are device pixels, the origin is the lower left corner. A port without a widget, because it was given no
 * parent or because the display has no GLX, accepts every call; it makes nothing current, so that what it sends to OpenGL
 * goes to the context that is. Everything is for the GUI thread; debug builds report a call from another one through the
 * error handler.
 */
class LIRN_3DGRAPHICS_EXPORT T3dPort : public Tcontrol
{
public:
    // Enumerations. Those whose values are OpenGL's are passed to it unchanged.

    /** The planes drawn into. The library uses the main planes only. */
    enum TdrawingPlanes : std::uint32_t { kMainPlanes = 0, kSecondPlanes = 1 };
    enum TwhichContext { kPrimaryContext = 0 };

    /** Bits of the flag word of a port. */
    enum TportFlags : std::uint64_t {
        kPortInUpdate = 0x1,
        kPortFirstPaintPending = 0x2,
        kPortGLSelect = 0x4,
        kPortRasterSelect = 0x8,
        kPortInPrimitive = 0x10, ///< while set, colour changes do not make the context current first
        kPortFlag5 = 0x20,
        kPortFlag6 = 0x40,
        kPortLightingOn = 0x80,
        kPortFlag8 = 0x100,
        kPortInteractiveMode = 0x200,
        kPortFlag10 = 0x400,
        kPortFlag15 = 0x8000, ///< handed to TglContext
        kPortFogEnabled = 0x80000,
        kPortFlag20 = 0x100000,
        kPortFlag21 = 0x200000,
        kPortNoLighting = 0x2000000,  ///< enabling lighting is refused
        fNoAutoDepthTest = 0x4000000, ///< transparent colour materials leave the depth test alone
        kPortStereoActive = 0x8000000,
        kPortStereoRequested = 0x10000000
    };

    /** Bits of fsGraphicsFlags: what the display's OpenGL offers. */
    enum TgraphicsFlags : std::uint64_t {
        kHasAbgr = 0x1,
        kHasMultisample = 0x2,
        kHasAlphaBuffer = 0x4,
        kDithering = 0x8,
        kHasClampToBorder = 0x10,
        kHasClampToEdge = 0x20,
        kHasBgra = 0x40,
        kHasMultiTexture = 0x80,
        kGraphicsFlag8 = 0x100,
        kVertexArraysInSelect = 0x200,
        kSlowDrawPixels = 0x400,
        kHasRescaleNormal = 0x800,
        kHasFogCoord = 0x1000,
        kHasTransposeMatrix = 0x2000,
        kHasAnisotropicFilter = 0x4000,
        kHasVertexWeighting = 0x8000,
        kHasTextureCompression = 0x10000,
        kHasSecondaryColor = 0x20000,
        kHasTextureEnvCombine = 0x40000,
        kHasDepthTexture = 0x80000,
        kHasMirrorRepeat = 0x100000,
        kHasMirrorClamp = 0x200000,
        kHasTextureEnvAdd = 0x400000,
        kHasTextureEnvDot3 = 0x800000,
        kHasVertexShader = 0x1000000,
        kHasGenerateMipmap = 0x2000000,
        kHasNonPowerTwoTexture = 0x4000000,
        kHasDrawRangeElements = 0x8000000,
        kStereoAvailable = 0x10000000,
        kHasStencilBuffer = 0x20000000,
        kHasUnclampedColor = 0x40000000,
        kHasVertexBufferObject = 0x80000000
    };

    enum TblendFunc : std::uint32_t {
        kBlendZero = GL_ZERO,
        kBlendOne = GL_ONE,
        kBlendSrcColor = GL_SRC_COLOR,
        kBlendOneMinusSrcColor = GL_ONE_MINUS_SRC_COLOR,
        kBlendSrcAlpha = GL_SRC_ALPHA,
        kBlendOneMinusSrcAlpha = GL_ONE_MINUS_SRC_ALPHA,
        kBlendDstAlpha = GL_DST_ALPHA,
        kBlendOneMinusDstAlpha = GL_ONE_MINUS_DST_ALPHA,
        kBlendDstColor = GL_DST_COLOR,
        kBlendOneMinusDstColor = GL_ONE_MINUS_DST_COLOR,
        kBlendSrcAlphaSaturate = GL_SRC_ALPHA_SATURATE
    };

    /** Ways to lay a layer over what is there, each a pair of blend factors (see setLayerBlendMode). */
    using TlayeredBlendMode = std::uint32_t;

    enum TpolygonFace : std::uint32_t { kFront = GL_FRONT, kBack = GL_BACK, kFrontAndBack = GL_FRONT_AND_BACK };
    enum TpolygonMode : std::uint32_t { kPolygonPoint = GL_POINT, kPolygonLine = GL_LINE, kPolygonFill = GL_FILL };
    enum TcullingMethod : std::uint32_t { kCullNone = 0, kCullBack = 1, kCullFront = 2 };

    enum TdepthFunc : std::uint32_t {
        kDepthNever = GL_NEVER,
        kDepthLess = GL_LESS,
        kDepthEqual = GL_EQUAL,
        kDepthLequal = GL_LEQUAL,
        kDepthGreater = GL_GREATER,
        kDepthNotequal = GL_NOTEQUAL,
        kDepthGequal = GL_GEQUAL,
        kDepthAlways = GL_ALWAYS
    };

    enum TaccumOp : std::uint32_t {
        kAccumAccum = GL_ACCUM,
        kAccumLoad = GL_LOAD,
        kAccumReturn = GL_RETURN,
        kAccumMult = GL_MULT,
        kAccumAdd = GL_ADD
    };

    enum TshadeModel : std::uint32_t { kShadeFlat = GL_FLAT, kShadeSmooth = GL_SMOOTH };

    enum TdisplayListMode : std::uint32_t { kCompile = GL_COMPILE, kCompileAndExecute = GL_COMPILE_AND_EXECUTE };

    /** Where a text stands in x from its point. */
    enum TtextPos : std::uint32_t {
        kLeft = 0, ///< begins there
        kCenter = 1,
        kRight = 2 ///< ends there
    };

    /** What copyPixels copies. */
    enum TcopyMode : std::uint32_t {
        kFrontToBack = 0,
        kBackToFront = 1,
        kAux0ToBack = 2,
        kAux1ToBack = 3 ///< pixels of full alpha only
    };

    enum TmaterialChannel : std::uint32_t {
        kMaterialAmbient = GL_AMBIENT,
        kMaterialDiffuse = GL_DIFFUSE,
        kMaterialSpecular = GL_SPECULAR,
        kMaterialEmission = GL_EMISSION,
        kMaterialAmbientAndDiffuse = GL_AMBIENT_AND_DIFFUSE
    };

    // Type

    /** The metaclass "port3D". */
    static Tmetaclass* sTypeof();
    /** A new object of @p metaclass; null for a null metaclass or one that is no port's. */
    static void* construct(Tmetaclass* metaclass);
    /** As construct, in memory of the metaclass's size. */
    static void* constructInPlace(Tmetaclass* metaclass, void* memory);
    /** The registered control of the name (Tcontrol::constructControl). */
    static Tcontrol* constructPort(const char* name);

    // Virtual operations, in slot order

    ~T3dPort() override;
    Tmetaclass* typeof() const override;
    void* cast(Tmetaclass* metaclass) override;
    /** Makes the port current and runs the press command. */
    bool doPress(const Tevent& event) override;
    bool doDoubleClick(const Tevent& event) override;
    /** Redraws: resets the viewport to the whole port and runs the update command. Returns false. */
    bool doUpdate(const Tevent& event) override;
    bool doEnterRegion(const Tevent& event) override;
    bool doExitRegion(const Tevent& event) override;
    bool doStow(const Tevent& event) override;
    bool doUnStow(const Tevent& event) override;
    bool doPtrMoved(const Tevent& event) override;
    /** Turns a wheel step into a press, drag and release of button 1024 whose drag moves by the step. */
    bool doMouseWheel(const Tevent& event) override;
    /** Posts a TviewportVisibilityChangedMsg. */
    void visibleNotify(bool visible) override;
    /** Turns the event's local position from window into port pixels. */
    void adjustEventLocalPosition(Tevent& event) const override;
    /**
     * Starts picking with OpenGL's selection mode inside fSelectRect: what is drawn until endSelect leaves hit records of
     * the names in force (loadName, pushName) instead of pixels. May be called at any time, not only while painting.
     * @param buffer  takes the records (see TpickBuffer) and must live until endSelect; null for the shared fsSelectBuffer
     * @param size    words of @p buffer; 0 for the shared buffer
     */
    void beginSelect(unsigned* buffer, int size) override;
    /**
     * Ends picking, and puts the projection back.
     * @return the number of hit records. When they did not fit: 1 with the shared buffer, whose first record is good, and
     *         a negative number with a buffer of the caller's
     */
    int endSelect() override;
    /**
     * Reads the port, from its window's corner, into @p map (see pixelMapGLRead), unhindered by scissor and leaving it as it
     * was. Depth testing stays off afterwards, except while the backing store is used.
     * @return true when @p map was read into; the number has no influence
     */
    bool pixelMapRead(TpixelMap& map, short) override;
    /** Reads nothing and returns false: ports have no floating-point pixels. */
    bool pixelMapRead(TgenericPixelMap<float>& map, TportRect area, PixelMapReadColorSpace space) override;
    /** Redraws if setDoUpdateOnMove is on. */
    void parentWindowMoveNotify() override;
    /** Takes the size of @p r, redraws on a change and calls resizeHook. Returns false. */
    bool resize(const Trect& r) override;

    virtual void setKeyPressCommand(Taction* command);
    virtual void setDoubleClickCommand(Taction* command);
    virtual void setKeyReleaseCommand(Taction* command);
    virtual void setKeyRepeatCommand(Taction* command);
    virtual void setPtrMovedCommand(Taction* command);
    /** The command that draws the port. It ends with swapBuffers: painting does not swap by itself. */
    virtual void setUpdateCommand(Taction* command);
    virtual bool isStowed() const;
    virtual void doUpdateNow();
    /** Makes the port's widget under @p parent, and its context; returns the widget, or null without one. */
    virtual QWidget* constructQControl(QWidget* parent, bool coreProfile, const char* name);
    /** Called after every resize and at the first paint, in device pixels. */
    virtual void resizeHook(unsigned short width, unsigned short height);
    virtual TbitField64 setToInteractiveMode();
    virtual TbitField64 setToNormalMode();
    /** A renderer name that wins over every requested one; empty for none. */
    virtual Tstring renderStringOverride() const;
    virtual bool makeExternalRendererCurrent(bool b);

    // Life

    /**
     * Builds the port and its widget under @p parent.
     * @param name  key of the port's frame-buffer settings in the host's resource map: "saFrameBufferMode" ("single" or
     *              "double"), "saZbuffer", "saAccumbuffer", "saAlphabuffer", "saStencilbuffer" (numbers)
     * @param stereo  asks for a stereo visual, where the display has one
     */
    T3dPort(QWidget* parent, const char* name, bool stereo);

    using Tcontrol::isInitialized;
    using Tcontrol::markInitialized;

    /** True while the port has its Qt side. */
    bool isOpen() const { return fQ3dPort != nullptr; }
    Q3dPort* q3dPort() const { return fQ3dPort.get(); }
    /** The widget drawn in; null without one. */
    QlirnGLWidget* glWidget() const;
    /** Shows or hides the port's widget. */
    void make3dVisible(bool visible);
    /** Puts a freshly made context into the state that ports start from. */
    void initBuffer();

    TbitField64 portFlags() const { return fPortFlags; }
    /** Something of the host's that lives as long as the port. */
    const std::shared_ptr<void>& sharedHandle() const { return fSharedHandle; }
    void setSharedHandle(std::shared_ptr<void> handle) { fSharedHandle = std::move(handle); }
    bool isDebuggingPorts() const { return fDebugPorts; }

    static const T3dPortPtrArray& allPorts() { return fsAllPorts; }
    /** GL_RENDERER of the current context; null without one. */
    static const char* graphicsHardwareString();

    // Event commands. Not owned. The pointer and key commands are kept only while their gates are open.

    Taction* doubleClickCommand() const { return fPointerCommandsEnabled ? fDoubleClickCommand : nullptr; }
    Taction* keyPressCommand() const { return fKeyCommandsEnabled ? fKeyPressCommand : nullptr; }
    Taction* keyReleaseCommand() const { return fKeyCommandsEnabled ? fKeyReleaseCommand : nullptr; }
    Taction* keyRepeatCommand() const { return fKeyCommandsEnabled ? fKeyRepeatCommand : nullptr; }
    Taction* ptrMovedCommand() const { return fPointerCommandsEnabled ? fPtrMovedCommand : nullptr; }
    Taction* updateCommand() const { return fUpdateCommand; }
    void enablePointerCommands(bool on) { fPointerCommandsEnabled = on; }
    void enableKeyCommands(bool on) { fKeyCommandsEnabled = on; }

    // Renderer

    const Tstring& rendererName() const { return fRendererName; }
    /**
     * Names the renderer that draws the port: "base_OpenGL_Renderer" (the default), "hwRender_OpenGL_Renderer",
     * "stub_Renderer" or "vp2Renderer", which a core-profile viewport takes instead of the fixed-function ones. Posts a
     * TviewportRendererChangedMsg when the name changes.
     */
    void setRendererString(const Tstring& name);
    bool isXREViewport() const;
    bool isGLViewport() const { return true; }
    /** True when the process draws with a core profile, where the fixed-function pipeline is not used. */
    bool isGLCoreViewport() const;
    bool isDXViewport() const { return false; }
    bool enableDX() const { return false; }

    // Contexts and the current port

    /** Makes the port's context current if another is, and this port the current one. */
    void makeCurrent() const;

    /**
     * What every drawing operation does first: makes the port current if it is not, and loads the matrices that OpenGL
     * does not have yet. Costs a few comparisons when there is nothing to do.
     */
    void setCurrentContext() const
    {
        if (kChecksThread)
            checkThread();
        if (!isReady())
            bringCurrent();
    }

    /** Returns the port to its primary context and the main planes. */
    void setContext(TwhichContext which);
    void setDrawingPlanes(TdrawingPlanes planes);
    TdrawingPlanes drawingPlanes() const { return fDrawingPlanes; }
    /** Sends the current colour and the clear colour to OpenGL again. */
    void initContext();
    /** After a size change: makes the whole port the viewport. */
    void resizeDrawingPlanes();
    /** Sets @p p to the widget's upper left corner on the screen; left alone without a widget. */
    void getPositionAbs(Tpoint& p) const;

    /** The record of what was last sent to the port's OpenGL context; null for a port without a context. */
    const TglContext* glContextRecord() const { return fContext; }
    /** A new record for a context of @p type, kept until the process ends. It is not shared, the name notwithstanding. */
    TglContext* getSharedContext(TcontextType type);
    /** The code for a combination of wanted buffers; the first flag has no influence. */
    static TcontextType getContextType(bool a1, bool a2, bool a3, bool a4, bool a5, bool a6, bool a7, unsigned short n);
    static const char* contextType() { return "rgb"; }
    /** Always null: a port hands out no native context. */
    static void* context() { return nullptr; }
    static void initializeGLLibrary() {}

    /** The port whose context was last made current; compare it only, for that port may have been destroyed since. */
    static T3dPort* currentPort() { return fsCurrentPort; }
    /**
     * To be called when something else than a port has bound, released or destroyed a native context; @p bound is the one
     * bound since, null when that is not known.
     */
    static void nativeBindingMoved(const void* bound = nullptr)
    {
        fsTrustedPort = nullptr;
        fsBoundContext = bound;
    }
    /** The native context that is bound, as far as known; null when GLX must be asked. */
    static const void* knownNativeContext() { return fsBoundContext; }

    // Foreign OpenGL code

    /**
     * Call before code that calls OpenGL behind the port's back. Makes the port current, with its matrices loaded. The
     * code may change any state, and the bound context too; it must restore what the port does not record: texture
     * bindings, light parameters, colour material, polygon mode and offset, the face culled, point and line smoothing,
     * depth range, edge flag, OpenGL's own matrix stacks.
     */
    void beginForeignGL();
    /** Call after it: binds the port again and sends all recorded state, so that record and driver agree. */
    void endForeignGL();
    /** Sends all recorded state to the context that is current, and sets every re-send bit. */
    void resendState();
    /**
     * Compares what the port recorded with what the driver says, a line per difference; none when they agree. Slow:
     * every state is queried. With LIRN_DEBUG_Q3DPORT_STATE set the port does so after each paint and prints the lines.
     */
    TstringArray stateDifferences() const;
    /**
     * What the port recorded of its OpenGL state. A value is empty while the record does not say what OpenGL has: a colour
     * that glColorMaterial changes, a stipple pattern that is switched off, matrices not loaded yet. Makes the port current;
     * none for a port without a context.
     */
    TstateValues recordedState() const;
    /** The same states as the driver tells them (glGet and its like); none while the port's context cannot be bound. */
    TstateValues driverState() const;
    /**
     * What differs between two ports, or a port at two times: a line like "depth mask: on | off" for each name that both
     * have with different values. Values that are unknown or not a number are not compared.
     */
    static TstringArray stateDifferences(const TstateValues& a, const TstateValues& b);

    // Port rectangle, viewports, painting

    const TportRect& portRect() const { return fPortRect; }
    /** The topmost row of pixels inside the port rectangle. */
    short lastRow() const { return fLastRow; }
    void setPortRect(const TportRect& r);
    /** Replaces the port rectangle for a while. Nothing is resized and nothing sent. */
    void pushPortRect(const TportRect& r);
    void popPortRect();
    const TportRect& viewport() const { return *fViewport; }
    void pushViewport(const TportRect& r);
    /** Back to the viewport before; the last one stays. */
    void popViewport();
    void setPlayblastPortRect(const TportRect& r) { fPlayblastRect = r; }
    const TportRect& playblastPortRect() const { return fPlayblastRect; }
    /** The region being painted while the update command runs, the port rectangle otherwise. */
    const TportRect& getUpdateRegion() const;
    bool isFullyObscured() const;
    bool isPartiallyObscured() const { return false; }
    /** True inside; the left and bottom edges belong to the port, the right and top ones do not. */
    bool isPtInPortRect(const Tpoint& p) const;
    TportColor controlBgColor() const { return kCwhite; }

    /** The port's part in the widget's paint: sizes the port from the widget and redraws. */
    void OnPaint();
    /** Shows what was drawn (glXSwapBuffers); a port that cannot swap is flushed (glFlush). */
    void swapBuffers();
    /** Holds swapBuffers to flushing. */
    void setNoSwap(bool on) { fNoSwap = on; }
    bool isNoSwap() const { return fNoSwap; }
    bool isDoubleBuffered() const { return fDoubleBuffered != 0; }
    /** Redraws whenever the window around the port is moved. */
    void setDoUpdateOnMove(bool on);
    /** The port drawn at its own size, into the lower left corner of a picture of @p w by @p h pixels; null on failure. */
    QPixmap renderToPixmap(int w, int h);

    // Matrices. Row vectors: p' = p x M, memory as OpenGL's; "top" is the current matrix of a stack.

    GLenum matrixMode() const { return fMatrixMode; }
    /**
     * The stack that the generic operations work on: GL_PROJECTION, or GL_MODELVIEW (GL_MODELVIEW1_EXT is the same). In
     * any other mode they do nothing.
     */
    void matrixMode(GLenum mode) { fMatrixMode = mode; }

    void pushMatrix();
    /** Removes the top; the last matrix stays. */
    void popMatrix();
    /** Removes @p n matrices, or none when the stack does not hold more than that. */
    void popMatrix(unsigned n);
    /** The top; the identity when the mode selects no stack. */
    T4dDblMatrix matrix() const;
    /** Copies the top; leaves @p m alone when the mode selects no stack. */
    void getMatrix(T4dDblMatrix& m) const;
    void loadMatrix(const T4dDblMatrix& m);
    /** top = m x top. */
    void multMatrix(const T4dDblMatrix& m);
    void loadIdentity();
    void pushLoadMatrix(const T4dDblMatrix& m);
    /** top = m x the matrix below the top; nothing on a stack of one. */
    void stackMultMatrix(const T4dDblMatrix& m);
    void pushMultMatrix(const T4dDblMatrix& m);
    /** Scales the first three columns of the top. The fourth is left alone, on a perspective projection too. */
    void scale(double x, double y, double z);
    /** Moves the origin of the top. Affine: element 15 is left alone. */
    void translate(double x, double y, double z);
    void translate(const T4dDblVector& v);
    void rotate(const Tquaternion& q);
    /** Angles in radians about the axes, x first. */
    void rotate(double x, double y, double z);
    /** Multiplies with the correction that takes scale, or scale and shear, out of the top. */
    void unSquishMatrix(TxformMatrix::unSquishType type);

    void getProjectionMatrix(T4dDblMatrix& m) const { m = *fProjectionMatrix; }
    void projectionMatrix(T4dDblMatrix& m) const { m = *fProjectionMatrix; }
    void getModelViewMatrix(T4dDblMatrix& m) const { m = *fModelViewMatrix; }
    void loadProjectionMatrix(const T4dDblMatrix& m);
    /** World to clip space: model-view x projection. Cached. */
    void getTransformMatrix(T4dDblMatrix& m) const;

    // These replace the projection; they do not multiply into it as the GLU functions do.

    /** @p fovy in degrees, held between 2 and 179 (whole view angle in y); @p zNear at least 0.0001. */
    void perspective(double fovy, double aspect, double zNear, double zFar);
    void perspective(double left, double right, double bottom, double top, double zNear, double zFar);
    /** An empty extent divides by zero. */
    void ortho(double left, double right, double bottom, double top, double zNear, double zFar);
    void ortho(double left, double right, double bottom, double top);

    // These replace the model-view matrix.

    /** A camera at @p distance from the origin; angles in degrees. */
    void polarView(double distance, double azimuth, double incidence, double twist);
    /** @p twist in radians. Only -eye.z reaches the translation, and that in x. */
    void lookAt(const T4dDblVector& eye, const T4dDblVector& centre, double twist);

    /** Pixel space of the viewport: integer coordinates fall on pixel centres. */
    void pushOrtho2D();
    void pushOrtho2D(double left, double right, double bottom, double top);
    void popOrtho2D();

    /** Puts @p m in the place of the projection when OpenGL is loaded next. The change alone does not cause a load. */
    void beginProjMatrixOverride(const T4dDblMatrix& m);
    /** Ends it. What is loaded stays loaded until the projection is changed. */
    void endProjMatrixOverride();
    void glLoadModelViewMatrix() const;
    void glLoadMatrices() const;

    // Coordinate mapping and clipping, on the port's own matrices and viewport; OpenGL is neither asked nor told. Three
    // spaces: world (what the model-view matrix takes), port (pixels, origin at the lower left, and as z the depth from 0
    // near to 1 far), window (pixels, origin at the upper left, as events have them). A world point's w is used as it is.

    /** What worldToPort tells of a point. */
    enum TpointPlace : int { kPointInside = 0, kPointAtInfinity = 150, kPointOutside = 151 };

    /**
     * From clip to port space; w becomes 1. For a w within 1e-10 of 0 the point lies at infinity: x and y are the largest
     * float then, z half of that.
     */
    T4dDblPoint scaleToPort(const T4dDblPoint& c) const;
    /**
     * From world to port space; @p out is set in every case, and may be @p p.
     * @return a TpointPlace: kPointOutside outside the view volume, so for every point behind the eye
     */
    int worldToPort(const T4dDblPoint& p, T4dDblPoint& out) const;
    /**
     * Clips the segment from @p a to @p b by the view volume and maps what is left of it.
     * @return 0; -1, and the outputs left alone, when nothing is left
     */
    int worldToPort(const T4dDblPoint& a, const T4dDblPoint& b, T4dDblPoint& outA, T4dDblPoint& outB) const;
    /**
     * True if @p c, in clip space, lies outside the plane: 0 top (y > w), 1 bottom (-w > y), 2 left (-w > x), 3 right
     * (x > w), 4 far (z > w), 5 near (-w > z). Nothing is outside any other plane.
     */
    bool isPointOutside(short plane, const T4dDblPoint& c) const;
    /** Where the line from @p a to @p b, in clip space, meets the plane; @p a for a number that is no plane's. */
    T4dDblPoint intersection(short plane, const T4dDblPoint& a, const T4dDblPoint& b) const;
    /**
     * The ray of world points that are seen at @p p.
     * @param point  set to the one on the near plane
     * @param dir    set to the unit vector that leads from there to the far plane
     */
    void portToWorld(const Tpoint& p, T4dDblPoint& point, T4dDblVector& dir) const;
    /** The world point seen where @p p is, at @p depth from 0 (near) to 1 (far); @p p itself when that lies at infinity. */
    T4dDblPoint worldToDepth(const T4dDblPoint& p, double depth) const;
    /** From window to port pixels: y counted from the other edge of the port rectangle. */
    Tpoint windowToPort(const Tpoint& p) const;
    /** The same, the other way. */
    Tpoint portToWindow(const Tpoint& p) const;
    /**
     * How many lengths of @p v cover @p pixels pixels on the screen when they start from @p p, at least 1e-5; good for
     * handles of constant size. 1 for a vector that has no extent on the screen. Exact to the pixel only, in which its
     * end is looked up, and less for a vector so close to the view direction that a length covers few of them: its change
     * of depth counts as pixels too.
     */
    double screenLengthScale(double pixels, const T4dDblPoint& p, const T4dDblVector& v) const;
    /**
     * Multiplies a frame into the top of the stack that the matrix mode selects: z along @p dir, y as near to @p up as it
     * can be, the origin at @p origin. Where @p up and @p dir are parallel the x and y axes are null vectors.
     */
    void align(const T4dDblVector& up, const T4dDblVector& dir, const T4dDblPoint& origin);
    /** Turns the current frame to the camera, its z axis towards it, its y axis up as the camera's. */
    void alignToCamera();

    // Selection and picking. Set fSelectRect, begin, draw, end. Either mode draws with a projection that shows nothing but
    // fSelectRect, on a copy that ends with it. Begin and end come in pairs, of one mode at a time; picking works at any
    // time, in and out of the update command. A rectangle of no extent divides by zero, and hits nothing. In a viewport
    // away from the port's corner GL selection counts fSelectRect from the viewport's corner, picking by drawing from the
    // port's.

    /** The square from @p p - @p half to @p p + @p half, clipped by clipSelectRect. */
    TportRect makeSelectRect(const Tpoint& p, unsigned short half) const;
    /** Cuts off what lies beyond the port's edges: below 0 and above its width and height. */
    void clipSelectRect(TportRect& r) const;

    // The name stack, as in OpenGL (glLoadName and the like). Nothing is sent unless GL selection is in progress, so
    // drawing code may name what it draws at all times.

    void loadName(unsigned name)
    {
        if (isNaming())
            glLoadName(name);
    }
    void pushName(unsigned name)
    {
        if (isNaming())
            glPushName(name);
    }
    void initNames()
    {
        if (isNaming())
            glInitNames();
    }
    void popName()
    {
        if (isNaming())
            glPopName();
    }

    /** The part of beginSelect that concerns the port: its projection, and the name stack open. */
    void selectInitialization();
    /** Takes it back. */
    void selectFinalization();

    /**
     * Starts picking by drawing: what is drawn until endRasterizationSelect goes, scaled down from fSelectRect to at most
     * 16 x 16 pixels, into the lower left corner of the viewport, whose depth is cleared. Depth test and depth mask have
     * to be on while drawing. Takes the scissor test for itself; it is off afterwards.
     */
    void beginRasterizationSelect();
    /**
     * Ends it.
     * @param depth  if not null, set to the depth of the nearest thing drawn, from 0 to 1; the largest float without any
     * @return whether anything was drawn, nearer than the far plane
     */
    bool endRasterizationSelect(float* depth);

    // Render state. A setter described as cached does nothing, and makes nothing current, for the value recorded.

    /** Cached glColor3fv; the alpha component is only recorded. */
    void color(const TportColor& c)
    {
        if (fContext && fContext->fColor != c)
            colorChanged(c);
    }
    /** To be set between the host's own glBegin and glEnd: colours then go out without a look at the context. */
    void setInPrimitive(bool on) { fPortFlags.assign(kPortInPrimitive, on); }
    /** Cached glPointSize. */
    void pointSize(float size)
    {
        if (fContext && fContext->fPointSize != size)
            pointSizeChanged(size);
    }
    void pointSmoothing(bool on);
    /** Cached glLineWidth. */
    void lineWidth(float width)
    {
        if (fContext && fContext->fLineWidth != width)
            lineWidthStateChanged(width);
    }
    /** glLineWidth without a comparison. */
    void lineWidthStateChanged(float width);
    /** Cached GL_BLEND. */
    void blending(bool on)
    {
        if (fContext && fContext->fBlending != on)
            blendingStateChanged(on);
    }
    /** GL_BLEND without a comparison. */
    void blendingStateChanged(bool on);
    /** Makes current, then cached glBlendFunc. */
    void blendFunc(TblendFunc source, TblendFunc destination)
    {
        setCurrentContext();
        if (fContext && (fContext->fBlendSource != source || fContext->fBlendDestination != destination ||
                         fContext->fValidBits.test(TglContext::kResendBlendFunc)))
            blendFuncChanged(source, destination);
    }
    /**
     * blendFunc by layer mode: 0, 1 over; 2 inside; 3 outside; 4 additive over; 5, 6 multiply over; 7 replace; 8, 10
     * darken; 9 brighten; any other one plus one.
     */
    void setLayerBlendMode(TlayeredBlendMode mode);
    /** GL_LINE_SMOOTH, with blending: on switches blending on, off switches it off whoever had switched it on. */
    void lineSmoothing(bool on);
    void polygonMode(TpolygonFace face, TpolygonMode mode);
    /** Culls as @p method says; values other than the three change nothing. */
    void cullFace(TcullingMethod method);
    TcullingMethod cullFace() const;
    void depthRange(double zNear, double zFar);
    void getDepthRange(double& zNear, double& zFar) const;
    /** Cached GL_DEPTH_TEST; nothing in a context without depth buffer. */
    void depthTest(bool on)
    {
        if (fContext && (fContext->fDirtyBits.test(TglContext::kDepthTestOn) != on ||
                         fContext->fValidBits.test(TglContext::kResendDepthTest)))
            depthTestChanged(on);
    }
    /** Cached glDepthMask. */
    void depthMask(bool on)
    {
        if (fContext && fContext->fDepthMask != on)
            depthMaskChanged(on);
    }
    /** Cached glDepthFunc. */
    void depthFunc(TdepthFunc func)
    {
        if (fContext && fContext->fDepthFunc != func)
            depthFuncChanged(func);
    }
    /** glAccum; false, and nothing done, without an accumulation buffer. */
    bool accum(TaccumOp op, float value);
    void clearAccum(float r, float g, float b, float a);
    /** Cached glClearColor. */
    void clearColor(const TportColor& c)
    {
        if (fContext && fContext->fClearColor != c)
            clearColorChanged(c);
    }
    /** The clear colour; opaque black on the second planes. */
    TportColor clearColor() const;
    /**
     * glClear of @p mask. The stencil buffer is cleared along in a context that is known to have one and left out of the
     * mask in any other. The contexts of ports are not made with that knowledge, so clearing a port leaves its stencil
     * buffer alone.
     */
    void clear(int mask);
    /** Draws inside @p r only. The whole viewport switches the test off unless @p force; an empty @p r lets nothing through. */
    void scissor(const TportRect& r, bool force);
    void polygonOffset(float factor, float units); ///< the values; GL_POLYGON_OFFSET_FILL is the caller's to switch
    /** Pushes polygons back: factor 0.95, units 1. */
    void polygonOffsetLower();
    /** Brings polygons forward: factor 1.1, units -1. */
    void polygonOffsetRaise();
    /** The offset in force; @p units is 0 on a core-profile viewport. Returns true. */
    bool getPolygonOffset(float& factor, float& units);
    /** Suppresses polygon offset on this port. */
    void setNoPolygonOffset(bool on) { fNoPolygonOffset = on; }
    /** Cached glShadeModel. */
    void shadeModel(TshadeModel model)
    {
        if (fContext && fContext->fShadeModel != model)
            shadeModelChanged(model);
    }
    /** glShadeModel without a comparison; only recorded on a core-profile viewport. */
    void shadeModelChanged(TshadeModel model);
    /** GL_EDGE_FLAG of whatever context is current. */
    bool edgeFlag() const;
    void edgeFlag(bool on);
    /** Colour bits of the main planes with alpha; 0 before the first paint and for a closed port. */
    int mainDepth() const;
    /** Bits of the depth buffer; 0 without one. */
    int zbufferDepth() const;
    /** GL_FOG. The port's fog parameters are sent with the first enabling, and never again. */
    void setFogEnabled(bool on);
    bool isFogEnabled() const { return fPortFlags.test(kPortFogEnabled); }
    void setFogSource(TglContext::TfogSource source);
    TglContext::TfogSource fogSource() const { return fFogSource; }

    static float globalLineWidth() { return fsGlobalLineWidth; }
    static void globalLineWidth(float width) { fsGlobalLineWidth = width; }
    static bool enableSmoothWireframe() { return fsSmoothWireFrame; }
    static void enableSmoothWireframe(bool on) { fsSmoothWireFrame = on; }
    static bool useSeparateSpecularColor() { return fsUseSeparateSpecularColor; }
    static void useSeparateSpecularColor(bool on) { fsUseSeparateSpecularColor = on; }

    // Lighting and materials. Light numbers count from GL_LIGHT0.

    /** The colour of the default light; sent when the light is loaded next. */
    void setLightColor(const TportColor& c);
    /** Loads the default light as light @p i, a directional one from @p direction in the current matrix. */
    void setDefaultLight(short i, const T4dDblVector& direction);
    TglLight* defaultLight() const { return fDefaultLight.get(); }
    /** GL_MAX_LIGHTS of the current context; 8 on a core profile. */
    static unsigned short maxNumberOfHwLights();
    /** GL_LIGHTING on, with the specular colour kept apart if useSeparateSpecularColor. Refused under kPortNoLighting. */
    void enableLighting();
    void disableLighting();
    void setLighting(bool on);
    bool isLightingOn() const { return fPortFlags.test(kPortLightingOn); }
    /** Suppresses lighting on this port. */
    void setNoLighting(bool on) { fPortFlags.assign(kPortNoLighting, on); }
    /** Keeps enableColorMaterial from switching the depth test on. */
    void setNoAutoDepthTest(bool on) { fPortFlags.assign(fNoAutoDepthTest, on); }
    /** Lighting on, and what of the port's light model OpenGL does not have yet. */
    void setLightingModel();
    /** The light model, sent by setLightingModel. */
    void setGlobalAmbient(const TportColor& c) { fGlobalAmbient = c; }
    void setLocalViewer(bool on) { fLocalViewer = on; }
    void setTwoSidedLighting(bool on) { fTwoSidedLighting = on; }
    /** GL_LIGHT0 + @p i. The first use after the enables were disturbed disables every other light. */
    void enableLight(short i);
    void disableLight(short i);
    /** Disables GL_LIGHT0 to GL_LIGHT7. */
    void disableAllLights();
    /** Cached GL_SHININESS of both faces, held between 0 and 128. */
    void setShininess(double s);

    // Cached material colours of both faces. They go through glColorMaterial, and so become the current colour.

    void setAmbientMaterialColor(const TportColor& c);
    void setDiffuseColor(const TportColor& c);
    void setDiffuseColor(const TportColor& c, float alpha);
    void setEmissionColor(const TportColor& c);
    void setSpecularColor(const TportColor& c);
    /**
     * Lets glColor set @p channel of @p face from here on (GL_COLOR_MATERIAL); @p transparent blends too.
     * @return the recorded colour of the channel, which a caller that sends colours may update
     */
    TportColor& enableColorMaterial(TpolygonFace face, TmaterialChannel channel, bool transparent);
    /** Ends it: the channel's colour is unknown then, and the ambient material the default one. */
    void disableColorMaterial(TmaterialChannel channel, bool transparent);

    // Stipples. Patterns are compiled into a display list on first use.

    /** Applies @p stipple to lines, and records it; a solid one switches stippling off. */
    void lineStipple(const TglLineStipple& stipple);
    /** Applies @p stipple to polygons. Not recorded. */
    void polygonStipple(const TglPolyStipple& stipple);

    // Display lists and external buffers

    /**
     * Starts compiling into @p list (glNewList), anew when @p list is its only holder and into a new name otherwise. The
     * list must live until endList.
     */
    void newList(TglDisplayList& list, TdisplayListMode mode);
    void endList();
    /**
     * Draws into the buffer's off-screen target from here on, with its rectangle as the port rectangle; the viewport stays.
     * Until endBuffer no other port may draw, and this one not be made current by hand.
     */
    void beginBuffer(TglBuffer* buffer);
    void endBuffer(TglBuffer* buffer);

    // Points, lines, rectangles, circles and arcs, in the z = 0 plane of the current coordinates. They change no state.

    void point(const T4dDblPoint& p);
    void point(float x, float y, float z);
    /** Corners in any order. */
    void rect(float x1, float y1, float x2, float y2, bool filled);
    void rect(const T4dDblPoint& a, const T4dDblPoint& b, bool filled);
    void line(float x1, float y1, float x2, float y2);
    /** The unit circle, of 60 points; without @p draw it is only prepared. */
    void circle(bool filled, bool draw);
    void circle(const T4dDblPoint& centre, float radius, bool filled);
    /**
     * An arc in steps of 6 degrees. Angles are in degrees from +y towards +x. The steps always go in that sense from
     * @p startDegrees; a last segment leads to @p endDegrees. A filled arc is a fan about the centre.
     */
    void arc(const T4dDblPoint& centre, float radius, double startDegrees, double endDegrees, bool filled);
    void arc(float x, float y, float radius, double startDegrees, double endDegrees, bool filled);
    /** An arc about @p centre from the tip of @p from to that of @p to, in the plane of both. */
    void arc(const T4dDblPoint& centre, const T4dDblVector& from, const T4dDblVector& to, bool filled);

    // Solids, as lines or filled. A unit solid is a display list, compiled once in the process; the placed forms put it at
    // a centre with a scale.

    /** From -1 to 1 on each axis. */
    void box(bool filled);
    void box(const T4dDblPoint& centre, float sx, float sy, float sz, bool filled);
    /** Radius 1 at z = 0, apex at z = 1. */
    void cone(bool filled);
    void cone(const T4dDblPoint& centre, float radius, float height, bool filled);
    /** An icosahedron subdivided once, of radius 1. Draws into whatever is current unless @p makeCurrent. */
    void sphere(bool filled, bool makeCurrent = true);
    void sphere(const T4dDblPoint& centre, float radius, bool filled, bool makeCurrent = true);
    /** Radius 1, from z = 0 to z = 1. @p capped counts for a filled one; the normals of both caps face up. */
    void cylinder(bool filled, bool capped);
    void cylinder(const T4dDblPoint& centre, float radius, float height, bool filled, bool capped);
    /** Flat, between radius 1 and @p innerRatio at z = 0, facing +z or, flipped, -z. */
    void ring(float innerRatio, bool flip);
    void ring(const T4dDblPoint& centre, float radiusA, float radiusB, bool flip);
    /** Corners at 1 and -1 on each axis. The normals are not of unit length. */
    void octahedron(bool filled);
    void octahedron(const T4dDblPoint& centre, float size, bool filled);
    /** The corner of the unit cube: the origin and 1 on each axis. */
    void tetrahedron(bool filled);
    void tetrahedron(const T4dDblPoint& centre, float size, bool filled);
    /** The filled cone, with outlines in the colour of index @p colorIndex. */
    void outline_cone(short colorIndex);
    void outline_cone(const T4dDblPoint& centre, float radius, float height, short colorIndex);

    // Text and bitmaps, upright and of their own size whatever the matrices are. They stand at the window pixel of a
    // point, bitmaps at its depth too, and leave the raster position behind.

    /** The font of text. */
    const TglFont& font() const { return fFont; }
    void font(const TglFont& f) { fFont = f; }
    /**
     * Draws @p text, bytes of the font's encoding, in the current colour, with its base line at the point in y; on a
     * box, centred in its height. It is drawn while the box meets the viewport, whether or not the box is to be seen.
     *
     * A background leaves blending off, whatever it was, and the blend factors GL_ONE and GL_ONE_MINUS_SRC_ALPHA, so that
     * a colour with opacity is to be given with red, green and blue multiplied by it. OpenGL's list base is 0 afterwards.
     * The depth of the text is half of what the point has from the far plane: (1 - depth) / 2.
     *
     * @param boxSize     pixels of the box, of which the point is the lower left corner, or the middle or the right end
     *                    of the lower edge; null for the extent of the text
     * @param background  what the box is filled with, unless its alpha is 0
     */
    void text(const T4dDblPoint& where, const char* text, TtextPos pos, const T2Int32* boxSize = nullptr,
              const TportColor& background = kCtransparent);
    /** Draws @p bm with its origin at the point, in the current colour; nothing when the point is clipped. */
    void bitmap(const T4dDblPoint& where, const TglBitmap& bm);
    void bitmap(const T4dDblPoint& where, const TglBitmap* bm);
    void bitmap(float x, float y, float z, const TglBitmap& bm);
    void bitmap(float x, float y, float z, const TglBitmap* bm);
    /** The Xlib Display* of the ports; null without X. */
    static void* getDisplay();

    // Texture state. Cached setters compare with the last value sent, whatever texture or unit that went to; texture objects
    // send their own parameters on top.

    /** The environment mode of texture objects that follow the view's options. */
    static TglContext::TtextureEnv textureEnvModeState() { return fsTextureEnv; }
    static void setTextureEnvModeState(TglContext::TtextureEnv mode) { fsTextureEnv = mode; }
    /** Their minification filter, kNearest or kLinear; other values are ignored. */
    static TglContext::TtextureFilter viewMinFilterState() { return fsTextureMinFilter; }
    static void setViewMinFilterState(TglContext::TtextureFilter filter)
    {
        if (filter == TglContext::kNearest || filter == TglContext::kLinear)
            fsTextureMinFilter = filter;
    }
    /** Their magnification filter. */
    static TglContext::TtextureFilter viewMagFilterState() { return fsTextureMagFilter; }
    static void setViewMagFilterState(TglContext::TtextureFilter filter) { fsTextureMagFilter = filter; }

    // What was sent last; OpenGL's defaults for a port without a context.

    TglContext::TtextureGenMode textureGenMode() const
    {
        return fContext ? fContext->fTextureGenMode : TglContext::kGenOff;
    }
    TglContext::TtextureWrap textureWrap() const { return fContext ? fContext->fTextureWrap : TglContext::kRepeat; }
    TglContext::TtextureEnv textureEnvMode() const
    {
        return fContext ? fContext->fTextureEnv : TglContext::kEnvModulate;
    }
    TglContext::TtextureFilter textureMinFilter() const
    {
        return fContext ? fContext->fTextureMinFilter : TglContext::kNearestMipmapLinear;
    }
    TglContext::TtextureFilter textureMagFilter() const
    {
        return fContext ? fContext->fTextureMagFilter : TglContext::kLinear;
    }
    // These leave their arguments alone for a port without a context.
    void textureCombineBlend(TglContext::TtexEnvCombineParam& param, TglContext::TtexEnvCombine& value) const;
    void textureCombineSource(TglContext::TtexEnvSourceParam& param, TglContext::TtexEnvSource& value) const;
    void textureCombineOperand(TglContext::TtexEnvOperandParam& param, TglContext::TtexEnvOperand& value) const;
    void textureCombineScale(TglContext::TtexEnvScaleParam& param, TglContext::TtexEnvScale& value) const;

    /** Cached GL_TEXTURE_ENV_MODE (glTexEnvi). */
    void setTextureEnvMode(TglContext::TtextureEnv mode)
    {
        if (fContext && fContext->fTextureEnv != mode)
            textureEnvModeChanged(mode);
    }
    /** Cached GL_TEXTURE_WRAP_S and GL_TEXTURE_WRAP_T; the target does not count in the comparison. */
    void setTextureWrap(TglContext::TtextureWrap wrap, TglContext::TtextureTarget target = TglContext::kTexture2D)
    {
        if (fContext && fContext->fTextureWrap != wrap)
            textureWrapChanged(wrap, target);
    }
    /** Cached GL_TEXTURE_MIN_FILTER. Takes kNearest and kLinear; a mipmap filter does no more than make current. */
    void setTextureMinFilter(TglContext::TtextureFilter filter,
                             TglContext::TtextureTarget target = TglContext::kTexture2D)
    {
        if (fContext && fContext->fTextureMinFilter != filter)
            textureMinFilterChanged(filter, target);
    }
    /** Cached GL_TEXTURE_MAG_FILTER. */
    void setTextureMagFilter(TglContext::TtextureFilter filter,
                             TglContext::TtextureTarget target = TglContext::kTexture2D)
    {
        if (fContext && fContext->fTextureMagFilter != filter)
            textureMagFilterChanged(filter, target);
    }
    // The combiner (GL_TEXTURE_ENV). Cached, each with one pair of parameter name and value.
    void setTextureCombineBlend(TglContext::TtexEnvCombineParam param, TglContext::TtexEnvCombine value);
    void setTextureCombineSource(TglContext::TtexEnvSourceParam param, TglContext::TtexEnvSource value);
    void setTextureCombineOperand(TglContext::TtexEnvOperandParam param, TglContext::TtexEnvOperand value);
    void setTextureCombineScale(TglContext::TtexEnvScaleParam param, TglContext::TtexEnvScale value);
    /**
     * Cached: switches the generation of texture coordinates (glTexGen) and cube mapping. The modes disable no more than
     * they have to: the planar ones leave nothing of a cube mode, the cube ones leave the enables of a planar mode. Unknown
     * modes are recorded only.
     */
    void setTextureGenMode(TglContext::TtextureGenMode mode)
    {
        if (fContext && fContext->fTextureGenMode != mode)
            textureGenModeChanged(mode);
    }
    /** The generation plane of a coordinate (glTexGenfv), in the context that is current. */
    void setTextureGenCoord(TglContext::TtextureCoord coord, TglContext::TtextureGenFunc func,
                            const T4dDblPoint& plane);
    /** glBindTexture in the context that is current. */
    void bindTexture(TglContext::TtextureTarget target, unsigned name) { glBindTexture(target, name); }

    /** The largest useful anisotropy; 1 without the extension. */
    float maxTextureFilterAnistropic() const;
    /** GL_TEXTURE_MAX_ANISOTROPY_EXT of the bound two-dimensional texture, if the extension is there. Not cached. */
    void setTextureFilterAnisotropic(float anisotropy);
    /** Whether texture objects that follow the view's options filter anisotropically; never without the extension. */
    static bool enableTextureFilterAnisotropic() { return fsTextureFilterAnisotropic && hasTextureFilterAnisotropic(); }
    static void enableTextureFilterAnisotropic(bool on) { fsTextureFilterAnisotropic = on; }

    // Texture units, of the context that is current. A unit that is locked or does not exist is left alone, as is any
    // without multitexturing.

    /** The unit that texture state goes to (glActiveTextureARB). */
    void activeTextureUnit(TglContext::TtextureUnit unit);
    /** The unit that coordinate pointers go to (glClientActiveTextureARB). */
    void activeTexCoordPointer(TglContext::TtextureUnit unit);
    // Coordinates of a unit; without multitexturing, of the only one.
    void multiTexCoord2(TglContext::TtextureUnit unit, const float* st);
    void multiTexCoord(TglContext::TtextureUnit unit, float s, float t);
    void multiTexCoord(TglContext::TtextureUnit unit, float s, float t, float r);

    // The texture matrix of the active unit, on OpenGL's own stack. They do nothing while setNoTextureMatrix is on.

    void texturePushMatrix();
    void texturePopMatrix();
    void textureTransform(const T4dFltMatrix& m);
    /**
     * Loads a placement of a texture: turned by @p rotate degrees about its middle, @p repeatU by @p repeatV times its
     * size, moved by @p offsetU and @p offsetV, and turned by -@p turn degrees. The result stays moved by half a texture,
     * (0.5, 0.5), also where all else is neutral.
     */
    void textureTransform(float rotate, float repeatU, float repeatV, float offsetU, float offsetV, float turn);
    /** Suppresses the texture matrix operations on this port. */
    void setNoTextureMatrix(bool on) { fNoTextureMatrix = on; }

    // Geometry statistics. Counted in the record that the host attaches, nowhere without one. Drawing code counts, if
    // isEnabledGeometryStats; the port's own primitives do not.

    void enableGeometryStats(bool on) { fGeometryStatsEnabled = on; }
    bool isEnabledGeometryStats() const { return fGeometryStatsEnabled; }
    void toggleGeometryStats();
    void countTmesh(int verts, int edges, int faces, int uvs, int triangles);
    /** Zeroes all counters but that of the meshes, which the host resets itself. */
    void resetGeometryStats();
    void countActiveFaces(int n);
    void countActiveEdges(int n);
    void countActiveVerts(int n);
    void countActiveUVs(int n);
    void countActiveTriangles(int n);
    void countActivePolyFaces(int n);
    void countActivePolyEdges(int n);
    void countActivePolyVerts(int n);
    void countActivePolyUVs(int n);
    void countActivePolyTriangles(int n);
    unsigned getCountPolyFaces() const;
    unsigned getCountPolyEdges() const;
    unsigned getCountPolyVerts() const;
    unsigned getCountPolyUVs() const;
    unsigned getCountPolyTriangles() const;
    unsigned getCountActiveFaces() const;
    unsigned getCountActiveEdges() const;
    unsigned getCountActiveVerts() const;
    unsigned getCountActiveUVs() const;
    unsigned getCountActiveTriangles() const;
    unsigned getCountActivePolyFaces() const;
    unsigned getCountActivePolyEdges() const;
    unsigned getCountActivePolyVerts() const;
    unsigned getCountActivePolyUVs() const;
    unsigned getCountActivePolyTriangles() const;
    static bool getSmpPolyCount() { return smpPolyCount; }
    static void setSmpPolyCount(bool on) { smpPolyCount = on; }

    // Capabilities

    static bool haveMirrorRepeat() { return fsGraphicsFlags.test(kHasMirrorRepeat); }
    static bool haveMirrorClamp() { return fsGraphicsFlags.test(kHasMirrorClamp); }
    static bool haveClampToBorder() { return fsGraphicsFlags.test(kHasClampToBorder); }
    static bool haveGenerateMipmap() { return fsGraphicsFlags.test(kHasGenerateMipmap); }
    static bool haveNonPowerTwoTexture() { return fsGraphicsFlags.test(kHasNonPowerTwoTexture); }
    static bool hasTextureFilterAnisotropic() { return fsGraphicsFlags.test(kHasAnisotropicFilter); }
    static bool sHasAlphaBuffer() { return fsGraphicsFlags.test(kHasAlphaBuffer); }
    static bool sHasStencilBuffer() { return fsGraphicsFlags.test(kHasStencilBuffer); }
    bool hasAccumBuffer() const;

    /** Reads OpenGL's error flag: 0 without an error, else 1, and getErrorString tells which. */
    int error() const;
    /** The last error that error() found. */
    static Tstring getErrorString() { return fsErrorString; }
    /** Writes the pending OpenGL errors to standard error, eleven at most, each with @p where in front. */
    static void printGlError(const char* where);

    /**
     * Finds out what the resource context's OpenGL offers. The first port of the process calls it.
     * @param widget  without one no entry points are looked up
     */
    static void getHardwareConfig(QWidget* widget, bool coreProfile);
    /** The extension part of getHardwareConfig, on the current context. */
    static void bindExtensions(bool coreProfile);

    // Pixel transfer. Maps and blocks have the bottom row first; positions are port pixels unless said otherwise. Nothing
    // is done for an empty map or a port without a widget. Pixel store is as it was afterwards; the pixel zoom is taken
    // into account and, but where it is set for flipping, as it was too. Drawing ends with glFlush.

    /** glReadPixels of the size of @p map from (@p x, @p y) of the current context's read buffer. False for an empty map. */
    bool pixelMapGLRead(TpixelMap& map, int x, int y) const;
    /**
     * glDrawPixels at (@p x, @p y) in the current coordinates (see pushOrtho2D) of the current context. With @p flip the
     * first row is the top one, and (@p x, @p y) counts from the window position of the origin; the pixel zoom is 1 then.
     */
    void pixelMapGLWrite(const TpixelMap& map, int x, int y, bool flip) const;
    using Tcontrol::pixelMapRead;
    /** Reads @p area, as far as it fits, into the lower left corner of @p map. Otherwise as the form without area. */
    bool pixelMapRead(TpixelMap& map, short, TportRect& area);
    /** Draws with the lower left corner at @p p of the current coordinates; not at all if that is clipped. */
    void pixelMapDraw(const T4dDblPoint& p, const TpixelMap& map, bool);
    /**
     * Draws at port pixel (p.x, p.y), which may be outside of what is seen. p.z is the depth, from -1 (farthest) to 1
     * (nearest), at which the pixels are tested if depth testing is on.
     */
    void pixelMapDrawClipped(const T4dDblPoint& p, const TpixelMap& map);
    /**
     * pixelMapGLWrite of the whole @p map at the corner of @p dst, without depth testing, if @p dst meets the port rectangle
     * or equals @p src.
     */
    void pixelMapDraw(const TportRect& dst, const TpixelMap& map, const TportRect& src, bool flip);
    void pixelMapDraw(short x, short y, const TpixelMap& map, bool flip);
    void pixelMapDraw(const TportRect& dst, const TpixelMap& map, bool flip);
    /** Draws at (@p x, @p y) of the current coordinates. */
    void writePixelMap(const TpixelMap& map, float x, float y);
    /** TglPixels::read from the window. */
    void readPixels(TglPixels& block, short x, short y);
    /** TglPixels::write in the current coordinates. */
    void writePixels(const TglPixels& block, short x, short y);
    /**
     * Sizes @p map to the snapshot rectangle and reads that from the front buffer. False for a rectangle that is empty or
     * begins left of the port or below it, and while drawing goes to an off-screen target.
     */
    bool snapShot(TpixelMap& map);
    /** Notes the mode; an empty snapshot rectangle becomes 100 x 100 pixels in the middle of the port. */
    void setSnapShotMode(bool on);
    bool isSnapShotMode() const { return fSnapShotMode; }
    void setSnapShotRect(const TportRect& r) { fSnapShotRect = r; }
    const TportRect& snapShotRect() const { return fSnapShotRect; }
    /**
     * Copies the port's pixels from one colour buffer to another (glCopyPixels), or nothing if one of them does not exist.
     * An unknown mode copies between the buffers selected. Afterwards dithering is on if fsGraphicsFlags has kDithering.
     */
    void copyPixels(TcopyMode mode);

    // Backing store: the colours of the viewport, saved before an overlay is drawn and put back to erase it, without
    // drawing the scene again.

    /** Saves what the viewport shows. A store keeps the size it was made with, until it is discarded. */
    void saveBackingStore();
    /** Draws the saved pixels at the corner of the viewport. Leaves pixel zoom at 1 and the pixel transfer at its defaults. */
    void restoreBackingStore();
    /** Forgets what was saved. Every resize of the port and every doUpdate does. */
    void discardBackingStore();
    /** Depth testing is off while the mode is on. Its end discards the store and puts depth testing back. */
    void setUseBackingStore(bool on);
    bool isUsingBackingStore() const { return fUseBackingStore; }
    bool isBackingSaved() const { return fBackingSaved; }

    // Colour tables: kept for the whole process, by base index. The one of base 2048 is the model-view table.

    /** The table of the base index @p base; made when there is none, which @p created tells. */
    static TglColorTable* getColorTable(unsigned short base, bool& created);
    static unsigned short getBaseColorIndexModelView() { return kModelViewColorBase; }
    /** The first table of base 2048 that was made; null before that. */
    static TglColorTable* getModelViewDefaultColorTable() { return fsModelViewDefaultColorTable; }
    /** The table in force for the base 2048, made if there is none. */
    static TglColorTable* getModelViewColorTable();
    /** Puts @p table, which stays the caller's, in the place of the one in force; nothing when there is none, or for null. */
    static void setModelViewColorTable(TglColorTable* table);
    /** Sets entry @p i of the model-view table, which grows if need be. */
    static void setColorTable(unsigned short i, const TportColor& c);
    /** Entry @p i of the model-view table; entry 1 outside it, black when there is no table or no entry. */
    static TportColor colorTable(unsigned short i);

    /** Puts a table in the place of the model-view table while it lives. Guards may be nested. */
    class LIRN_3DGRAPHICS_EXPORT ColorTableGuard
    {
    public:
        /** Takes @p table over, unless it is the default one. */
        explicit ColorTableGuard(TglColorTable* table);
        /** Puts the table before back, and deletes its own. */
        ~ColorTableGuard();
        ColorTableGuard(const ColorTableGuard&) = delete;
        ColorTableGuard& operator=(const ColorTableGuard&) = delete;

    private:
        TglColorTable* fTable;
        TglColorTable* fFormer;
    };
    /** The default table in force. */
    static std::unique_ptr<ColorTableGuard> pushModelViewColorTable();
    /** A copy of the default table's colours in force, which may be changed and is forgotten with the guard. */
    static std::unique_ptr<ColorTableGuard> pushCopyModelViewColorTable();

    /** Index of @p c in the model-view table, in the plane of the index buffer drawn into; 0 without a table. */
    short getColorIndex(const TportColor& c) const;
    /** Makes entry @p i of the plane of index buffer 1 the current colour. */
    void colorIndexActive(short i);
    /** Makes entry @p i of the plane of the index buffer drawn into the current colour. */
    void colorIndexRelative(short i);
    /** Index of a marquee that shows on @p c: 2 (dark) when its brightness is above a quarter, else 3 (light). */
    static short getMarqueeColor(const TportColor& c);

    // Class-wide state

    static TbitField64 fsGraphicsFlags;
    static TsortedStringArray& fRegisteredRenderers; ///< names of the renderers that ports have used
    static T3dPort* fsTexturePort;                   ///< the port that owns texture uploads
    static unsigned* fsSelectBuffer;                 ///< the shared hit buffer, kSelectBufferSize words
    static bool fsSecondaryBufferAsPrimary;
    static float fsXrayAlpha;
    static bool fsHasMultiTexture;
    static bool fsDepreciateFixedFunction;
    static int fsMaxTextureSize;     ///< GL_MAX_TEXTURE_SIZE
    static int fsMaxUserTextureSize; ///< 0 for no limit of the user's
    static int fsMaxTextureUnits;
    static TglContext::TtextureEnv fsTextureEnv; ///< this and the next two: see textureEnvModeState
    static TglContext::TtextureFilter fsTextureMinFilter;
    static TglContext::TtextureFilter fsTextureMagFilter;
    static constexpr int kSelectBufferSize = 2048;

private:
    friend class T3dPortAudit;
    friend struct T3dPortProbe;

    // Bits of fMatrixValid
    enum : std::uint32_t {
        kTransformValid = 0x1,
        kInverseValid = 0x2,
        kAllMatricesValid = 0x3F,
        kDependOnModelView = 0x17, ///< cleared when the model-view matrix changes
        kDependOnProjection = 0x2B
    };
    static constexpr std::uint32_t fsModelMatrixValid[2] = {0x4, 0x10};
    static constexpr std::uint32_t fsProjMatrixValid[2] = {0x8, 0x20};
    static constexpr std::uint32_t fsEitherValid[2] = {0xC, 0x30};

    static constexpr unsigned short kModelViewColorBase = 2048;

    /** The stack that the matrix mode selects; without a stack when it selects none. */
    struct TselectedStack
    {
        T4dDblMatrixArray* fStack;
        T4dDblMatrix** fTop;
        bool fProjection;
    };

    static bool isHostUnsettled()
    {
        return (unsigned(TglobalTranslatorBase::newingFileCondition()) |
                unsigned(TglobalTranslatorBase::flushingSceneCondition())) != 0;
    }
    /** True if the port can draw into its main planes as things stand; false may mean no more than other planes. */
    bool isReady() const
    {
        return this == fsTrustedPort && !isHostUnsettled() && fDrawingPlanes == kMainPlanes &&
               (fMatrixValid & fsEitherValid[0]) == fsEitherValid[0];
    }
    int planesRow() const { return fDrawingPlanes == kMainPlanes ? 0 : 1; }
    [[gnu::cold]] void bringCurrent() const;
    void sendViewport() const;
    void noteStray() const;
    static void checkThread();
#ifdef NDEBUG
    static constexpr bool kChecksThread = false;
#else
    static constexpr bool kChecksThread = true;
#endif

    void closeWidget();
    QWidget* constructGLWidget(QWidget* parent, bool coreProfile, const char* name, bool stereo);
    void primeTwoSidedLighting();
    void primePolygonOffset();
    void queryStereo();
    void sendColorIndex(TglColorTable* table, int index);
    TglColorTable* activeColorTable() const;
    bool isDepthTestOn() const;
    bool isDitheringOn() const;
    /** Cached GL_DITHER. */
    void dithering(bool on);
    bool readPixelMap(TpixelMap& map, const TportRect* area);
    void drawPixelMap(const TportRect& dst, const TpixelMap& map, bool isSeen, bool flip);
    /** Pixel space of the viewport, with the raster position at port pixel (@p x, @p y), seen or not; popOrtho2D ends it. */
    void pushRasterPosition(double x, double y, double z);

    void colorChanged(const TportColor& c);
    void setColorWithAlpha(const TportColor& c);
    void drawTextBox(const TportRect& box, const TportColor& background);
    static void drawBitmap(const TglBitmap& bm);
    void pointSizeChanged(float size);
    void blendFuncChanged(TblendFunc source, TblendFunc destination);
    void depthTestChanged(bool on);
    void depthMaskChanged(bool on);
    void depthFuncChanged(TdepthFunc func);
    void clearColorChanged(const TportColor& c);
    void sendFogParameters();
    void settleLightEnables();
    void textureEnvModeChanged(TglContext::TtextureEnv mode);
    void textureWrapChanged(TglContext::TtextureWrap wrap, TglContext::TtextureTarget target);
    void textureMinFilterChanged(TglContext::TtextureFilter filter, TglContext::TtextureTarget target);
    void textureMagFilterChanged(TglContext::TtextureFilter filter, TglContext::TtextureTarget target);
    void textureGenModeChanged(TglContext::TtextureGenMode mode);
    template <class Param, class Value>
    void setTextureCombine(Param TglContext::*param, Value TglContext::*value,
                           TglContext::TtextureUnit TglContext::*unit, Param newParam, Value newValue);
    template <class Operation> void onTextureMatrix(Operation operation);
    [[gnu::cold]] void noteUnitSentElsewhere() const;
    void setMaterialColor(TportColor TglContext::*recorded, TmaterialChannel channel, const TportColor& c,
                          bool withAlpha);
    void add(std::uint32_t T3dPortGeometryStats::*counter, int n);
    unsigned count(std::uint32_t T3dPortGeometryStats::*counter) const;

    TselectedStack selectedStack();
    const T4dDblMatrix* selectedTop() const;
    void pushOn(T4dDblMatrixArray& stack, T4dDblMatrix*& top);
    void multiplyTop(const TselectedStack& selected, const T4dDblMatrix& m, const T4dDblMatrix& by);
    void topChanged(const TselectedStack& selected, const char* projectionMessage, const char* modelViewMessage);
    /** Clears what depends on the matrix; traces @p message and the matrix in debug mode, unless it is null. */
    void projectionChanged(const char* message);
    void modelViewChanged(const char* message);
    void pushOrtho(double left, double right, double bottom, double top, double offset);
    void traceMatrix(const char* message, const T4dDblMatrix& m) const;
    void traceXyz(const char* what, const TselectedStack& selected, double x, double y, double z) const;
    void sendMatrixMode(GLenum mode) const;
    const T4dDblMatrix& projectionToLoad() const;
    const T4dDblMatrix& transform() const
    {
        if (!(fMatrixValid & kTransformValid))
            updateTransform();
        return fTransformMatrix;
    }
    const T4dDblMatrix& inverseTransform() const
    {
        if (!(fMatrixValid & kInverseValid))
            updateInverseTransform();
        return fInverseTransformMatrix;
    }
    const TviewportScale& viewportScale() const
    {
        if (!fViewportScale.isOf(*fViewport))
            updateViewportScale();
        return fViewportScale;
    }
    [[gnu::cold]] void updateTransform() const;
    [[gnu::cold]] void updateInverseTransform() const;
    [[gnu::cold]] void updateViewportScale() const;

    /** True while names go to OpenGL, then with the port's context current. */
    bool isNaming() const
    {
        if (!fPortFlags.test(kPortGLSelect))
            return false;
        if (this != fsTrustedPort)
            bringCurrent();
        return true;
    }
    void pushSelectProjection();
    void popSelectProjection();

    // Fields, in their declared order

    bool fPointerCommandsEnabled = true;
    bool fKeyCommandsEnabled = true;
    mutable TbitField64 fPortFlags;
    std::unique_ptr<Q3dPort> fQ3dPort;
    std::shared_ptr<void> fSharedHandle; ///< the host's
    TdrawingPlanes fDrawingPlanes = kMainPlanes;
    TglFont fFont;
    TglContext::TfogSource fFogSource = TglContext::kFragmentDepth;
    GLenum fFogMode = GL_LINEAR;
    float fFogDensity = 0.1f;
    double fFogStart = 0.0;
    double fFogEnd = 100.0;
    TportColor fFogColor{0.5f, 0.5f, 0.5f, 1.0f};
    bool fFogParametersSent = false;
    T4dDblMatrixArray fModelViewStack{64};
    T4dDblMatrixArray fProjectionStack{8};
    TviewportArray fViewportStack{8};         ///< never empty
    T4dDblMatrix* fModelViewMatrix = nullptr; ///< the top of its stack, as the next two
    T4dDblMatrix* fProjectionMatrix = nullptr;
    TportRect* fViewport = nullptr;
    T4dDblMatrix fSelectMatrix; ///< put in front of the projection while selecting
    mutable T4dDblMatrix fTransformMatrix;
    mutable T4dDblMatrix fInverseTransformMatrix;
    mutable std::uint32_t fMatrixValid = 0;
    GLenum fMatrixMode = GL_MODELVIEW;
    T4dDblMatrix fProjOverrideMatrix;
    bool fProjOverrideActive = false;
    bool fCoreProfile = false; ///< as it was when the port was made
    TglContext* fPrimaryContext = nullptr;
    TglContext* fContext = nullptr; ///< the one drawn with
    TglColorTable* fRequestedColorTable = nullptr;
    TglColorTable* fActiveColorTable = nullptr;
    short fColorIndexSpan = 0;
    std::uint32_t fDoubleBuffered = 1;
    TportRect fPortRect;
    short fLastRow = 0;
    TportRect fPlayblastRect;

public:
    TportRect fSelectRect; ///< where to pick, in port pixels; the host writes it before it begins (see makeSelectRect)

private:
    TportColor fGlobalAmbient{0.2f, 0.2f, 0.2f, 1.0f};
    bool fLocalViewer = false;
    bool fTwoSidedLighting = true;
    bool fPolygonOffsetFillOn = false;
    std::unique_ptr<TglLight> fDefaultLight;
    float fReserved1 = 1.0f;
    TviewportArray fPortRectStack{8};        ///< saved port rectangles
    unsigned* fSelectBuffer = nullptr;       ///< of the GL selection in progress
    TglDisplayList* fCompiledList = nullptr; ///< being compiled
    bool fUseBackingStore = false;
    bool fBackingSaved = false;
    std::unique_ptr<TglPixels> fBackingStore; ///< the saved pixels
    TportRect fSnapShotRect;
    TportRect fUpdateRegion; ///< last painted
    Taction* fDoubleClickCommand = nullptr;
    Taction* fKeyPressCommand = nullptr;
    Taction* fKeyReleaseCommand = nullptr;
    Taction* fKeyRepeatCommand = nullptr;
    Taction* fPtrMovedCommand = nullptr;
    Taction* fUpdateCommand = nullptr;
    bool fSnapShotMode = false;
    bool fNoStipple = false;
    bool fNoTextureMatrix = false;
    bool fDebugPorts = false;
    bool fDebugMatrices = false;
    bool fDebugState = false;
    bool fNoPolygonOffset = false;
    bool fNoSwap = false;
    bool fUpdateOnMove = false;
    bool fDepthTestFound = false; ///< when the backing store mode began

public:
    T3dPortGeometryStats* fGeometryStats = nullptr; ///< attached and owned by the host
    bool fGeometryStatsEnabled = false;

private:
    Tstring fRendererName;
    std::int32_t fReserved2 = -1;
    Tstring fReservedName;
    mutable TviewportScale fViewportScale{TportRect()}; ///< of the viewport last mapped with

    // Class-wide state. The registries are never destroyed: ports may outlive the static objects of the library.

    static T3dPortPtrArray& fsAllPorts;
    static TglContextPtrArray& fsAllContexts;
    static TglColorTablePtrArray& fsAllColorTables;
    static TglColorTable* fsModelViewDefaultColorTable;
    static Tarray<ColorTableGuard*>& fsColorTableGuards; ///< those that live
    static T3dPort* fsCurrentPort;
    static T3dPort* fsTrustedPort;     ///< the current port until something else switches contexts; null from then on
    static const void* fsBoundContext; ///< the native context bound, as far as known
    static Tarray<const void*>& fsDisturbedContexts; ///< native contexts that got what another port sent
    static bool fsFirstPort;
    static float fsGlobalLineWidth;
    static bool fsSmoothWireFrame;
    static bool fsUseSeparateSpecularColor;
    static bool fsTextureFilterAnisotropic;
    static bool smpPolyCount;
    static bool fsCanLookUpEntryPoints;
    static Tstring fsErrorString;

    using TclampColorProc = void (*)(GLenum, GLenum);
    static TclampColorProc fsGlClampColor; ///< null unless kHasUnclampedColor stands
    static void unclampColors();
};

#include "Graphics/3dPort/T3dPortMapping.h"
