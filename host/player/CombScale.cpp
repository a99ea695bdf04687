#include "host/player/CombScale.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr double kLowest = 0.0005;
constexpr double kHighest = 20; // a frame that is all combs is at 16
constexpr ScaleMark kMarks[] = {{0.001, L"0.001"}, {0.01, L"0.01"}, {0.1, L"0.1"}, {1, L"1"}, {8, L"8"}};

} // namespace

double PlaceOnScale(double sensitivity) {
    const double place = std::log(std::max(sensitivity, kLowest) / kLowest) / std::log(kHighest / kLowest);
    return std::min(place, 1.0);
}

double PlaceOfCount(const CombReading& reading) {
    if (reading.count == 0) {
        return 0;
    }
    return PlaceOnScale(static_cast<double>(reading.count) / std::max(reading.normal, 1u));
}

std::span<const ScaleMark> ScaleMarks() {
    return kMarks;
}

int PlaceOfFrame(std::uint64_t frame, std::uint64_t frames, int width) {
    const double last = static_cast<double>(std::max<std::uint64_t>(frames, 2) - 1);
    return static_cast<int>(std::lround(std::min(static_cast<double>(frame) / last, 1.0) * (width - 1)));
}

std::uint64_t FrameAtPlace(int x, std::uint64_t frames, int width) {
    const double last = static_cast<double>(std::max<std::uint64_t>(frames, 1) - 1);
    return static_cast<std::uint64_t>(
        std::llround(std::clamp(static_cast<double>(x) / std::max(width - 1, 1), 0.0, 1.0) * last));
}

} // namespace host
