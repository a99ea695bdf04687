// Notices frames that a decoder has made out of single fields.
#pragma once

#include "host/picture/Frame.h"

namespace host {

// A decoder that deinterlaces by itself makes two frames of each one: in the first the rows of one field are means of
// their neighbours, in the next those of the other.
class CBobWatch {
public:
    // The next frame, Yuy2, Uyvy, Nv12 or planar; other layouts are no frames of a decoder's own lines and say nothing.
    // True once several in a row were such frames.
    bool Look(const FrameView& frame);

private:
    enum class Field { Neither, Even, Odd, Both };
    static Field MeanRows(const FrameView& frame);

    bool m_ended = false; // a frame was none of them
    int m_pairs = 0;
    Field m_before = Field::Both;
};

} // namespace host
