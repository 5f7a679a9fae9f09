#pragma once

#include "Graphics/Export.h"
#include "Graphics/glResources/TglColorTable.h"
#include "Graphics/glResources/TglLineStipple.h"
#include "Graphics/glResources/TglTextureUnits.h"
#include "foundation/TbitFieldFixedN.h"
#include "foundation/TportColor.h"

#include <GL/gl.h>

#include <cstdint>

/**
 * The kind of context a port asks for, made by T3dPort::getContextType from the wanted buffers. The codes have no
 * names: each stands for a combination of capability bits (TglContext::fDirtyBits).
 */
using TcontextType = std::uint32_t;

/**
 * The record of what was last sent to one OpenGL context. A setter compares with it and calls OpenGL only on a
 * difference.
 *
 * The fields are public to be read; only the library's setters write them, so that record and driver stay equal.
 * T3dPortAudit compares the two. Code that disturbs OpenGL behind the record brackets itself with
 * T3dPort::beginForeignGL and T3dPort::endForeignGL.
 */
class LIRN_3DGRAPHICS_EXPORT TglContext
{
public:
    enum TtextureFilter : std::uint32_t {
        kNearest = GL_NEAREST,
        kLinear = GL_LINEAR,
        kNearestMipmapNearest = GL_NEAREST_MIPMAP_NEAREST,
        kLinearMipmapNearest = GL_LINEAR_MIPMAP_NEAREST,
        kNearestMipmapLinear = GL_NEAREST_MIPMAP_LINEAR,
        kLinearMipmapLinear = GL_LINEAR_MIPMAP_LINEAR
    };

    /** GL_TEXTURE_ENV_MODE of GL_TEXTURE_ENV. */
    enum TtextureEnv : std::uint32_t {
        kEnvModulate = GL_MODULATE,
        kEnvDecal = GL_DECAL,
        kEnvBlend = GL_BLEND,
        kEnvReplace = GL_REPLACE,
        kEnvAdd = GL_ADD,
        kEnvCombine = GL_COMBINE
    };

    /** GL_TEXTURE_WRAP_S and GL_TEXTURE_WRAP_T. */
    enum TtextureWrap : std::uint32_t {
        kRepeat = GL_REPEAT,
        kClamp = GL_CLAMP,
        kClampToEdge = GL_CLAMP_TO_EDGE,
        kClampToBorder = GL_CLAMP_TO_BORDER,
        kMirroredRepeat = GL_MIRRORED_REPEAT
    };

    enum TtextureTarget : std::uint32_t {
        kTexture1D = GL_TEXTURE_1D,
        kTexture2D = GL_TEXTURE_2D,
        kTexture3D = GL_TEXTURE_3D,
        kTextureCubeMap = GL_TEXTURE_CUBE_MAP,
        kCubeMapPositiveX = GL_TEXTURE_CUBE_MAP_POSITIVE_X,
        kCubeMapNegativeX = GL_TEXTURE_CUBE_MAP_NEGATIVE_X,
        kCubeMapPositiveY = GL_TEXTURE_CUBE_MAP_POSITIVE_Y,
        kCubeMapNegativeY = GL_TEXTURE_CUBE_MAP_NEGATIVE_Y,
        kCubeMapPositiveZ = GL_TEXTURE_CUBE_MAP_POSITIVE_Z,
        kCubeMapNegativeZ = GL_TEXTURE_CUBE_MAP_NEGATIVE_Z
    };

    /** What an image is uploaded to: as TtextureTarget, but a cube map has one per face. */
    enum TtextureTarget_TexImage : std::uint32_t {
        kImage1D = GL_TEXTURE_1D,
        kImage2D = GL_TEXTURE_2D,
        kImage3D = GL_TEXTURE_3D,
        kImagePositiveX = GL_TEXTURE_CUBE_MAP_POSITIVE_X,
        kImageNegativeX = GL_TEXTURE_CUBE_MAP_NEGATIVE_X,
        kImagePositiveY = GL_TEXTURE_CUBE_MAP_POSITIVE_Y,
        kImageNegativeY = GL_TEXTURE_CUBE_MAP_NEGATIVE_Y,
        kImagePositiveZ = GL_TEXTURE_CUBE_MAP_POSITIVE_Z,
        kImageNegativeZ = GL_TEXTURE_CUBE_MAP_NEGATIVE_Z
    };

    /** GL_TEXTURE0 plus the number of the unit. */
    enum TtextureUnit : std::uint32_t { kTexture0 = GL_TEXTURE0 };

    enum TtextureGenMode : std::int32_t {
        kGenOff = 0,
        kGenEyeLinear = GL_EYE_LINEAR,
        kGenObjectLinear = GL_OBJECT_LINEAR,
        kGenSphereMap = GL_SPHERE_MAP,
        kGenNormalMap = GL_NORMAL_MAP,
        kGenReflectionMap = GL_REFLECTION_MAP,
        kGenCubeEyeLinear = -1,
        kGenCubeObjectLinear = -2,
        kGenCubeNone = -3 ///< a cube map with the coordinates of the geometry
    };

