// All of the live window that needs no window: what its keys and the mouse do, and what is where.
#pragma once

#include "host/player/LiveLayout.h"
#include "host/player/Playback.h"
#include "host/player/RegionDrag.h"
#include "host/player/Viewport.h"

#include <cstdint>
#include <optional>

namespace host {

enum class LiveCommand {
    Pause,
    StepBack,
    StepForward,
    SecondBack,
    SecondForward,
    First,
    Last,
    MarkIn,
    MarkOut,
    Loop,
    WholePicture,
    Zoom1,
    Zoom2,
    Zoom4,
    Split,
    Region,
    Keys,
    Close,
};

// What a press of the mouse would take hold of.
enum class LiveHold { None, Slider, Divider, Region, Picture };

class CLiveModel {
public:
    // The rate makes a second's steps.
    CLiveModel(const PictureShape& shape, double framesPerSecond, std::optional<std::uint64_t> frames);

    CPlayback& Playback() { return m_playback; }
    const CPlayback& Playback() const { return m_playback; }
    void Do(LiveCommand command);

    // The window's size, and the height of its lines of text.
    void SetSize(int width, int height, int line);
    const LiveLayout& Layout() const { return m_layout; }
    int Zoom() const { return m_viewport.Zoom(); }
    // Both show the same part of the picture; split, they are one.
    View ViewOf(int picture) const { return m_viewport.In(m_layout.room[picture]); }
    bool IsSplit() const { return m_split; }
    int DividerX() const; // of the split picture: "before" is left of it
    bool ShowsKeys() const { return m_keys; }
    // Of the slider, while nobody knows how many there are.
    void SetFramesSeen(std::uint64_t frames) { m_framesSeen = frames; }
    std::uint64_t SliderFrames() const { return m_playback.Frames().value_or(m_framesSeen); }

    // The mouse, in the window's pixels. `pan`: whatever is there, the picture is moved.
    void Press(int x, int y, bool pan);
    void Move(int x, int y);
    void Release() { m_hold = LiveHold::None; }
    bool IsPressed() const { return m_hold != LiveHold::None; }
    void Pan(int dx, int dy) { m_viewport.Pan(dx, dy, m_layout.room[0]); }
    LiveHold HoldAt(int x, int y) const;
    unsigned GripAt(int x, int y) const; // of the region

    // The region as it is to be drawn; what the transform has is ignored while the user moves it.
    const LiveRegion& Region() const { return m_region; }
    void SetRegion(const LiveRegion& region);
    // What the user has made of it since this was last asked.
    std::optional<LiveRegion> TakeRegion();

private:
    void SwitchRegion();
    void PutDivider(int x);

    PictureShape m_shape;
    CPlayback m_playback;
    CViewport m_viewport;
    std::int64_t m_second;
    std::uint64_t m_framesSeen = 1;
    int m_width = 0;
    int m_height = 0;
    int m_line = 0;
    LiveLayout m_layout;
    bool m_split = false;
    bool m_keys = false;
    double m_divider = 0.5; // of the picture's width as it is shown
    LiveRegion m_region;
    bool m_regionMoved = false;
    // the mouse, from its press on
    LiveHold m_hold = LiveHold::None;
    unsigned m_grip = kGripNone;
    int m_x = 0;
    int m_y = 0;
    Area m_pressedArea;
};

} // namespace host
