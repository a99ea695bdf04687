// Putting back the protected area from a saved copy of the input.
#pragma once

#include "engine/pixels/FrameRegion.h"

// Copies the rectangle, whose rows count in memory, from `saved` to `output`, both of shape.Bytes() bytes. Either may
// be null: then nothing happens. Right and bottom beyond the frame are set to its edge in `rectangle`. `protectedTop`
// is the stored top edge, which top-down frames count from. Rows, and parts of rows, that leave the buffers are left
// out.
//
// Kept: the packed 4:2:2 walk starts at twice the row's byte offset and does half the rows, and the walk of the other
// depths mirrors the rows a second time for bottom-up frames. Test: RestoreFollowsItsOwnWalk.
void RestoreProtectedArea(std::uint8_t* output, const std::uint8_t* saved, const FrameShape& shape, bool packed422,
                          std::int32_t protectedTop, Region& rectangle);
