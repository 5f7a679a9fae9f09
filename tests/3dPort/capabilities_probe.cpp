#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPortOpenGLInfo.h"
#include "foundation/LirnGetEnv.h"
#include "foundation/TstringResource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <list>

namespace {

constexpr std::uint64_t k12 = 0x80 | 0x40 | 0x800 | 0x20 | 0x8000000;
constexpr std::uint64_t k13 = 0x40000 | 0x10 | 0x2000 | 0x400000 | 0x800000;

/** A driver as it presents itself, the environment, and what becomes of it. */
struct Row
{
    const char* extensions;
    const char* version;
    std::uint64_t flags;
    bool lookUp = false; ///< entry points may be looked up
    const char* variable = nullptr;
    const char* value = "";
    int missing = 0; ///< so many look-ups fail
};

/** What the extension part of the probe makes of the driver; bits that it never touches must stay. */
std::uint64_t bind(const Row& row)
{
    GlRecorder::resetOverrides();
    GlRecorder::setString(GL_VERSION, row.version);
    T3dPortOpenGLInfo::fsOpenGLVersionFilled = false;
    T3dPortOpenGLInfo::fsOpenGLVersionMajor = 0;
    T3dPortOpenGLInfo::fsOpenGLVersionMinor = 0;
    T3dPortOpenGLInfo::fillGLVersionInfo(false);
    GlRecorder::setString(GL_EXTENSIONS, row.extensions);
    if (row.missing)
        GlRecorder::failNext("glXGetProcAddressARB", row.missing);
    std::list<ScopedEnv> environment;
    for (const char* variable : {"LIRN_CLAMP_TEXTURES_TO_EDGE", "LIRN_SGIS_GENERATE_MIPMAP_OFF",
                                 "LIRN_NON_POWER_TWO_ON", "LIRN_ENABLE_DRAW_RANGE_ELEMENTS"})
        environment.emplace_back(variable, nullptr);
    if (row.variable)
        environment.emplace_back(row.variable, row.value);
    constexpr std::uint64_t kOthers = 0x4 | 0x200 | 0x400 | 0x10000000 | 0x20000000;
    T3dPort::fsGraphicsFlags = TbitField64(kOthers);
    T3dPortProbe::setCanLookUpEntryPoints(row.lookUp);
    T3dPort::bindExtensions(false);
    EXPECT_EQ(T3dPort::fsGraphicsFlags.value() & kOthers, kOthers);
    return T3dPort::fsGraphicsFlags.value() & ~kOthers;
}

} // namespace

TEST(Capabilities, FollowFromExtensionsVersionAndEnvironment)
{
    const PortWindow<> bindsAContext(60, 40);
    const Row rows[] = {
        {"", "1.1", 0},
        {"GL_EXT_abgr", "1.1", 0x1},
        {"GL_EXT_texture_compression GL_EXT_vertex_shader", "1.1", 0x1010000},
        {"GL_EXT_texture_compression_s3tc", "1.1", 0x10000}, // any occurrence counts
        // Without entry points only the version vouches for what belongs to OpenGL 1.2 and 1.3.
        {"GL_EXT_bgra GL_EXT_rescale_normal GL_SGIS_texture_edge_clamp GL_ARB_multitexture", "1.1", 0},
        {"GL_ARB_texture_env_combine GL_ARB_texture_border_clamp GL_ARB_transpose_matrix", "1.2", k12},
        {"", "1.3", k12 | k13},
        {"", "OpenGL 4.5", 0}, // not a version: the record stays at 0.0
        // With them extensions count by themselves.
        {"GL_EXT_rescale_normal GL_SGIS_texture_edge_clamp", "1.1", 0x820, true},
        {"GL_ARB_texture_env_add GL_ARB_texture_env_dot3", "1.1", 0xC00000, true},
        // Depth textures need their comparison, of the same kind.
        {"GL_SGIX_depth_texture GL_ARB_shadow", "1.1", 0},
        {"GL_SGIX_depth_texture GL_SGIX_shadow", "1.1", 0x80000},
        {"GL_ARB_depth_texture GL_ARB_shadow", "1.1", 0x80000},
        // Present counts, empty or not.
        {"GL_ARB_texture_border_clamp", "1.3", (k12 | k13) & ~std::uint64_t(0x10), false,
         "LIRN_CLAMP_TEXTURES_TO_EDGE"},
        {"GL_SGIS_generate_mipmap", "1.1", 0, false, "LIRN_SGIS_GENERATE_MIPMAP_OFF"},
        {"GL_ARB_texture_non_power_of_two", "1.1", 0x4000000, false, "LIRN_NON_POWER_TWO_ON"},
        // Range elements: taken back where entry points can be looked up, unless wanted.
        {"", "1.2", k12 & ~std::uint64_t(0x8000000), true},
        {"", "1.2", k12, true, "LIRN_ENABLE_DRAW_RANGE_ELEMENTS"},
        {"", "1.2", k12 & ~std::uint64_t(0x8000000), true, "LIRN_ENABLE_DRAW_RANGE_ELEMENTS", "0"},
        // Groups of entry points stand or fall together.
        {"GL_EXT_fog_coord", "1.1", 0x1000, true},
        {"GL_EXT_fog_coord", "1.1", 0, true, nullptr, "", 1},
        {"GL_ARB_color_buffer_float", "1.1", 0x40000000, true},
        {"GL_ARB_color_buffer_float", "1.1", 0, true, nullptr, "", 1},
        {"GL_ARB_color_buffer_float", "1.1", 0x40000000}, // may stand without its entry point
        {"GL_ARB_vertex_buffer_object", "1.1", 0x80000000, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.extensions) + " on " + row.version + (row.lookUp ? ", look-up" : "") +
                     (row.variable ? std::string(", ") + row.variable + "=" + row.value : ""));
        const std::uint64_t flags = bind(row);
        EXPECT_EQ(flags, row.flags) << std::hex << flags << " wanted " << row.flags;
    }
}

