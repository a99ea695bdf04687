// The text lines of a YUV4MPEG2 stream.
#pragma once

#include "host/formats/FrameSource.h"

#include <string_view>

namespace host {

// Turns a stream header (without its line end) into a clip. Throws HostError with ExitCode::Input when it is none, or
// when it describes what the tool cannot take; `name` is the input's, for the message.
ClipInfo ParseY4mHeader(std::string_view line, const std::string& name);

// Whether a line (without its end) can begin a frame. A line end that was lost joins the line to picture bytes and the
// next FRAME line; that would be read as one frame.
bool IsY4mFrameLine(std::string_view line);

// Whether a frame of a mixed stream has field-wise chroma, from its FRAME line; `otherwise` where the line says
// nothing.
bool Y4mFrameHasFieldChroma(std::string_view frameLine, bool otherwise);

// What a FRAME line of a mixed stream says of the frame; Unknown where it says nothing.
Scan Y4mFrameScan(std::string_view frameLine);
// That of a FRAME line: five characters, blank and all.
std::string_view Y4mFrameWord(Scan scan);

// The header's word on the lines of a stream: one letter. Y4M has none for interlaced frames of an unknown order.
char Y4mScanLetter(Scan scan);

} // namespace host
