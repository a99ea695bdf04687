// The engine: frames of any shape and settings of any number, against the rules written out.
#include "engine/detector/AutomaticFrame.h"
#include "engine/detector/InterlaceDetector.h"
#include "engine/pixels/FrameRegion.h"
#include "engine/pixels/ProtectedArea.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/OraclePixels.h"
#include "tests/support/RandomBytes.h"

namespace {

constexpr std::int32_t kDepths[] = {8, 16, 24, 32};

Region ReadRegion(FuzzInput& input, const FrameShape& shape) {
    const std::int32_t left = input.Edge(shape.width), top = input.Edge(shape.height);
    return {left, top, input.Edge(shape.width), input.Edge(shape.height)};
}

FrameShape ReadShape(FuzzInput& input, std::int32_t mostWidth, std::int32_t mostHeight) {
    const std::int32_t bits = kDepths[input.Below(4)], width = 1 + input.Below(mostWidth);
    return {width, 1 + input.Below(mostHeight), bits, StrideBytes(bits, width), input.Flag()};
}

// Now and then rows so long that they are blended strip by strip, and blocks that are copied in halves.
FrameShape ReadFrameShape(FuzzInput& input) {
    FrameShape shape = ReadShape(input, 128, 40);
    if (input.Below(16) == 0) {
        shape.width = 3000 + 48 * shape.width;
        shape.height = (shape.height + 3) / 4;
        shape.stride = StrideBytes(shape.bits, shape.width);
    }
    return shape;
}

// The rest of the input over and over, or rows alike but for some that are combed.
void FillFrame(FuzzInput& input, const FrameShape& shape, std::uint8_t* frame) {
    const bool alike = input.Flag();
    const std::int32_t from = input.Below(shape.height), to = input.Below(shape.height + 1);
    const auto pattern = input.Rest();
    for (std::int32_t i = 0; i < shape.Bytes(); ++i) {
        const auto at = static_cast<std::size_t>(alike ? i % shape.stride : i);
        const std::int32_t y = i / shape.stride;
        const bool inverted = alike && y >= from && y < to && y % 2;
        frame[i] = std::uint8_t((pattern.empty() ? at * 37 : pattern[at % pattern.size()]) ^ (inverted ? 0x80 : 0));
    }
}

// One whose threshold lies just below or above the count, or any.
double ReadSensitivity(FuzzInput& input, const FrameShape& shape, const std::uint8_t* frame) {
    const double count = ScanFrame(frame, shape.width, shape.height, shape.bits, nullptr, 1).count;
    const int kind = input.Below(4);
    return kind == 0 ? input.Any<double>() : (count + kind - 1.5) / std::max((shape.height - 3) * shape.width / 16, 1);
}

// A frame in automatic mode and alone, against the rules written out. Input and output lie in one block, whichever
// first and at any place in a cache line: apart, one after the other, overlapping, or one and the same.
void RunFrame(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    const FrameShape shape = ReadFrameShape(input);
    OracleOptions rules{input.Flag(), input.Flag(), input.Flag(), input.Flag()};
    const Region region = ReadRegion(input, shape);
    rules.left = region.left, rules.top = region.top, rules.right = region.right, rules.bottom = region.bottom;
    const Stores stores = input.Flag() ? Stores::Streaming : Stores::Ordinary;
    const bool automatic = input.Flag(), outputFirst = input.Flag();
    std::int32_t counter = input.Below(5) - 1, expectedCounter = counter;

    const std::int32_t distances[] = {0, shape.stride, shape.Bytes() - (shape.height > 1),
                                      shape.Bytes() + input.Below(64)};
    const std::int32_t distance = distances[std::min(input.Below(16), 3)], begin = input.Below(64);
    const std::int32_t in = begin + (outputFirst ? distance : 0), out = begin + (outputFirst ? 0 : distance);
    const std::int32_t behind = input.Flag() ? 64 : 0; // or nothing, where a sanitizer sees what is read there
    FuzzBytes block(static_cast<std::size_t>(begin + distance + shape.Bytes() + behind), 0xA5);
    std::uint8_t* const got = block.data();
    FillFrame(input, shape, got + in);
    const double sensitivity = ReadSensitivity(input, shape, got + in);
    FuzzBytes expected = block;

    const ProcessedArea area = rules.useRegion ? PlaceRegion(shape, region) : WholeFrame(shape);
    const FramePlan plan{area, rules.useRegion, rules.averaging, rules.merge, !rules.even};
    const FramePair frames{shape, got + in, got + out};
    const auto found = ScanFrame(got + in, shape.width, shape.height, shape.bits, nullptr, sensitivity);
    const bool combined = !automatic || AdvanceHold(found.interlaced, 3, expectedCounter);
    if (automatic) {
        int plansRead = 0;
        const auto readPlan = [&] { return ++plansRead, plan; };
        const CombSearch search(frames.input, shape, FrameComber(shape.width, shape.bits, nullptr), found.threshold);
        Require(WriteAutomaticFrame(frames, search, readPlan, stores, 3, counter) == combined, "verdict");
        Require(plansRead == (combined ? 1 : 0), "settings are read once, and only where they are needed");
    } else {
        WriteFrame(frames, plan, stores);
    }
    if (combined) {
        OracleDeinterlace({shape.width, shape.height, shape.bits, shape.topDown}, rules, expected.data() + in,
                          expected.data() + out);
    } else {
        std::memmove(expected.data() + out, expected.data() + in, static_cast<std::size_t>(shape.Bytes()));
    }
    Require(counter == expectedCounter, "the hold");
    Require(expected == block, "the output follows the rules, and nothing else is written");
}

// Shapes too large to make: refused, or the area lies within them.
void RunRegion(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    const std::int32_t depths[] = {1, 4, 8, 16, 24, 32, std::numeric_limits<std::int32_t>::max(), -8};
    const std::int32_t bits = depths[input.Below(8)];
    const auto width = input.Any<std::int32_t>() >> input.Below(31),
               height = input.Any<std::int32_t>() >> input.Below(31);
    const FrameShape shape{width, height, bits, StrideBytes(bits, width), input.Flag()};
    constexpr std::int64_t kLimit = std::numeric_limits<std::int32_t>::max();
    const bool fits = width > 0 && height > 0 && bits > 0 && std::int64_t{bits} * width <= kLimit &&
                      OracleFrame{width, height, bits}.Bytes() <= kLimit;
    Require(fits == shape.IsProcessable(), "processable");
    const Region region = ReadRegion(input, shape);
    const ProcessedArea area = fits ? PlaceRegion(shape, region) : ProcessedArea{};
    if (area.m_lCropHeight == 0) {
        return;
    }
    Require(area.offset >= 0 && area.m_lCropWidth > 0 && area.m_lCropHeight > 0, "an area");
    Require(area.offset % shape.stride + std::int64_t{area.m_lCropWidth} * bits / 8 <= shape.stride, "its columns");
    Require(area.offset / shape.stride + std::int64_t{area.m_lCropHeight} <= height, "its rows");
}

// The literal rule in 64 bits, asked for one byte: is it in one of the rows that are copied?
struct Walk {
    std::int64_t start, length, rows, stride;

