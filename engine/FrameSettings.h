// The settings of one frame. Each is read once, so that a client that writes at the same moment can't make the parts of
// a frame's work disagree; only where the order or a second reading is the contract does a function here say so.
#pragma once

#include "engine/pixels/FrameRegion.h"
#include "engine/pixels/ProtectedArea.h"

#include <mfobjects.h>

struct RegionFlags {
    bool region = false; // EnableROI
    bool merge = false;  // MergeFields
    bool even = false;   // Even
};

// In the order region, merge, even.
RegionFlags ReadRegionFlags8(IMFAttributes* store);

// In the order even, region, merge.
RegionFlags ReadRegionFlagsN(IMFAttributes* store);

// The region of interest as stored.
Region ReadRegion(IMFAttributes* store);

struct ProtectedArea {
    Region rectangle;     // in memory rows
    std::int32_t top = 0; // the stored top edge
};

// Kept: the width is the stored left edge minus itself, each read from the store, so the rectangle has no width unless
// the second reading fails; the height is bottom minus top. Test: ProtectedAreaHasNoWidth.
ProtectedArea ReadProtectedArea(IMFAttributes* store, const FrameShape& shape);
