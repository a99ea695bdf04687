#include "host/analysis/Forecast.h"

#include "engine/detector/AutoHold.h"
#include "engine/detector/InterlaceDetector.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace host {

namespace {

// Two digits each, about equally far apart.
constexpr double kSteps[] = {1, 1.2, 1.5, 2, 2.5, 3, 4, 5, 6, 8};
constexpr double kDecades[] = {0.001, 0.01, 0.1, 1};
constexpr double kNormal = 1;
constexpr double kRoom = 2;         // factor to either side of the normal sensitivity
constexpr std::size_t kBorder = 4;  // frames
constexpr double kCleanMost = 0.02; // clean frames of whatever clip may have as much

std::vector<double> Sensitivities() {
    std::vector<double> all;
    for (const double decade : kDecades) {
        for (const double step : kSteps) {
            all.push_back(std::round(decade * step * 10000) / 10000);
        }
    }
    return all;
}

// A few frames more that pass with combs, at most a fiftieth, are worth a distance to what clean frames count.
bool IsAsGood(const Forecast& forecast, const Forecast& best, std::size_t frames) {
    return forecast.missed <= best.missed + frames / 50 && forecast.mistaken <= best.mistaken;
}

bool IsBetter(const Forecast& a, const Forecast& b) {
    return a.missed != b.missed ? a.missed < b.missed : a.mistaken < b.mistaken;
}

// A frame's class; Still where combed and progressive frames meet, as the border is known to a few frames only.
Fields ClassAt(std::span<const Fields> fields, std::size_t i) {
    const bool combs = HasCombs(fields[i]);
    for (std::size_t j = i - std::min(i, kBorder); j <= std::min(i + kBorder, fields.size() - 1); ++j) {
        if (fields[j] != Fields::Still && HasCombs(fields[j]) != combs) {
            return Fields::Still;
        }
    }
    return fields[i];
}

const Forecast& Nearest(std::span<const Forecast> row, double sensitivity) {
    return *std::min_element(row.begin(), row.end(), [sensitivity](const Forecast& a, const Forecast& b) {
        return std::abs(std::log(a.sensitivity / sensitivity)) < std::abs(std::log(b.sensitivity / sensitivity));
    });
}

} // namespace

CAutomatic::CAutomatic(const ClipScores& scores, double sensitivity)
    : m_threshold(InterlaceThreshold(scores.width, scores.height, sensitivity))
    , m_holdFrames(scores.holdFrames) {}

CAutomatic::Step CAutomatic::Next(std::uint32_t count) {
    const bool called = count > m_threshold;
    return {called, AdvanceHold(called, m_holdFrames, m_counter)};
}

Forecast ForecastAt(const ClipScores& scores, std::span<const Fields> fields, double sensitivity) {
    CAutomatic automatic(scores, sensitivity);
    Forecast forecast;
    forecast.sensitivity = sensitivity;
    for (std::size_t i = 0; i < scores.frames.size(); ++i) {
        const CAutomatic::Step step = automatic.Next(scores.frames[i].count);
        forecast.called += step.called ? 1 : 0;
        forecast.deinterlaced += step.deinterlaced ? 1 : 0;
        const Fields known = ClassAt(fields, i);
        forecast.missed += HasCombs(known) && !step.deinterlaced ? 1 : 0;
        forecast.mistaken += known == Fields::Progressive && step.called ? 1 : 0;
    }
    return forecast;
}

Forecast BestForecast(const ClipScores& scores, std::span<const Fields> fields) {
    std::vector<Forecast> row;
    for (const double sensitivity : Sensitivities()) {
        row.push_back(ForecastAt(scores, fields, sensitivity));
    }
    const auto best = std::min_element(row.begin(), row.end(), IsBetter);
    // Those as good as the best that follow it without a gap.
    const auto end =
        std::find_if(best, row.end(), [&](const Forecast& f) { return !IsAsGood(f, *best, fields.size()); });
    const double lowest = best->sensitivity;
    const double highest = std::prev(end)->sensitivity;
    if (lowest * kRoom <= kNormal && highest >= kNormal * kRoom) {
        return Nearest(row, kNormal);
    }
    const double from = std::max(lowest, std::min(kCleanMost, highest));
    return Nearest({best, end}, std::sqrt(from * highest));
}

} // namespace host
