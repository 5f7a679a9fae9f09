#pragma once

#include <mutex>

/** A section that one thread at a time may be in; the thread inside may enter it again. */
class TmtCriticalSection
{
public:
    TmtCriticalSection() = default;
    TmtCriticalSection(const TmtCriticalSection&) = delete;
    TmtCriticalSection& operator=(const TmtCriticalSection&) = delete;

    void lock() { fMutex.lock(); }
    bool tryLock() { return fMutex.try_lock(); }
    void unlock() { fMutex.unlock(); }

    /** Is in the section while it lives. */
    class Guard
    {
    public:
        explicit Guard(TmtCriticalSection& section) : fSection(section) { fSection.lock(); }
        ~Guard() { fSection.unlock(); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        TmtCriticalSection& fSection;
    };

private:
    std::recursive_mutex fMutex;
};
