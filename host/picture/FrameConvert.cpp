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
    const auto pixels = static_cast<std::size_t>(width);
    switch (layout) {
    case Layout::Yuy2:
    case Layout::Uyvy:
        return pixels * 2;
    case Layout::Iyu2:
    case Layout::Rgb24:
        return pixels * 3;
    case Layout::Planar422:
        return plane == 0 ? pixels : (pixels + 1) / 2;
    default:
        return pixels;
    }
}

int PlaneCount(Layout layout) {
    return layout == Layout::Planar422 || layout == Layout::Planar444 ? 3 : 1;
}

// lumaOffset 0 packs Y U Y V, 1 packs U Y V Y. The two loops differ by constants only, which lets both be vectorised.
template <int LumaOffset>
void Pack422(std::uint8_t* out, const std::uint8_t* y, const std::uint8_t* u, const std::uint8_t* v, int pairs) {
    for (int i = 0; i < pairs; ++i) {
        out[4 * i + LumaOffset] = y[2 * i];
        out[4 * i + 1 - LumaOffset] = u[i];
        out[4 * i + 2 + LumaOffset] = y[2 * i + 1];
        out[4 * i + 3 - LumaOffset] = v[i];
    }
}

template <int LumaOffset>
void Unpack422(std::uint8_t* y, std::uint8_t* u, std::uint8_t* v, const std::uint8_t* in, int pairs) {
    for (int i = 0; i < pairs; ++i) {
        y[2 * i] = in[4 * i + LumaOffset];
        u[i] = in[4 * i + 1 - LumaOffset];
        y[2 * i + 1] = in[4 * i + 2 + LumaOffset];
        v[i] = in[4 * i + 3 - LumaOffset];
    }
}

void Interleave(std::uint8_t* out, const std::uint8_t* a, const std::uint8_t* b, const std::uint8_t* c, int width) {
    for (int x = 0; x < width; ++x) {
        out[3 * x] = a[x];
        out[3 * x + 1] = b[x];
        out[3 * x + 2] = c[x];
    }
}

template <int Step>
void TakeApart(std::uint8_t* a, std::uint8_t* b, std::uint8_t* c, const std::uint8_t* in, int width) {
    for (int x = 0; x < width; ++x) {
        a[x] = in[Step * x];
        b[x] = in[Step * x + 1];
        c[x] = in[Step * x + 2];
    }
}

} // namespace

CFrameConverter::CFrameConverter(Layout from, Layout to, int width, int height, bool fullRange,
                                 std::optional<bool> bt709)
    : m_from(from)
    , m_to(to)
    , m_width(width)
    , m_halfWidth((width + 1) / 2)
    , m_matrix(bt709.value_or(IsHighDefinition(height)), fullRange)
    , m_workStride((static_cast<std::size_t>(width) + 63) & ~std::size_t{31})
    , m_work(m_workStride * kWorkRows) {}

void CFrameConverter::Convert(const FrameView& in, const FrameTarget& out, bool fieldChroma) {
    if (m_from == m_to) {
        CopyRows(in, out);
        return;
    }
    for (int y = 0; y < in.height; ++y) {
        WriteRow(Rescaled(ReadRow(in, y, fieldChroma)), out, y);
    }
}

