#include "host/picture/ChromaRows.h"
#include "host/picture/FrameConvert.h"
#include "tests/host/MemoryStreams.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace host {
namespace {

// A frame of any layout that owns exactly the bytes that it needs, so that sanitizers see each byte too far.
struct OwnedFrame {
    Bytes bytes;
    FrameTarget target;

    OwnedFrame(Layout layout, int width, int height, unsigned seed = 0) {
        if (layout == Layout::Nv12 || layout == Layout::Planar420) {
            const int stride = LeastStride(layout, width);
            bytes = RandomBytes(DecodedBytes(layout, height, stride), seed);
            target = DecodedFrame(layout, width, height, stride, bytes.data());
        } else if (layout <= Layout::Gray) {
            bytes = RandomBytes(PlanarBytes(layout, width, height), seed);
            target = PlanarFrame(layout, width, height, bytes.data());
        } else {
            const int perPixel = layout == Layout::Rgb32                             ? 4
                                 : layout == Layout::Iyu2 || layout == Layout::Rgb24 ? 3
                                                                                     : 2;
            bytes = RandomBytes(std::size_t(width * height * perPixel), seed);
            target.stride[0] = -std::ptrdiff_t{width} * perPixel; // bottom row first
            target.plane[0] = bytes.data() + std::ptrdiff_t{width} * perPixel * (height - 1);
        }
        target.layout = layout;
        target.width = width;
        target.height = height;
    }
};

OwnedFrame Converted(const FrameView& in, Layout to, bool fieldChroma = false, bool fullRange = false) {
    OwnedFrame out(to, in.width, in.height);
    CFrameConverter(in.layout, to, in.width, in.height, fullRange).Convert(in, out.target, fieldChroma);
    return out;
}

// Layouts of equal chroma lose nothing on the way and back.
TEST(FrameConvert, LosslessRoundTrips) {
    constexpr struct {
        Layout from, through;
        bool evenOnly;
    } kCases[] = {
        {Layout::Planar422, Layout::Yuy2, true},  {Layout::Planar422, Layout::Uyvy, true},
        {Layout::Yuy2, Layout::Uyvy, true},       {Layout::Uyvy, Layout::Yuy2, true},
        {Layout::Planar444, Layout::Iyu2, false}, {Layout::Iyu2, Layout::Planar444, false},
        {Layout::Rgb24, Layout::Rgb24, false},
    };
    for (const auto& c : kCases) {
        for (int width = 1; width <= 70; width += width < 10 ? 1 : 17) {
            if (c.evenOnly && width % 2 != 0) {
                continue;
            }
            const OwnedFrame in(c.from, width, 5, static_cast<unsigned>(width));
            const OwnedFrame there = Converted(AsView(in.target), c.through);
            const OwnedFrame back = Converted(AsView(there.target), c.from);
            ASSERT_EQ(PictureOf(AsView(in.target)), PictureOf(AsView(back.target)))
                << "layouts " << int(c.from) << " " << int(c.through) << " width " << width;
        }
    }
}

TEST(FrameConvert, PacksBytesInTheirOrder) {
    OwnedFrame in(Layout::Planar422, 2, 1);
    in.bytes = {1, 2, 3, 4}; // Y Y U V
    in.target = PlanarFrame(Layout::Planar422, 2, 1, in.bytes.data());
    EXPECT_EQ(Converted(AsView(in.target), Layout::Yuy2).bytes, (Bytes{1, 3, 2, 4}));
    EXPECT_EQ(Converted(AsView(in.target), Layout::Uyvy).bytes, (Bytes{3, 1, 4, 2}));
    EXPECT_EQ(Converted(AsView(in.target), Layout::Iyu2).bytes, (Bytes{3, 1, 4, 3, 2, 4}));
}

TEST(FrameConvert, DropsTheFourthByteAndKeepsRowsInPlace) {
    const OwnedFrame in(Layout::Rgb32, 5, 4, 7);
    const OwnedFrame out = Converted(AsView(in.target), Layout::Rgb24);
    for (int y = 0; y < 4; ++y) {
        for (int i = 0; i < 15; ++i) {
            ASSERT_EQ(out.target.Row(0, y)[i], in.target.Row(0, y)[i / 3 * 4 + i % 3]);
        }
    }
}

// Where a chroma row lies between luma rows, and straight lines between the two nearest ones of its kind.
double ChromaAt(const Bytes& chroma, int lumaRow, bool fieldWise) {
    const int rows = static_cast<int>(chroma.size());
    const int field = fieldWise ? lumaRow % 2 : 0;
    const int step = fieldWise ? 2 : 1;
    const int own = fieldWise ? (rows - field + 1) / 2 : rows; // chroma rows of this kind
    const double line = fieldWise ? lumaRow / 2 : lumaRow;     // luma row within its kind
    // The chroma row j lies at luma position 2 j + offset.
    const double offset = !fieldWise ? 0.5 : field == 0 ? 0.25 : 0.75;
    const double at = std::clamp((line - offset) / 2, 0.0, own - 1.0);
    const int low = static_cast<int>(at);
    const int high = std::min(low + 1, own - 1);
    const double share = at - low;
    return chroma[std::size_t(low * step + field)] * (1 - share) + chroma[std::size_t(high * step + field)] * share;
}

TEST(FrameConvert, ChromaRowsLieWhereTheyWereSampled) {
    for (const Layout layout : {Layout::Planar420, Layout::Nv12}) {
        for (const bool fieldWise : {false, true}) {
            for (const int height :
                 {3, 4, 6, 8, 10, 11, 22}) { // at least two chroma rows, so that both fields have one
                OwnedFrame in(layout, 2, height, static_cast<unsigned>(height));
                Bytes u;
                for (int y = 0; y < (height + 1) / 2; ++y) {
                    u.push_back(in.target.Row(1, y)[0]);
                }
                const OwnedFrame out = Converted(AsView(in.target), Layout::Yuy2, fieldWise);
                for (int y = 0; y < height; ++y) {
                    ASSERT_EQ(out.target.Row(0, y)[1], std::floor(ChromaAt(u, y, fieldWise) + 0.5))
                        << "row " << y << " of " << height << (fieldWise ? " by fields" : " by frames");
                }
            }
        }
    }
}

// A ramp keeps its place, and what was 4:2:0 before comes back, but for rounding.
TEST(FrameConvert, ChromaRowsGoBackToTheirPlaces) {
    for (int kind = 0; kind < 4; ++kind) {
        const bool fieldWise = (kind & 1) != 0;
        const bool undo = (kind & 2) != 0;
        OwnedFrame ramp(Layout::Planar422, 2, 24);
        for (int y = 0; y < 24; ++y) {
            ramp.target.Row(1, y)[0] = static_cast<std::uint8_t>(10 * y);
        }
        OwnedFrame halved(Layout::Planar420, 2, 24);
        CFrameConverter(Layout::Planar422, Layout::Planar420, 2, 24, false, {}, undo)
            .Convert(AsView(ramp.target), halved.target, fieldWise);
        for (int y = 2; y < 10; ++y) {
            EXPECT_EQ(halved.target.Row(1, y)[0], 10 * (2 * y + 0.5)) << "row " << y << " of kind " << kind;
        }

        const OwnedFrame in(Layout::Planar420, 34, 24, 5);
        const OwnedFrame between = Converted(AsView(in.target), Layout::Yuy2, fieldWise);
        OwnedFrame back(Layout::Planar420, 34, 24);
        CFrameConverter(Layout::Yuy2, Layout::Planar420, 34, 24, false, {}, undo)
            .Convert(AsView(between.target), back.target, fieldWise);
        int worst = 0;
        for (std::size_t i = 0; i < in.bytes.size(); ++i) {
            worst = std::max(worst, std::abs(in.bytes[i] - back.bytes[i]));
        }
        EXPECT_EQ(worst <= 1, undo) << "kind " << kind << " differs by " << worst;
    }
}

// Every pair of layouts, every odd size: nothing is read or written outside (the sanitizers' part), every byte of the
// picture is written.
TEST(FrameConvert, AllPairsStayInside) {
    constexpr Layout kFrom[] = {Layout::Planar420, Layout::Planar422, Layout::Planar444, Layout::Gray,  Layout::Nv12,
                                Layout::Yuy2,      Layout::Uyvy,      Layout::Iyu2,      Layout::Rgb24, Layout::Rgb32};
    constexpr Layout kTo[] = {Layout::Yuy2,      Layout::Uyvy,      Layout::Iyu2,     Layout::Rgb24,
                              Layout::Planar420, Layout::Planar422, Layout::Planar444};
    const auto sharesChroma = [](Layout layout) { return layout == Layout::Yuy2 || layout == Layout::Uyvy; };
    for (const Layout from : kFrom) {
        for (const Layout to : kTo) {
            for (const int width : {1, 2, 3, 5, 8, 31, 34}) {
                for (const int height : {1, 2, 3, 7}) {
                    if (width % 2 != 0 && (sharesChroma(from) || sharesChroma(to))) {
                        continue;
                    }
                    const OwnedFrame in(from, width, height, 3);
                    OwnedFrame a(to, width, height);
                    OwnedFrame b(to, width, height);
                    std::fill(a.bytes.begin(), a.bytes.end(), std::uint8_t{0});
                    std::fill(b.bytes.begin(), b.bytes.end(), std::uint8_t{255});
                    CFrameConverter converter(from, to, width, height, false);
                    converter.Convert(AsView(in.target), a.target, true);
                    converter.Convert(AsView(in.target), b.target, true);
                    ASSERT_EQ(PictureOf(AsView(a.target)), PictureOf(AsView(b.target)))
                        << int(from) << " to " << int(to) << " at " << width << "x" << height;
                }
            }
        }
    }
}

// What every loop writes for this width, one after the other.
Bytes AllRows(const PixelRows& rows, int width) {
    const Bytes in = RandomBytes(std::size_t(4 * width), static_cast<unsigned>(width));
    Bytes out(std::size_t(36 * width));
    const auto from = [&](int at) { return in.data() + at * width; };
    int used = 0;
    const auto to = [&](int widths) { return out.data() + (used += widths) * width - widths * width; };
    for (const auto pack : {rows.packYuy2, rows.packUyvy, rows.interleave3}) {
        pack(to(4), from(0), from(2), from(3), width);
    }
    for (const auto takeApart : {rows.unpackYuy2, rows.unpackUyvy, rows.takeApart3, rows.takeApart4}) {
        RowOut const first = to(2);
        takeApart(first, to(1), to(1), from(0), width);
    }
    RowOut const evens = to(1);
    rows.takeApart2(evens, to(1), from(0), width);
    rows.mix(to(1), from(0), from(1), 5, width);
    rows.sumFour(to(1), {from(0), from(1), from(2), from(3)}, {-3, 15, 7, -3}, width);
    rows.widen(to(1), from(0), width);
    rows.narrow(to(1), from(0), width);
    rows.weigh(to(1), from(0), from(1), from(2), {132201, -53279, 25675, -3000000}, width);
    rows.weighTwo(to(1), from(0), from(1), {132201, -53279, 0, -3000000}, width);
    return out;
}

TEST(FrameConvert, EveryProcessorMakesTheSameBytes) {
    for (int width = 1; width < 200; ++width) {
        ASSERT_EQ(AllRows(PixelRowsHere(), width), AllRows(kPlainPixelRows, width)) << width;
    }
}

struct Color {
    int y, u, v, b, g, r;
};

void ExpectColors(std::span<const Color> colors, int height, bool fullRange) {
    for (const Color& color : colors) {
        OwnedFrame in(Layout::Planar444, 1, height);
        std::fill_n(in.target.plane[0], height, static_cast<std::uint8_t>(color.y));
        std::fill_n(in.target.plane[1], height, static_cast<std::uint8_t>(color.u));
        std::fill_n(in.target.plane[2], height, static_cast<std::uint8_t>(color.v));
        const OwnedFrame rgb = Converted(AsView(in.target), Layout::Rgb24, false, fullRange);
        const int want[] = {color.b, color.g, color.r};
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(rgb.target.Row(0, 0)[i], want[i], 1) << "luma " << color.y << " component " << i;
        }
        const OwnedFrame back = Converted(AsView(rgb.target), Layout::Planar444, false, fullRange);
        EXPECT_NEAR(back.target.Row(0, 0)[0], color.y, 1);
        EXPECT_NEAR(back.target.Row(1, 0)[0], color.u, 1);
        EXPECT_NEAR(back.target.Row(2, 0)[0], color.v, 1);
    }
}

// The colour bars of the two standards.
TEST(FrameConvert, ColorsOfTheStandards) {
    constexpr Color kSmall[] = {{16, 128, 128, 0, 0, 0},   {235, 128, 128, 255, 255, 255},
                                {81, 90, 240, 0, 0, 255},  {145, 54, 34, 0, 255, 0},
                                {41, 240, 110, 255, 0, 0}, {126, 128, 128, 128, 128, 128}};
    constexpr Color kLarge[] = {{63, 102, 240, 0, 0, 255}, {173, 42, 26, 0, 255, 0}, {32, 240, 118, 255, 0, 0}};
    constexpr Color kFull[] = {{0, 128, 128, 0, 0, 0}, {255, 128, 128, 255, 255, 255}, {76, 85, 255, 0, 0, 254}};
    ExpectColors(kSmall, 2, false);
    ExpectColors(kLarge, 720, false);
    ExpectColors(kFull, 2, true);
}

} // namespace
} // namespace host
