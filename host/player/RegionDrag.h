// The region of interest under the mouse. Picture coordinates, from the top left corner.
#pragma once

#include "host/command/Options.h"
#include "host/player/Viewport.h"

namespace host {

// The region as the transform has it.
struct LiveRegion {
    bool enabled = false;
    Area area;

    bool operator==(const LiveRegion&) const = default;
};

// What of a rectangle moves: any of its edges.
enum Grip : unsigned {
    kGripNone = 0,
    kGripLeft = 1,
    kGripTop = 2,
    kGripRight = 4,
    kGripBottom = 8,
    kGripWhole = 15,
};

// What a point of the window, up to `reach` pixels away, takes hold of: a corner before an edge, an edge before the
// whole.
unsigned GripAt(const Area& area, const View& view, int x, int y, int reach);

// The rectangle as it was taken hold of, after a way. It stays in the picture and keeps a sample each way; as a whole
// it keeps its size.
Area Dragged(const Area& area, unsigned grip, int dx, int dy, int width, int height);

} // namespace host
