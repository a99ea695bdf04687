// What the tool does; the rows of its verb table (Main.cpp).
#pragma once

#include "host/parts/Command.h"

namespace host {

// Both throw HostError.
void RunDeinterlace(const Command& command);
void RunAnalyse(const Command& command);

} // namespace host
