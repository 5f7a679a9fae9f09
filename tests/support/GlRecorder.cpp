#define GL_GLEXT_PROTOTYPES
#include "support/GlRecorder.h"

#include <GL/gl.h>
#include <GL/glx.h>
#include <dlfcn.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <map>
#include <string_view>
#include <thread>
#include <tuple>
#include <type_traits>
#include <unordered_map>

namespace {

struct Toverrides
{
    std::map<std::string, int> failures;
    std::map<unsigned, std::string> strings;
    std::deque<unsigned> errors;
};

std::vector<std::string>* gsCalls = nullptr;
bool gsInside = false;
// The one thing that every call looks at, so that calls cost next to nothing while nobody watches.
bool gsWatched = false;

const std::thread::id gsMainThread = std::this_thread::get_id();

Toverrides& overrides()
{
    static Toverrides theOverrides;
    return theOverrides;
}

void updateWatched()
{
    const Toverrides& o = overrides();
    gsWatched = gsCalls || !o.failures.empty() || !o.strings.empty() || !o.errors.empty();
}

struct Tname
{
    unsigned value;
    const char* text;
};

constexpr Tname kGlNames[] = {
#include "GlNames.inc"
};

constexpr Tname kGlxNames[] = {
#include "GlxNames.inc"
};

constexpr Tname kAttributeBits[] = {
    {GL_CURRENT_BIT, "GL_CURRENT_BIT"},
    {GL_POINT_BIT, "GL_POINT_BIT"},
    {GL_LINE_BIT, "GL_LINE_BIT"},
    {GL_POLYGON_BIT, "GL_POLYGON_BIT"},
    {GL_POLYGON_STIPPLE_BIT, "GL_POLYGON_STIPPLE_BIT"},
    {GL_PIXEL_MODE_BIT, "GL_PIXEL_MODE_BIT"},
    {GL_LIGHTING_BIT, "GL_LIGHTING_BIT"},
    {GL_FOG_BIT, "GL_FOG_BIT"},
    {GL_DEPTH_BUFFER_BIT, "GL_DEPTH_BUFFER_BIT"},
    {GL_ACCUM_BUFFER_BIT, "GL_ACCUM_BUFFER_BIT"},
    {GL_STENCIL_BUFFER_BIT, "GL_STENCIL_BUFFER_BIT"},
    {GL_VIEWPORT_BIT, "GL_VIEWPORT_BIT"},
    {GL_TRANSFORM_BIT, "GL_TRANSFORM_BIT"},
    {GL_ENABLE_BIT, "GL_ENABLE_BIT"},
    {GL_COLOR_BUFFER_BIT, "GL_COLOR_BUFFER_BIT"},
    {GL_HINT_BIT, "GL_HINT_BIT"},
    {GL_EVAL_BIT, "GL_EVAL_BIT"},
    {GL_LIST_BIT, "GL_LIST_BIT"},
    {GL_TEXTURE_BIT, "GL_TEXTURE_BIT"},
    {GL_SCISSOR_BIT, "GL_SCISSOR_BIT"},
    {GL_MULTISAMPLE_BIT, "GL_MULTISAMPLE_BIT"},
};

constexpr Tname kClientBits[] = {
    {GL_CLIENT_PIXEL_STORE_BIT, "GL_CLIENT_PIXEL_STORE_BIT"},
    {GL_CLIENT_VERTEX_ARRAY_BIT, "GL_CLIENT_VERTEX_ARRAY_BIT"},
};

constexpr const char* kPrimitives[] = {"GL_POINTS",     "GL_LINES",          "GL_LINE_LOOP",    "GL_LINE_STRIP",
                                       "GL_TRIANGLES",  "GL_TRIANGLE_STRIP", "GL_TRIANGLE_FAN", "GL_QUADS",
                                       "GL_QUAD_STRIP", "GL_POLYGON"};

std::string hexadecimal(unsigned long value)
{
    char text[24];
    std::snprintf(text, sizeof(text), "0x%lx", value);
    return text;
}

/** Null for a value without a name. */
const char* knownEnum(unsigned value)
{
    static const auto names = [] {
        std::unordered_map<unsigned, const char*> map;
        for (const Tname& name : kGlNames)
            map.emplace(name.value, name.text);
        return map;
    }();
    // Below lie the primitives, the blend factors zero and one, and numbers that are just numbers.
    const auto found = value < 0x100 ? names.end() : names.find(value);
    return found == names.end() ? nullptr : found->second;
}

std::string glxName(int value)
{
    for (const Tname& name : kGlxNames) {
        if (name.value == static_cast<unsigned>(value))
            return name.text;
    }
    return std::to_string(value);
}

template <std::size_t N> std::string bitNames(unsigned mask, const Tname (&names)[N])
{
    std::string text;
    for (const Tname& name : names) {
        if (mask & name.value) {
            text += (text.empty() ? "" : "|") + std::string(name.text);
            mask &= ~name.value;
        }
    }
    if (mask || text.empty())
        text += (text.empty() ? "" : "|") + (mask ? hexadecimal(mask) : "0");
    return text;
}

template <class T> std::string number(T value)
{
    if constexpr (std::is_floating_point_v<T>) {
        char text[40];
        return std::string(text, std::to_chars(text, text + sizeof(text), value).ptr);
    } else {
        return std::to_string(value);
    }
}

template <class T> std::string numbers(const T* values, long count)
{
    if (!values)
        return "null";
    std::string text = "[";
    for (long i = 0; i < count; ++i)
        text += (i ? " " : "") + number(values[i]);
    return text + "]";
}

/** How many values a parameter of a light, material, texture, fog and the like has. */
long parameterLength(long parameter)
{
    switch (parameter) {
    case GL_AMBIENT:
    case GL_DIFFUSE:
    case GL_SPECULAR:
    case GL_EMISSION:
    case GL_AMBIENT_AND_DIFFUSE:
    case GL_POSITION:
    case GL_LIGHT_MODEL_AMBIENT:
    case GL_FOG_COLOR:
    case GL_TEXTURE_ENV_COLOR:
    case GL_TEXTURE_BORDER_COLOR:
    case GL_OBJECT_PLANE:
    case GL_EYE_PLANE:
    case GL_COLOR_TABLE_SCALE:
    case GL_COLOR_TABLE_BIAS:
        return 4;
    case GL_SPOT_DIRECTION:
    case GL_COLOR_INDEXES:
    case GL_POINT_DISTANCE_ATTENUATION:
        return 3;
    default:
        return 1;
    }
}

std::string listNames(const void* lists, long count, long type)
{
    switch (type) {
    case GL_BYTE:
        return numbers(static_cast<const GLbyte*>(lists), count);
    case GL_UNSIGNED_BYTE:
        return numbers(static_cast<const GLubyte*>(lists), count);
    case GL_UNSIGNED_SHORT:
        return numbers(static_cast<const GLushort*>(lists), count);
    case GL_INT:
        return numbers(static_cast<const GLint*>(lists), count);
    case GL_UNSIGNED_INT:
        return numbers(static_cast<const GLuint*>(lists), count);
    default:
        return "pointer";
    }
}

std::string visualAttributes(const int* attributes)
{
    if (!attributes)
        return "null";
    std::string text = "[";
    while (*attributes) {
        const int attribute = *attributes++;
        text += (text.size() > 1 ? " " : "") + glxName(attribute);
        const bool isSwitch = attribute == GLX_USE_GL || attribute == GLX_RGBA || attribute == GLX_DOUBLEBUFFER ||
                              attribute == GLX_STEREO;
        if (!isSwitch)
            text += "=" + std::to_string(*attributes++);
    }
    return text + "]";
}

std::string pairedAttributes(const int* attributes)
{
    if (!attributes)
        return "null";
    std::string text = "[";
    for (; *attributes; attributes += 2) {
        text += (text.size() > 1 ? " " : "") + glxName(attributes[0]) + "=" + std::to_string(attributes[1]);
    }
    return text + "]";
}

/** The integers among the arguments before the one being written; lengths follow from them. */
struct Tearlier
{
    long first = 0;
    long last = 0;
};

/**
 * The letters: e enum, u number or enum, B primitive, f blend factor, b boolean, i number, x hexadecimal number,
 * m attribute or buffer bits, c client attribute bits, a GLX attribute, s text, p pointer that is not followed;
 * and of pointers to values: 1 to 4 so many, M sixteen, n as many as the last integer says, v as many as the parameter
 * named just before has, L display lists, V visual attributes, W attribute-value pairs.
 */
template <class T> std::string argument(char kind, T value, [[maybe_unused]] const Tearlier& earlier)
{
    if constexpr (std::is_pointer_v<T>) {
        using Tvalue = std::remove_cv_t<std::remove_pointer_t<T>>;
        if constexpr (std::is_arithmetic_v<Tvalue>) {
            switch (kind) {
            case '1':
            case '2':
            case '3':
            case '4':
                return numbers(value, kind - '0');
            case 'M':
                return numbers(value, 16);
            case 'n':
                return numbers(value, earlier.last);
            case 'v':
                return numbers(value, parameterLength(earlier.last));
            default:
                break;
            }
        }
        if constexpr (std::is_same_v<Tvalue, int>) {
            if (kind == 'V')
                return visualAttributes(value);
            if (kind == 'W')
                return pairedAttributes(value);
        }
        if constexpr (std::is_same_v<Tvalue, GLubyte>) {
            if (kind == 's')
                return value ? '"' + std::string(reinterpret_cast<const char*>(value)) + '"' : "null";
        }
        if constexpr (std::is_same_v<Tvalue, void>) {
            if (kind == 'L' && value)
                return listNames(value, earlier.first, earlier.last);
        }
        return value ? "pointer" : "null";
    } else {
        const auto bits = static_cast<unsigned>(value);
        switch (kind) {
        case 'e':
            return bits == 0 ? "GL_NONE" : GlRecorder::enumName(bits);
        case 'u':
            return knownEnum(bits) ? knownEnum(bits) : number(value);
        case 'B':
            return bits < std::size(kPrimitives) ? kPrimitives[bits] : hexadecimal(bits);
        case 'f':
            return bits == GL_ZERO ? "GL_ZERO" : bits == GL_ONE ? "GL_ONE" : GlRecorder::enumName(bits);
        case 'b':
            return bits == GL_FALSE ? "GL_FALSE" : bits == GL_TRUE ? "GL_TRUE" : std::to_string(bits);
        case 'x':
            return hexadecimal(static_cast<unsigned long>(value));
        case 'm':
            return bits == GL_ALL_ATTRIB_BITS ? "GL_ALL_ATTRIB_BITS" : bitNames(bits, kAttributeBits);
        case 'c':
            return bits == GL_CLIENT_ALL_ATTRIB_BITS ? "GL_CLIENT_ALL_ATTRIB_BITS" : bitNames(bits, kClientBits);
        case 'a':
            return glxName(static_cast<int>(bits));
        default:
            return number(value);
        }
    }
}

template <class... A> std::string callText(const char* name, const char* kinds, A... arguments)
{
    std::string text = name;
    text += '(';
    [[maybe_unused]] Tearlier earlier;
    [[maybe_unused]] std::size_t i = 0;
    [[maybe_unused]] const auto write = [&](auto value) {
        text += (i ? ", " : "") + argument(kinds[i], value, earlier);
        if constexpr (std::is_integral_v<decltype(value)>) {
            earlier.last = static_cast<long>(value);
            if (i == 0)
                earlier.first = earlier.last;
        }
        ++i;
    };
    (write(+arguments), ...); // promoted: a GLbyte is a number
    return text + ')';
}

bool takeFailure(const char* name)
{
    auto& failures = overrides().failures;
    const auto found = failures.find(name);
    if (found == failures.end())
        return false;
    if (--found->second <= 0)
        failures.erase(found);
    updateWatched();
    return true;
}

/** Marks that calls now come from inside a call. */
class Tinside
{
public:
    Tinside() { gsInside = true; }
    ~Tinside() { gsInside = false; }
};

template <class F> struct Tsignature;
template <class R, class... A> struct Tsignature<R(A...)>
{
    using Tresult = R;
    template <std::size_t N> using Targument = std::tuple_element_t<N, std::tuple<A...>>;
};

#ifdef __SANITIZE_ADDRESS__
bool modeSwitched = false;
#endif

void* driverSymbol(const char* name)
{
#ifdef __SANITIZE_ADDRESS__
    if (std::strcmp(name, "glRenderMode") == 0)
        modeSwitched = true;
#endif
    void* symbol = dlsym(RTLD_NEXT, name);
    if (!symbol) {
        static void* const library = dlopen("libGL.so.1", RTLD_LAZY | RTLD_GLOBAL);
        symbol = library ? dlsym(library, name) : nullptr;
    }
    if (!symbol) {
        std::fprintf(stderr, "GlRecorder: no driver has %s\n", name);
        std::abort();
    }
    return symbol;
}

/** @param own gives the result in the driver's place; null for the driver's */
template <class F, class Own, class... A>
typename Tsignature<F>::Tresult call(const char* name, F* driver, const char* kinds, Own own, A... arguments)
{
    if (!gsWatched || gsInside || std::this_thread::get_id() != gsMainThread)
        return driver(arguments...);
    if (gsCalls)
        gsCalls->push_back(callText(name, kinds, arguments...));
    if (takeFailure(name))
        return typename Tsignature<F>::Tresult();
    const Tinside inside;
    if constexpr (!std::is_null_pointer_v<Own>) {
        if (const auto result = own(arguments...))
            return *result;
    }
    return driver(arguments...);
}

} // namespace

