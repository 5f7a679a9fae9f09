#include "support/GlRecorder.h"
#include "support/HostProbes.h"
#include "support/PortWindow.h"
#include "support/T3dPortProbe.h"

#include "Graphics/3dPort/T3dPortOpenGLInfo.h"
#include "QtExtensions/Q3dPort.h"
#include "foundation/TstringResource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <GL/glext.h>
#include <initializer_list>

using testing::IsEmpty;

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

void setVersion(const char* version)
{
    GlRecorder::setString(GL_VERSION, version);
    T3dPortOpenGLInfo::fsOpenGLVersionFilled = false;
    T3dPortOpenGLInfo::fsOpenGLVersionMajor = 0;
    T3dPortOpenGLInfo::fsOpenGLVersionMinor = 0;
    T3dPortOpenGLInfo::fillGLVersionInfo(false);
}

/** What the extension part of the probe makes of the driver; bits that it never touches must stay. */
std::uint64_t bind(const Row& row)
{
    GlRecorder::resetOverrides();
    setVersion(row.version);
    GlRecorder::setString(GL_EXTENSIONS, row.extensions);
    if (row.missing)
        GlRecorder::failNext("glXGetProcAddressARB", row.missing);
    std::unique_ptr<ScopedEnv> environment;
    if (row.variable)
        environment = std::make_unique<ScopedEnv>(row.variable, row.value);
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
        {"GL_SGIS_multisample", "1.1", 0x2},
        {"GLX_SGIS_multisample", "1.1", 0x2},
        {"GL_EXT_texture_filter_anisotropic", "1.1", 0x4000},
        {"GL_EXT_texture_compression GL_EXT_vertex_shader", "1.1", 0x1010000},
        {"GL_EXT_texture_compression_s3tc", "1.1", 0x10000}, // any occurrence counts
        {"GL_IBM_texture_mirrored_repeat", "1.1", 0x100000},
        {"GL_ATI_texture_mirror_once", "1.1", 0x200000},
        // Without entry points only the version vouches for what belongs to OpenGL 1.2 and 1.3.
        {"GL_EXT_bgra GL_EXT_rescale_normal GL_SGIS_texture_edge_clamp GL_ARB_multitexture", "1.1", 0},
        {"GL_ARB_texture_env_combine GL_ARB_texture_border_clamp GL_ARB_transpose_matrix", "1.2", k12},
        {"", "1.2.1 Driver 7", k12},
        {"", "1.3", k12 | k13},
        {"", "4.5 (Compatibility Profile)", k12 | k13},
        {"", "10.0", k12 | k13},
        {"", "OpenGL 4.5", 0}, // not a version: the record stays at 0.0
        {"", "", 0},
        // With them extensions count by themselves.
        {"GL_EXT_bgra", "1.1", 0x40, true},
        {"GL_EXT_rescale_normal GL_SGIS_texture_edge_clamp", "1.1", 0x820, true},
        {"GL_ARB_multitexture", "1.1", 0x80, true},
        {"GL_SGIS_texture_border_clamp", "1.1", 0x10, true},
        {"GL_ARB_texture_border_clamp", "1.1", 0x10, true},
        {"GL_EXT_texture_env_combine", "1.1", 0x40000, true},
        {"GL_ARB_texture_env_combine", "1.1", 0x40000, true},
        {"GL_ARB_texture_env_add GL_ARB_texture_env_dot3", "1.1", 0xC00000, true},
        // Depth textures need their comparison, of the same kind.
        {"GL_SGIX_depth_texture", "1.1", 0},
        {"GL_ARB_shadow", "1.1", 0},
        {"GL_SGIX_depth_texture GL_ARB_shadow", "1.1", 0},
        {"GL_SGIX_depth_texture GL_SGIX_shadow", "1.1", 0x80000},
        {"GL_ARB_depth_texture GL_ARB_shadow", "1.1", 0x80000},
        // Present counts, empty or not.
        {"GL_ARB_texture_border_clamp", "1.3", (k12 | k13) & ~std::uint64_t(0x10), false,
         "LIRN_CLAMP_TEXTURES_TO_EDGE"},
        {"GL_SGIS_generate_mipmap", "1.1", 0x2000000},
        {"GL_SGIS_generate_mipmap", "1.1", 0, false, "LIRN_SGIS_GENERATE_MIPMAP_OFF"},
        {"GL_ARB_texture_non_power_of_two", "1.1", 0},
        {"GL_ARB_texture_non_power_of_two", "1.1", 0x4000000, false, "LIRN_NON_POWER_TWO_ON"},
        {"GL_EXT_texture_non_power_of_two", "1.1", 0x4000000, false, "LIRN_NON_POWER_TWO_ON", "0"},
        {"", "1.1", 0, false, "LIRN_NON_POWER_TWO_ON"},
        // Range elements: taken back where entry points can be looked up, unless wanted.
        {"", "1.2", k12 & ~std::uint64_t(0x8000000), true},
        {"", "1.2", k12, true, "LIRN_ENABLE_DRAW_RANGE_ELEMENTS"},
        {"", "1.2", k12, true, "LIRN_ENABLE_DRAW_RANGE_ELEMENTS", "00"},
        {"", "1.2", k12 & ~std::uint64_t(0x8000000), true, "LIRN_ENABLE_DRAW_RANGE_ELEMENTS", "0"},
        {"GL_EXT_draw_range_elements", "1.1", 0x8000000, true, "LIRN_ENABLE_DRAW_RANGE_ELEMENTS", "1"},
        // Groups of entry points stand or fall together.
        {"GL_EXT_fog_coord", "1.1", 0x1000, true},
        {"GL_EXT_fog_coord", "1.1", 0, true, nullptr, "", 1},
        {"GL_ARB_transpose_matrix", "1.1", 0x2000, true},
        {"GL_ARB_transpose_matrix", "1.1", 0, true, nullptr, "", 1},
        {"GL_EXT_secondary_color", "1.1", 0x20000, true},
        {"GL_EXT_secondary_color", "1.1", 0, true, nullptr, "", 1},
        {"GL_EXT_vertex_weighting", "1.1", 0, true, nullptr, "", 1},
        {"GL_EXT_vertex_weighting", "1.1", 0},
        {"GL_ARB_color_buffer_float", "1.1", 0x40000000, true},
        {"GL_ARB_color_buffer_float", "1.1", 0, true, nullptr, "", 1},
        {"GL_ARB_color_buffer_float", "1.1", 0x40000000}, // may stand without its entry point
        {"GL_ARB_vertex_buffer_object", "1.1", 0x80000000, true},
        {"GL_ARB_vertex_buffer_object", "1.1", 0, true, nullptr, "", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.extensions) + " on " + row.version + (row.lookUp ? ", look-up" : "") +
                     (row.variable ? std::string(", ") + row.variable + "=" + row.value : ""));
        const std::uint64_t flags = bind(row);
        EXPECT_EQ(flags, row.flags) << std::hex << flags << " wanted " << row.flags;
        EXPECT_EQ(T3dPort::fsHasMultiTexture, (row.flags & 0x80) != 0);
        EXPECT_EQ(T3dPort::haveClampToBorder(), (row.flags & 0x10) != 0);
        EXPECT_EQ(T3dPort::haveMirrorRepeat(), (row.flags & 0x100000) != 0);
        EXPECT_EQ(T3dPort::haveMirrorClamp(), (row.flags & 0x200000) != 0);
        EXPECT_EQ(T3dPort::haveGenerateMipmap(), (row.flags & 0x2000000) != 0);
        EXPECT_EQ(T3dPort::haveNonPowerTwoTexture(), (row.flags & 0x4000000) != 0);
        EXPECT_EQ(T3dPort::hasTextureFilterAnisotropic(), (row.flags & 0x4000) != 0);
    }
}

