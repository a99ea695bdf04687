#include "host/live/LiveKeys.h"

namespace host {

namespace {

struct KeyRow {
    WPARAM key;
    LiveCommand command;
};

constexpr KeyRow kKeys[] = {
    {VK_SPACE, LiveCommand::Pause},
    {VK_LEFT, LiveCommand::StepBack},
    {VK_OEM_COMMA, LiveCommand::StepBack},
    {VK_RIGHT, LiveCommand::StepForward},
    {VK_OEM_PERIOD, LiveCommand::StepForward},
    {VK_PRIOR, LiveCommand::SecondBack},
    {VK_NEXT, LiveCommand::SecondForward},
    {VK_HOME, LiveCommand::First},
    {VK_END, LiveCommand::Last},
    {'I', LiveCommand::MarkIn},
    {'O', LiveCommand::MarkOut},
    {'L', LiveCommand::Loop},
    {'0', LiveCommand::WholePicture},
    {VK_NUMPAD0, LiveCommand::WholePicture},
    {'1', LiveCommand::Zoom1},
    {VK_NUMPAD1, LiveCommand::Zoom1},
    {'2', LiveCommand::Zoom2},
    {VK_NUMPAD2, LiveCommand::Zoom2},
    {'4', LiveCommand::Zoom4},
    {VK_NUMPAD4, LiveCommand::Zoom4},
    {'S', LiveCommand::Split},
    {'R', LiveCommand::Region},
    {VK_F1, LiveCommand::Keys},
    {VK_ESCAPE, LiveCommand::Close},
};

constexpr KeyHelp kHelps[] = {
    {L"Space", L"pause, play on"},
    {L"Left, Right   or   , .", L"pause, and a frame back or on"},
    {L"Page Up, Page Down", L"pause, and a second back or on"},
    {L"Home, End", L"first frame, last frame"},
    {L"I, O", L"the range to loop begins, ends here"},
    {L"L", L"loop the range, or play the whole clip"},
    {L"0, 1, 2, 4", L"whole picture, 1:1, 2:1, 4:1"},
    {L"S", L"both in one picture, with a line to drag"},
    {L"R", L"region of interest on, off"},
    {L"drag in \x201C"
     L"before\x201D",
     L"the region, by an edge, a corner or its middle"},
    {L"drag elsewhere, or wheel", L"move the enlarged picture (Shift: sideways)"},
    {L"F1, Esc", L"show these keys, hide them"},
};

} // namespace

std::optional<LiveCommand> CommandOfKey(WPARAM key) {
    for (const KeyRow& row : kKeys) {
        if (row.key == key) {
            return row.command;
        }
    }
    return std::nullopt;
}

std::span<const KeyHelp> KeyHelps() {
    return kHelps;
}

} // namespace host
