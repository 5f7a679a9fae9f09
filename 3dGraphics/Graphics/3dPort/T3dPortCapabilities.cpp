// Capabilities, extension binding and OpenGL errors.

#include <QGLContext>
#include <QGLFormat>
#include <QWidget>
#include <QX11Info>

#include "QtExtensions/QlirnX11.h"

#include "Graphics/3dPort/T3dPort.h"

#include "Graphics/3dPort/T3dPortOpenGLInfo.h"
#include "QtExtensions/Q3dPort.h"
#include "QtExtensions/QlirnGLWidget.h"
#include "foundation/LirnGetEnv.h"
#include "foundation/TstringResource.h"

#include <GL/glu.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>

bool T3dPort::fsHasMultiTexture = false;
bool T3dPort::fsDepreciateFixedFunction = false;
int T3dPort::fsMaxTextureSize = 4096;
int T3dPort::fsMaxUserTextureSize = 0;
int T3dPort::fsMaxTextureUnits = 1;
bool T3dPort::fsCanLookUpEntryPoints = false;
Tstring T3dPort::fsErrorString;
T3dPort::TclampColorProc T3dPort::fsGlClampColor = nullptr;

namespace {

using ExtensionMap = std::map<Tstring, T3dPort::TgraphicsFlags>;

const ExtensionMap& extensionMap()
{
    static const ExtensionMap map = {
        {"GL_EXT_abgr", T3dPort::kHasAbgr},
        {"SGIS_multisample", T3dPort::kHasMultisample}, // with and without the prefix
        {"GL_SGIS_texture_border_clamp", T3dPort::kHasClampToBorder},
        {"GL_ARB_texture_border_clamp", T3dPort::kHasClampToBorder},
        {"GL_SGIS_texture_edge_clamp", T3dPort::kHasClampToEdge},
        {"GL_EXT_bgra", T3dPort::kHasBgra},
        {"GL_ARB_multitexture", T3dPort::kHasMultiTexture},
        {"GL_EXT_rescale_normal", T3dPort::kHasRescaleNormal},
        {"GL_EXT_fog_coord", T3dPort::kHasFogCoord},
        {"GL_ARB_transpose_matrix", T3dPort::kHasTransposeMatrix},
        {"GL_EXT_texture_filter_anisotropic", T3dPort::kHasAnisotropicFilter},
        {"GL_EXT_vertex_weighting", T3dPort::kHasVertexWeighting},
        {"GL_EXT_texture_compression", T3dPort::kHasTextureCompression},
        {"GL_EXT_secondary_color", T3dPort::kHasSecondaryColor},
        {"GL_EXT_texture_env_combine", T3dPort::kHasTextureEnvCombine},
        {"GL_ARB_texture_env_combine", T3dPort::kHasTextureEnvCombine},
        {"GL_IBM_texture_mirrored_repeat", T3dPort::kHasMirrorRepeat},
        {"GL_ATI_texture_mirror_once", T3dPort::kHasMirrorClamp},
        {"GL_ARB_texture_env_add", T3dPort::kHasTextureEnvAdd},
        {"GL_ARB_texture_env_dot3", T3dPort::kHasTextureEnvDot3},
        {"GL_EXT_vertex_shader", T3dPort::kHasVertexShader},
        {"GL_SGIS_generate_mipmap", T3dPort::kHasGenerateMipmap},
        {"GL_ARB_texture_non_power_of_two", T3dPort::kHasNonPowerTwoTexture},
        {"GL_EXT_texture_non_power_of_two", T3dPort::kHasNonPowerTwoTexture},
        {"GL_EXT_draw_range_elements", T3dPort::kHasDrawRangeElements},
        {"GL_ARB_color_buffer_float", T3dPort::kHasUnclampedColor},
        {"GL_ARB_vertex_buffer_object", T3dPort::kHasVertexBufferObject},
    };
    return map;
}

constexpr std::uint64_t kCore12 = T3dPort::kHasMultiTexture | T3dPort::kHasBgra | T3dPort::kHasRescaleNormal |
                                  T3dPort::kHasClampToEdge | T3dPort::kHasDrawRangeElements;
constexpr std::uint64_t kCore13 = T3dPort::kHasTextureEnvCombine | T3dPort::kHasClampToBorder |
                                  T3dPort::kHasTransposeMatrix | T3dPort::kHasTextureEnvAdd |
                                  T3dPort::kHasTextureEnvDot3;

struct EntryPointGroup
{
    T3dPort::TgraphicsFlags fFlag;
    const char* fNames[5];
};

constexpr EntryPointGroup kEntryPoints[] = {
    {T3dPort::kHasTransposeMatrix,
     {"glLoadTransposeMatrixfARB", "glLoadTransposeMatrixdARB", "glMultTransposeMatrixfARB",
      "glMultTransposeMatrixdARB", nullptr}},
    {T3dPort::kHasFogCoord,
     {"glFogCoordfEXT", "glFogCoordfvEXT", "glFogCoorddEXT", "glFogCoorddvEXT", "glFogCoordPointerEXT"}},
    {T3dPort::kHasSecondaryColor,
     {"glSecondaryColor3dEXT", "glSecondaryColor3dvEXT", "glSecondaryColor3fEXT", "glSecondaryColor3fvEXT",
      "glSecondaryColorPointerEXT"}},
    {T3dPort::kHasVertexWeighting,
     {"glVertexWeightfEXT", "glVertexWeightfvEXT", "glVertexWeightPointerEXT", nullptr, nullptr}},
    {T3dPort::kHasUnclampedColor, {"glClampColorARB", nullptr, nullptr, nullptr, nullptr}},
    {T3dPort::kHasVertexBufferObject, {"glBindBufferARB", nullptr, nullptr, nullptr, nullptr}},
};

using EntryPoint = void (*)();

EntryPoint lookUp(const char* name)
{
    return glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name));
}

