#include "Graphics/3dPort/T3dPortAudit.h"

#include "Graphics/3dPort/T3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"

#include <GL/glext.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

constexpr int kMostValues = 16;

/** The pipelines that know a state. A core-profile viewport records fixed-function state without sending it. */
enum Pipeline { kFixed, kBoth };

/** How a state is asked for, and how its values are written. */
enum class Kind {
    kSwitch,      ///< glIsEnabled
    kInteger,     ///< glGetIntegerv
    kMask,        ///< the same, of bits
    kFlag,        ///< the same, of truth values
    kEnum,        ///< the same, of OpenGL's names
    kFloat,       ///< glGetDoublev, as floats because drivers may keep no more
    kClamped,     ///< as kFloat, held between 0 and 1 as the query may
    kMaterial,    ///< glGetMaterialfv of the front material
    kTexEnv,      ///< glGetTexEnviv of GL_TEXTURE_ENV in the active unit
    kTexEnvScale, ///< the same, of numbers
    kTexGen       ///< the GL_TEXTURE_GEN_MODE of a coordinate in the active unit
};

/** What is recorded where OpenGL's colour is not known. */
constexpr TportColor kUnknownColor{-1, -1, -1, -1};

bool isKnown(const TportColor& c)
{
    return c != kUnknownColor;
}

/** The values of a state, as the record or the driver has them. */
struct Values
{
    double fValue[kMostValues] = {};
    int fCount = 0;
    bool fClaimed = true; ///< false while the record does not say what the driver has
    GLenum fName = 0;     ///< asks for another name than the row's

    template <class... T> static Values of(T... values)
    {
        Values made;
        for (const double value : {static_cast<double>(values)...})
            made.fValue[made.fCount++] = value;
        return made;
    }

    static Values of(const TportColor& c, int count)
    {
        return (count == 3 ? of(c.r, c.g, c.b) : of(c.r, c.g, c.b, c.a)).when(isKnown(c));
    }

    static Values of(const T4dDblMatrix& m)
    {
        Values made;
        made.fCount = 16;
        std::copy(m.data(), m.data() + 16, made.fValue);
        return made;
    }

    Values when(bool claimed) const
    {
        Values made = *this;
        made.fClaimed = fClaimed && claimed;
        return made;
    }

    Values asking(GLenum name) const
    {
        Values made = *this;
        made.fName = name;
        return made;
    }
};

void enable(GLenum capability, bool on)
{
    if (on)
        glEnable(capability);
    else
        glDisable(capability);
}

/** A colour that glColor sets at present is no port's to know (see T3dPort::enableColorMaterial). */
Values material(GLenum channel, const TportColor& c)
{
    GLint tracked = 0;
    if (glIsEnabled(GL_COLOR_MATERIAL))
        glGetIntegerv(GL_COLOR_MATERIAL_PARAMETER, &tracked);
    const auto name = static_cast<GLint>(channel);
    const bool both = tracked == GL_AMBIENT_AND_DIFFUSE && (name == GL_AMBIENT || name == GL_DIFFUSE);
    return Values::of(c, 3).when(tracked != name && !both);
}

void sendMaterial(GLenum channel, const TportColor& c)
{
    if (isKnown(c))
        glMaterialfv(GL_FRONT_AND_BACK, channel, &c.r);
}

/** How many coordinates, from s on, the last generation mode switched on; -1 when it said nothing of them. */
int generatedCoordinates(const TglContext& record)
{
    switch (record.fTextureGenMode) {
    case TglContext::kGenOff:
        return 0;
    case TglContext::kGenEyeLinear:
    case TglContext::kGenObjectLinear:
    case TglContext::kGenSphereMap:
        return 2;
    case TglContext::kGenNormalMap:
    case TglContext::kGenReflectionMap:
    case TglContext::kGenCubeEyeLinear:
    case TglContext::kGenCubeObjectLinear:
        return 3;
    default:
        return -1;
    }
}

/** The switch of @p coordinate, 0 for s to 3 for q. Modes of three coordinates leave q as it was. */
Values generation(const TglContext& record, int coordinate)
{
    const int count = generatedCoordinates(record);
    return Values::of(coordinate < count).when(count >= 0 && !(count == 3 && coordinate == 3));
}

