// The before/after picture of one frame.
#pragma once

#include "host/picture/Frame.h"
#include "host/picture/PixelFormat.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace host {

// B G R, top row first, no padding.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;

    Image(int w, int h)
        : width(w)
        , height(h)
        , pixels(std::size_t(3) * std::size_t(w) * std::size_t(h)) {}
    std::uint8_t* At(int x, int y) {
        return pixels.data() + 3 * (std::size_t(y) * std::size_t(width) + std::size_t(x));
    }
};

struct Window {
    int x = 0;
    int y = 0; // from the picture's top
    int width = 0;
    int height = 0;
};

// Where in the frame the detector counts the most combed positions, tried at half a window's distance; the middle when
// there are none. The window is a quarter of the picture wide, but at least 32 pixels where there are as many.
Window MostCombedWindow(Pixels pixels, int width, int height, const std::uint8_t* frame);

// Both frames (Layout::Rgb24) side by side, and below each the window, enlarged four times.
Image ComposeStill(const FrameView& before, const FrameView& after, const Window& window, std::uint64_t frame);

// Writes capital letters, digits, commas and blanks, seven rows high times `scale`; cut at the image's edge.
void DrawLabel(Image& image, int x, int y, int scale, std::string_view text);

} // namespace host
