// The combing detector: how many positions of a frame show the saw-tooth pattern of two fields taken at different
// moments, and whether that is enough to call the frame interlaced.
#pragma once

#include "engine/pixels/GrayPalette.h"

#include <cstdint>

// A position is combed when, over four rows, each of the three vertical steps is larger than 24 in Euclidean distance
// (squared distance above 576). Positions are pixels, or pixel pairs in 16-bit frames; every four neighbouring rows
// count. Rows are StrideBytes(bits, width) bytes apart, in either order.
//
// 8-bit pixels are looked up in `colorTable` (256 entries); 32-bit ones are compared by blue, green and red. Without a
// table, and at depths below 8, no position is combed.
//
// Kept: 16-bit frames count pixel pairs against a threshold that comes from the width in pixels, so they need twice the
// share of combed area. Test: ThresholdComesFromPixels.
struct CombScan {
    std::uint32_t count;     // combed positions
    std::uint32_t threshold; // more than this many make the frame interlaced
    bool interlaced;
};

// ((height - 3) x width / 16) x sensitivity, the part before the product in 32-bit integers, the product truncated to
// 64 bits of which the low 32 are taken; a product beyond 64 bits, or none at all, gives 0.
std::uint32_t InterlaceThreshold(std::int32_t width, std::int32_t height, double sensitivity);

// Counts every combed position of the frame.
CombScan ScanFrame(const std::uint8_t* frame, std::int32_t width, std::int32_t height, std::int32_t bits,
                   const ColorEntry* colorTable, double sensitivity);

// 1 when the frame is interlaced, else 0, as ScanFrame says, but stops reading as soon as the verdict is settled.
// Frames of three rows or fewer, and frames whose size overflows, are never interlaced.
std::int32_t IsFrameInterlaced(const std::uint8_t* frame, std::int32_t width, std::int32_t height, std::int32_t bits,
                               const ColorEntry* colorTable, double sensitivity);
