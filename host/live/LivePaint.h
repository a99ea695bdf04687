// How the live window looks.
#pragma once

#include "host/player/LiveModel.h"
#include "host/player/StatusText.h"

#include <cstdint>
#include <string>
#include <windows.h>

namespace host {

// What there is to be seen. The pictures are RGB24 of the shape's size, bottom row first, rows padded to four bytes;
// null ones are not drawn.
struct LiveScene {
    PictureShape shape;
    const std::uint8_t* pictures[2] = {};
    LiveFrame frame;
    std::wstring status[2];
};

// Paints all of the window. `dc` has the font of the texts, whose lines are `line` high.
void PaintLive(HDC dc, const RECT& area, int line, const CLiveModel& model, const LiveScene& scene);

} // namespace host
