// The live window's keys.
#pragma once

#include "host/player/LiveModel.h"

#include <optional>
#include <span>
#include <windows.h>

namespace host {

std::optional<LiveCommand> CommandOfKey(WPARAM key);

// What F1 shows, the mouse included.
struct KeyHelp {
    const wchar_t* keys;
    const wchar_t* what;
};
std::span<const KeyHelp> KeyHelps();

} // namespace host
