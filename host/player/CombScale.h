// The bar that shows a frame's combs against the threshold, and the slider that shows its place in the clip.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace host {

// What the detector says of the frame that is seen.
struct CombReading {
    std::uint32_t count = 0;
    std::uint32_t threshold = 0; // at the sensitivity as it is
    std::uint32_t normal = 0;    // the threshold at sensitivity 1
    double sensitivity = 1;
};

// The scale is logarithmic, and is that of the sensitivity: a count stands at the lowest sensitivity that calls its
// frame clean, and the threshold at the sensitivity that is set. 0 is the left end, 1 the right one.
double PlaceOnScale(double sensitivity);
double PlaceOfCount(const CombReading& reading);

// The marks with a number.
struct ScaleMark {
    double sensitivity;
    const wchar_t* text;
};
std::span<const ScaleMark> ScaleMarks();

// The place of a frame on a slider of `width` pixels, and the frame at a place, which may lie outside. A clip whose
// length nobody knows yet is taken to end where it has been read to.
int PlaceOfFrame(std::uint64_t frame, std::uint64_t frames, int width);
std::uint64_t FrameAtPlace(int x, std::uint64_t frames, int width);

} // namespace host
