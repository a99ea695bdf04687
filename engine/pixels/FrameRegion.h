// Where the region of interest lies in a frame's memory.
#pragma once

#include "engine/pixels/FrameShape.h"

// Edges in pixels and rows; right and bottom are exclusive. Any numbers.
struct Region {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
};

// The part of a frame that is processed.
struct ProcessedArea {
    std::int32_t offset = 0;        // bytes from the frame's first byte to the area's
    std::int32_t m_lCropWidth = 0;  // pixels per row
    std::int32_t m_lCropHeight = 0; // rows; 0: nothing to process
};

// The whole frame.
ProcessedArea WholeFrame(const FrameShape& shape);

// The region, whose rows count from the top of the picture, cut to the frame. In 16-bit frames it first becomes whole
// pixel pairs: the left edge loses its lowest bit, then the width does, and no width becomes one pair. A region that is
// empty or inverted after that, or outside the frame, gives an area of no rows. `shape` must be processable; the area
// returned lies within it.
ProcessedArea PlaceRegion(const FrameShape& shape, const Region& region);
