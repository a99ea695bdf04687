// The output frame: what each of its rows holds, and how its bytes get there.
#pragma once

#include "engine/kernels/CarriedRows.h"
#include "engine/kernels/RowKernels.h"
#include "engine/pixels/FramePlan.h"
#include "engine/pixels/Stores.h"

// Writes the output frame. The frames may overlap, or be one.
void WriteFrame(const FramePair& frames, const FramePlan& plan, Stores stores);

// Writes the output frame from its first row to its last, and each byte once: the same bytes as WriteFrameInOrder, for
// frames that don't overlap. Between two calls anything else may be done with the input's rows while they are in the
// cache.
class FrameOutput {
public:
    FrameOutput(const FramePair& frames, const FramePlan& plan, Stores stores);

    // Writes the rows before `end` that are not written yet, perhaps one more.
    void WriteTo(std::int32_t end);

    // Writes what is left. The frame may be handed on only after this.
    void Finish();

    // Rows written so far.
    std::int32_t Rows() const { return m_row; }

private:
    std::int32_t AreaEnd() const { return m_firstRow + m_plan.area.m_lCropHeight; }
    std::ptrdiff_t AreaByte(std::int32_t row) const;
    void PassRows(std::int32_t end);
    void WriteAreaRows(std::int32_t end);
    void CopyRow();
    void CombineRows(std::int32_t end);
    void TakeRows(std::int32_t left, std::int32_t bytes);
    void CombineStrip(std::int32_t end, std::int32_t left, std::int32_t bytes);
    void PassMargins(std::int32_t row);

    FramePair m_frames;
    FramePlan m_plan;
    const RowWriters& m_writers; // of whole rows
    const RowWriters& m_areaWriters;
    std::int32_t m_firstRow;     // of the area, in memory
    std::int32_t m_areaLeft;     // bytes
    std::int32_t m_copyBytes;    // of a copied row of the area
    std::int32_t m_combineBytes; // of a combined one
    std::int32_t m_stripBytes;   // of a combined one that are written in one go
    std::int32_t m_row = 0;
    CarriedRows m_carried;
    OpenLine m_line;
    std::int32_t m_carriedTo = -1; // the row that the rows before it are carried for, in one strip
};
