#pragma once

#include <QString>

#include <algorithm>
#include <chrono>
#include <functional>
#include <vector>

/** What a row has to reach: a time of the port's in nanoseconds, or a share of the raw time. */
struct Aim
{
    enum Tkind { kNanoseconds, kRatio };

    Tkind fKind;
    double fLimit;
};

/** A row of the table: medians, nanoseconds per operation. */
struct Row
{
    QString fName;
    double fPort;
    double fRaw;
    Aim fAim;

    double ratio() const { return fRaw > 0 ? fPort / fRaw : 0; }
    bool isMet() const { return (fAim.fKind == Aim::kRatio ? ratio() : fPort) <= fAim.fLimit; }
};

/** One side of a row: binds what it works on, untimed, and then takes nanoseconds per operation. */
struct Side
{
    std::function<void()> fBind;
    std::function<double(long count)> fTime;
};

using Clock = std::chrono::steady_clock;

inline double nanosecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

/** Makes the compiler take all memory for changed: nothing that a loop reads stays in a register or is left out. */
inline void forgetMemory()
{
    asm volatile("" ::: "memory");
}

inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/**
 * Nanoseconds per pass of a loop over @p body, which gets the number of the pass. It is taken by value, like everything
 * in it should be: what it holds then stays in registers over forgetMemory.
 */
template <class Body> double timeLoop(long count, Body body)
{
    const auto start = Clock::now();
    for (long i = 0; i < count; ++i) {
        body(i);
        forgetMemory();
    }
    return nanosecondsSince(start) / double(count);
}

/** Runs both sides in turn, and the empty loop between them, and gives the medians less the empty loop's. */
Row compare(const QString& name, Aim aim, const Side& port, const Side& raw, const Side& empty);