    bool Covers(std::int64_t byte) const {
        if (length <= 0 || rows <= 0 || byte < start) {
            return false;
        }
        const std::int64_t row = std::min((byte - start) / stride, rows - 1); // the last that starts before it
        return byte < start + row * stride + length;
    }
};

Walk WalkOf(const FrameShape& shape, bool packed422, std::int64_t protectedTop, const Region& r) {
    const std::int64_t left = r.left, top = r.top, right = std::min(r.right, shape.width),
                       bottom = std::min(r.bottom, shape.height), stride = shape.stride;
    if (r.left > r.right || r.top > r.bottom) {
        return {};
    }
    if (packed422) {
        return {(top * stride + left) * 2, (right - left) * 2, bottom - (bottom - top) / 2 - top, stride};
    }
    const std::int64_t first = shape.topDown ? protectedTop : shape.height - bottom;
    return {((left * shape.bits) >> 3) + stride * first, (shape.bits * (right - left)) >> 3, bottom - first, stride};
}

void RunProtected(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    const FrameShape shape = ReadShape(input, 40, 12);
    const Region before = ReadRegion(input, shape);
    const std::int32_t top = input.Edge(shape.height);
    const bool packed422 = input.Flag() && shape.bits == 16;
    const auto size = static_cast<std::size_t>(shape.Bytes());
    FuzzBytes output(size, 0xEE), saved(size);
    for (std::size_t i = 0; i < size; ++i) {
        saved[i] = std::uint8_t(i % 0xED);
    }
    Region after = before;
    RestoreProtectedArea(output.data(), saved.data(), shape, packed422, top, after);
    const Walk walk = WalkOf(shape, packed422, top, before);
    for (std::size_t i = 0; i < size; ++i) {
        Require(output[i] == (walk.Covers(std::int64_t(i)) ? saved[i] : 0xEE), "the walk's bytes alone");
    }
    const bool inverted = before.left > before.right || before.top > before.bottom;
    Require(after.right == (inverted ? before.right : std::min(before.right, shape.width)) &&
                after.bottom == (inverted ? before.bottom : std::min(before.bottom, shape.height)) &&
                after.left == before.left && after.top == before.top,
            "the rectangle is cut");
}

std::vector<FuzzBytes> NumberSeeds() {
    RandomBytes random(TestSeed());
    std::vector<FuzzBytes> seeds(500, FuzzBytes(150));
    for (FuzzBytes& seed : seeds) {
        random.Fill(seed);
    }
    return seeds;
}

} // namespace

std::vector<FuzzTarget> FrameTargets() {
    return {{"frame", &RunFrame, &NumberSeeds},
            {"region", &RunRegion, &NumberSeeds},
            {"protected", &RunProtected, &NumberSeeds}};
}
