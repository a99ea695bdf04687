// The bytes of frames from an input that may be cut off or damaged.
#pragma once

#include "host/formats/ByteStream.h"

namespace host {

// The current frame. Memory is taken as its bytes arrive: a header may declare any size.
class CFrameBytes {
public:
    // The next frame of `bytes` bytes; returns how many of them there are. The bytes of the frame before are gone.
    std::size_t Read(CInputStream& input, std::size_t bytes);

    const std::uint8_t* Data() const { return m_bytes.data(); }

private:
    std::vector<std::uint8_t> m_bytes;
};

// Both throw DamagedError. `frame` is the number of the frame, counted from 0, that the damage is in or before.
// For an input that ends inside that frame, `got` of whose `wanted` bytes are there.
[[noreturn]] void ThrowCutOff(const CInputStream& input, std::uint64_t frame, std::uint64_t got, std::uint64_t wanted);
// For anything else that is wrong at this byte; `why` ends without a full stop.
[[noreturn]] void ThrowDamaged(const CInputStream& input, std::uint64_t byte, std::uint64_t frame,
                               const std::string& why);

} // namespace host