TEST(Capabilities, AreAsTheMaskSays)
{
    const PortWindow<> made(60, 40);
    EXPECT_EQ(T3dPort::fsHasMultiTexture, !LirnGetEnv("TEST_GL_VERSION"));
    EXPECT_EQ(T3dPort::fsDepreciateFixedFunction, LirnGetEnv("LIRN_DEPRECIATE_FIXED_FUNCTION") != nullptr);
    EXPECT_FALSE(T3dPort::haveGenerateMipmap() && LirnGetEnv("LIRN_SGIS_GENERATE_MIPMAP_OFF"));
}

TEST(GlErrors, AreReadOneByOneWithTheirTexts)
{
    PortWindow<> made(60, 40);
    PortWindow<> other(60, 40);
    const T3dPort& port = made.port();
    struct Error
    {
        unsigned number;
        const char* text;
    };
    const Error errors[] = {{1280, "invalid enumerant"},
                            {1281, "invalid value"},
                            {1282, "invalid operation"},
                            {1283, "stack overflow"},
                            {1284, "stack underflow"},
                            {1285, "out of memory"},
                            {1286, "Invalid framebuffer operation"},
                            {1279, "Unknown error"},
                            {1287, "Unknown error"}};
    EXPECT_EQ(port.error(), 0);
    for (const Error& error : errors) {
        GlRecorder::queueErrors({error.number});
        EXPECT_EQ(port.error(), 1);
        EXPECT_EQ(port.getErrorString().toStdString(),
                  "OpenGL error " + std::to_string(error.number) + ": " + error.text);
        EXPECT_EQ(port.error(), 0);
        EXPECT_EQ(other.port().getErrorString(), port.getErrorString()) << "is kept, for all ports";

        GlRecorder::queueErrors({error.number});
        const StderrCapture output;
        T3dPort::printGlError(error.number % 2 ? "here" : nullptr);
        EXPECT_EQ(output.text(), std::string(error.number % 2 ? "here" : "Unknown call") + ": ERROR " +
                                     std::to_string(error.number) + ": " + error.text + "\n");
    }
    s_T3dPortStrings::rOpenGLErr = "Erreur ^1s (^2s)";
    glEnable(0xFFFF);
    EXPECT_EQ(port.error(), 1);
    EXPECT_STREQ(port.getErrorString().asChar(), "Erreur 1280 (invalid enumerant)");
}

TEST(GlErrors, ElevenArePrintedAtMost)
{
    GlRecorder::queueErrors({1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1281});
    const StderrCapture output;
    T3dPort::printGlError("loop");
    const std::string text = output.text();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 11);
    EXPECT_EQ(glGetError(), 1281u);
}
