#pragma once

#include "host/formats/ByteStream.h"
#include "host/formats/FrameSource.h"

#include <memory>

namespace host {

// The first video stream of an uncompressed AVI file (RGB24, RGB32, YUY2, UYVY or IYU2), read from front to back, so
// that a pipe works too. Reads the headers at once. The input must outlive the source.
std::unique_ptr<IFrameSource> OpenAvi(CInputStream& input);

} // namespace host
