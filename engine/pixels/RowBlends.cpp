#include "engine/pixels/RowBlends.h"

#include "engine/kernels/RowKernels.h"

namespace {

bool Overlaps(const std::uint8_t* a, const std::uint8_t* b, std::size_t bytes) {
    const auto first = reinterpret_cast<std::uintptr_t>(a);
    const auto second = reinterpret_cast<std::uintptr_t>(b);
    return first < second + bytes && second < first + bytes;
}

// Vector kernels read ahead of what they write; where that would show, the reference does the row.
const RowWriters& WritersFor(bool overlap) {
    return (overlap ? AllRowKernels().front() : ActiveRowKernels()).cached;
}

} // namespace

void BlendLines121(std::uint8_t* destination, const std::uint8_t* above, const std::uint8_t* current,
                   const std::uint8_t* below, std::int32_t byteCount) {
    if (byteCount < 1) {
        return;
    }
    const auto bytes = static_cast<std::size_t>(byteCount);
    const bool overlap = Overlaps(destination, above, bytes) || Overlaps(destination, current, bytes) ||
                         Overlaps(destination, below, bytes);
    WritersFor(overlap).blend121(destination, above, current, below, bytes);
}

void AverageLines(std::uint8_t* destination, const std::uint8_t* above, const std::uint8_t* below,
                  std::int32_t byteCount) {
    if (byteCount < 1) {
        return;
    }
    const auto bytes = static_cast<std::size_t>(byteCount);
    const bool overlap = Overlaps(destination, above, bytes) || Overlaps(destination, below, bytes);
    WritersFor(overlap).average(destination, above, below, bytes);
}
