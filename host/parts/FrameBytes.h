// The bytes of frames from an input that may be cut off or damaged.
#pragma once

#include "host/parts/ByteStream.h"

namespace host {

// Both throw DamagedError. `frame` is the number of the frame, counted from 0, that the damage is in or before.
// For an input that ends inside that frame, `got` of whose `wanted` bytes are there.
[[noreturn]] void ThrowCutOff(const CInputStream& input, std::uint64_t frame, std::uint64_t got, std::uint64_t wanted);
// For anything else that is wrong at this byte; `why` ends without a full stop.
[[noreturn]] void ThrowDamaged(const CInputStream& input, std::uint64_t byte, std::uint64_t frame,
                               const std::string& why);

} // namespace host
