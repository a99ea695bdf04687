#pragma once

#include "host/formats/ByteStream.h"
#include "host/formats/FrameSource.h"

#include <memory>

namespace host {

// Reads the stream header at once. The input must outlive the source.
std::unique_ptr<IFrameSource> OpenY4m(CInputStream& input);

} // namespace host
