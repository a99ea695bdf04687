#pragma once

#include "host/parts/Still.h"

#include <string>

namespace host {

// Writes the image as a PNG file by way of the platform's imaging component. COM must be initialised. Throws HostError
// with ExitCode::Output; nothing half-written is left.
void WritePng(const std::string& path, const Image& image, bool replace);

} // namespace host
