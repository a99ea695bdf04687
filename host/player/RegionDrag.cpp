#include "host/player/RegionDrag.h"

#include <algorithm>
#include <cstdlib>

namespace host {

namespace {

// The nearer of the two edges that are in reach.
unsigned NearEdge(int at, int low, int high, int reach, unsigned lowGrip, unsigned highGrip) {
    const int toLow = std::abs(at - low);
    const int toHigh = std::abs(at - high);
    if (std::min(toLow, toHigh) > reach) {
        return kGripNone;
    }
    return toLow < toHigh ? lowGrip : highGrip;
}

void DragEdges(int& low, int& high, bool moveLow, bool moveHigh, int way, int size) {
    if (moveLow && moveHigh) {
        const int by = std::clamp(way, -low, size - high);
        low += by;
        high += by;
    } else if (moveLow) {
        low = std::clamp(low + way, 0, high - 1);
    } else if (moveHigh) {
        high = std::clamp(high + way, low + 1, size);
    }
}

} // namespace

unsigned GripAt(const Area& area, const View& view, int x, int y, int reach) {
    const int left = view.WindowX(area.left);
    const int top = view.WindowY(area.top);
    const int right = view.WindowX(area.right);
    const int bottom = view.WindowY(area.bottom);
    if (x < left - reach || x > right + reach || y < top - reach || y > bottom + reach) {
        return kGripNone;
    }
    const unsigned grip =
        NearEdge(x, left, right, reach, kGripLeft, kGripRight) | NearEdge(y, top, bottom, reach, kGripTop, kGripBottom);
    return grip != kGripNone ? grip : static_cast<unsigned>(kGripWhole);
}

Area Dragged(const Area& area, unsigned grip, int dx, int dy, int width, int height) {
    Area moved = area;
    DragEdges(moved.left, moved.right, grip & kGripLeft, grip & kGripRight, dx, width);
    DragEdges(moved.top, moved.bottom, grip & kGripTop, grip & kGripBottom, dy, height);
    return moved;
}

} // namespace host
