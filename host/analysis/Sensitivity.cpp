#include "host/analysis/Sensitivity.h"

#include "host/analysis/Format.h"
#include "settings/public/NMFVDeinterlaceLimits.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace host {

namespace {

constexpr double kNoise = 0.005;
constexpr double kClearFactor = 3;

std::vector<double> SortedRatios(std::span<const FrameScore> scores) {
    std::vector<double> ratios;
    ratios.reserve(scores.size());
    for (const FrameScore& score : scores) {
        ratios.push_back(score.Ratio());
    }
    std::sort(ratios.begin(), ratios.end());
    return ratios;
}

double TwoDigits(double value) {
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1);
    return std::round(value / unit) * unit;
}

using Count = unsigned long long;

} // namespace

std::optional<Separation> FindSeparation(std::span<const FrameScore> scores) {
    const std::vector<double> ratios = SortedRatios(scores);
    std::size_t widest = 0; // the first frame above the gap
    double factor = kClearFactor;
    for (std::size_t i = 1; i < ratios.size(); ++i) {
        const double gap = ratios[i] / std::max(ratios[i - 1], kNoise);
        if (gap >= factor) {
            factor = gap;
            widest = i;
        }
    }
    if (widest == 0) {
        return std::nullopt;
    }
    const double below = ratios[widest - 1];
    const double above = ratios[widest];
    const double middle = std::sqrt(std::max(below, kNoise) * above);
    const double sensitivity = TwoDigits(std::clamp(middle, kLowestSensitivity, kHighestSensitivity));
    if (sensitivity < below || sensitivity >= above) {
        return std::nullopt;
    }
    return Separation{sensitivity, below, above, widest, ratios.size() - widest};
}

std::string DescribeScores(std::span<const FrameScore> scores, double sensitivity, std::uint64_t interlaced) {
    if (scores.empty()) {
        return "The input has no frames.\n";
    }
    const std::vector<double> ratios = SortedRatios(scores);
    std::string text = Format("%llu of %llu frames are called interlaced at sensitivity %g.\n", Count{interlaced},
                              Count{scores.size()}, sensitivity);
    text += Format("Count / threshold at sensitivity 1: least %.4f, median %.4f, most %.4f.\n", ratios.front(),
                   ratios[ratios.size() / 2], ratios.back());
    if (const auto found = FindSeparation(scores)) {
        text += Format("The frames fall into two groups: %llu up to %.4f and %llu from %.4f on.\n"
                       "--sensitivity %g lies between them and calls those %llu frames interlaced.\n",
                       Count{found->below}, found->highestBelow, Count{found->above}, found->lowestAbove,
                       found->sensitivity, Count{found->above});
        return text;
    }
    return text + "The frames do not fall into two groups that lie clearly apart.\n";
}

} // namespace host
