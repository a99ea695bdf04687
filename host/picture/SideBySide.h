// Where the live window puts its two pictures.
#pragma once

#include "host/picture/Rational.h"

namespace host {

struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// A picture's size as it is to be seen: samples, and the aspect ratio of one.
struct PictureShape {
    int width = 0;
    int height = 0;
    Rational aspect{1, 1};
};

// Everything in pixels; `line` is the height of a line of text. Each picture has its label above it, and one line of
// status runs along the bottom.
struct SideBySide {
    Box label[2];
    Box picture[2];
    Box status;
};

// Both pictures as large as the area allows, of one size, their shape kept. An area that is too small gives empty
// boxes.
SideBySide PlaceSideBySide(int width, int height, int line, const PictureShape& shape);

// The smallest area that shows both pictures in full size; when that is larger than the limits, the area within them
// that shows the pictures as large as possible.
Box AreaFor(const PictureShape& shape, int line, int mostWidth, int mostHeight);

} // namespace host
