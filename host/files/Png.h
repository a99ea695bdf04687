#pragma once

#include "host/picture/Still.h"
#include "host/files/Files.h"

namespace host {

// Writes the image as a PNG file by way of the platform's imaging component, and commits it. COM must be initialised.
// Throws HostError with ExitCode::Output.
void WritePng(IOutput& output, const Image& image);

} // namespace host
