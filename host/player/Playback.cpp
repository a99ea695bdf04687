#include "host/player/Playback.h"

#include <algorithm>

namespace host {

void CPlayback::Advance() {
    if (m_paused) {
        return;
    }
    const bool atOut = m_looping && m_out && m_position >= *m_out;
    const bool atEnd = m_frames && m_position + 1 >= *m_frames;
    m_position = atOut || atEnd ? First() : m_position + 1;
    m_playedOn = true;
}

void CPlayback::Step(std::int64_t frames) {
    m_paused = true;
    const auto back = static_cast<std::uint64_t>(-frames);
    Jump(frames >= 0 ? m_position + static_cast<std::uint64_t>(frames) : m_position - std::min(m_position, back));
}

void CPlayback::Jump(std::uint64_t frame) {
    m_position = m_frames ? std::min(frame, *m_frames - 1) : frame;
    m_playedOn = false;
}

void CPlayback::MarkIn() {
    m_in = m_position;
    m_looping = true;
    if (m_out && *m_out < m_in) {
        m_out.reset();
    }
}

void CPlayback::MarkOut() {
    m_out = m_position;
    m_looping = true;
    if (m_in > *m_out) {
        m_in = 0;
    }
}

void CPlayback::EndAt(std::uint64_t frames) {
    m_frames = frames;
    m_in = std::min(m_in, frames - 1);
    if (m_position >= frames) {
        m_position = m_playedOn ? First() : frames - 1;
    }
}

} // namespace host
