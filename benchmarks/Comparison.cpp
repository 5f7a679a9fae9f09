#include "Comparison.h"

namespace {

constexpr int kRepetitions = 41;
constexpr double kRunNanoseconds = 1e6;
constexpr long kMostPasses = 1000000;

/** How many passes make a run long against the clock's resolution and short against a time slice. */
long passesFor(const Side& side)
{
    side.fBind();
    for (long count = 1;; count *= 2) {
        const auto start = Clock::now();
        side.fTime(count);
        if (count >= kMostPasses || nanosecondsSince(start) > kRunNanoseconds)
            return count;
    }
}

} // namespace

Row compare(const QString& name, Aim aim, const Side& port, const Side& raw, const Side& empty)
{
    const Side* const sides[] = {&port, &raw, &empty};
    long passes[3];
    std::vector<double> times[3];
    for (int i = 0; i < 3; ++i)
        passes[i] = passesFor(*sides[i]);
    for (int repetition = 0; repetition < kRepetitions; ++repetition) {
        for (int i = 0; i < 3; ++i) {
            sides[i]->fBind();
            sides[i]->fTime(passes[i] / 8 + 1); // the first passes after a switch find cold caches
            times[i].push_back(sides[i]->fTime(passes[i]));
        }
    }
    const double loop = median(times[2]);
    return {name, std::max(median(times[0]) - loop, 0.0), std::max(median(times[1]) - loop, 0.0), aim};
}
