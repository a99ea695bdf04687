// Measuring several ways to do the same by turns, so that whatever else the machine does meets all of them alike.
#pragma once

#include <functional>
#include <string>
#include <vector>

struct Contestant {
    std::string name;
    std::function<void()> runIn; // untimed, before each turn: leaves the cache as this contestant's own work leaves it
    std::function<void()> run;   // one turn
};

// The middle one of several measurements, and the ones a quarter of the way from either end.
struct Spread {
    double low = 0, median = 0, high = 0;
};

struct Result {
    std::string name;
    Spread seconds; // per turn
    Spread ratio;   // to the first contestant in the same round
};

Spread SpreadOf(std::vector<double> values);

// Every contestant once per round, after a round that isn't counted.
std::vector<Result> TakeTurns(const std::vector<Contestant>& contestants, int rounds);

// Seconds that `run` takes.
double SecondsOf(const std::function<void()>& run);
