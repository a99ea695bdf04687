// What is said of the lines of a clip, or of one of its frames.
#pragma once

namespace host {

enum class Scan {
    Unknown,
    Progressive,
    TopFirst,    // interlaced, the top field first
    BottomFirst, // interlaced, the bottom field first
    Interlaced,  // in an order that is not told
    Mixed,       // of a clip only: its frames differ
};

// Whether there are, or may be, two moments in a frame.
constexpr bool MayBeInterlaced(Scan scan) {
    return scan != Scan::Unknown && scan != Scan::Progressive;
}

} // namespace host
