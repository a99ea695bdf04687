// What an AVI file says of its streams before its frames begin.
#pragma once

#include "host/formats/AviChunks.h"
#include "host/formats/FrameSource.h"

#include <vector>

namespace host {

// How the rows of a frame lie in memory.
struct PackedRows {
    bool topDown = true;
    std::size_t tight = 0;  // bytes of a row without padding
    std::size_t padded = 0; // and with it
};

struct AviHeaders {
    ClipInfo info;
    AviMainHeader main;
    PackedRows rows;
    std::uint32_t length = 0;                      // of the video stream, as its header says
    int stream = -1;                               // the video stream's number
    std::vector<std::optional<std::size_t>> sides; // of each stream, its place among info's side streams

    // Nothing for the video stream, and for numbers that no stream has.
    std::optional<std::size_t> SideOf(int number) const {
        return number >= 0 && number < static_cast<int>(sides.size()) ? sides[static_cast<std::size_t>(number)]
                                                                      : std::nullopt;
    }
};

// Reads up to the list of frames, whose header is taken. Throws HostError with ExitCode::Input for a file without a
// video stream in one of the formats that OpenAvi reads.
AviHeaders ReadAviHeaders(CInputStream& input);

} // namespace host