void CFrameConverter::CopyRows(const FrameView& in, const FrameTarget& out) const {
    for (int plane = 0; plane < PlaneCount(m_to); ++plane) {
        const std::size_t bytes = BytesPerRow(m_to, plane, m_width);
        for (int y = 0; y < in.height; ++y) {
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
        return ReadPacked422(in, y, 0);
    case Layout::Uyvy:
        return ReadPacked422(in, y, 1);
    case Layout::Iyu2:
        return ReadIyu2(in.Row(0, y));
    case Layout::Rgb24:
        return ReadBgr(in.Row(0, y), 3);
    case Layout::Rgb32:
        break;
    }
    return ReadBgr(in.Row(0, y), 4);
}

CFrameConverter::YuvRow CFrameConverter::ReadPlanar420(const FrameView& in, int y, bool fieldChroma) {
    const ChromaTap tap = TapFor420(y, (in.height + 1) / 2, fieldChroma);
    MixRows(WorkRow(kU), in.Row(1, tap.nearRow), in.Row(1, tap.farRow), tap.nearShare, m_halfWidth);
    MixRows(WorkRow(kV), in.Row(2, tap.nearRow), in.Row(2, tap.farRow), tap.nearShare, m_halfWidth);
    return {in.Row(0, y), WorkRow(kU), WorkRow(kV), false};
}

CFrameConverter::YuvRow CFrameConverter::ReadNv12(const FrameView& in, int y, bool fieldChroma) {
    const ChromaTap tap = TapFor420(y, (in.height + 1) / 2, fieldChroma);
    // U V pairs are mixed as they stand and separated afterwards; a pair row may be one byte longer than the picture.
    std::uint8_t* const mixed = WorkRow(kPairs);
    MixRows(mixed, in.Row(1, tap.nearRow), in.Row(1, tap.farRow), tap.nearShare, 2 * m_halfWidth);
    for (int i = 0; i < m_halfWidth; ++i) {
        WorkRow(kU)[i] = mixed[2 * i];
        WorkRow(kV)[i] = mixed[2 * i + 1];
    }
    return {in.Row(0, y), WorkRow(kU), WorkRow(kV), false};
}

CFrameConverter::YuvRow CFrameConverter::ReadPacked422(const FrameView& in, int y, int lumaOffset) {
    const auto unpack = lumaOffset == 0 ? &Unpack422<0> : &Unpack422<1>;
    unpack(WorkRow(kLuma), WorkRow(kU), WorkRow(kV), in.Row(0, y), m_width / 2);
    return {WorkRow(kLuma), WorkRow(kU), WorkRow(kV), false};
}

CFrameConverter::YuvRow CFrameConverter::ReadIyu2(const std::uint8_t* row) {
    TakeApart<3>(WorkRow(kU), WorkRow(kLuma), WorkRow(kV), row, m_width);
    return {WorkRow(kLuma), WorkRow(kU), WorkRow(kV), true};
}

CFrameConverter::YuvRow CFrameConverter::ReadBgr(const std::uint8_t* row, int step) {
    (step == 3 ? &TakeApart<3> : &TakeApart<4>)(WorkRow(kBlue), WorkRow(kGreen), WorkRow(kRed), row, m_width);
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
        NarrowRow(WorkRow(kRescaledU), row.u, m_width);
        NarrowRow(WorkRow(kRescaledV), row.v, m_width);
    } else {
        WidenRow(WorkRow(kRescaledU), row.u, m_width);
        WidenRow(WorkRow(kRescaledV), row.v, m_width);
    }
    return {row.y, WorkRow(kRescaledU), WorkRow(kRescaledV), !row.wide};
}

void CFrameConverter::WriteRow(const YuvRow& row, const FrameTarget& out, int y) {
    std::uint8_t* const first = out.Row(0, y);
    switch (m_to) {
    case Layout::Yuy2:
        Pack422<0>(first, row.y, row.u, row.v, m_width / 2);
        return;
    case Layout::Uyvy:
        Pack422<1>(first, row.y, row.u, row.v, m_width / 2);
        return;
    case Layout::Iyu2:
        Interleave(first, row.u, row.y, row.v, m_width);
        return;
    case Layout::Rgb24:
        if (row.y != nullptr) {
            m_matrix.ToRgb({WorkRow(kBlue), WorkRow(kGreen), WorkRow(kRed)}, row.y, row.u, row.v, m_width);
        }
        Interleave(first, WorkRow(kBlue), WorkRow(kGreen), WorkRow(kRed), m_width);
        return;
    default:
        std::memcpy(first, row.y, BytesPerRow(m_to, 0, m_width));
        std::memcpy(out.Row(1, y), row.u, BytesPerRow(m_to, 1, m_width));
        std::memcpy(out.Row(2, y), row.v, BytesPerRow(m_to, 2, m_width));
    }
}

} // namespace host
