// The output frame in the plain order and in scalar code: what frames that overlap get.
#pragma once

#include "engine/pixels/FramePlan.h"

enum class RowWork { Copy, Blend, Rebuild };

// What becomes of row `y` of an area of `rows` rows; see DeinterlaceLines.
RowWork WorkOnRow(std::int32_t y, std::int32_t rows, bool interpolate, bool merge, bool keepOdd);

// destination[i] = (above[i] + 2 * current[i] + below[i]) >> 2 for i from 0 to byteCount - 1, one byte after the other:
// a destination that overlaps a source row reads what it has already written. Nothing happens for a byteCount below 1.
void BlendLines121(std::uint8_t* destination, const std::uint8_t* above, const std::uint8_t* current,
                   const std::uint8_t* below, std::int32_t byteCount);

// Writes `rows` rows of a deinterlaced area from `source` to `destination`, both `stride` bytes from row to row and
// counted from the area's first row in memory.
//
// With `merge` and `interpolationAllowed`, every inner row becomes the 1-2-1 blend of itself and its neighbours.
// Otherwise the rows of one field are kept (odd rows when `keepOdd` is 1, even rows when it is 0) and the inner rows of
// the other become the average of the rows above and below. First and last row are always copied; without
// `interpolationAllowed` every row is.
//
// Kept: a copied row covers the `width` pixels, a rebuilt or blended one covers them only when `regionFlag` is set and
// the whole stride otherwise, so that padding bytes are combined but not copied. Test: PaddingIsCombinedNotCopied.
//
// The caller answers for the area lying within both frames. Frames may overlap: the rows are then written one after
// the other, each byte from what the source holds at that moment.
void DeinterlaceLines(const std::uint8_t* source, std::uint8_t* destination, std::int32_t keepOdd,
                      std::int32_t interpolationAllowed, std::int32_t merge, std::int32_t width, std::int32_t rows,
                      std::int32_t bits, std::int32_t stride, std::int32_t regionFlag);

// Writes the output frame: the whole frame is copied as far as the plan wants it, then the area's rows are written one
// after the other by DeinterlaceLines. The frames may overlap, or be one.
void WriteFrameInOrder(const FramePair& frames, const FramePlan& plan);
