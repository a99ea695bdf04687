// The files that a run writes: the clip and pictures of its frames.
#pragma once

#include "host/command/Command.h"
#include "host/files/Files.h"
#include "host/files/Png.h"
#include "host/formats/FrameSink.h"
#include "host/picture/FrameConvert.h"
#include "host/picture/Still.h"
#include "host/transform/TransformClient.h"

namespace host {

// All files of a run, opened before any work is done: what is wrong with a name is told at once. The input must not be
// open yet, as an output may replace it.
struct Outputs {
    std::unique_ptr<IOutput> clip; // none for --to none
    std::vector<std::unique_ptr<IOutput>> stills;
};
// Throws HostError with ExitCode::Usage or ExitCode::Output.
Outputs OpenOutputs(const Command& command);

// The clip's output and what is written to it; nothing at all for --to none. Throws HostError with ExitCode::Output.
class CClipOutput {
public:
    CClipOutput(std::unique_ptr<IOutput> output, OutputKind kind, const SinkFormat& format);

    void Write(const std::uint8_t* frame, Scan scan);
    void WriteSide(std::size_t stream, std::uint32_t id, std::span<const std::uint8_t> bytes);
    // `scan` is true of the clip; where the output cannot go back, its header keeps the first word.
    void Finish(Scan scan);

    bool CanSeek() const { return m_output && m_output->CanSeek(); }

private:
    std::unique_ptr<IOutput> m_output;
    std::unique_ptr<IFrameSink> m_sink;
    Scan m_first;
};

// The pictures that --still asks for.
class CStills {
public:
    CStills(const std::vector<Still>& stills, std::vector<std::unique_ptr<IOutput>> outputs, const StreamShape& shape,
            const ClipInfo& clip);

    void Look(std::uint64_t frame, const std::uint8_t* before, const std::uint8_t* after);
    // Throws when a picture was asked for of a frame that the clip does not have.
    void Finish(std::uint64_t frames, const std::string& input) const;

private:
    void Write(IOutput& output, std::uint64_t frame, const std::uint8_t* before, const std::uint8_t* after);
    FrameView ToPicture(const std::uint8_t* frame, Image& picture);

    std::vector<Still> m_stills;
    std::vector<std::unique_ptr<IOutput>> m_outputs; // of each still its own
    StreamShape m_shape;
    CFrameConverter m_converter;
};

} // namespace host
