#pragma once

#include "host/parts/ByteStream.h"

namespace host {

// For an input that ends inside frame `frame` (counted from 0), `got` of whose `wanted` bytes were read last.
[[noreturn]] void ThrowTruncated(const CInputStream& input, std::uint64_t frame, std::uint64_t got,
                                 std::uint64_t wanted);

} // namespace host
