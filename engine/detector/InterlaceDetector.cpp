#include "engine/detector/InterlaceDetector.h"

#include "engine/detector/CombSearch.h"
#include "engine/pixels/FrameShape.h"

namespace {

FrameShape ShapeOf(std::int32_t width, std::int32_t height, std::int32_t bits) {
    return {width, height, bits, StrideBytes(bits, width)};
}

} // namespace

std::uint32_t InterlaceThreshold(std::int32_t width, std::int32_t height, double sensitivity) {
    const std::int32_t area = FrameBytes(static_cast<std::int32_t>(static_cast<std::uint32_t>(height) - 3u), width);
    const std::int32_t share = area / 16; // rounded down
    const double threshold = share * sensitivity;
    constexpr double kLimit = 9223372036854775808.0; // 2 to the power of 63
    if (!(threshold > -kLimit && threshold < kLimit)) {
        return 0;
    }
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(threshold));
}

CombScan ScanFrame(const std::uint8_t* frame, std::int32_t width, std::int32_t height, std::int32_t bits,
                   const ColorEntry* colorTable, double sensitivity) {
    const FrameComber comber(width, bits, colorTable);
    const std::uint32_t threshold = InterlaceThreshold(width, height, sensitivity);
    CombSearch search(frame, ShapeOf(width, height, bits), comber, threshold);
    while (!search.IsComplete()) {
        search.Step();
    }
    return {search.Count(), threshold, search.IsInterlaced()};
}

std::int32_t IsFrameInterlaced(const std::uint8_t* frame, std::int32_t width, std::int32_t height, std::int32_t bits,
                               const ColorEntry* colorTable, double sensitivity) {
    const FrameComber comber(width, bits, colorTable);
    CombSearch search(frame, ShapeOf(width, height, bits), comber, InterlaceThreshold(width, height, sensitivity));
    return search.Settle() ? 1 : 0;
}
