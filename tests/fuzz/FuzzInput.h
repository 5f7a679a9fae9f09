#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

/** What libFuzzer calls, or the small main of the ordinary builds (runCorpus.cpp). */
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/** A statement that must hold whatever the input. */
#define FUZZ_CHECK(condition)                                                                                          \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            std::fprintf(stderr, "%s:%d: %s does not hold\n", __FILE__, __LINE__, #condition);                         \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)

/** Takes values from the bytes of an input; zeros when there are none left. */
class FuzzInput
{
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : fData(data), fSize(size) {}

    bool isEmpty() const { return fSize == 0; }
    std::size_t size() const { return fSize; }

    template <class T> T take()
    {
        T value{};
        const std::size_t taken = std::min(sizeof(T), fSize);
        if (taken > 0)
            std::memcpy(&value, fData, taken);
        fData += taken;
        fSize -= taken;
        return value;
    }
    /** From @p least to @p most, by two bytes. */
    int within(int least, int most) { return least + take<std::uint16_t>() % (most - least + 1); }
    bool flag() { return take<std::uint8_t>() & 1; }
    std::string_view text(std::size_t length)
    {
        const std::string_view taken(reinterpret_cast<const char*>(fData), std::min(length, fSize));
        fData += taken.size();
        fSize -= taken.size();
        return taken;
    }
    std::string_view rest() { return text(fSize); }

private:
    const std::uint8_t* fData;
    std::size_t fSize;
};

/** A file in memory, under a path that stays the same from run to run. */
class MemoryFile
{
public:
    explicit MemoryFile(int descriptor)
    {
        const int made = memfd_create("input", 0);
        FUZZ_CHECK(made >= 0 && dup2(made, descriptor) == descriptor);
        close(made);
        fDescriptor = descriptor;
    }

    std::string path() const { return "/proc/self/fd/" + std::to_string(fDescriptor); }

    void write(std::string_view text) const
    {
        FUZZ_CHECK(ftruncate(fDescriptor, 0) == 0);
        FUZZ_CHECK(pwrite(fDescriptor, text.data(), text.size(), 0) == ssize_t(text.size()));
    }

private:
    int fDescriptor = -1;
};

/** Memory that ends where the next byte can't be touched: also libraries without instrumentation are caught past it. */
class GuardedBytes
{
public:
    explicit GuardedBytes(std::size_t size)
    {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        const std::size_t room = (size + page - 1) / page * page;
        fMapped = room + page;
        fStart = static_cast<std::uint8_t*>(
            mmap(nullptr, fMapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        FUZZ_CHECK(fStart != MAP_FAILED && mprotect(fStart + room, page, PROT_NONE) == 0);
        fBytes = fStart + room - size;
    }
    ~GuardedBytes() { munmap(fStart, fMapped); }

    GuardedBytes(const GuardedBytes&) = delete;
    GuardedBytes& operator=(const GuardedBytes&) = delete;

    std::uint8_t* get() const { return fBytes; }

private:
    std::uint8_t* fStart;
    std::uint8_t* fBytes;
    std::size_t fMapped;
};