#define RESULT(f) Tsignature<decltype(f)>::Tresult
#define P(f, n) Tsignature<decltype(f)>::Targument<n> p##n
#define DEFINE(f, kinds, own, parameters, ...)                                                                         \
    extern "C" RESULT(f) f parameters                                                                                  \
    {                                                                                                                  \
        static auto* const driver = reinterpret_cast<decltype(&f)>(driverSymbol(#f));                                  \
        return call<decltype(f)>(#f, driver, kinds, own __VA_ARGS__);                                                  \
    }

#define GL_0(f, k) DEFINE(f, k, nullptr, ())
#define GL_1(f, k) DEFINE(f, k, nullptr, (P(f, 0)), , p0)
#define GL_2(f, k) DEFINE(f, k, nullptr, (P(f, 0), P(f, 1)), , p0, p1)
#define GL_3(f, k) DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2)), , p0, p1, p2)
#define GL_4(f, k) DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2), P(f, 3)), , p0, p1, p2, p3)
#define GL_5(f, k) DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2), P(f, 3), P(f, 4)), , p0, p1, p2, p3, p4)
#define GL_6(f, k)                                                                                                     \
    DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2), P(f, 3), P(f, 4), P(f, 5)), , p0, p1, p2, p3, p4, p5)
#define GL_7(f, k)                                                                                                     \
    DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2), P(f, 3), P(f, 4), P(f, 5), P(f, 6)), , p0, p1, p2, p3, p4, p5, p6)
