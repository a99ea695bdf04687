#include "bench/Turns.h"

#include <algorithm>
#include <chrono>

Spread SpreadOf(std::vector<double> values) {
    if (values.empty()) {
        return {};
    }
    std::ranges::sort(values);
    const std::size_t last = values.size() - 1;
    return {values[last / 4], values[last / 2], values[last - last / 4]};
}

double SecondsOf(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::vector<Result> TakeTurns(const std::vector<Contestant>& contestants, int rounds) {
    std::vector<std::vector<double>> seconds(contestants.size());
    for (int round = 0; round <= rounds; ++round) {
        for (std::size_t i = 0; i < contestants.size(); ++i) {
            contestants[i].runIn();
            const double taken = SecondsOf(contestants[i].run);
            if (round > 0) {
                seconds[i].push_back(taken);
            }
        }
    }
    std::vector<Result> results;
    for (std::size_t i = 0; i < contestants.size(); ++i) {
        std::vector<double> ratios(seconds[i]);
        for (std::size_t round = 0; round < ratios.size(); ++round) {
            ratios[round] /= seconds[0][round];
        }
        results.push_back({contestants[i].name, SpreadOf(seconds[i]), SpreadOf(ratios)});
    }
    return results;
}