Values generationMode(const TglContext& record, int coordinate)
{
    const TglContext::TtextureGenMode mode = record.fTextureGenMode;
    return Values::of(mode == TglContext::kGenCubeEyeLinear      ? GL_EYE_LINEAR
                      : mode == TglContext::kGenCubeObjectLinear ? GL_OBJECT_LINEAR
                                                                 : static_cast<GLint>(mode))
        .when(coordinate < generatedCoordinates(record));
}

Values cubeMapping(const TglContext& record)
{
    const int count = generatedCoordinates(record);
    const bool cube = count == 3 || record.fTextureGenMode == TglContext::kGenCubeNone;
    return Values::of(cube).when(cube || count >= 0);
}

void sendSwitch(GLenum capability, const Values& on)
{
    if (on.fClaimed)
        enable(capability, on.fValue[0] != 0);
}

void sendGenerationMode(GLenum coordinate, const Values& mode)
{
    if (mode.fClaimed)
        glTexGeni(coordinate, GL_TEXTURE_GEN_MODE, static_cast<GLint>(mode.fValue[0]));
}

// A scissor box is up to 65535 pixels wide, in a field of 16 bits.
int boxExtent(std::int16_t recorded)
{
    return static_cast<std::uint16_t>(recorded);
}

void ask(Kind kind, GLenum name, int count, double* out)
{
    GLint integers[kMostValues] = {};
    GLfloat floats[kMostValues] = {};
    switch (kind) {
    case Kind::kSwitch:
        out[0] = glIsEnabled(name);
        return;
    case Kind::kInteger:
    case Kind::kMask:
    case Kind::kFlag:
    case Kind::kEnum:
        glGetIntegerv(name, integers);
        std::copy(integers, integers + count, out);
        return;
    case Kind::kFloat:
    case Kind::kClamped:
        glGetDoublev(name, out);
        return;
    case Kind::kMaterial:
        glGetMaterialfv(GL_FRONT, name, floats);
        std::copy(floats, floats + count, out);
        return;
    case Kind::kTexEnv:
    case Kind::kTexEnvScale:
        glGetTexEnviv(GL_TEXTURE_ENV, name, integers);
        std::copy(integers, integers + count, out);
        return;
    case Kind::kTexGen:
        glGetTexGeniv(name, GL_TEXTURE_GEN_MODE, integers);
        std::copy(integers, integers + count, out);
        return;
    }
}

/** Selects, for a while, the texture unit that a recorded value is about; none for a value of no unit. */
class ScopedUnit
{
public:
    /** @param active  the unit that is selected before, and will be after */
    ScopedUnit(GLenum active, const TglContext& record, TglContext::TtextureUnit TglContext::*unit)
        : fActive(active), fIsOther(unit && record.*unit != active)
    {
        if (fIsOther)
            glActiveTexture(record.*unit);
    }
    ~ScopedUnit()
    {
        if (fIsOther)
            glActiveTexture(fActive);
    }

    ScopedUnit(const ScopedUnit&) = delete;
    ScopedUnit& operator=(const ScopedUnit&) = delete;

private:
    const GLenum fActive;
    const bool fIsOther;
};

/** OpenGL's name of a value that a row of names may have; its digits for any other one. */
std::string nameOf(GLenum value)
{
    struct Name
    {
        GLenum fValue;
        const char* fName;
    };
    static const Name names[] = {
#define NAME(constant) {constant, #constant},
#include "Graphics/3dPort/StateNames.inc"
#undef NAME
    };
    if (value >= GL_TEXTURE0 && value <= GL_TEXTURE31)
        return "GL_TEXTURE" + std::to_string(value - GL_TEXTURE0);
    for (const Name& name : names)
        if (name.fValue == value)
            return name.fName;
    char digits[16];
    std::snprintf(digits, sizeof digits, "0x%04X", value);
    return digits;
}

std::string textOf(Kind kind, double value)
{
    char text[32];
    // As OpenGL does: the bits count, whether the field is signed or not.
    const auto bits = [&] { return static_cast<std::uint32_t>(static_cast<std::int64_t>(value)); };
    switch (kind) {
    case Kind::kSwitch:
    case Kind::kFlag:
        return value != 0 ? "on" : "off";
    case Kind::kEnum:
    case Kind::kTexEnv:
    case Kind::kTexGen:
        return nameOf(bits());
    case Kind::kInteger:
    case Kind::kTexEnvScale:
        return std::to_string(static_cast<std::int32_t>(bits()));
    case Kind::kMask:
        std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(bits()));
        return text;
    case Kind::kClamped:
        value = std::clamp(value, 0.0, 1.0);
        [[fallthrough]];
    case Kind::kFloat:
    case Kind::kMaterial:
        break;
    }
    // The fewest digits that tell a float from any other one; 0 has no sign.
    return std::string(text, std::to_chars(text, text + sizeof text, static_cast<float>(value) + 0.0f).ptr);
}

