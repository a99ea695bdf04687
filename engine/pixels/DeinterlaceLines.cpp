#include "engine/pixels/DeinterlaceLines.h"

#include "engine/pixels/FrameShape.h"
#include "engine/pixels/RowBlends.h"

#include <cstddef>
#include <cstring>

RowWork WorkOnRow(std::int32_t y, std::int32_t rows, bool interpolate, bool merge, bool keepOdd) {
    if (!interpolate || y < 1 || y + 1 >= rows) {
        return RowWork::Copy;
    }
    if (merge) {
        return RowWork::Blend;
    }
    return ((y & 1) != 0) == keepOdd ? RowWork::Copy : RowWork::Rebuild;
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
