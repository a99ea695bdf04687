#include "engine/pixels/FrameOutput.h"

#include "engine/pixels/PlainFrame.h"

#include <algorithm>
#include <cstring>

namespace {

const RowWriters& WritersFor(Stores stores) {
    const RowKernels& kernels = ActiveRowKernels();
    return stores == Stores::Streaming ? kernels.streamed : kernels.cached;
}

// The margins of a narrow area share cache lines with it: those rows are put together in the cache.
Stores AreaStores(const FrameShape& shape, const FramePlan& plan, Stores stores) {
    return plan.area.m_lCropWidth == shape.width ? stores : Stores::Ordinary;
}

} // namespace

FrameOutput::FrameOutput(const FramePair& frames, const FramePlan& plan, Stores stores)
    : m_frames(frames)
    , m_plan(plan)
    , m_writers(WritersFor(stores))
    , m_areaWriters(WritersFor(AreaStores(frames.shape, plan, stores)))
    , m_firstRow(plan.area.offset / frames.shape.stride)
    , m_areaLeft(plan.area.offset % frames.shape.stride)
    , m_copyBytes(RowBytes(plan.area.m_lCropWidth, frames.shape.bits))
    , m_combineBytes(plan.region ? m_copyBytes : frames.shape.stride)
    , m_stripBytes(StripBytes(m_combineBytes, plan.merge ? CarriedRows::kMaxBytesOfTwo : CarriedRows::kMaxBytesOfOne)) {
    if (m_copyBytes < 1) { // no pixels: what is outside the area passes, and without a region nothing is outside
        m_row = plan.area.m_lCropHeight > 0 && !plan.region ? frames.shape.height : 0;
        m_plan.area.m_lCropHeight = 0;
    }
}

void FrameOutput::WriteTo(std::int32_t end) {
    end = std::min(end, m_frames.shape.height);
    while (m_row < end) {
        if (m_row < m_firstRow) {
            PassRows(std::min(end, m_firstRow));
        } else if (m_row < AreaEnd()) {
            WriteAreaRows(end);
        } else {
            PassRows(end);
        }
    }
}

void FrameOutput::Finish() {
    WriteTo(m_frames.shape.height);
    m_writers.finish(m_line);
}

// Rows outside the area, as one block.
void FrameOutput::PassRows(std::int32_t end) {
    const std::ptrdiff_t start = std::ptrdiff_t{m_row} * m_frames.shape.stride;
    const std::ptrdiff_t bytes = std::ptrdiff_t{end - m_row} * m_frames.shape.stride;
    m_writers.copy(m_frames.output + start, m_frames.input + start, static_cast<std::size_t>(bytes), m_line);
    m_row = end;
}

// One row or some; of a rebuilt row, the kept one after it too.
void FrameOutput::WriteAreaRows(std::int32_t end) {
    if (WorkOnRow(m_row - m_firstRow, m_plan.area.m_lCropHeight, m_plan.interpolate, m_plan.merge, m_plan.keepOdd) ==
        RowWork::Copy) {
        return CopyRow();
    }
    CombineRows(std::min(end, AreaEnd() - 1)); // the area's last row is copied
}

void FrameOutput::CopyRow() {
    if (m_plan.region) {
        return PassRows(m_row + 1);
    }
    const std::ptrdiff_t at = AreaByte(m_row++);
    m_areaWriters.copy(m_frames.output + at, m_frames.input + at, static_cast<std::size_t>(m_copyBytes), m_line);
}

// Some rows, strip by strip: what is read of them is carried from row to row.
void FrameOutput::CombineRows(std::int32_t end) {
    constexpr std::int32_t kRowsPerStrip = 8;
    const std::int32_t step = m_plan.merge ? 1 : 2;
    const std::int32_t rows = std::min(end - m_row, kRowsPerStrip);
    end = m_row + (rows + step - 1) / step * step;
    for (std::int32_t left = 0; left < m_combineBytes; left += m_stripBytes) {
        const std::int32_t bytes = std::min(m_stripBytes, m_combineBytes - left);
        if (m_carriedTo != m_row) {
            TakeRows(left, bytes);
        }
        CombineStrip(end, left, bytes);
    }
    for (; m_row < end; ++m_row) {
        PassMargins(m_row);
    }
    m_carriedTo = m_stripBytes == m_combineBytes ? end : -1;
}

// Reads the rows around the next one that are carried from then on.
void FrameOutput::TakeRows(std::int32_t left, std::int32_t bytes) {
    const std::uint8_t* above = m_frames.input + AreaByte(m_row - 1) + left;
    const auto size = static_cast<std::size_t>(bytes);
    if (!m_plan.merge) {
        std::memcpy(m_carried.One(), above, size);
        return;
    }
    std::memcpy(m_carried.OfTwo(m_row - 1), above, size);
    std::memcpy(m_carried.OfTwo(m_row), above + m_frames.shape.stride, size);
}

void FrameOutput::CombineStrip(std::int32_t end, std::int32_t left, std::int32_t bytes) {
    const RowRun run{
        .out = m_frames.output + AreaByte(m_row) + left,
        .below = m_frames.input + AreaByte(m_row + 1) + left,
        .last = m_frames.input + AreaByte(m_frames.shape.height - 1) + left,
        .stride = m_frames.shape.stride,
        .bytes = static_cast<std::size_t>(bytes),
        .keptBytes = static_cast<std::size_t>(std::clamp(m_copyBytes - left, 0, bytes)), // without the padding
        .rows = end - m_row,
    };
    if (m_plan.merge) {
        m_areaWriters.blend(run, m_carried.OfTwo(m_row - 1), m_carried.OfTwo(m_row), m_line);
    } else {
        m_areaWriters.rebuild(run, m_carried.One(), m_line);
    }
}

// What of an area's row lies outside the area.
void FrameOutput::PassMargins(std::int32_t row) {
    if (!m_plan.region) {
        return;
    }
    const std::ptrdiff_t start = std::ptrdiff_t{row} * m_frames.shape.stride;
    const std::ptrdiff_t right = start + m_areaLeft + m_combineBytes;
    const std::ptrdiff_t end = start + m_frames.shape.stride;
    std::memcpy(m_frames.output + start, m_frames.input + start, static_cast<std::size_t>(m_areaLeft));
    std::memcpy(m_frames.output + right, m_frames.input + right, static_cast<std::size_t>(end - right));
}

std::ptrdiff_t FrameOutput::AreaByte(std::int32_t row) const {
    return std::ptrdiff_t{row} * m_frames.shape.stride + m_areaLeft;
}

void WriteFrame(const FramePair& frames, const FramePlan& plan, Stores stores) {
    if (frames.Overlap()) {
        return WriteFrameInOrder(frames, plan);
    }
    FrameOutput(frames, plan, stores).Finish();
}
