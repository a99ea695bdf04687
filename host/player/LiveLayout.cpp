#include "host/player/LiveLayout.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace host {

namespace {

// What the texts and the list of keys need, in heights of a line.
constexpr int kLeastWidth = 44;
constexpr int kLeastHeight = 18;

int Gap(int line) {
    return std::max(line / 2, 4);
}

// What is no picture: a gap left, right and between.
int FrameWidth(int line) {
    return 3 * Gap(line);
}

// Above the pictures the labels; below them slider, bar, scale and two lines of status.
int Above(int line) {
    return Gap(line) + line + Gap(line) / 2;
}
int Below(int line) {
    return 5 * line + 4 * Gap(line) + Gap(line) / 2;
}

int DisplayWidth(const PictureShape& shape) {
    return std::max(1, static_cast<int>(std::lround(shape.width * shape.aspect.Value())));
}

} // namespace

Box FitInto(const PictureShape& shape, const Box& room) {
    if (room.width <= 0 || room.height <= 0) {
        return {};
    }
    const std::int64_t across = DisplayWidth(shape);
    const std::int64_t byHeight = across * room.height / shape.height;
    const bool high = byHeight <= room.width;
    const int width = high ? std::max(1, static_cast<int>(byHeight)) : room.width;
    const int height = high ? room.height : std::max(1, static_cast<int>(shape.height * room.width / across));
    return {room.x + (room.width - width) / 2, room.y + (room.height - height) / 2, width, height};
}

LiveLayout PlaceLive(int width, int height, int line, bool split) {
    const int gap = Gap(line);
    const int whole = std::max(0, width - 2 * gap);
    const int column = split ? whole : std::max(0, (width - FrameWidth(line)) / 2);
    const int high = std::max(0, height - Above(line) - Below(line));
    LiveLayout places;
    for (int i = 0; i < 2; ++i) {
        const int x = split ? gap : gap + i * (column + gap);
        places.label[i] = {split ? gap + i * (whole / 2) : x, gap, split ? whole / 2 : column, line};
        places.room[i] = {x, Above(line), column, high};
    }
    const int caption = 4 * line;
    const int across = std::max(0, whole - caption);
    int y = Above(line) + high + gap;
    places.caption[0] = {gap, y, caption, line};
    places.slider = {gap + caption, y, across, line};
    y += line + gap;
    places.caption[1] = {gap, y, caption, line};
    places.bar = {gap + caption, y, across, line};
    places.scale = {gap + caption, y + line, across, line};
    y += 2 * line + gap;
    places.status[0] = {gap, y, whole, line};
    places.status[1] = {gap, y + line + gap / 2, whole, line};
    return places;
}

Box AreaFor(const PictureShape& shape, int line, int mostWidth, int mostHeight) {
    const int frame = Above(line) + Below(line);
    const int width = std::min(DisplayWidth(shape), (mostWidth - FrameWidth(line)) / 2);
    const Box fit = FitInto(shape, {0, 0, width, std::min(shape.height, mostHeight - frame)});
    return {0, 0, std::max(2 * fit.width + FrameWidth(line), std::min(kLeastWidth * line, mostWidth)),
            std::max(fit.height + frame, std::min(kLeastHeight * line, mostHeight))};
}

} // namespace host