#define GL_8(f, k)                                                                                                     \
    DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2), P(f, 3), P(f, 4), P(f, 5), P(f, 6), P(f, 7)), , p0, p1, p2, p3,  \
           p4, p5, p6, p7)
#define GL_9(f, k)                                                                                                     \
    DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2), P(f, 3), P(f, 4), P(f, 5), P(f, 6), P(f, 7), P(f, 8)), , p0, p1, \
           p2, p3, p4, p5, p6, p7, p8)
#define GL_10(f, k)                                                                                                    \
    DEFINE(f, k, nullptr, (P(f, 0), P(f, 1), P(f, 2), P(f, 3), P(f, 4), P(f, 5), P(f, 6), P(f, 7), P(f, 8), P(f, 9)),  \
           , p0, p1, p2, p3, p4, p5, p6, p7, p8, p9)
#define GL_11(f, k)                                                                                                    \
    DEFINE(f, k, nullptr,                                                                                              \
           (P(f, 0), P(f, 1), P(f, 2), P(f, 3), P(f, 4), P(f, 5), P(f, 6), P(f, 7), P(f, 8), P(f, 9), P(f, 10)), , p0, \
           p1, p2, p3, p4, p5, p6, p7, p8, p9, p10)

#ifdef __SANITIZE_ADDRESS__
/**
 * Asked before leaks are looked for. Mesa loses the vertex buffer, half a megabyte, of a context in which something was
 * drawn in selection mode; nothing but its size tells it from the other memory of a context.
 */