    enum TtextureCoord : std::uint32_t { kCoordS = GL_S, kCoordT = GL_T, kCoordR = GL_R, kCoordQ = GL_Q };
    enum TtextureGenFunc : std::uint32_t { kObjectPlane = GL_OBJECT_PLANE, kEyePlane = GL_EYE_PLANE };

    enum TtexEnvCombineParam : std::uint32_t { kCombineRgb = GL_COMBINE_RGB, kCombineAlpha = GL_COMBINE_ALPHA };
    enum TtexEnvCombine : std::uint32_t {
        kCombineReplace = GL_REPLACE,
        kCombineModulate = GL_MODULATE,
        kCombineAdd = GL_ADD,
        kCombineAddSigned = GL_ADD_SIGNED,
        kCombineInterpolate = GL_INTERPOLATE,
        kCombineSubtract = GL_SUBTRACT,
        kCombineDot3Rgb = GL_DOT3_RGB,
        kCombineDot3Rgba = GL_DOT3_RGBA
    };
    enum TtexEnvSourceParam : std::uint32_t {
        kSource0Rgb = GL_SOURCE0_RGB,
        kSource1Rgb = GL_SOURCE1_RGB,
        kSource2Rgb = GL_SOURCE2_RGB,
        kSource0Alpha = GL_SOURCE0_ALPHA,
        kSource1Alpha = GL_SOURCE1_ALPHA,
        kSource2Alpha = GL_SOURCE2_ALPHA
    };
    enum TtexEnvSource : std::uint32_t {
        kSourceTexture = GL_TEXTURE,
        kSourceConstant = GL_CONSTANT,
        kSourcePrimaryColor = GL_PRIMARY_COLOR,
        kSourcePrevious = GL_PREVIOUS
    };
    enum TtexEnvOperandParam : std::uint32_t {
        kOperand0Rgb = GL_OPERAND0_RGB,
        kOperand1Rgb = GL_OPERAND1_RGB,
        kOperand2Rgb = GL_OPERAND2_RGB,
        kOperand0Alpha = GL_OPERAND0_ALPHA,
        kOperand1Alpha = GL_OPERAND1_ALPHA,
        kOperand2Alpha = GL_OPERAND2_ALPHA
    };
    enum TtexEnvOperand : std::uint32_t {
        kOperandColor = GL_SRC_COLOR,
        kOperandOneMinusColor = GL_ONE_MINUS_SRC_COLOR,
        kOperandAlpha = GL_SRC_ALPHA,
        kOperandOneMinusAlpha = GL_ONE_MINUS_SRC_ALPHA
    };
    enum TtexEnvScaleParam : std::uint32_t { kRgbScale = GL_RGB_SCALE, kAlphaScale = GL_ALPHA_SCALE };
    enum TtexEnvScale : std::uint32_t { kScale1 = 1, kScale2 = 2, kScale4 = 4 };

    /** GL_FOG_COORDINATE_SOURCE. */
    enum TfogSource : std::uint32_t { kFogCoordinate = GL_FOG_COORDINATE, kFragmentDepth = GL_FRAGMENT_DEPTH };

    /** Bits of fDirtyBits: recorded switches, and what the frame buffer has. */
    enum : std::uint32_t {
        kDepthTestOn = 0x1,
        kCullingOn = 0x2,
        kScissorOn = 0x4,
        kHasDepthBuffer = 0x8,
        kHasDoubleBuffer = 0x10,
        kIsStereo = 0x80,
        kHasStencilBuffer = 0x100,
        kPortFlag15 = 0x1000, ///< the constructor's bool argument
        kTwoSidedOn = 0x2000,
        kDitheringOn = 0x4000,
        kLightingOn = 0x8000
    };

    /** Bits of fValidBits. A set bit says that the recorded state must be sent again before it is trusted. */
    enum : std::uint32_t {
        kResendTwoSided = 0x1,
        kResendDithering = 0x2,
        kResendDepthTest = 0x4,
        kResendLighting = 0x8,
        kLightEnablesUnknown = 0x10,
        kResendBlendFunc = 0x20
    };

    /** The hardware colour index while it is unknown. */
    static constexpr std::uint16_t kUnknownIndex = 0xFFFF;

    /** OpenGL's own defaults, and the capabilities that @p type stands for. */
    TglContext(TcontextType type, bool flag);
    /** Drops the recorded line stipple. */
    ~TglContext();

    TglContext(const TglContext&) = delete;
    TglContext& operator=(const TglContext&) = delete;