TEST(Capabilities, EachGroupLooksUpItsEntryPointsWhileItsBitStands)
{
    const PortWindow<> bindsAContext(60, 40);
    struct Lookups
    {
        const char* extensions;
        std::vector<std::string> names;
    };
    const Lookups rows[] = {
        {"GL_ARB_transpose_matrix",
         {"glLoadTransposeMatrixfARB", "glLoadTransposeMatrixdARB", "glMultTransposeMatrixfARB",
          "glMultTransposeMatrixdARB"}},
        {"GL_EXT_fog_coord",
         {"glFogCoordfEXT", "glFogCoordfvEXT", "glFogCoorddEXT", "glFogCoorddvEXT", "glFogCoordPointerEXT"}},
        {"GL_EXT_secondary_color",
         {"glSecondaryColor3dEXT", "glSecondaryColor3dvEXT", "glSecondaryColor3fEXT", "glSecondaryColor3fvEXT",
          "glSecondaryColorPointerEXT"}},
        {"GL_EXT_vertex_weighting", {"glVertexWeightfEXT", "glVertexWeightfvEXT", "glVertexWeightPointerEXT"}},
        {"GL_ARB_vertex_buffer_object", {"glBindBufferARB"}},
        {"", {}},
    };
    for (const Lookups& row : rows) {
        SCOPED_TRACE(row.extensions);
        GlRecorder recorder;
        recorder.start();
        bind(Row{row.extensions, "1.1", 0, true});
        recorder.stop();
        std::vector<std::string> names;
        for (const std::string& call : recorder.calls()) {
            const std::string start = "glXGetProcAddressARB(\"";
            if (call.compare(0, start.size(), start) == 0)
                names.push_back(call.substr(start.size(), call.size() - start.size() - 2));
        }
        EXPECT_EQ(names, row.names);
    }
}

