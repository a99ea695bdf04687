// What the transform can be asked to do with a frame, and how long that may take.
#pragma once

#include "bench/Frames.h"

#include <span>

struct FrameWork {
    const char* name;
    Content content;
    bool enabled;
    bool automatic;
    bool merge;
    bool holdRuns; // combed frames came before
};

std::span<const FrameWork> FrameWorks();

// Times the memcpy of the same frames that a work may take; 0 when nothing is asked of it. `streaming` says whether
// frames of that size are written past the cache.
double WantedRatio(const FrameWork& work, const FrameFormat& format, Flow flow, bool streaming);
