// What an output cannot say or hold of its input.
#pragma once

#include "host/formats/FrameSink.h"

#include <string>

namespace host {

// In words for the user, separated by commas; empty when nothing is lost.
std::string LeftOut(const ClipInfo& clip, OutputKind output);

} // namespace host
