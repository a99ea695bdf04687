#include "engine/FrameOutput.h"

#include "engine/DeinterlaceLines.h"

#include <algorithm>
#include <cstring>

namespace {

const RowWriters& WritersFor(Stores stores) {
    const RowKernels& kernels = ActiveRowKernels();
    return stores == Stores::Streaming ? kernels.streamed : kernels.cached;
}

// The margins of a narrow area share cache lines with it: those rows are put together in the cache.
Stores AreaStores(const FrameShape& shape, const FramePlan& plan, Stores stores) {
    return plan.area.width == shape.width ? stores : Stores::Ordinary;
}

} // namespace

bool FramePair::Overlap() const {
    const auto in = reinterpret_cast<std::uintptr_t>(input);
    const auto out = reinterpret_cast<std::uintptr_t>(output);
    const auto bytes = static_cast<std::uintptr_t>(shape.Bytes());
    return in < out + bytes && out < in + bytes;
}

void WriteFrameInOrder(const FramePair& frames, const FramePlan& plan) {
    const FrameShape& shape = frames.shape;
    if (plan.region || plan.area.rows == 0) {
        std::memmove(frames.output, frames.input, static_cast<std::size_t>(shape.Bytes()));
    }
    DeinterlaceLines(frames.input + plan.area.offset, frames.output + plan.area.offset, plan.keepOdd, plan.interpolate,
                     plan.merge, plan.area.width, plan.area.rows, shape.bits, shape.stride, plan.region);
}

FrameOutput::FrameOutput(const FramePair& frames, const FramePlan& plan, Stores stores)
    : m_frames(frames)
    , m_plan(plan)
    , m_writers(WritersFor(stores))
    , m_areaStores(AreaStores(frames.shape, plan, stores))
    , m_areaWriters(WritersFor(m_areaStores))
    , m_firstRow(plan.area.offset / frames.shape.stride)
    , m_areaLeft(plan.area.offset % frames.shape.stride)
    , m_copyBytes(RowBytes(plan.area.width, frames.shape.bits))
    , m_combineBytes(plan.region ? m_copyBytes : frames.shape.stride) {
    if (m_copyBytes < 1) { // no pixels: what is outside the area passes, and without a region nothing is outside
        m_row = plan.area.rows > 0 && !plan.region ? frames.shape.height : 0;
        m_plan.area.rows = 0;
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
    m_writers.finish();
}

// Rows outside the area, as one block.
void FrameOutput::PassRows(std::int32_t end) {
    const std::ptrdiff_t start = std::ptrdiff_t{m_row} * m_frames.shape.stride;
    const std::ptrdiff_t bytes = std::ptrdiff_t{end - m_row} * m_frames.shape.stride;
    m_writers.copy(m_frames.output + start, m_frames.input + start, static_cast<std::size_t>(bytes));
    m_row = end;
}

// One row or some; of a rebuilt row, the kept one after it too.
void FrameOutput::WriteAreaRows(std::int32_t end) {
    switch (WorkOnRow(m_row - m_firstRow, m_plan.area.rows, m_plan.interpolate, m_plan.merge, m_plan.keepOdd)) {
    case RowWork::Copy:
        return CopyRow();
    case RowWork::Blend:
        return BlendRows(std::min(end, AreaEnd() - 1)); // the last row of all is copied
    case RowWork::Rebuild:
        return RebuildRow();
    }
}

void FrameOutput::CopyRow() {
    if (m_plan.region) {
        return PassRows(m_row + 1);
    }
    const std::ptrdiff_t at = AreaByte(m_row++);
    m_areaWriters.copy(m_frames.output + at, m_frames.input + at, static_cast<std::size_t>(m_copyBytes));
}

// Three rows are read for each that is written, so those three have to fit in the first-level cache. Where they are too
// long for it, some rows are written strip by strip; not through the cache, which foresees whole rows better.
void FrameOutput::BlendRows(std::int32_t end) {
    constexpr std::int32_t kLongRow = 8192;
    constexpr std::int32_t kStrip = 4096; // whole cache lines
    constexpr std::int32_t kRowsPerStrip = 8;
    end = std::min(end, m_row + kRowsPerStrip);
    const bool inStrips = m_combineBytes > kLongRow && m_areaStores == Stores::Streaming;
    const std::int32_t strip = inStrips ? kStrip : m_combineBytes;
    for (std::int32_t left = 0; left < m_combineBytes; left += strip) {
        for (std::int32_t row = m_row; row < end; ++row) {
            BlendStrip(row, left, std::min(strip, m_combineBytes - left));
        }
    }
    for (; m_row < end; ++m_row) {
        PassMargins(m_row);
    }
}

void FrameOutput::BlendStrip(std::int32_t row, std::int32_t left, std::int32_t bytes) {
    const std::ptrdiff_t stride = m_frames.shape.stride;
    const std::ptrdiff_t at = AreaByte(row) + left;
    const std::uint8_t* in = m_frames.input + at;
    m_areaWriters.blend121(m_frames.output + at, in - stride, in, in + stride, static_cast<std::size_t>(bytes),
                           SoonRead(row + 1) + left);
}

// A rebuilt row is never the area's last, and the one after it is always copied.
void FrameOutput::RebuildRow() {
    const std::ptrdiff_t stride = m_frames.shape.stride;
    const std::ptrdiff_t at = AreaByte(m_row);
    const std::uint8_t* in = m_frames.input + at;
    std::uint8_t* out = m_frames.output + at;
    m_areaWriters.rebuild(out, out + stride, in - stride, in + stride, static_cast<std::size_t>(m_copyBytes),
                          SoonRead(m_row + 1));
    if (m_combineBytes > m_copyBytes) { // padding
        m_areaWriters.average(out + m_copyBytes, in - stride + m_copyBytes, in + stride + m_copyBytes,
                              static_cast<std::size_t>(m_combineBytes - m_copyBytes));
    }
    PassMargins(m_row++);
    PassMargins(m_row++);
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

// Far enough behind `row`, the last that is read now, for its bytes to arrive in time; within the frame.
const std::uint8_t* FrameOutput::SoonRead(std::int32_t row) const {
    constexpr std::int32_t kRowsAhead = 4; // even: rebuilding reads every other row
    return m_frames.input + AreaByte(std::min(row + kRowsAhead, m_frames.shape.height - 1));
}
