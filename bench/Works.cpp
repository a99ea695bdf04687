#include "bench/Works.h"

#include <cstring>

namespace {

constexpr FrameWork kWorks[] = {
    {"off", Content::Clean, false, false, false, false},
    {"rebuild", Content::Clean, true, false, false, false},
    {"merge", Content::Clean, true, false, true, false},
    {"auto, clean", Content::Clean, true, true, false, false},
    {"auto, busy", Content::Busy, true, true, false, false},
    {"auto, hold runs, clean, rebuild", Content::Clean, true, true, false, true},
    {"auto, combed, rebuild", Content::Combed, true, true, false, true},
    {"auto, combed, merge", Content::Combed, true, true, true, true},
};

// By work: streaming and cold; ordinary stores, cold at 1920x1080; cold and warm at 720x480 and 720x576.
constexpr struct {
    const char* name;
    double streaming, cold1080, coldSmall, warmSmall;
} kWanted[] = {
    {"off", 0.60, 0, 0, 1.05},
    {"rebuild", 0.60, 0.80, 1.05, 1.05},
    {"merge", 0.70, 0.95, 1.05, 1.05},
    {"auto, clean", 0.70, 0.95, 1.15, 1.60},
    {"auto, busy", 0.90, 0, 0, 0},
    {"auto, hold runs, clean, rebuild", 0.85, 0, 0, 0},
    {"auto, combed, rebuild", 0.85, 0.85, 1.20, 0},
    {"auto, combed, merge", 0.90, 0.90, 1.20, 0},
};

} // namespace

std::span<const FrameWork> FrameWorks() {
    return kWorks;
}

double WantedRatio(const FrameWork& work, const FrameFormat& format, Flow flow, bool streaming) {
    for (const auto& row : kWanted) {
        if (std::strcmp(row.name, work.name) == 0) {
            const bool small = format.width == 720;
            if (flow == Flow::Cold && streaming) {
                return row.streaming;
            }
            if (flow == Flow::Cold) {
                return format.height == 1080 ? row.cold1080 : small ? row.coldSmall : 0;
            }
            return flow == Flow::Warm && small ? row.warmSmall : 0;
        }
    }
    return 0;
}
