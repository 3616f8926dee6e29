#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <vector>

/// Microseconds of this thread's processor time; unlike the clock on the wall, other programs hardly disturb it.
inline double processorTime() {
    struct timespec now {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

/// Microseconds of processor time that the work took.
template <typename Work>
double timed(Work&& work) {
    const double start = processorTime();
    work();
    return processorTime() - start;
}

inline double median(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// Reports the median of each in microseconds, and their ratio.
inline void reportRatio(benchmark::State& state, const std::vector<double>& ours, const std::vector<double>& peer) {
    state.counters["ours_us"] = median(ours);
    state.counters["peer_us"] = median(peer);
    state.counters["ratio"] = median(ours) / median(peer);
}

/// Measures ours and its peer in turns, so that both meet the same machine.
template <typename Ours, typename Peer>
void comparePairs(benchmark::State& state, Ours ours, Peer peer) {
    std::vector<double> ourTimes;
    std::vector<double> peerTimes;
    for (auto _ : state) {
        ourTimes.push_back(timed(ours));
        peerTimes.push_back(timed(peer));
    }
    reportRatio(state, ourTimes, peerTimes);
}
