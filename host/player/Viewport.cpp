#include "host/player/Viewport.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

int FloorOf(int value, int multiplier, int divisor) {
    return static_cast<int>(std::floor(static_cast<double>(value) * multiplier / divisor));
}

// How many of the samples have room, and the first of them when `middle` is to be in the middle.
int SeenOf(int samples, int pixels, int zoom) {
    return std::clamp(pixels / zoom, 1, samples);
}
int FirstOf(double middle, int seen, int samples) {
    return std::clamp(static_cast<int>(std::lround(middle - seen / 2.0)), 0, samples - seen);
}

double Moved(double middle, double by, int seen, int samples) {
    return std::clamp(middle + by, seen / 2.0, samples - seen / 2.0);
}

} // namespace

int View::PictureX(int x) const {
    return source.x + FloorOf(x - shown.x, source.width, shown.width);
}

int View::PictureY(int y) const {
    return source.y + FloorOf(y - shown.y, source.height, shown.height);
}

void CViewport::Pan(int dx, int dy, const Box& room) {
    if (m_zoom != 0) {
        m_x = Moved(m_x, static_cast<double>(dx) / m_zoom, SeenOf(m_shape.width, room.width, m_zoom), m_shape.width);
        m_y = Moved(m_y, static_cast<double>(dy) / m_zoom, SeenOf(m_shape.height, room.height, m_zoom), m_shape.height);
    }
}

View CViewport::In(const Box& room) const {
    if (m_zoom == 0 || room.width < m_zoom || room.height < m_zoom) {
        return {FitInto(m_shape, room), {0, 0, m_shape.width, m_shape.height}};
    }
    const int width = SeenOf(m_shape.width, room.width, m_zoom);
    const int height = SeenOf(m_shape.height, room.height, m_zoom);
    const Box source{FirstOf(m_x, width, m_shape.width), FirstOf(m_y, height, m_shape.height), width, height};
    const int x = room.x + (room.width - width * m_zoom) / 2;
    const int y = room.y + (room.height - height * m_zoom) / 2;
    return {{x, y, width * m_zoom, height * m_zoom}, source};
}

} // namespace host
