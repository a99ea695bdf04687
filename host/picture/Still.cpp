#include "host/picture/Still.h"

#include "engine/detector/InterlaceDetector.h"
#include "host/formats/FrameSource.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace host {

namespace {

constexpr int kEnlargement = 4;
constexpr int kLeastWindow = 32;

int Even(int value) {
    return value & ~1;
}

// Copies a part of the frame into a frame of its own and counts its combs.
class CWindowCounter {
public:
    CWindowCounter(Pixels pixels, const FrameView& frame, int width, int height)
        : m_pixels(pixels)
        , m_frame(frame)
        , m_width(width)
        , m_height(height)
        , m_part(FrameSize(pixels, width, height)) {}

    std::uint32_t CountAt(int x, int y) {
        const int bits = TraitsOf(m_pixels).bits;
        const std::size_t stride = FrameStride(m_pixels, m_width);
        for (int row = 0; row < m_height; ++row) {
            std::memcpy(m_part.data() + stride * std::size_t(row), m_frame.Row(0, y + row) + x * bits / 8,
                        std::size_t(m_width) * std::size_t(bits) / 8);
        }
        return ScanFrame(m_part.data(), m_width, m_height, bits, nullptr, 1.0).count;
    }

private:
    Pixels m_pixels;
    FrameView m_frame;
    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_part;
};

// Where windows begin along a side: every half window, and at the far end.
std::vector<int> Places(int side, int window) {
    std::vector<int> places;
    for (int at = 0; at + window < side; at += std::max(Even(window / 2), 2)) {
        places.push_back(at);
    }
    places.push_back(Even(side - window));
    return places;
}

void CopyPicture(Image& image, int x, int y, const FrameView& picture) {
    for (int row = 0; row < picture.height; ++row) {
        std::memcpy(image.At(x, y + row), picture.Row(0, row), std::size_t(3) * std::size_t(picture.width));
    }
}

void CopyEnlarged(Image& image, int x, int y, const FrameView& picture, const Window& window) {
    for (int row = 0; row < window.height * kEnlargement; ++row) {
        const std::uint8_t* const line = picture.Row(0, window.y + row / kEnlargement) + 3 * window.x;
        for (int column = 0; column < window.width * kEnlargement; ++column) {
            std::memcpy(image.At(x + column, y + row), line + 3 * (column / kEnlargement), 3);
        }
    }
}

} // namespace

Window MostCombedWindow(Pixels pixels, int width, int height, const std::uint8_t* frame) {
    Window best;
    best.width = std::min(width, std::max(Even(width / 4), kLeastWindow));
    best.height = std::min(height, std::max(Even(best.width * 9 / 16), kLeastWindow / 2));
    best.x = Even((width - best.width) / 2);
    best.y = (height - best.height) / 2;
    CWindowCounter counter(pixels, PackedFrame(pixels, width, height, frame), best.width, best.height);
    std::uint32_t most = 0;
    for (const int y : Places(height, best.height)) {
        for (const int x : Places(width, best.width)) {
            const std::uint32_t count = counter.CountAt(x, y);
            if (count > most) {
                most = count;
                best.x = x;
                best.y = y;
            }
        }
    }
    return best;
}

Image ComposeStill(const FrameView& before, const FrameView& after, const Window& window, std::uint64_t frame) {
    const int scale = std::max(1, before.width / 320);
    const int margin = 4 * scale;
    const int caption = 7 * scale + 2 * margin;
    const int column = std::max(before.width, window.width * kEnlargement);
    Image image(2 * column + 3 * margin, 2 * caption + before.height + window.height * kEnlargement + margin);
    const int detailTop = 2 * caption + before.height;
    const std::string where = "ENLARGED " + std::to_string(kEnlargement) + "X AT " + std::to_string(window.x) + "," +
                              std::to_string(window.y);
    struct Side {
        const FrameView& picture;
        std::string label;
    };
    const Side sides[] = {{before, "BEFORE   FRAME " + std::to_string(frame)}, {after, "AFTER"}};
    int x = margin;
    for (const Side& side : sides) {
        DrawLabel(image, x, margin, scale, side.label);
        CopyPicture(image, x, caption, side.picture);
        DrawLabel(image, x, caption + before.height + margin, scale, where);
        CopyEnlarged(image, x, detailTop, side.picture, window);
        x += column + margin;
    }
    return image;
}

} // namespace host
