#pragma once

#include "host/formats/FrameSource.h"

#include <memory>
#include <string>

namespace host {

// The first video stream of any file that the platform decodes. COM and Media Foundation must be started, and outlive
// the source. Throws HostError with ExitCode::Input.
std::unique_ptr<IFrameSource> OpenMedia(const std::string& path);

} // namespace host
