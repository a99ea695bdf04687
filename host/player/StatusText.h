// What the live window says of the frame that is seen.
#pragma once

#include "host/command/Options.h"
#include "host/player/CombScale.h"
#include "host/player/Playback.h"

#include <string>

namespace host {

struct LiveFrame {
    std::uint64_t number = 0;
    Mode mode = Mode::Auto;
    CombReading combs;
    bool interlaced = false;   // says the detector
    std::int32_t holdLeft = 0; // frames after this one that are deinterlaced whatever the detector says
    bool changed = false;      // the transform changed the picture
};

// The first line: frame, state, rate; the second: what the detector and the transform made of the frame.
std::wstring PlayText(const LiveFrame& frame, const CPlayback& playback, double framesPerSecond);
std::wstring FrameText(const LiveFrame& frame);
// While frames are read to get to one: the one that comes next, and the one that is meant, if it is not just the end.
std::wstring SeekText(std::uint64_t next, const CPlayback& playback);

} // namespace host
