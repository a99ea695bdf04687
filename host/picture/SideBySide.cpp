#include "host/picture/SideBySide.h"

#include <algorithm>
#include <cstdint>

namespace host {

namespace {

int Gap(int line) {
    return std::max(line / 2, 4);
}

// What is no picture: a gap left, right and between; gap, label, gap, picture, gap, status, gap from top to bottom.
int FrameWidth(int line) {
    return 3 * Gap(line);
}

int FrameHeight(int line) {
    return 2 * line + 3 * Gap(line) + Gap(line) / 2;
}

int DisplayWidth(const PictureShape& shape) {
    return std::max(1, static_cast<int>(shape.width * shape.aspect.Value() + 0.5));
}

// The largest size of the shape within these sides.
Box Fit(const PictureShape& shape, int width, int height) {
    if (width <= 0 || height <= 0) {
        return {};
    }
    const std::int64_t across = DisplayWidth(shape);
    const std::int64_t byHeight = across * height / shape.height;
    if (byHeight <= width) {
        return {0, 0, std::max(1, static_cast<int>(byHeight)), height};
    }
    return {0, 0, width, std::max(1, static_cast<int>(shape.height * width / across))};
}

} // namespace

SideBySide PlaceSideBySide(int width, int height, int line, const PictureShape& shape) {
    const int gap = Gap(line);
    const int column = (width - FrameWidth(line)) / 2;
    const Box fit = Fit(shape, column, height - FrameHeight(line));
    SideBySide places;
    for (int i = 0; i < 2; ++i) {
        const int x = gap + i * (column + gap) + (column - fit.width) / 2;
        places.label[i] = {x, gap, fit.width, line};
        places.picture[i] = {x, gap + line + gap / 2, fit.width, fit.height};
    }
    places.status = {gap, height - gap - line, std::max(0, width - 2 * gap), line};
    return places;
}

Box AreaFor(const PictureShape& shape, int line, int mostWidth, int mostHeight) {
    const int width = std::min(DisplayWidth(shape), (mostWidth - FrameWidth(line)) / 2);
    const int height = std::min(shape.height, mostHeight - FrameHeight(line));
    const Box fit = Fit(shape, width, height);
    return {0, 0, 2 * fit.width + FrameWidth(line), fit.height + FrameHeight(line)};
}

} // namespace host
