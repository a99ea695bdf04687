// The limits that the edges of a rectangle set each other on the ROI page.
#pragma once

#include <cstdint>

struct PageRectangle {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
};

enum class Edge { kLeft, kTop, kRight, kBottom };

// Largest horizontal and vertical edge.
struct EdgeLimits {
    std::int32_t width;
    std::int32_t height;
};

// The spin buttons' limits for an input size: 640 x 480 for an unknown (-1) one, 1600 both ways for one without area;
// never more than a spin button's 16 bits hold.
EdgeLimits SpinLimits(std::int32_t inputWidth, std::int32_t inputHeight);

// The typed numbers' limits for an input size: as it is, 640 x 480 for an unknown one.
EdgeLimits EditLimits(std::int32_t inputWidth, std::int32_t inputHeight);

std::int32_t& EdgeOf(PageRectangle& rectangle, Edge edge);

// True when `value` is valid as `edge` of `rectangle`; else `corrected` is what replaces it.
bool CheckEdge(const PageRectangle& rectangle, Edge edge, const EdgeLimits& limits, std::int32_t value,
               std::int64_t* corrected);
