// Where a segment starts, as a time and as a frame: what the page makes of both, and the way between them.
#pragma once

#include "settings/public/NMFVDeinterlaceLimits.h"

// Each field cut to its largest value.
SegmentTime ClampStartTime(const SegmentTime& time);

// Cut to kLastStartFrame. The largest number there is and negative ones stay as they are.
std::int64_t ClampStartFrame(std::int64_t frame);

// When a frame begins; from 0 to kLastStartTime. Rates too low for the transform's own conversion count as 33, as they
// do there.
SegmentTime TimeOfStartFrame(std::int64_t frame, double framesPerSecond);

// The frame nearest to a time, so that a frame that became a time becomes the same frame again (below 500 frames per
// second); from 0 to kLastStartFrame.
std::int64_t FrameOfStartTime(const SegmentTime& time, double framesPerSecond);