/** @param unit  of a state that each texture unit has for itself, else 0; said where it is not the first */
Tstring textOf(Kind kind, const Values& values, GLenum unit)
{
    std::string text = values.fName ? nameOf(values.fName) + ' ' : std::string();
    if (values.fCount > 1)
        text += '[';
    for (int i = 0; i < values.fCount; ++i) {
        if (i > 0)
            text += ' ';
        text += textOf(kind, values.fValue[i]);
    }
    if (values.fCount > 1)
        text += ']';
    if (unit > GL_TEXTURE0)
        text += " in " + nameOf(unit);
    return Tstring(text.c_str());
}

} // namespace

// NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the table gives every row its fields
struct T3dPortAudit::Row
{
    const char* fState;
    GLenum fName;
    Pipeline fPipeline;
    Kind fKind;
    Values (*fRecorded)(const T3dPort& port, const TglContext& record);
    void (*fSend)(const T3dPort& port, const TglContext& record);
    /** Of a state that each texture unit has for itself: the unit that the recorded value is about. */
    TglContext::TtextureUnit TglContext::*fUnit = nullptr;
};

struct T3dPortAudit::Table
{
    using Port = T3dPort;
    using Record = TglContext;

    static const Row fsRows[];
    /** Calls @p visit with each row of the port's pipeline and what the record has for it. */
    template <class Visit> static void walk(const T3dPort& port, Visit visit);
    static Values switchBit(const TglContext& record, std::uint32_t bit, std::uint32_t resendBit);
};

Values T3dPortAudit::Table::switchBit(const TglContext& record, std::uint32_t bit, std::uint32_t resendBit)
{
    return Values::of(record.fDirtyBits.test(bit)).when(!record.fValidBits.test(resendBit));
}

