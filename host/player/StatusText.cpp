#include "host/player/StatusText.h"

#include <cmath>

namespace host {

namespace {

std::wstring Number(std::uint64_t number) {
    return std::to_wstring(number);
}

// With as many decimals as it needs, four at most.
std::wstring Decimal(double value) {
    std::wstring text = std::to_wstring(value);
    text.resize(text.find_last_not_of(L'0', text.size() - 3) + 1);
    return text.back() == L'.' || text.back() == L',' ? text.substr(0, text.size() - 1) : text;
}

std::wstring RangeText(const CPlayback& playback) {
    if (!playback.IsLooping()) {
        return {};
    }
    return L"    loop " + Number(playback.In()) + L" to " + (playback.Out() ? Number(*playback.Out()) : L"the end");
}

std::wstring RateText(double framesPerSecond) {
    const auto tenths = static_cast<std::uint64_t>(std::llround(framesPerSecond * 10));
    return Number(tenths / 10) + L"." + Number(tenths % 10) + L" frames a second";
}

} // namespace

std::wstring PlayText(const LiveFrame& frame, const CPlayback& playback, double framesPerSecond) {
    const std::wstring of = playback.Frames() ? L" of " + Number(*playback.Frames()) : L"";
    const std::wstring state = playback.IsPaused() ? L"paused" : RateText(framesPerSecond);
    return L"frame " + Number(frame.number) + of + L"    " + state + RangeText(playback);
}

std::wstring FrameText(const LiveFrame& frame) {
    const CombReading& combs = frame.combs;
    std::wstring text = L"count " + Number(combs.count) + L", threshold " + Number(combs.threshold) +
                        L" at sensitivity " + Decimal(combs.sensitivity) + L": " +
                        (frame.interlaced ? L"interlaced" : L"clean");
    if (frame.mode == Mode::Auto) {
        text += L"    hold: " + Number(static_cast<std::uint64_t>(frame.holdLeft)) +
                (frame.holdLeft == 1 ? L" frame" : L" frames");
    } else {
        text += frame.mode == Mode::All ? L"    not asked: every frame" : L"    not asked: off";
    }
    return text + (frame.changed ? L"    deinterlaced" : L"    passed unchanged");
}

std::wstring SeekText(std::uint64_t next, const CPlayback& playback) {
    const bool toEnd = playback.Position() == UINT64_MAX;
    return L"frame " + Number(next) + L"    reading on to " + (toEnd ? L"the end" : Number(playback.Position()));
}

} // namespace host
