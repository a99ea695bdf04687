// Frames out: what every kind of output offers.
#pragma once

#include "host/formats/ByteStream.h"
#include "host/formats/FrameSource.h"

#include <memory>

namespace host {

enum class OutputKind { Y4m, Avi, Raw, None };

// Not thread-safe. Throws HostError with ExitCode::Output.
class IFrameSink {
public:
    virtual ~IFrameSink() = default;
    // A frame as the transform lays it out, FrameSize bytes. Throws OutputFullError when no more can be taken; Finish
    // may still follow. `scan` is what is true of the frame's lines now; never Mixed.
    virtual void Write(const std::uint8_t* frame, Scan scan = Scan::Progressive) = 0;
    // A packet of a side stream of the format; dropped by formats that hold none.
    virtual void WriteSide(std::size_t, std::uint32_t, std::span<const std::uint8_t>) {}
    // Writes what can only be known at the end, with the last word on the clip's lines. No frame may follow.
    virtual void Finish(Scan scan = Scan::Progressive) = 0;
};

// What a sink must know of the clip that it writes.
struct SinkFormat {
    Pixels pixels = Pixels::Yuy2;
    int width = 0;
    int height = 0;
    Rational rate{25, 1};
    std::optional<Rational> aspect;
    bool fullRange = false;
    std::optional<std::uint64_t> frames = std::nullopt; // when it is known beforehand
    bool bt709 = false;
    Scan scan = Scan::Progressive;     // what the header says unless Finish can still change it
    bool scanMayChange = false;        // Finish may say another word than `scan`
    std::string comments = {};         // as in ClipInfo
    std::string chroma420 = {};        // Y4M: write 4:2:0 with this tag; empty: the chroma that the frames have
    bool undo420 = false;              // the frames were made from 4:2:0
    std::vector<SideStream> side = {}; // those with a header, for AVI
};

// The writer must outlive the sink.
std::unique_ptr<IFrameSink> MakeY4mSink(IByteWriter& writer, const SinkFormat& format);
std::unique_ptr<IFrameSink> MakeRawSink(IByteWriter& writer, const SinkFormat& format);

// Needs a writer that can seek. Takes no more than 1024 parts, and refuses a clip that is known to be longer. Every
// part of the file (RIFF chunk) but the last ends soon after `partBytes`, so that a file of any length stays within the
// format's 32-bit sizes (OpenDML).
std::unique_ptr<IFrameSink> MakeAviSink(IByteWriter& writer, const SinkFormat& format,
                                        std::uint64_t partBytes = std::uint64_t{1} << 30);
} // namespace host
