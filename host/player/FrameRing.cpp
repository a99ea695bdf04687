#include "host/player/FrameRing.h"

#include <algorithm>

namespace host {

namespace {
constexpr std::size_t kMostFrames = 1024;
}

CFrameRing::CFrameRing(std::size_t frameBytes, std::size_t mostBytes)
    : m_frameBytes(frameBytes)
    , m_capacity(std::clamp<std::size_t>(mostBytes / frameBytes, 2, kMostFrames))
    , m_slots(m_capacity) {}

std::uint8_t* CFrameRing::Put(std::uint64_t frame) {
    Slot& slot = m_slots[frame % m_capacity];
    slot.frame.reset();
    slot.bytes.resize(m_frameBytes);
    return slot.bytes.data();
}

const std::uint8_t* CFrameRing::Find(std::uint64_t frame) const {
    const Slot& slot = m_slots[frame % m_capacity];
    return slot.frame == frame ? slot.bytes.data() : nullptr;
}

} // namespace host