extern "C" int __lsan_is_turned_off()
{
    return modeSwitched;
}
#endif

#define GL(f, n, kinds)                                                                                                \
    static_assert(sizeof(kinds) == (n) + 1, #f ": a letter per argument");                                             \
    GL_##n(f, kinds)
#include "support/GlFunctions.inc"
#undef GL

namespace {

using Taddress = void (*)();

/** The recorder's function of this name, null when it has none. */
Taddress recordedFunction(std::string_view name)
{
    static const std::unordered_map<std::string_view, Taddress> functions = {
#define GL(f, n, kinds) {#f, reinterpret_cast<Taddress>(&(f))},
#include "support/GlFunctions.inc"
#undef GL
    };
    const auto found = functions.find(name);
    return found == functions.end() ? nullptr : found->second;
}

/** Extension functions that are looked up by name are recorded as well, if the driver has them at all. */
template <class F> Taddress lookUp(const char* function, F* driver, const GLubyte* name)
{
    const Taddress found = call<F>(function, driver, "s", nullptr, name);
    const Taddress recorded = found ? recordedFunction(reinterpret_cast<const char*>(name)) : nullptr;
    return recorded ? recorded : found;
}

} // namespace

extern "C" Taddress glXGetProcAddressARB(const GLubyte* name)
{
    static auto* const driver = reinterpret_cast<decltype(&glXGetProcAddressARB)>(driverSymbol("glXGetProcAddressARB"));
    return lookUp("glXGetProcAddressARB", driver, name);
}

extern "C" Taddress glXGetProcAddress(const GLubyte* name)
{
    static auto* const driver = reinterpret_cast<decltype(&glXGetProcAddress)>(driverSymbol("glXGetProcAddress"));
    return lookUp("glXGetProcAddress", driver, name);
}

extern "C" const GLubyte* glGetString(GLenum name)
{
    static auto* const driver = reinterpret_cast<decltype(&glGetString)>(driverSymbol("glGetString"));
    const auto own = [](GLenum which) -> const GLubyte* const* {
        static const GLubyte* text;
        const auto found = overrides().strings.find(which);
        if (found == overrides().strings.end())
            return nullptr;
        text = reinterpret_cast<const GLubyte*>(found->second.c_str());
        return &text;
    };
    return call<decltype(glGetString)>("glGetString", driver, "e", own, name);
}

extern "C" GLenum glGetError()
{
    static auto* const driver = reinterpret_cast<decltype(&glGetError)>(driverSymbol("glGetError"));
    const auto own = []() -> const GLenum* {
        static GLenum error;
        if (overrides().errors.empty())
            return nullptr;
        error = overrides().errors.front();
        overrides().errors.pop_front();
        updateWatched();
        return &error;
    };
    return call<decltype(glGetError)>("glGetError", driver, "", own);
}

void GlRecorder::start()
{
    fCalls.clear();
    gsCalls = &fCalls;
    updateWatched();
}

void GlRecorder::stop()
{
    if (gsCalls == &fCalls) {
        gsCalls = nullptr;
        updateWatched();
    }
}

std::vector<std::string> GlRecorder::names() const
{
    std::vector<std::string> names;
    for (const std::string& call : fCalls)
        names.push_back(call.substr(0, call.find('(')));
    return names;
}

int GlRecorder::count(const std::string& name) const
{
    const bool isPrefix = !name.empty() && name.back() == '*';
    const std::string start = isPrefix ? name.substr(0, name.size() - 1) : name + '(';
    return static_cast<int>(std::count_if(fCalls.begin(), fCalls.end(), [&](const std::string& call) {
        return call.compare(0, start.size(), start) == 0;
    }));
}

std::string GlRecorder::text() const
{
    std::string text;
    for (const std::string& call : fCalls)
        text += call + '\n';
    return text;
}

void GlRecorder::failNext(const std::string& function, int times)
{
    if (times > 0)
        overrides().failures[function] = times;
    else
        overrides().failures.erase(function);
    updateWatched();
}

void GlRecorder::setString(unsigned name, const std::string& value)
{
    overrides().strings[name] = value;
    updateWatched();
}

void GlRecorder::queueErrors(std::initializer_list<unsigned> errors)
{
    overrides().errors.insert(overrides().errors.end(), errors);
    updateWatched();
}

void GlRecorder::resetOverrides()
{
    overrides() = Toverrides();
    updateWatched();
}

std::string GlRecorder::enumName(unsigned value)
{
    const char* const name = knownEnum(value);
    return name ? name : hexadecimal(value);
}