// Texture parameters are missing on purpose: they belong to texture objects, which all ports share. So are light
// enables and parameters, which are sent without being recorded.
const T3dPortAudit::Row T3dPortAudit::Table::fsRows[] = {
    {"matrix mode", GL_MATRIX_MODE, kFixed, Kind::kEnum,
     [](const Port&, const Record& r) { return Values::of(r.fMatrixMode); },
     [](const Port&, const Record& r) { glMatrixMode(r.fMatrixMode); }},
    {"model-view matrix", GL_MODELVIEW_MATRIX, kFixed, Kind::kFloat,
     [](const Port& p, const Record&) {
         const std::uint32_t loaded = T3dPort::fsModelMatrixValid[p.planesRow()];
         return Values::of(*p.fModelViewMatrix).when((p.fMatrixValid & loaded) == loaded);
     },
     nullptr},
    {"projection matrix", GL_PROJECTION_MATRIX, kFixed, Kind::kFloat,
     [](const Port& p, const Record&) {
         const std::uint32_t loaded = T3dPort::fsProjMatrixValid[p.planesRow()];
         // While picking it has another in front, and an override waits for the next load.
         const bool plain =
             !p.fPortFlags.test(T3dPort::kPortGLSelect | T3dPort::kPortRasterSelect) && !p.fProjOverrideActive;
         return Values::of(*p.fProjectionMatrix).when(plain && (p.fMatrixValid & loaded) == loaded);
     },
     nullptr},
    {"viewport", GL_VIEWPORT, kBoth, Kind::kInteger,
     [](const Port& p, const Record&) {
         const TportRect& v = *p.fViewport;
         // OpenGL refuses a negative extent and cuts one beyond its limit.
         GLint most[2] = {INT_MAX, INT_MAX};
         glGetIntegerv(GL_MAX_VIEWPORT_DIMS, most);
         return Values::of(v.left, v.bottom, std::min<int>(v.width(), most[0]), std::min<int>(v.height(), most[1]))
             .when(v.width() > 0 && v.height() > 0);
     },
     [](const Port& p, const Record&) { p.sendViewport(); }},
    {"current colour", GL_CURRENT_COLOR, kFixed, Kind::kFloat,
     // Switching index planes records this colour without sending it, in order to forget the one before. Specular and
     // emission go through OpenGL's colour without being recorded as it.
     [](const Port&, const Record& r) {
         return Values::of(r.fColor, 3).when(r.fColor != kCtransparent && !r.fColorDisturbed);
     },
     [](const Port&, const Record& r) {
         if (isKnown(r.fColor))
             glColor3fv(&r.fColor.r);
     }},
    {"clear colour", GL_COLOR_CLEAR_VALUE, kBoth, Kind::kClamped,
     [](const Port&, const Record& r) {
         return Values::of(r.fClearColor.r, r.fClearColor.g, r.fClearColor.b, r.fClearColor.a);
     },
     [](const Port&, const Record& r) {
         glClearColor(r.fClearColor.r, r.fClearColor.g, r.fClearColor.b, r.fClearColor.a);
     }},
    {"blending", GL_BLEND, kBoth, Kind::kSwitch, [](const Port&, const Record& r) { return Values::of(r.fBlending); },
     [](const Port&, const Record& r) { enable(GL_BLEND, r.fBlending); }},
    {"blend source", GL_BLEND_SRC, kBoth, Kind::kEnum,
     [](const Port&, const Record& r) {
         return Values::of(r.fBlendSource).when(!r.fValidBits.test(TglContext::kResendBlendFunc));
     },
     [](const Port&, const Record& r) { glBlendFunc(r.fBlendSource, r.fBlendDestination); }},
    {"blend destination", GL_BLEND_DST, kBoth, Kind::kEnum,
     [](const Port&, const Record& r) {
         return Values::of(r.fBlendDestination).when(!r.fValidBits.test(TglContext::kResendBlendFunc));
     },
     nullptr},
    {"blend equation", GL_BLEND_EQUATION, kBoth, Kind::kEnum,
     [](const Port&, const Record& r) { return Values::of(r.fBlendEquation); },
     [](const Port&, const Record& r) { glBlendEquation(r.fBlendEquation); }},
    {"point size", GL_POINT_SIZE, kBoth, Kind::kFloat,
     // OpenGL refuses a size that is not positive, and keeps the one before.
     [](const Port&, const Record& r) { return Values::of(r.fPointSize).when(r.fPointSize > 0); },
     [](const Port&, const Record& r) {
         if (r.fPointSize > 0)
             glPointSize(r.fPointSize);
     }},
    {"line width", GL_LINE_WIDTH, kBoth, Kind::kFloat,
     [](const Port&, const Record& r) { return Values::of(r.fLineWidth).when(r.fLineWidth > 0); },
     [](const Port&, const Record& r) {
         if (r.fLineWidth > 0)
             glLineWidth(r.fLineWidth);
     }},
    {"line stipple", GL_LINE_STIPPLE, kFixed, Kind::kSwitch,
     [](const Port&, const Record& r) { return Values::of(!r.fLineStipple.isSolid()); },
     [](const Port&, const Record& r) { enable(GL_LINE_STIPPLE, !r.fLineStipple.isSolid()); }},
    {"line stipple pattern", GL_LINE_STIPPLE_PATTERN, kFixed, Kind::kInteger,
     [](const Port&, const Record& r) { return Values::of(r.fLineStipple.fPattern).when(!r.fLineStipple.isSolid()); },
     [](const Port&, const Record& r) {
         if (!r.fLineStipple.isSolid())
             glLineStipple(r.fLineStipple.fFactor, r.fLineStipple.fPattern);
     }},
    {"line stipple factor", GL_LINE_STIPPLE_REPEAT, kFixed, Kind::kInteger,
     [](const Port&, const Record& r) {
         return Values::of(std::clamp(r.fLineStipple.fFactor, 1, 256)).when(!r.fLineStipple.isSolid());
     },
     nullptr},
    {"culling", GL_CULL_FACE, kBoth, Kind::kSwitch,
     [](const Port&, const Record& r) { return Values::of(r.fDirtyBits.test(TglContext::kCullingOn)); },
     [](const Port&, const Record& r) { enable(GL_CULL_FACE, r.fDirtyBits.test(TglContext::kCullingOn)); }},
    {"scissor test", GL_SCISSOR_TEST, kBoth, Kind::kSwitch,
     [](const Port&, const Record& r) { return Values::of(r.fDirtyBits.test(TglContext::kScissorOn)); },
     [](const Port&, const Record& r) { enable(GL_SCISSOR_TEST, r.fDirtyBits.test(TglContext::kScissorOn)); }},
    {"scissor box", GL_SCISSOR_BOX, kBoth, Kind::kInteger,
     [](const Port&, const Record& r) {
         return Values::of(r.fScissorX, r.fScissorY, boxExtent(r.fScissorWidth), boxExtent(r.fScissorHeight))
             .when(r.fDirtyBits.test(TglContext::kScissorOn));
     },
     [](const Port&, const Record& r) {
         if (r.fDirtyBits.test(TglContext::kScissorOn))
             glScissor(r.fScissorX, r.fScissorY, boxExtent(r.fScissorWidth), boxExtent(r.fScissorHeight));
     }},
    {"depth test", GL_DEPTH_TEST, kBoth, Kind::kSwitch,
     [](const Port&, const Record& r) { return switchBit(r, TglContext::kDepthTestOn, TglContext::kResendDepthTest); },
     [](const Port&, const Record& r) { enable(GL_DEPTH_TEST, r.fDirtyBits.test(TglContext::kDepthTestOn)); }},
    {"depth function", GL_DEPTH_FUNC, kBoth, Kind::kEnum,
     [](const Port&, const Record& r) { return Values::of(r.fDepthFunc); },
     [](const Port&, const Record& r) { glDepthFunc(r.fDepthFunc); }},
    {"depth mask", GL_DEPTH_WRITEMASK, kBoth, Kind::kFlag,
     [](const Port&, const Record& r) { return Values::of(r.fDepthMask); },
     [](const Port&, const Record& r) { glDepthMask(r.fDepthMask); }},
    {"colour mask", GL_COLOR_WRITEMASK, kBoth, Kind::kFlag,
     [](const Port&, const Record& r) {
         return Values::of(r.fColorMaskRed, r.fColorMaskGreen, r.fColorMaskBlue, r.fColorMaskAlpha);
     },
     [](const Port&, const Record& r) {
         glColorMask(r.fColorMaskRed, r.fColorMaskGreen, r.fColorMaskBlue, r.fColorMaskAlpha);
     }},
    {"index write mask", GL_INDEX_WRITEMASK, kFixed, Kind::kMask,
     [](const Port&, const Record& r) { return Values::of(r.fIndexWriteMask); },
     [](const Port&, const Record& r) { glIndexMask(r.fIndexWriteMask); }},
    {"dithering", GL_DITHER, kBoth, Kind::kSwitch,
     [](const Port&, const Record& r) { return switchBit(r, TglContext::kDitheringOn, TglContext::kResendDithering); },
     [](const Port&, const Record& r) { enable(GL_DITHER, r.fDirtyBits.test(TglContext::kDitheringOn)); }},
    {"shade model", GL_SHADE_MODEL, kFixed, Kind::kEnum,
     [](const Port&, const Record& r) { return Values::of(r.fShadeModel); },
     [](const Port&, const Record& r) { glShadeModel(r.fShadeModel); }},
    {"lighting", GL_LIGHTING, kFixed, Kind::kSwitch,
     [](const Port&, const Record& r) { return switchBit(r, TglContext::kLightingOn, TglContext::kResendLighting); },
     [](const Port&, const Record& r) { enable(GL_LIGHTING, r.fDirtyBits.test(TglContext::kLightingOn)); }},
    {"two-sided lighting", GL_LIGHT_MODEL_TWO_SIDE, kFixed, Kind::kFlag,
     [](const Port&, const Record& r) { return switchBit(r, TglContext::kTwoSidedOn, TglContext::kResendTwoSided); },
     [](const Port&, const Record& r) {
         glLightModelf(GL_LIGHT_MODEL_TWO_SIDE, r.fDirtyBits.test(TglContext::kTwoSidedOn));
     }},
    {"light model ambient", GL_LIGHT_MODEL_AMBIENT, kFixed, Kind::kFloat,
     [](const Port&, const Record& r) { return Values::of(r.fLightModelAmbient, 4); },
     [](const Port&, const Record& r) { glLightModelfv(GL_LIGHT_MODEL_AMBIENT, &r.fLightModelAmbient.r); }},
    {"local viewer", GL_LIGHT_MODEL_LOCAL_VIEWER, kFixed, Kind::kFlag,
     [](const Port&, const Record& r) { return Values::of(r.fLocalViewer); },
     [](const Port&, const Record& r) { glLightModelf(GL_LIGHT_MODEL_LOCAL_VIEWER, r.fLocalViewer); }},
    {"ambient material", GL_AMBIENT, kFixed, Kind::kMaterial,
     [](const Port&, const Record& r) { return material(GL_AMBIENT, r.fMaterialAmbient); },
     [](const Port&, const Record& r) { sendMaterial(GL_AMBIENT, r.fMaterialAmbient); }},
    {"diffuse material", GL_DIFFUSE, kFixed, Kind::kMaterial,
     [](const Port&, const Record& r) { return material(GL_DIFFUSE, r.fMaterialDiffuse); },
     [](const Port&, const Record& r) { sendMaterial(GL_DIFFUSE, r.fMaterialDiffuse); }},
    {"specular material", GL_SPECULAR, kFixed, Kind::kMaterial,
     [](const Port&, const Record& r) { return material(GL_SPECULAR, r.fMaterialSpecular); },
     [](const Port&, const Record& r) { sendMaterial(GL_SPECULAR, r.fMaterialSpecular); }},
    {"emission material", GL_EMISSION, kFixed, Kind::kMaterial,
     [](const Port&, const Record& r) { return material(GL_EMISSION, r.fMaterialEmission); },
     [](const Port&, const Record& r) { sendMaterial(GL_EMISSION, r.fMaterialEmission); }},
    {"shininess", GL_SHININESS, kFixed, Kind::kMaterial,
     [](const Port&, const Record& r) { return Values::of(r.fMaterialShininess); },
     [](const Port&, const Record& r) {
         glMaterialf(GL_FRONT_AND_BACK, GL_SHININESS, static_cast<float>(r.fMaterialShininess));
     }},
    {"texture unit", GL_ACTIVE_TEXTURE, kBoth, Kind::kEnum,
     [](const Port&, const Record& r) { return Values::of(r.fServerUnit); },
     [](const Port&, const Record& r) { glActiveTexture(r.fServerUnit); }},
    {"client texture unit", GL_CLIENT_ACTIVE_TEXTURE, kFixed, Kind::kEnum,
     [](const Port&, const Record& r) { return Values::of(r.fClientUnit); },
     [](const Port&, const Record& r) { glClientActiveTexture(r.fClientUnit); }},
    {"texture environment", GL_TEXTURE_ENV_MODE, kFixed, Kind::kTexEnv,
     [](const Port&, const Record& r) { return Values::of(r.fTextureEnv); },
     [](const Port&, const Record& r) {
         glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, static_cast<GLint>(r.fTextureEnv));
     },
     &Record::fTextureEnvUnit},
    {"texture combine", 0, kFixed, Kind::kTexEnv,
     [](const Port&, const Record& r) { return Values::of(r.fCombine).asking(r.fCombineParam); },
     [](const Port&, const Record& r) { glTexEnvi(GL_TEXTURE_ENV, r.fCombineParam, static_cast<GLint>(r.fCombine)); },
     &Record::fCombineUnit},
    {"texture combine source", 0, kFixed, Kind::kTexEnv,
     [](const Port&, const Record& r) { return Values::of(r.fSource).asking(r.fSourceParam); },
     [](const Port&, const Record& r) { glTexEnvi(GL_TEXTURE_ENV, r.fSourceParam, static_cast<GLint>(r.fSource)); },
     &Record::fSourceUnit},
    {"texture combine operand", 0, kFixed, Kind::kTexEnv,
     [](const Port&, const Record& r) { return Values::of(r.fOperand).asking(r.fOperandParam); },
     [](const Port&, const Record& r) { glTexEnvi(GL_TEXTURE_ENV, r.fOperandParam, static_cast<GLint>(r.fOperand)); },
     &Record::fOperandUnit},
    {"texture combine scale", 0, kFixed, Kind::kTexEnvScale,
     [](const Port&, const Record& r) { return Values::of(r.fScale).asking(r.fScaleParam); },
     [](const Port&, const Record& r) { glTexEnvi(GL_TEXTURE_ENV, r.fScaleParam, static_cast<GLint>(r.fScale)); },
     &Record::fScaleUnit},
    {"texture generation mode of s", GL_S, kFixed, Kind::kTexGen,
     [](const Port&, const Record& r) { return generationMode(r, 0); },
     [](const Port&, const Record& r) { sendGenerationMode(GL_S, generationMode(r, 0)); }, &Record::fTextureGenUnit},
    {"texture generation mode of t", GL_T, kFixed, Kind::kTexGen,
     [](const Port&, const Record& r) { return generationMode(r, 1); },
     [](const Port&, const Record& r) { sendGenerationMode(GL_T, generationMode(r, 1)); }, &Record::fTextureGenUnit},
    {"texture generation mode of r", GL_R, kFixed, Kind::kTexGen,
     [](const Port&, const Record& r) { return generationMode(r, 2); },
     [](const Port&, const Record& r) { sendGenerationMode(GL_R, generationMode(r, 2)); }, &Record::fTextureGenUnit},
    {"texture generation of s", GL_TEXTURE_GEN_S, kFixed, Kind::kSwitch,
     [](const Port&, const Record& r) { return generation(r, 0); },
     [](const Port&, const Record& r) { sendSwitch(GL_TEXTURE_GEN_S, generation(r, 0)); }, &Record::fTextureGenUnit},
    {"texture generation of t", GL_TEXTURE_GEN_T, kFixed, Kind::kSwitch,
     [](const Port&, const Record& r) { return generation(r, 1); },
     [](const Port&, const Record& r) { sendSwitch(GL_TEXTURE_GEN_T, generation(r, 1)); }, &Record::fTextureGenUnit},
    {"texture generation of r", GL_TEXTURE_GEN_R, kFixed, Kind::kSwitch,
     [](const Port&, const Record& r) { return generation(r, 2); },
     [](const Port&, const Record& r) { sendSwitch(GL_TEXTURE_GEN_R, generation(r, 2)); }, &Record::fTextureGenUnit},
    {"texture generation of q", GL_TEXTURE_GEN_Q, kFixed, Kind::kSwitch,
     [](const Port&, const Record& r) { return generation(r, 3); },
     [](const Port&, const Record& r) { sendSwitch(GL_TEXTURE_GEN_Q, generation(r, 3)); }, &Record::fTextureGenUnit},
    {"cube mapping", GL_TEXTURE_CUBE_MAP, kFixed, Kind::kSwitch,
     [](const Port&, const Record& r) { return cubeMapping(r); },
     [](const Port&, const Record& r) { sendSwitch(GL_TEXTURE_CUBE_MAP, cubeMapping(r)); }, &Record::fTextureGenUnit},
    {"polygon offset fill", GL_POLYGON_OFFSET_FILL, kBoth, Kind::kSwitch,
     [](const Port& p, const Record&) { return Values::of(p.fPolygonOffsetFillOn); },
     [](const Port& p, const Record&) { enable(GL_POLYGON_OFFSET_FILL, p.fPolygonOffsetFillOn); }},
    {"fog", GL_FOG, kFixed, Kind::kSwitch, [](const Port& p, const Record&) { return Values::of(p.isFogEnabled()); },
     [](const Port& p, const Record&) { enable(GL_FOG, p.isFogEnabled()); }},
    {"fog mode", GL_FOG_MODE, kFixed, Kind::kEnum,
     [](const Port& p, const Record&) { return Values::of(p.fFogMode).when(p.fFogParametersSent); },
     [](const Port& p, const Record&) {
         if (p.fFogParametersSent)
             glFogi(GL_FOG_MODE, static_cast<GLint>(p.fFogMode));
     }},
    {"fog density", GL_FOG_DENSITY, kFixed, Kind::kFloat,
     [](const Port& p, const Record&) { return Values::of(p.fFogDensity).when(p.fFogParametersSent); },
     [](const Port& p, const Record&) {
         if (p.fFogParametersSent)
             glFogf(GL_FOG_DENSITY, p.fFogDensity);
     }},
    {"fog start", GL_FOG_START, kFixed, Kind::kFloat,
     [](const Port& p, const Record&) { return Values::of(p.fFogStart).when(p.fFogParametersSent); },
     [](const Port& p, const Record&) {
         if (p.fFogParametersSent)
             glFogf(GL_FOG_START, static_cast<float>(p.fFogStart));
     }},
    {"fog end", GL_FOG_END, kFixed, Kind::kFloat,
     [](const Port& p, const Record&) { return Values::of(p.fFogEnd).when(p.fFogParametersSent); },
     [](const Port& p, const Record&) {
         if (p.fFogParametersSent)
             glFogf(GL_FOG_END, static_cast<float>(p.fFogEnd));
     }},
    {"fog source", GL_FOG_COORDINATE_SOURCE, kFixed, Kind::kEnum,
     [](const Port& p, const Record&) {
         return Values::of(p.fFogSource).when(T3dPort::fsGraphicsFlags.test(T3dPort::kHasFogCoord));
     },
     [](const Port& p, const Record&) {
         if (T3dPort::fsGraphicsFlags.test(T3dPort::kHasFogCoord))
             glFogi(GL_FOG_COORDINATE_SOURCE, static_cast<GLint>(p.fFogSource));
     }},
};

