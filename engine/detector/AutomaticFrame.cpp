#include "engine/detector/AutomaticFrame.h"

#include <algorithm>

namespace {

// Bytes of the input that are written and looked at before the next ones are read, but at least three rows: where those
// are short enough they stay in the first-level cache.
constexpr std::int32_t kBandBytes = 12 * 1024;

// Copied rows leave the padding in the output as it was; rows that pass through don't. So one can't be put in the
// other's place afterwards.
bool HasPadding(const FrameShape& shape) {
    return RowBytes(shape.width, shape.bits) < shape.stride;
}

// Rebuilding leaves the rows out that it replaces; nobody but the search reads them.
bool LeavesRowsOut(const FramePlan& plan) {
    return plan.area.m_lCropHeight > 0 && plan.interpolate && !plan.merge;
}

bool DetectThenWrite(const FramePair& frames, CombSearch& search, const FramePlan& likely, bool decided,
                     Stores stores) {
    const bool interlaced = search.Settle();
    if (decided || !interlaced) {
        WriteFrame(frames, likely, stores);
    }
    return interlaced;
}

} // namespace

bool DetectAndWriteFrame(const FramePair& frames, CombSearch search, const FramePlan& likely, bool decided,
                         Stores stores) {
    if (frames.Overlap() || (!decided && HasPadding(frames.shape))) {
        return DetectThenWrite(frames, search, likely, decided, stores);
    }
    FrameOutput output(frames, likely, stores);
    const bool leavesRowsOut = LeavesRowsOut(likely);
    const std::int32_t bandRows = std::max(kBandBytes / frames.shape.stride, 3);
    while (!search.IsSettled()) {
        output.WriteTo(search.NextRow() + bandRows);
        while (!search.IsSettled() && search.NextRow() < output.Rows()) {
            if (leavesRowsOut) {
                search.PrefetchAhead();
            }
            search.Step();
        }
    }
    if (decided || !search.IsInterlaced()) {
        output.Finish();
    }
    return search.IsInterlaced();
}
