#include "engine/pixels/PlainFrame.h"

#include "engine/kernels/RowKernels.h"

#include <cstddef>
#include <cstring>

namespace {

// As BlendLines121.
void AverageLines(std::uint8_t* destination, const std::uint8_t* above, const std::uint8_t* below,
                  std::int32_t byteCount) {
    if (byteCount > 0) {
        AverageBytes(destination, above, below, static_cast<std::size_t>(byteCount));
    }
}

} // namespace

RowWork WorkOnRow(std::int32_t y, std::int32_t rows, bool interpolate, bool merge, bool keepOdd) {
    if (!interpolate || y < 1 || y + 1 >= rows) {
        return RowWork::Copy;
    }
    if (merge) {
        return RowWork::Blend;
    }
    return ((y & 1) != 0) == keepOdd ? RowWork::Copy : RowWork::Rebuild;
}

void BlendLines121(std::uint8_t* destination, const std::uint8_t* above, const std::uint8_t* current,
                   const std::uint8_t* below, std::int32_t byteCount) {
    if (byteCount > 0) {
        BlendBytes(destination, above, current, below, static_cast<std::size_t>(byteCount));
    }
}

void DeinterlaceLines(const std::uint8_t* source, std::uint8_t* destination, std::int32_t keepOdd,
                      std::int32_t interpolationAllowed, std::int32_t merge, std::int32_t width, std::int32_t rows,
                      std::int32_t bits, std::int32_t stride, std::int32_t regionFlag) {
    const std::int32_t copyBytes = RowBytes(width, bits);
    const std::int32_t combineBytes = regionFlag ? copyBytes : stride;
    if (copyBytes < 1) {
        return;
    }
    for (std::int32_t y = 0; y < rows; ++y, source += stride, destination += stride) {
        switch (WorkOnRow(y, rows, interpolationAllowed != 0, merge != 0, keepOdd == 1)) {
        case RowWork::Copy:
            std::memmove(destination, source, static_cast<std::size_t>(copyBytes));
            break;
        case RowWork::Blend:
            BlendLines121(destination, source - stride, source, source + stride, combineBytes);
            break;
        case RowWork::Rebuild:
            AverageLines(destination, source - stride, source + stride, combineBytes);
            break;
        }
    }
}

void WriteFrameInOrder(const FramePair& frames, const FramePlan& plan) {
    const FrameShape& shape = frames.shape;
    if (plan.region || plan.area.m_lCropHeight == 0) {
        std::memmove(frames.output, frames.input, static_cast<std::size_t>(shape.Bytes()));
    }
    DeinterlaceLines(frames.input + plan.area.offset, frames.output + plan.area.offset, plan.keepOdd, plan.interpolate,
                     plan.merge, plan.area.m_lCropWidth, plan.area.m_lCropHeight, shape.bits, shape.stride,
                     plan.region);
}