template <class Visit> void T3dPortAudit::Table::walk(const T3dPort& port, Visit visit)
{
    if (!port.fContext || !port.glWidget())
        return;
    port.setCurrentContext();
    const bool core = port.isGLCoreViewport();
    for (const Row& row : fsRows)
        if (!core || row.fPipeline != kFixed)
            visit(row, row.fRecorded(port, *port.fContext));
}

TstateValues T3dPortAudit::recorded(const T3dPort& port)
{
    TstateValues values;
    Table::walk(port, [&](const Row& row, const Values& recorded) {
        const GLenum unit = row.fUnit ? GLenum(port.fContext->*row.fUnit) : 0;
        values.push_back({row.fState, recorded.fClaimed ? textOf(row.fKind, recorded, unit) : Tstring()});
    });
    return values;
}

TstateValues T3dPortAudit::ofDriver(const T3dPort& port)
{
    TstateValues values;
    GLint active = 0;
    Table::walk(port, [&](const Row& row, Values answer) {
        // A hidden widget's context does not get bound: there is nobody to ask.
        if (!T3dPort::fsTrustedPort)
            return;
        if (!active)
            glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
        const ScopedUnit unit(static_cast<GLenum>(active), *port.fContext, row.fUnit);
        ask(row.fKind, answer.fName ? answer.fName : row.fName, answer.fCount, answer.fValue);
        values.push_back({row.fState, textOf(row.fKind, answer, row.fUnit ? GLenum(port.fContext->*row.fUnit) : 0)});
    });
    return values;
}

