#include "Tcensus.h"

#include "OwnMemory.h"

#include "Graphics/glResources/TglContext.h"

#include <QX11Info>

#include <X11/Xlib.h>
#include <X11/extensions/XRes.h>

#include "QtExtensions/QlirnX11.h" // after Xlib, whose macros it removes

#include <algorithm>
#include <cstdio>
#include <dlfcn.h>
#include <malloc.h>
#include <memory>
#include <set>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // declared by no header of GCC's
#endif

namespace {

// Qt makes some of its contexts by other functions, and destroys them by the same one.
long gCreated = 0;
std::set<GLXContext> gAlive;

GLXContext created(GLXContext context)
{
    if (context) {
        ++gCreated;
        gAlive.insert(context);
    }
    return context;
}

template <class Function> Function next(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

long residentKilobytes()
{
    long pages = 0;
    if (FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

long heapBytes()
{
#ifdef __SANITIZE_ADDRESS__
    return static_cast<long>(__sanitizer_get_current_allocated_bytes());
#else
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long>(info.uordblks + info.hblkhd);
#endif
}

template <class Value> long median(const Tcensus* begin, const Tcensus* end, Value value)
{
    std::vector<long> values;
    for (const Tcensus* at = begin; at != end; ++at)
        values.push_back(value(*at));
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

} // namespace

// The library's calls come here first.

extern "C" GLXContext glXCreateContext(Display* display, XVisualInfo* visual, GLXContext share, int direct)
{
    static const auto create = next<decltype(&glXCreateContext)>("glXCreateContext");
    return created(create(display, visual, share, direct));
}

extern "C" GLXContext glXCreateNewContext(Display* display, GLXFBConfig config, int type, GLXContext share, int direct)
{
    static const auto create = next<decltype(&glXCreateNewContext)>("glXCreateNewContext");
    return created(create(display, config, type, share, direct));
}

extern "C" void glXDestroyContext(Display* display, GLXContext context)
{
    static const auto destroy = next<decltype(&glXDestroyContext)>("glXDestroyContext");
    gAlive.erase(context);
    destroy(display, context);
}

Tcensus Tcensus::take(unsigned long resource)
{
    Tcensus counts;
    Display* display = QX11Info::display();
    XSync(display, 0);
    int event = 0;
    int error = 0;
    int typeCount = 0;
    XResType* types = nullptr;
    if (XResQueryExtension(display, &event, &error) &&
        XResQueryClientResources(display, resource, &typeCount, &types)) {
        for (int i = 0; i < typeCount; ++i) {
            const std::unique_ptr<char, decltype(&XFree)> name(XGetAtomName(display, types[i].resource_type), XFree);
            if (name)
                counts.fServer[name.get()] += types[i].count;
        }
        XFree(types);
    }
    counts.fContexts = static_cast<long>(gAlive.size());
    constexpr GLuint kMostNames = 1 << 15;
    for (GLuint name = 1; name < kMostNames; ++name) {
        counts.fLists += glIsList(name);
        counts.fTextures += glIsTexture(name);
    }
    counts.fResident = residentKilobytes();
    counts.fHeap = heapBytes();
    counts.fOwn = OwnMemory::bytes();
    counts.fOwnBlocks = OwnMemory::blocks();
    return counts;
}

long Tcensus::contextsCreated()
{
    return gCreated;
}

long Tcensus::server(const char* type) const
{
    const auto found = fServer.find(type);
    return found == fServer.end() ? 0 : found->second;
}

long Tcensus::explained() const
{
    return fPortsOpened * static_cast<long>(sizeof(TglContext) + sizeof(TglContext*));
}

Tgrowth::Tgrowth(const std::vector<Tcensus>& counts)
{
    const std::size_t quarter = counts.size() / 4;
    if (quarter == 0)
        return;
    const Tcensus* const early = counts.data() + quarter;
    const Tcensus* const late = counts.data() + counts.size() - quarter;
    const Tcensus* const end = counts.data() + counts.size();
    const auto rise = [&](auto value) {
        return static_cast<double>(median(late, end, value) - median(early, early + quarter, value));
    };
    const double thousands = std::max(1.0, rise([](const Tcensus& c) { return c.fOperations; })) / 1000;
    fOwnRate = rise([](const Tcensus& c) { return c.fOwn - c.explained(); }) / 1024 / thousands;
    fHeapRate = rise([](const Tcensus& c) { return c.fHeap; }) / 1024 / thousands;
    fResidentRate = rise([](const Tcensus& c) { return c.fResident; }) / thousands;

    const auto grew = [&](auto value) {
        const auto less = [&](const Tcensus& a, const Tcensus& b) { return value(a) < value(b); };
        return value(*std::min_element(late, end, less)) > value(*std::max_element(early, early + quarter, less));
    };
    fContextsGrew = grew([](const Tcensus& c) { return c.fContexts; });
    fObjectsGrew =
        grew([](const Tcensus& c) { return c.fLists; }) || grew([](const Tcensus& c) { return c.fTextures; });
    for (const auto& [type, count] : counts.back().fServer)
        if (grew([&name = type](const Tcensus& c) { return c.server(name.c_str()); }))
            fServerTypes.push_back(type);
}
