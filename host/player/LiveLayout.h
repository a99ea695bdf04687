// Where the live window puts its pictures and what belongs to them. Everything in pixels of the window.
#pragma once

#include "host/picture/Rational.h"

namespace host {

struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool Contains(int px, int py) const { return px >= x && px < x + width && py >= y && py < y + height; }
};

// A picture's size as it is to be seen: samples, and the aspect ratio of one.
struct PictureShape {
    int width = 0;
    int height = 0;
    Rational aspect{1, 1};
};

// From top to bottom: labels, pictures, the slider with the frames, the bar with the combs and its scale, two lines of
// status. With `split` both pictures have the whole width, one over the other.
struct LiveLayout {
    Box label[2];
    Box room[2];    // for the pictures
    Box caption[2]; // left of slider and bar
    Box slider;
    Box bar;
    Box scale; // below the bar
    Box status[2];
};

// `line` is the height of a line of text. An area that is too small gives empty boxes.
LiveLayout PlaceLive(int width, int height, int line, bool split);

// The smallest area that shows both pictures in full size side by side, and the texts; when that is larger than the
// limits, the area within them that shows the pictures as large as possible.
Box AreaFor(const PictureShape& shape, int line, int mostWidth, int mostHeight);

// The largest box of the picture's shape in the middle of the room.
Box FitInto(const PictureShape& shape, const Box& room);

} // namespace host
