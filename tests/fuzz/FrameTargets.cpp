// The engine: frames of any shape, settings of any number, in blocks that are exactly as large as the frames.
#include "engine/detector/AutomaticFrame.h"
#include "engine/detector/InterlaceDetector.h"
#include "engine/pixels/FrameRegion.h"
#include "engine/pixels/ProtectedArea.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/GuardedBlocks.h"
#include "tests/support/OraclePixels.h"

namespace {

constexpr std::int32_t kDepths[] = {8, 16, 24, 32};
constexpr std::size_t kMostBytes = 128 * 4 * 40;

// A frame's bytes: on the heap, where a sanitizer sees who reads or writes beside them, or before a closed page, which
// also stops the stores that no sanitizer looks at.
class Block {
public:
    Block(int number, std::size_t bytes, bool guarded)
        : m_heap(guarded ? 0 : bytes)
        , m_bytes(guarded ? Guarded().AtEnd(number, bytes) : m_heap.data(), bytes) {}

    std::span<std::uint8_t> Bytes() const { return m_bytes; }

private:
    static const GuardedBlocks& Guarded() {
        static const GuardedBlocks blocks(2, kMostBytes);
        return blocks;
    }

    FuzzBytes m_heap;
    std::span<std::uint8_t> m_bytes;
};

Region ReadRegion(FuzzInput& input, const FrameShape& shape) {
    const std::int32_t left = input.Edge(shape.width), top = input.Edge(shape.height);
    return {left, top, input.Edge(shape.width), input.Edge(shape.height)};
}

FrameShape ReadShape(FuzzInput& input, std::int32_t mostWidth, std::int32_t mostHeight) {
    const std::int32_t bits = kDepths[input.Below(4)], width = 1 + input.Below(mostWidth);
    return {width, 1 + input.Below(mostHeight), bits, StrideBytes(bits, width), input.Flag()};
}

// The rest of the input over and over; steps of one row between bright and dark where it has fewer bytes than a row.
void FillFrom(std::span<const std::uint8_t> pattern, std::span<std::uint8_t> bytes) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = pattern.empty() ? std::uint8_t(i * 37) : pattern[i % pattern.size()];
    }
}

// A frame in automatic mode and alone, against the rules written out.
void RunFrame(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    const FrameShape shape = ReadShape(input, 128, 40);
    OracleOptions rules{input.Flag(), input.Flag(), input.Flag(), input.Flag()};
    const Region region = ReadRegion(input, shape);
    rules.left = region.left, rules.top = region.top, rules.right = region.right, rules.bottom = region.bottom;
    const Stores stores = input.Flag() ? Stores::Streaming : Stores::Ordinary;
    const bool automatic = input.Flag();
    std::int32_t counter = input.Below(5) - 1, expectedCounter = counter;
    const auto sensitivity = input.Any<double>();
    const auto size = static_cast<std::size_t>(shape.Bytes());
    const Block in(0, size, input.Flag()), out(1, size, input.Flag());
    FillFrom(input.Rest(), in.Bytes());
    std::fill(out.Bytes().begin(), out.Bytes().end(), std::uint8_t{0xA5});

    const ProcessedArea area = rules.useRegion ? PlaceRegion(shape, region) : WholeFrame(shape);
    const FramePlan plan{area, rules.useRegion, rules.averaging, rules.merge, !rules.even};
    const FramePair frames{shape, in.Bytes().data(), out.Bytes().data()};
    const FuzzBytes before(in.Bytes().begin(), in.Bytes().end());
    FuzzBytes expected(out.Bytes().begin(), out.Bytes().end());
    const auto threshold = InterlaceThreshold(shape.width, shape.height, sensitivity);
    bool combined = true;
    if (automatic) {
        const auto found = ScanFrame(before.data(), shape.width, shape.height, shape.bits, nullptr, sensitivity);
        combined = AdvanceHold(found.interlaced, 3, expectedCounter);
        const CombSearch search(frames.input, shape, FrameComber(shape.width, shape.bits, nullptr), threshold);
        Require(WriteAutomaticFrame(
                    frames, search, [&] { return plan; }, stores, 3, counter) == combined,
                "verdict");
    } else {
        WriteFrame(frames, plan, stores);
    }
    if (combined) {
        OracleDeinterlace({shape.width, shape.height, shape.bits, shape.topDown}, rules, before.data(),
                          expected.data());
    } else {
        expected = before;
    }
    Require(counter == expectedCounter, "the hold");
    Require(std::ranges::equal(before, in.Bytes()), "the input is only read");
    Require(std::ranges::equal(expected, out.Bytes()), "the output follows the rules");
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

void RunProtected(std::span<const std::uint8_t> bytes) {
    FuzzInput input(bytes);
    const FrameShape shape = ReadShape(input, 40, 12);
    Region rectangle = ReadRegion(input, shape);
    const std::int32_t top = input.Edge(shape.height);
    const auto size = static_cast<std::size_t>(shape.Bytes());
    const Block output(0, size, input.Flag()), saved(1, size, input.Flag());
    std::fill(output.Bytes().begin(), output.Bytes().end(), std::uint8_t{0xEE});
    for (std::size_t i = 0; i < size; ++i) {
        saved.Bytes()[i] = std::uint8_t(i % 0xED);
    }
    RestoreProtectedArea(output.Bytes().data(), saved.Bytes().data(), shape, input.Flag() && shape.bits == 16, top,
                         rectangle);
    for (std::size_t i = 0; i < size; ++i) {
        Require(output.Bytes()[i] == 0xEE || output.Bytes()[i] == saved.Bytes()[i], "what is put back was there");
    }
}

std::vector<FuzzBytes> NumberSeeds() {
    std::vector<FuzzBytes> seeds;
    for (std::uint8_t first = 0; first < 8; ++first) {
        FuzzBytes& seed = seeds.emplace_back(60);
        for (std::size_t i = 0; i < seed.size(); ++i) {
            seed[i] = std::uint8_t(first + i * (2 * first + 5));
        }
    }
    return seeds;
}

} // namespace

std::vector<FuzzTarget> FrameTargets() {
    return {{"frame", &RunFrame, &NumberSeeds},
            {"region", &RunRegion, &NumberSeeds},
            {"protected", &RunProtected, &NumberSeeds}};
}
