#include "host/player/LiveModel.h"

#include "host/player/CombScale.h"

#include <algorithm>
#include <cmath>

namespace host {

CLiveModel::CLiveModel(const PictureShape& shape, double framesPerSecond, std::optional<std::uint64_t> frames)
    : m_shape(shape)
    , m_playback(frames)
    , m_viewport(shape)
    , m_second(std::max<std::int64_t>(1, std::llround(framesPerSecond))) {}

void CLiveModel::Do(LiveCommand command) {
    switch (command) {
    case LiveCommand::Pause:
        return m_playback.TogglePause();
    case LiveCommand::StepBack:
        return m_playback.Step(-1);
    case LiveCommand::StepForward:
        return m_playback.Step(1);
    case LiveCommand::SecondBack:
        return m_playback.Step(-m_second);
    case LiveCommand::SecondForward:
        return m_playback.Step(m_second);
    case LiveCommand::First:
        return m_playback.Jump(0);
    case LiveCommand::Last:
        return m_playback.Jump(UINT64_MAX);
    case LiveCommand::MarkIn:
        return m_playback.MarkIn();
    case LiveCommand::MarkOut:
        return m_playback.MarkOut();
    case LiveCommand::Loop:
        return m_playback.ToggleLoop();
    case LiveCommand::WholePicture:
        return m_viewport.SetZoom(0);
    case LiveCommand::Zoom1:
        return m_viewport.SetZoom(1);
    case LiveCommand::Zoom2:
        return m_viewport.SetZoom(2);
    case LiveCommand::Zoom4:
        return m_viewport.SetZoom(4);
    case LiveCommand::Split:
        m_split = !m_split;
        return SetSize(m_width, m_height, m_line);
    case LiveCommand::Region:
        return SwitchRegion();
    case LiveCommand::Keys:
        m_keys = !m_keys;
        return;
    case LiveCommand::Close:
        m_keys = false;
        return;
    }
}

// A region that was never set is a dot in a corner: then it begins as the middle of the picture.
void CLiveModel::SwitchRegion() {
    Area& area = m_region.area;
    m_region.enabled = !m_region.enabled;
    m_regionMoved = true;
    if (m_region.enabled && (area.right - area.left < 2 || area.bottom - area.top < 2)) {
        const int left = m_shape.width / 4;
        const int top = m_shape.height / 4;
        area = {left, top, std::max(m_shape.width - left, left + 1), std::max(m_shape.height - top, top + 1)};
    }
}

void CLiveModel::SetSize(int width, int height, int line) {
    m_width = width;
    m_height = height;
    m_line = line;
    m_layout = PlaceLive(width, height, line, m_split);
}

int CLiveModel::DividerX() const {
    const Box shown = ViewOf(0).shown;
    return shown.x + static_cast<int>(std::lround(m_divider * shown.width));
}

void CLiveModel::PutDivider(int x) {
    const Box shown = ViewOf(0).shown;
    m_divider = std::clamp(static_cast<double>(x - shown.x) / std::max(shown.width, 1), 0.0, 1.0);
}

unsigned CLiveModel::GripAt(int x, int y) const {
    const View view = ViewOf(0);
    const bool reachable = m_region.enabled && !view.IsEmpty() && m_layout.room[0].Contains(x, y);
    return reachable ? host::GripAt(m_region.area, view, x, y, m_line / 3) : static_cast<unsigned>(kGripNone);
}

LiveHold CLiveModel::HoldAt(int x, int y) const {
    if (m_layout.slider.Contains(x, y)) {
        return LiveHold::Slider;
    }
    if (!m_layout.room[0].Contains(x, y) && !m_layout.room[1].Contains(x, y)) {
        return LiveHold::None;
    }
    if (m_split && std::abs(x - DividerX()) <= m_line / 3) {
        return LiveHold::Divider;
    }
    return GripAt(x, y) != kGripNone ? LiveHold::Region : LiveHold::Picture;
}

void CLiveModel::Press(int x, int y, bool pan) {
    m_hold = pan ? LiveHold::Picture : HoldAt(x, y);
    m_grip = GripAt(x, y);
    m_x = x;
    m_y = y;
    m_pressedArea = m_region.area;
    if (m_hold == LiveHold::Slider) {
        Move(x, y);
    }
}

void CLiveModel::Move(int x, int y) {
    const View view = ViewOf(0);
    switch (m_hold) {
    case LiveHold::None:
        return;
    case LiveHold::Slider:
        return m_playback.Jump(FrameAtPlace(x - m_layout.slider.x, SliderFrames(), m_layout.slider.width));
    case LiveHold::Divider:
        return PutDivider(x);
    case LiveHold::Region:
        m_region.area = Dragged(m_pressedArea, m_grip, view.PictureX(x) - view.PictureX(m_x),
                                view.PictureY(y) - view.PictureY(m_y), m_shape.width, m_shape.height);
        m_regionMoved = true;
        return;
    case LiveHold::Picture:
        Pan(m_x - x, m_y - y);
        m_x = x;
        m_y = y;
        return;
    }
}

void CLiveModel::SetRegion(const LiveRegion& region) {
    if (m_hold != LiveHold::Region && !m_regionMoved) {
        m_region = region;
    }
}

std::optional<LiveRegion> CLiveModel::TakeRegion() {
    if (!m_regionMoved) {
        return std::nullopt;
    }
    m_regionMoved = false;
    return m_region;
}

} // namespace host