const char* glString(GLenum name)
{
    const auto* text = reinterpret_cast<const char*>(glGetString(name));
    return text ? text : "";
}

GLint glInteger(GLenum name)
{
    GLint value = 0;
    glGetIntegerv(name, &value);
    return value;
}

const char* errorText(GLenum error)
{
    if (error >= GL_INVALID_ENUM && error <= GL_OUT_OF_MEMORY) {
        if (const GLubyte* text = gluErrorString(error))
            return reinterpret_cast<const char*>(text);
    }
    if (error == GL_INVALID_FRAMEBUFFER_OPERATION)
        return "Invalid framebuffer operation";
    return "Unknown error";
}

} // namespace

void T3dPort::getHardwareConfig(QWidget* widget, bool coreProfile)
{
    QGLContext* resource = Q3dPort::resourceContext();
    if (!resource)
        return;
    resource->makeCurrent();
    nativeBindingMoved();
    T3dPortOpenGLInfo::fillGLVersionInfo(coreProfile);

    fsDepreciateFixedFunction = LirnGetEnv("LIRN_DEPRECIATE_FIXED_FUNCTION") != nullptr;
    fsGraphicsFlags.assign(kVertexArraysInSelect, !LirnGetEnv("LIRN_NO_VERTEX_ARRAY_SELECT"));
    fsGraphicsFlags.assign(kSlowDrawPixels, LirnGetEnv("LIRN_SLOW_DRAWPIXELS") != nullptr);

    if (widget) {
        const char* extensions = glXQueryExtensionsString(QX11Info::display(), QX11Info::appScreen());
        if (extensions && std::strstr(extensions, "ARB_get_proc_address"))
            fsCanLookUpEntryPoints = true;
    }
    bindExtensions(coreProfile);

    if (glGetString(GL_RENDERER))
        fsGraphicsFlags.clear(kHasAlphaBuffer | kDithering);
    if (!coreProfile) {
        if (glInteger(GL_ALPHA_BITS) > 7)
            fsGraphicsFlags.set(kHasAlphaBuffer);
        unclampColors();
        fsGraphicsFlags.assign(kHasStencilBuffer, glInteger(GL_STENCIL_BITS) >= 8);
    }
    fsGraphicsFlags.set(kStereoAvailable);
    fsMaxTextureSize = glInteger(GL_MAX_TEXTURE_SIZE);
    if (fsMaxUserTextureSize == 0 || fsMaxUserTextureSize > fsMaxTextureSize)
        fsMaxUserTextureSize = fsMaxTextureSize;
}