TstringArray T3dPortAudit::differences(const TstateValues& a, const TstateValues& b, const char* before,
                                       const char* between)
{
    // Drivers may keep what is not a number or make something else of it.
    const auto isUnknown = [](const Tstring& value) {
        return value.isEmpty() || std::strstr(value.asChar(), "nan") != nullptr;
    };
    TstringArray lines;
    for (const TstateValue& left : a) {
        const auto right =
            std::find_if(b.begin(), b.end(), [&](const TstateValue& other) { return other.fName == left.fName; });
        if (right == b.end() || left.fValue == right->fValue || isUnknown(left.fValue) || isUnknown(right->fValue))
            continue;
        lines.append(left.fName + ": " + before + left.fValue + between + right->fValue);
    }
    return lines;
}

TstringArray T3dPortAudit::differences(const T3dPort& port)
{
    return differences(recorded(port), ofDriver(port), "recorded ", ", OpenGL has ");
}

void T3dPortAudit::printDifferences(const T3dPort& port)
{
    for (const Tstring& line : differences(port))
        std::printf("T3dPort %p state - %s\n", static_cast<const void*>(&port), line.asChar());
}

void T3dPortAudit::send(T3dPort& port)
{
    TglContext* record = port.fContext;
    if (!record)
        return;
    const bool core = port.isGLCoreViewport();
    for (const Row& row : Table::fsRows)
        if (row.fSend && !(core && row.fPipeline == kFixed)) {
            const ScopedUnit unit(record->fServerUnit, *record, row.fUnit); // sent by a row before
            row.fSend(port, *record);
        }
    if (isKnown(record->fColor))
        record->fColorDisturbed = false;
    record->fValidBits.setAll();
    port.fMatrixValid &= ~std::uint32_t(T3dPort::kAllMatricesValid);
}