TEST(Capabilities, VersionIsReadOnceAndComparedByItsNumbers)
{
    EXPECT_FALSE(T3dPortOpenGLInfo::isOpenGLVersionSupported(0, 0)) << "before it is read";
    const PortWindow<> bindsAContext(60, 40);
    setVersion("3.2");
    struct Asked
    {
        unsigned major, minor;
        bool supported;
    };
    for (const Asked& asked : {Asked{3, 2, true}, Asked{3, 1, true}, Asked{3, 3, false}, Asked{2, 9, true},
                               Asked{4, 0, false}, Asked{0, 0, true}})
        EXPECT_EQ(T3dPortOpenGLInfo::isOpenGLVersionSupported(asked.major, asked.minor), asked.supported)
            << asked.major << "." << asked.minor;

    GlRecorder::setString(GL_VERSION, "4.4");
    T3dPortOpenGLInfo::fillGLVersionInfo(true);
    EXPECT_TRUE(T3dPortOpenGLInfo::fsOpenGLCoreProfile);
    EXPECT_EQ(T3dPortOpenGLInfo::fsOpenGLVersionMajor, 3u);
    T3dPortOpenGLInfo::fillGLVersionInfo(false);
    EXPECT_FALSE(T3dPortOpenGLInfo::fsOpenGLCoreProfile);

    // Half a version is none.
    setVersion("5");
    EXPECT_EQ(T3dPortOpenGLInfo::fsOpenGLVersionMajor, 0u);
    EXPECT_TRUE(T3dPortOpenGLInfo::fsOpenGLVersionFilled);
    EXPECT_FALSE(T3dPortOpenGLInfo::isOpenGLVersionSupported(1, 1));
}

TEST(Capabilities, ProbeTakesBuffersLimitsAndSwitches)
{
    EXPECT_EQ(T3dPort::fsMaxTextureUnits, 1);
    EXPECT_EQ(T3dPort::fsMaxUserTextureSize, 0);
    std::unique_ptr<PortWindow<>> first;
    {
        const ScopedEnv fixed("LIRN_DEPRECIATE_FIXED_FUNCTION", "");
        const ScopedEnv arrays("LIRN_NO_VERTEX_ARRAY_SELECT", "");
        const ScopedEnv pixels("LIRN_SLOW_DRAWPIXELS", "");
        first = std::make_unique<PortWindow<>>(60, 40);
        EXPECT_TRUE(T3dPort::fsDepreciateFixedFunction);
        EXPECT_EQ(T3dPort::fsGraphicsFlags.value() & 0x600, 0x400u);
        EXPECT_TRUE(T3dPort::fsGraphicsFlags.test(0x10000000));
    }
    T3dPort::fsGraphicsFlags = TbitField64(0x4 | 0x8 | 0x100);
    T3dPort::getHardwareConfig(nullptr, false);
    EXPECT_FALSE(T3dPort::fsDepreciateFixedFunction);
    EXPECT_EQ(T3dPort::fsGraphicsFlags.value() & 0x600, 0x200u);
    EXPECT_FALSE(T3dPort::fsGraphicsFlags.test(0x8));

    // The resource context is still the current one.
    GLint alpha = 0;
    GLint stencil = 0;
    GLint size = 0;
    GLint units = 0;
    glGetIntegerv(GL_ALPHA_BITS, &alpha);
    glGetIntegerv(GL_STENCIL_BITS, &stencil);
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &size);
    glGetIntegerv(GL_MAX_TEXTURE_UNITS, &units);
    EXPECT_EQ(T3dPort::sHasAlphaBuffer(), alpha > 7);
    EXPECT_EQ(T3dPort::sHasStencilBuffer(), stencil >= 8);
    EXPECT_EQ(T3dPort::fsMaxTextureSize, size);
    EXPECT_EQ(T3dPort::fsMaxUserTextureSize, size);
    EXPECT_EQ(T3dPort::fsMaxTextureUnits, units);
    EXPECT_EQ(TglContext::fsTextureUnits.unitCount(), unsigned(units));

    for (const auto& [before, after] : {std::pair(512, 512), std::pair(size + 1, size), std::pair(0, size)}) {
        T3dPort::fsMaxUserTextureSize = before;
        T3dPort::getHardwareConfig(nullptr, false);
        EXPECT_EQ(T3dPort::fsMaxUserTextureSize, after);
    }

    // A core profile asks for none of the fixed-function limits.
    T3dPort::fsGraphicsFlags = TbitField64(0x20000000);
    GlRecorder recorder;
    recorder.start();
    T3dPort::getHardwareConfig(nullptr, true);
    recorder.stop();
    EXPECT_EQ(T3dPort::fsMaxTextureUnits, 1);
    EXPECT_TRUE(T3dPort::sHasStencilBuffer()) << "not asked for, left alone";
    EXPECT_EQ(recorder.count("glGetIntegerv"), 1) << recorder.text();
    EXPECT_EQ(TglContext::fsTextureUnits.unitCount(), unsigned(units)) << "is set once";
}

