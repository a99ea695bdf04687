// What is done with one frame.
#pragma once

#include "engine/pixels/FrameRegion.h"

// What an output frame is made of.
struct FramePlan {
    ProcessedArea area;       // deinterlaced; no rows: the frame passes through unchanged
    bool region = false;      // what lies outside the area passes through unchanged; else the area is the whole frame
    bool interpolate = false; // rows may be combined
    bool merge = false;
    bool keepOdd = false;
};

// The two frames of one call, `shape` both: each shape.Bytes() long.
struct FramePair {
    FrameShape shape; // processable
    const std::uint8_t* input;
    std::uint8_t* output;

    // True when a byte written may be one that is still to be read.
    bool Overlap() const {
        const auto in = reinterpret_cast<std::uintptr_t>(input);
        const auto out = reinterpret_cast<std::uintptr_t>(output);
        const auto bytes = static_cast<std::uintptr_t>(shape.Bytes());
        return in < out + bytes && out < in + bytes;
    }
};
