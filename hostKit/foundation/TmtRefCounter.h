#pragma once

#include <atomic>

/** A reference count for several threads. 0, where it starts, means that nobody counts. */
class TmtRefCounter
{
public:
    TmtRefCounter() = default;
    TmtRefCounter(const TmtRefCounter&) = delete;
    TmtRefCounter& operator=(const TmtRefCounter&) = delete;

    /** Counts one up; returns the new count. */
    int add() { return fCount.fetch_add(1, std::memory_order_relaxed) + 1; }
    /** Counts one down, but not below 0; returns the count left. */
    int remove()
    {
        int count = fCount.load(std::memory_order_relaxed);
        while (count > 0) {
            if (fCount.compare_exchange_weak(count, count - 1, std::memory_order_acq_rel, std::memory_order_relaxed))
                return count - 1;
        }
        return 0;
    }
    int count() const { return fCount.load(std::memory_order_acquire); }

private:
    std::atomic<int> fCount{0};
};