    /**
     * Makes entry @p index of @p table the current colour (glColor3fv). An index outside the table takes the hardware
     * index of entry 1 and whatever colour TglColorTable::colorRGB gives for it. A null table changes nothing.
     */
    void colorIndex(TglColorTable* table, short index);

    /**
     * Draws into index planes @p buffer with write mask @p mask (glIndexMask), and forgets the current colour and
     * index. A mask equal to the recorded one changes nothing, not even the buffer.
     */
    void setIndexBuffer(TindexBuffer buffer, int mask);

    /** The texture units of the process; their count is set by the first port. */
    static TglTextureUnits fsTextureUnits;

    TportColor fColor{0, 0, 0, 1};
    TportColor fClearColor{0, 0, 0, 1};
    std::int16_t fColorIndex = 0;
    std::uint16_t fHardwareIndex = kUnknownIndex;
    bool fBlending = false;       ///< GL_BLEND
    bool fColorDisturbed = false; ///< a material has changed OpenGL's current colour, and on purpose not fColor
    bool fReservedFlag2 = false;
    std::uint32_t fReserved1 = 0;
    float fLineWidth = 1.0f;
    TbitFieldFixedN fDirtyBits;
    TbitFieldFixedN fValidBits;
    std::uint16_t fIndexBufferCount = 0;
    std::int16_t fScissorX = 0;
    std::int16_t fScissorY = 0;
    std::int16_t fScissorWidth = 0;
    std::int16_t fScissorHeight = 0;
    GLenum fDepthFunc = GL_LESS;
    bool fDepthMask = true;
    bool fColorMaskRed = true;
    bool fColorMaskGreen = true;
    bool fColorMaskBlue = true;
    bool fColorMaskAlpha = true;
    std::int16_t fReserved2 = -1;
    std::uint32_t fReserved3 = 1;
    TglLineStipple fLineStipple; ///< a copy by value, sharing the list of the applied one
    TindexBuffer fIndexBuffer = 7;
    std::uint32_t fIndexWriteMask = 0xFFFFFFFFu;
    TportColor fLightModelAmbient{0.2f, 0.2f, 0.2f, 1.0f};
    bool fLocalViewer = false;
    bool fReservedFlag3 = false;
    GLenum fShadeModel = GL_FLAT;
    TportColor fMaterialAmbient{0.2f, 0.2f, 0.2f, 1.0f};
    TportColor fMaterialDiffuse{0.8f, 0.8f, 0.8f, 1.0f};
    TportColor fMaterialSpecular{0, 0, 0, 1};
    TportColor fMaterialEmission{0, 0, 0, 1};
    double fMaterialShininess = 0;
    GLenum fBlendSource = GL_ONE;
    GLenum fBlendDestination = GL_ZERO;
    TtextureEnv fTextureEnv = kEnvModulate;
    TtextureWrap fTextureWrap = kRepeat;
    TtextureFilter fTextureMinFilter = kNearestMipmapLinear;
    TtextureFilter fTextureMagFilter = kLinear;
    TtextureGenMode fTextureGenMode = kGenOff;
    TtextureTarget fTextureTarget = kTexture2D;
    TtextureUnit fTextureUnit = kTexture0; ///< last selected, for drawing or for coordinate pointers
    TtexEnvCombineParam fCombineParam = kCombineRgb;
    TtexEnvCombine fCombine = kCombineModulate;
    TtexEnvSourceParam fSourceParam = kSource0Rgb;
    TtexEnvSource fSource = kSourceTexture;
    TtexEnvOperandParam fOperandParam = kOperand0Rgb;
    TtexEnvOperand fOperand = kOperandColor;
    TtexEnvScaleParam fScaleParam = kRgbScale;
    TtexEnvScale fScale = kScale1;
    GLenum fBlendEquation = GL_FUNC_ADD;
    GLenum fBuffer = GL_BACK;
    float fPointSize = 1.0f;
    std::uint8_t fRedBits = 0; ///< this and the next four are read at the port's first paint
    std::uint8_t fGreenBits = 0;
    std::uint8_t fBlueBits = 0;
    std::uint8_t fAlphaBits = 0;
    std::uint8_t fStencilBits = 0;
    GLenum fMatrixMode = GL_MODELVIEW;    ///< the OpenGL matrix mode, not the one a port's operations address
    TtextureUnit fServerUnit = kTexture0; ///< GL_ACTIVE_TEXTURE
    TtextureUnit fClientUnit = kTexture0; ///< GL_CLIENT_ACTIVE_TEXTURE

    // OpenGL keeps these states per unit, and the record only their last values: the units that those were sent to.
    TtextureUnit fTextureEnvUnit = kTexture0;
    TtextureUnit fTextureGenUnit = kTexture0;
    TtextureUnit fCombineUnit = kTexture0;
    TtextureUnit fSourceUnit = kTexture0;
    TtextureUnit fOperandUnit = kTexture0;
    TtextureUnit fScaleUnit = kTexture0;
};
