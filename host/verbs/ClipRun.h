// One clip through the transform.
#pragma once

#include "host/command/Command.h"
#include "host/command/ProgressText.h"

namespace host {

// COM and Media Foundation must be started. Throws HostError.
RunSummary RunClip(const Command& command);

} // namespace host
