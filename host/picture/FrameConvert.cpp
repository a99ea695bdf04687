#include "host/picture/FrameConvert.h"

#include "host/picture/ChromaRows.h"

#include <cstring>

namespace host {

namespace {

// Work rows: luma, the two chroma rows, the two rescaled chroma rows, the chroma pairs before they are separated, the
// three colours before they are interleaved or after they were taken apart.
enum Work { kLuma, kU, kV, kRescaledU, kRescaledV, kPairs, kBlue, kGreen, kRed, kWorkRows };

bool NeedsWide(Layout layout) {
    return layout == Layout::Iyu2 || layout == Layout::Rgb24 || layout == Layout::Planar444;
}

std::size_t BytesPerRow(Layout layout, int plane, int width) {
    switch (layout) {
    case Layout::Yuy2:
    case Layout::Uyvy:
        return std::size_t(width) * 2;
    case Layout::Iyu2:
    case Layout::Rgb24:
        return std::size_t(width) * 3;
    default:
        return std::size_t(plane == 0 ? width : ChromaSizeOf(layout, width, 1).width);
    }
}

// Of a layout's second and third plane; 0 where there are none.
int ChromaRowsOf(Layout layout, int height) {
    return ChromaSizeOf(layout, 1, height).height;
}

} // namespace

CFrameConverter::CFrameConverter(Layout from, Layout to, int width, int height, bool fullRange,
                                 std::optional<bool> bt709, bool undo420)
    : m_from(from)
    , m_to(to)
    , m_width(width)
    , m_halfWidth((width + 1) / 2)
    , m_rows(PixelRowsHere())
    , m_matrix(bt709.value_or(IsHighDefinition(height)), fullRange)
    , m_workStride((static_cast<std::size_t>(width) + 63) & ~std::size_t{31})
    , m_work(m_workStride * kWorkRows)
    , m_undo420(undo420)
    , m_chroma(to == Layout::Planar420
                   ? PlanarBytes(Layout::Planar422, width, height) - PlanarBytes(Layout::Gray, width, height)
                   : 0) {}

void CFrameConverter::Convert(const FrameView& in, const FrameTarget& out, bool fieldChroma) {
    if (m_from == m_to) {
        CopyRows(in, out);
        return;
    }
    for (int y = 0; y < in.height; ++y) {
        WriteRow(Rescaled(ReadRow(in, y, fieldChroma)), out, y);
    }
    if (m_to == Layout::Planar420) {
        HalveChroma(out, fieldChroma);
    }
}

// From the work frame of full height, which the loop over the rows has filled.
void CFrameConverter::HalveChroma(const FrameTarget& out, bool fieldChroma) {
    const auto half = static_cast<std::size_t>(m_halfWidth);
    for (int y = 0; y < ChromaRowsOf(m_to, out.height); ++y) {
        const ChromaSum sum = SumFor420(y, out.height, fieldChroma, m_undo420);
        for (int plane = 1; plane <= 2; ++plane) {
            const std::uint8_t* const chroma = m_chroma.data() + (plane == 1 ? 0 : m_chroma.size() / 2);
            const auto row = [&](int i) { return chroma + std::size_t(sum.row[i]) * half; };
            m_rows.sumFour(out.Row(plane, y), {row(0), row(1), row(2), row(3)}, sum.share, m_halfWidth);
        }
    }
}

void CFrameConverter::CopyRows(const FrameView& in, const FrameTarget& out) const {
    const int chromaRows = ChromaRowsOf(m_to, in.height);
    for (int plane = 0; plane < (chromaRows == 0 ? 1 : 3); ++plane) {
        const std::size_t bytes = BytesPerRow(m_to, plane, m_width);
        for (int y = 0; y < (plane == 0 ? in.height : chromaRows); ++y) {
            std::memcpy(out.Row(plane, y), in.Row(plane, y), bytes);
        }
    }
}

CFrameConverter::YuvRow CFrameConverter::ReadRow(const FrameView& in, int y, bool fieldChroma) {
    switch (m_from) {
    case Layout::Planar420:
        return ReadPlanar420(in, y, fieldChroma);
    case Layout::Planar422:
        return {in.Row(0, y), in.Row(1, y), in.Row(2, y), false};
    case Layout::Planar444:
        return {in.Row(0, y), in.Row(1, y), in.Row(2, y), true};
    case Layout::Gray:
        std::memset(WorkRow(kU), 128, m_workStride);
        return {in.Row(0, y), WorkRow(kU), WorkRow(kU), false};
    case Layout::Nv12:
        return ReadNv12(in, y, fieldChroma);
    case Layout::Yuy2:
        m_rows.unpackYuy2(WorkRow(kLuma), WorkRow(kU), WorkRow(kV), in.Row(0, y), m_width / 2);
        return {WorkRow(kLuma), WorkRow(kU), WorkRow(kV), false};
    case Layout::Uyvy:
        m_rows.unpackUyvy(WorkRow(kLuma), WorkRow(kU), WorkRow(kV), in.Row(0, y), m_width / 2);
        return {WorkRow(kLuma), WorkRow(kU), WorkRow(kV), false};
    case Layout::Iyu2:
        m_rows.takeApart3(WorkRow(kU), WorkRow(kLuma), WorkRow(kV), in.Row(0, y), m_width);
        return {WorkRow(kLuma), WorkRow(kU), WorkRow(kV), true};
    case Layout::Rgb24:
        return ReadBgr(in.Row(0, y), 3);
    case Layout::Rgb32:
        break;
    }
    return ReadBgr(in.Row(0, y), 4);
}

CFrameConverter::YuvRow CFrameConverter::ReadPlanar420(const FrameView& in, int y, bool fieldChroma) {
    const ChromaTap tap = TapFor420(y, (in.height + 1) / 2, fieldChroma);
    m_rows.mix(WorkRow(kU), in.Row(1, tap.nearRow), in.Row(1, tap.farRow), tap.nearShare, m_halfWidth);
    m_rows.mix(WorkRow(kV), in.Row(2, tap.nearRow), in.Row(2, tap.farRow), tap.nearShare, m_halfWidth);
    return {in.Row(0, y), WorkRow(kU), WorkRow(kV), false};
}

CFrameConverter::YuvRow CFrameConverter::ReadNv12(const FrameView& in, int y, bool fieldChroma) {
    const ChromaTap tap = TapFor420(y, (in.height + 1) / 2, fieldChroma);
    // U V pairs are mixed as they stand and separated afterwards; a pair row may be one byte longer than the picture.
    std::uint8_t* const mixed = WorkRow(kPairs);
    m_rows.mix(mixed, in.Row(1, tap.nearRow), in.Row(1, tap.farRow), tap.nearShare, 2 * m_halfWidth);
    m_rows.takeApart2(WorkRow(kU), WorkRow(kV), mixed, m_halfWidth);
    return {in.Row(0, y), WorkRow(kU), WorkRow(kV), false};
}

CFrameConverter::YuvRow CFrameConverter::ReadBgr(const std::uint8_t* row, int step) {
    (step == 3 ? m_rows.takeApart3 : m_rows.takeApart4)(WorkRow(kBlue), WorkRow(kGreen), WorkRow(kRed), row, m_width);
    if (m_to == Layout::Rgb24) { // no luma is wanted: another byte count per pixel is the only difference
        return {nullptr, nullptr, nullptr, true};
    }
    m_matrix.FromRgb(WorkRow(kLuma), WorkRow(kU), WorkRow(kV), {WorkRow(kBlue), WorkRow(kGreen), WorkRow(kRed)},
                     m_width);
    return {WorkRow(kLuma), WorkRow(kU), WorkRow(kV), true};
}

CFrameConverter::YuvRow CFrameConverter::Rescaled(YuvRow row) {
    if (row.y == nullptr || row.wide == NeedsWide(m_to)) {
        return row;
    }
    if (row.wide) {
        m_rows.narrow(WorkRow(kRescaledU), row.u, m_width);
        m_rows.narrow(WorkRow(kRescaledV), row.v, m_width);
    } else {
        m_rows.widen(WorkRow(kRescaledU), row.u, m_width);
        m_rows.widen(WorkRow(kRescaledV), row.v, m_width);
    }
    return {row.y, WorkRow(kRescaledU), WorkRow(kRescaledV), !row.wide};
}

void CFrameConverter::WriteRow(const YuvRow& row, const FrameTarget& out, int y) {
    std::uint8_t* const first = out.Row(0, y);
    switch (m_to) {
    case Layout::Yuy2:
        m_rows.packYuy2(first, row.y, row.u, row.v, m_width / 2);
        return;
    case Layout::Uyvy:
        m_rows.packUyvy(first, row.y, row.u, row.v, m_width / 2);
        return;
    case Layout::Iyu2:
        m_rows.interleave3(first, row.u, row.y, row.v, m_width);
        return;
    case Layout::Rgb24:
        if (row.y != nullptr) {
            m_matrix.ToRgb({WorkRow(kBlue), WorkRow(kGreen), WorkRow(kRed)}, row.y, row.u, row.v, m_width);
        }
        m_rows.interleave3(first, WorkRow(kBlue), WorkRow(kGreen), WorkRow(kRed), m_width);
        return;
    case Layout::Planar420: {
        std::uint8_t* const chroma = m_chroma.data() + std::size_t(y) * std::size_t(m_halfWidth);
        std::memcpy(first, row.y, BytesPerRow(m_to, 0, m_width));
        std::memcpy(chroma, row.u, std::size_t(m_halfWidth));
        std::memcpy(chroma + m_chroma.size() / 2, row.v, std::size_t(m_halfWidth));
        return;
    }
    default:
        std::memcpy(first, row.y, BytesPerRow(m_to, 0, m_width));
        std::memcpy(out.Row(1, y), row.u, BytesPerRow(m_to, 1, m_width));
        std::memcpy(out.Row(2, y), row.v, BytesPerRow(m_to, 2, m_width));
    }
}

} // namespace host