void T3dPort::bindExtensions(bool coreProfile)
{
    const char* extensions = glString(GL_EXTENSIONS);
    const auto offers = [extensions](const char* name) { return std::strstr(extensions, name) != nullptr; };

    for (const auto& [name, flag] : extensionMap())
        if (offers(name.asChar()))
            fsGraphicsFlags.set(flag);
    if ((offers("GL_SGIX_depth_texture") && offers("GL_SGIX_shadow")) ||
        (offers("GL_ARB_depth_texture") && offers("GL_ARB_shadow")))
        fsGraphicsFlags.set(kHasDepthTexture);

    const bool is12 = T3dPortOpenGLInfo::isOpenGLVersionSupported(1, 2);
    const bool is13 = T3dPortOpenGLInfo::isOpenGLVersionSupported(1, 3);
    fsHasMultiTexture = fsGraphicsFlags.test(kHasMultiTexture);
    if (is12) {
        fsHasMultiTexture = true;
        fsGraphicsFlags.set(kCore12);
    }
    if (is13)
        fsGraphicsFlags.set(kCore13);

    if (LirnGetEnv("LIRN_CLAMP_TEXTURES_TO_EDGE"))
        fsGraphicsFlags.clear(kHasClampToBorder);
    if (LirnGetEnv("LIRN_SGIS_GENERATE_MIPMAP_OFF"))
        fsGraphicsFlags.clear(kHasGenerateMipmap);
    if (!LirnGetEnv("LIRN_NON_POWER_TWO_ON"))
        fsGraphicsFlags.clear(kHasNonPowerTwoTexture);

    if (fsCanLookUpEntryPoints) {
        const char* drawRange = LirnGetEnv("LIRN_ENABLE_DRAW_RANGE_ELEMENTS");
        if (!drawRange || std::strcmp(drawRange, "0") == 0)
            fsGraphicsFlags.clear(kHasDrawRangeElements);
        for (const EntryPointGroup& group : kEntryPoints) {
            for (const char* name : group.fNames)
                if (name && fsGraphicsFlags.test(group.fFlag) && !lookUp(name))
                    fsGraphicsFlags.clear(group.fFlag);
        }
        if (fsGraphicsFlags.test(kHasUnclampedColor))
            fsGlClampColor = reinterpret_cast<TclampColorProc>(lookUp("glClampColorARB"));
    } else {
        // Without entry points only what the core version guarantees is there, whatever the extensions say.
        fsGraphicsFlags.clear(kHasVertexWeighting | kGraphicsFlag8);
        if (!is12) {
            fsGraphicsFlags.clear(kCore12);
            fsHasMultiTexture = false;
        }
        if (!is13)
            fsGraphicsFlags.clear(kCore13);
    }

    if (fsHasMultiTexture) {
        fsMaxTextureUnits = coreProfile ? 1 : glInteger(GL_MAX_TEXTURE_UNITS);
        TglContext::fsTextureUnits.setUnitCount(static_cast<unsigned>(std::max(fsMaxTextureUnits, 0)));
    }
}

void T3dPort::unclampColors()
{
    if (!fsGlClampColor || !fsGraphicsFlags.test(kHasUnclampedColor) || !LirnGetEnv("LIRN_UNCLAMPED_COLOR_CHANNEL"))
        return;
    fsGlClampColor(GL_CLAMP_VERTEX_COLOR_ARB, GL_FALSE);
    fsGlClampColor(GL_CLAMP_FRAGMENT_COLOR_ARB, GL_FALSE);
}

bool T3dPort::hasAccumBuffer() const
{
    return glWidget() && fQ3dPort->format().testOption(QGL::AccumBuffer);
}

int T3dPort::error() const
{
    makeCurrent();
    const GLenum error = glGetError();
    if (error == GL_NO_ERROR)
        return 0;
    const Tstring& hostText = s_T3dPortStrings::rOpenGLErr;
    const Tstring format = hostText.isEmpty() ? Tstring("OpenGL error ^1s: ^2s") : hostText;
    fsErrorString = Tstring::tFormat(format, Tstring(std::to_string(error)), Tstring(errorText(error)));
    return 1;
}

void T3dPort::printGlError(const char* where)
{
    constexpr int kMostErrors = 11;
    for (int i = 0; i < kMostErrors; ++i) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR)
            return;
        std::fprintf(stderr, "%s: ERROR %u: %s\n", where ? where : "Unknown call", error, errorText(error));
    }
}
