// A frame in one layout to the same picture in another.
#pragma once

#include "host/picture/ColorMatrix.h"
#include "host/picture/Frame.h"
#include "host/picture/PixelRows.h"

#include <optional>
#include <vector>

namespace host {

// Any layout to Yuy2, Uyvy, Iyu2, Rgb24 or a planar one but Gray. Equal layouts are copied byte for byte. Holds its
// work rows, so converting allocates nothing. One converter serves one thread.
class CFrameConverter {
public:
    // The width must be even when either layout shares chroma between two pixels in one word (Yuy2, Uyvy).
    // Without a word on the matrix the height decides (IsHighDefinition). `undo420`: the input's chroma was made from
    // 4:2:0, for which Planar420 is to be the inverse (ChromaRows.h).
    CFrameConverter(Layout from, Layout to, int width, int height, bool fullRange, std::optional<bool> bt709 = {},
                    bool undo420 = false);

    // Both frames have the layouts and size given above. `fieldChroma` matters for 4:2:0 only (ChromaRows.h)
    // and holds for whichever of the two is that.
    void Convert(const FrameView& in, const FrameTarget& out, bool fieldChroma);

private:
    // One row as separate samples: full or half chroma width. The pointers are into the input or into work rows; null
    // ones say that the row is in the work rows of the three colours and needs no luma.
    struct YuvRow {
        const std::uint8_t* y;
        const std::uint8_t* u;
        const std::uint8_t* v;
        bool wide;
    };

    YuvRow ReadRow(const FrameView& in, int y, bool fieldChroma);
    YuvRow ReadPlanar420(const FrameView& in, int y, bool fieldChroma);
    YuvRow ReadNv12(const FrameView& in, int y, bool fieldChroma);
    YuvRow ReadBgr(const std::uint8_t* row, int step);
    YuvRow Rescaled(YuvRow row);
    void WriteRow(const YuvRow& row, const FrameTarget& out, int y);
    void HalveChroma(const FrameTarget& out, bool fieldChroma);
    void CopyRows(const FrameView& in, const FrameTarget& out) const;
    std::uint8_t* WorkRow(int index) { return m_work.data() + std::size_t(index) * m_workStride; }

    Layout m_from;
    Layout m_to;
    int m_width;
    int m_halfWidth;
    const PixelRows& m_rows;
    CColorMatrix m_matrix;
    std::size_t m_workStride;
    std::vector<std::uint8_t> m_work;
    bool m_undo420;
    std::vector<std::uint8_t> m_chroma; // for Planar420: the frame's U, then its V, of full height
};

} // namespace host