TEST(Capabilities, UnclampedColoursAreSwitchedOnInEveryContext)
{
    const ScopedEnv unclamped("LIRN_UNCLAMPED_COLOR_CHANNEL", "");
    PortWindow<> made(60, 40);
    PortWindow<> another(60, 40);
    if (!T3dPort::fsGraphicsFlags.test(T3dPort::kHasUnclampedColor))
        GTEST_SKIP() << "the driver cannot";
    for (PortWindow<>* window : {&made, &another}) {
        window->port().setCurrentContext();
        GLint vertex = GL_TRUE;
        GLint fragment = GL_TRUE;
        glGetIntegerv(GL_CLAMP_VERTEX_COLOR_ARB, &vertex);
        glGetIntegerv(GL_CLAMP_FRAGMENT_COLOR_ARB, &fragment);
        EXPECT_EQ(vertex, GL_FALSE);
        EXPECT_EQ(fragment, GL_FALSE);
        window->port().color(TportColor(2, 0.5f, -1.5f, 1));
        EXPECT_EQ(window->port().stateDifferences().length(), 0u);
    }
}

TEST(Capabilities, AnAccumulationBufferIsTheWidgets)
{
    const PortWindow<> keepsTheResourceWidget(60, 40);
    for (const char* wanted : {"0", "1"}) {
        TresourceMap::Set("testPort", "saAccumbuffer", wanted);
        PortWindow<> made(60, 40);
        made.port().setCurrentContext();
        GLint bits = 0;
        glGetIntegerv(GL_ACCUM_RED_BITS, &bits);
        EXPECT_EQ(made.port().hasAccumBuffer(), bits > 0);
        EXPECT_EQ(made.port().hasAccumBuffer(), *wanted == '1');
    }
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
    const Error errors[] = {{1280, "invalid enumerant"}, {1281, "invalid value"},   {1282, "invalid operation"},
                            {1283, "stack overflow"},    {1284, "stack underflow"}, {1285, "out of memory"},
                            {1286, "Invalid framebuffer operation"}, {1279, "Unknown error"}, {1287, "Unknown error"}};
    EXPECT_EQ(port.error(), 0);
    EXPECT_TRUE(T3dPort::currentPort() == &port) << "made current";
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
    s_T3dPortStrings::rOpenGLErr = "";
    glEnable(0xFFFF);
    EXPECT_EQ(port.error(), 1);
    EXPECT_THAT(port.getErrorString().asChar(), testing::HasSubstr("1280")) << "without a text of the host's too";
}

TEST(GlErrors, ElevenOfTwelveArePrinted)
{
    const PortWindow<> made(60, 40);
    const auto printed = [] {
        const StderrCapture output;
        T3dPort::printGlError("swap");
        return output.text();
    };
    EXPECT_EQ(printed(), "");
    GlRecorder::queueErrors({1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1280, 1282});
    std::string eleven;
    for (int i = 0; i < 11; ++i)
        eleven += "swap: ERROR 1280: invalid enumerant\n";
    EXPECT_EQ(printed(), eleven);
    EXPECT_EQ(printed(), "swap: ERROR 1282: invalid operation\n") << "the twelfth waits";
    EXPECT_EQ(printed(), "");
}
