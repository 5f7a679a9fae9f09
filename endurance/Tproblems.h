#pragma once

#include <cstdio>
#include <string>

/** Counts what went wrong, and tells of the first few times on standard error. */
class Tproblems
{
public:
    enum Tkind { kDifference, kGlError, kXError, kLeftPort, kKinds };

    void note(Tkind kind, const std::string& text)
    {
        static constexpr int kMostLines = 30;
        if (++fCounts[kind] <= kMostLines)
            std::fprintf(stderr, "portsoak: after %s: %s\n", fOperation.c_str(), text.c_str());
    }
    long count(Tkind kind) const { return fCounts[kind]; }
    long total() const
    {
        long sum = 0;
        for (const long n : fCounts)
            sum += n;
        return sum;
    }
    /** What is being done, to be named with the problems. */
    void setOperation(std::string operation)
    {
        fOperation = std::move(operation);
        if (fTraced)
            std::fprintf(stderr, "%s\n", fOperation.c_str());
    }
    /** Prints every operation before it is done. */
    void setTraced(bool on) { fTraced = on; }

private:
    long fCounts[kKinds] = {};
    bool fTraced = false;
    std::string fOperation = "the start";
};
