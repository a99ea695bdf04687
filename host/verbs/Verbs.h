// What the tool does; the rows of its verb table (Main.cpp).
#pragma once

#include "host/command/Command.h"

namespace host {

// All throw HostError.
void RunDeinterlace(const Command& command);
void RunAnalyse(const Command& command);
void RunPages(const Command& command);
void RunRegister(const Command& command);
void RunUnregister(const Command& command);
void RunVerify(const Command& command);

} // namespace host
