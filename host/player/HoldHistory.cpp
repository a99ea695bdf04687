#include "host/player/HoldHistory.h"

#include <algorithm>

namespace host {

void CHoldHistory::Add(std::uint64_t frame, std::uint32_t count) {
    if (frame == m_counts.size()) {
        m_counts.push_back(count);
    }
}

std::int32_t CHoldHistory::CounterBefore(std::uint64_t frame, std::uint32_t threshold, std::int32_t holdFrames) const {
    const auto reach = static_cast<std::uint64_t>(holdFrames);
    std::int32_t counter = 0;
    for (std::uint64_t i = frame - std::min(frame, reach); i < frame; ++i) {
        (void)AdvanceHold(m_counts[i] > threshold, holdFrames, counter);
    }
    return counter;
}

HoldStep CHoldMirror::Before(std::int32_t wanted, std::int32_t holdFrames) {
    const bool holds = HoldDecides(wanted);
    if (m_known && holds == HoldDecides(m_counter)) {
        return HoldStep::None;
    }
    m_known = true;
    m_counter = holds ? holdFrames : 0;
    return holds ? HoldStep::Prime : HoldStep::Restart;
}

} // namespace host
