#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

/// Measures ours and its peer in turns, so that both meet the same machine, and reports the median of each in
/// microseconds and their ratio.
template <typename Ours, typename Peer>
void comparePairs(benchmark::State& state, Ours ours, Peer peer) {
    using Clock = std::chrono::steady_clock;
    const auto timed = [](auto& work) {
        const auto start = Clock::now();
        work();
        return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
    };
    const auto median = [](std::vector<double>& times) {
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    };
    std::vector<double> ourTimes;
    std::vector<double> peerTimes;
    for (auto _ : state) {
        ourTimes.push_back(timed(ours));
        peerTimes.push_back(timed(peer));
    }
    const double ourTime = median(ourTimes);
    const double peerTime = median(peerTimes);
    state.counters["ours_us"] = ourTime;
    state.counters["peer_us"] = peerTime;
    state.counters["ratio"] = ourTime / peerTime;
}
