#include "host/live/LiveStage.h"

namespace host {

namespace {
constexpr std::uint32_t kPatience = 50; // milliseconds of reading without a look at the user
}

bool CLiveStage::Update(double framesPerSecond, bool paint) {
    if (!Reach()) {
        m_window.ShowStatus(SeekText(m_player.Next(), m_model.Playback()));
        m_sought = true;
        return false;
    }
    UpdateRegion();
    if (UpdateFrame() || paint || m_sought) {
        m_window.Show(m_player.Before(), m_player.After(), m_frame, framesPerSecond);
        m_sought = false;
    }
    return true;
}

// Where the clip turns out to end before, another frame is wanted then.
bool CLiveStage::Reach() {
    CPlayback& playback = m_model.Playback();
    const std::uint64_t wanted = playback.Position();
    const bool reached = m_player.Approach(wanted, kPatience);
    if (m_player.Frames()) {
        playback.EndAt(*m_player.Frames());
    }
    m_model.SetFramesSeen(m_player.Next());
    return reached && playback.Position() == wanted;
}

void CLiveStage::UpdateRegion() {
    if (const auto region = m_model.TakeRegion()) {
        m_player.PutRegion(*region);
        m_untold = true;
    }
    if (m_untold && !m_model.IsPressed()) {
        m_player.TellRegion();
        m_untold = false;
    }
    m_model.SetRegion(m_player.Region());
}

// True when the frame went through the transform.
bool CLiveStage::UpdateFrame() {
    const std::uint64_t position = m_model.Playback().Position();
    if (m_shown && m_frame.number == position && !m_player.IsStale()) {
        return false;
    }
    m_frame = m_player.Process(position);
    m_shown = true;
    return true;
}

} // namespace host
