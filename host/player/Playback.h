// Which frame of the clip is to be seen.
#pragma once

#include <cstdint>
#include <optional>

namespace host {

// Plays the clip, or a range of it, over and over; can be paused and moved. The first frame is 0.
class CPlayback {
public:
    // `frames` where it is known beforehand.
    explicit CPlayback(std::optional<std::uint64_t> frames)
        : m_frames(frames) {}

    std::uint64_t Position() const { return m_position; }
    bool IsPaused() const { return m_paused; }
    bool IsLooping() const { return m_looping; }
    std::optional<std::uint64_t> Frames() const { return m_frames; }
    std::uint64_t In() const { return m_in; }
    std::optional<std::uint64_t> Out() const { return m_out; } // the last frame of the range; nothing: the clip's

    // The time of one frame is over: no matter while paused.
    void Advance();
    void TogglePause() { m_paused = !m_paused; }
    // Pauses, and goes this many frames on or back, within the clip.
    void Step(std::int64_t frames);
    // Goes to a frame, or to the last where there are not so many.
    void Jump(std::uint64_t frame);
    // The range begins or ends at the frame that is seen; a range that would be empty loses its other end. Setting an
    // end begins the looping.
    void MarkIn();
    void MarkOut();
    void ToggleLoop() { m_looping = !m_looping; }

    // The clip turned out to have this many frames, at least one.
    void EndAt(std::uint64_t frames);

private:
    std::uint64_t First() const { return m_looping ? m_in : 0; }

    std::optional<std::uint64_t> m_frames;
    std::uint64_t m_position = 0;
    std::uint64_t m_in = 0;
    std::optional<std::uint64_t> m_out;
    bool m_paused = false;
    bool m_looping = false;
    bool m_playedOn = false; // the position comes from playing: behind the end it goes to the beginning
};

} // namespace host
