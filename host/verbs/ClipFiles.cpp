#include "host/verbs/ClipFiles.h"

#include "host/HostError.h"
#include "host/console/Text.h"

#include <algorithm>

namespace host {

namespace {

// Throws when a picture would take the name of another file of the run. The clip may replace its input.
void CheckNames(const Command& command) {
    const auto nameOf = [](const std::string& path) { return path == "-" ? L"-" : FullPath(ToWide(path)); };
    std::vector<std::wstring> taken = {nameOf(command.output)};
    if (command.input != "-") {
        taken.push_back(nameOf(command.input));
    }
    for (const Still& still : command.options.stills) {
        const std::wstring name = nameOf(still.path);
        if (std::any_of(taken.begin(), taken.end(), [&name](const auto& other) { return SamePath(name, other); })) {
            throw HostError(ExitCode::Usage,
                            still.path + ": another file of this run has this name. Name another one.");
        }
        taken.push_back(name);
    }
}

std::unique_ptr<IFrameSink> MakeSink(IOutput& output, OutputKind kind, const SinkFormat& format) {
    switch (kind) {
    case OutputKind::Avi:
        return MakeAviSink(output, format);
    case OutputKind::Raw:
        return MakeRawSink(output, format);
    case OutputKind::Y4m:
        return MakeY4mSink(output, format);
    case OutputKind::None:
        break;
    }
    return nullptr;
}

} // namespace

Outputs OpenOutputs(const Command& command) {
    CheckNames(command);
    Outputs outputs;
    if (command.outputKind != OutputKind::None) {
        outputs.clip = OpenOutput(command.output, command.options.force);
    }
    for (const Still& still : command.options.stills) {
        outputs.stills.push_back(OpenOutput(still.path, command.options.force));
    }
    return outputs;
}

CClipOutput::CClipOutput(std::unique_ptr<IOutput> output, OutputKind kind, const SinkFormat& format)
    : m_output(std::move(output))
    , m_first(format.scan) {
    if (m_output) {
        m_sink = MakeSink(*m_output, kind, format);
    }
}

void CClipOutput::Write(const std::uint8_t* frame, Scan scan) try {
    if (m_sink) {
        m_sink->Write(frame, scan);
    }
} catch (const OutputFullError&) {
    Finish(m_first); // what it holds is kept
    throw;
}

void CClipOutput::WriteSide(std::size_t stream, std::uint32_t id, std::span<const std::uint8_t> bytes) {
    if (m_sink) {
        m_sink->WriteSide(stream, id, bytes);
    }
}

void CClipOutput::Finish(Scan scan) {
    if (m_sink) {
        m_sink->Finish(scan);
        m_output->Commit();
    }
}

CStills::CStills(const std::vector<Still>& stills, std::vector<std::unique_ptr<IOutput>> outputs,
                 const StreamShape& shape, const ClipInfo& clip)
    : m_stills(stills)
    , m_outputs(std::move(outputs))
    , m_shape(shape)
    , m_converter(LayoutOf(shape.pixels), Layout::Rgb24, shape.width, shape.height, clip.fullRange, clip.bt709) {}

void CStills::Look(std::uint64_t frame, const std::uint8_t* before, const std::uint8_t* after) {
    for (std::size_t i = 0; i < m_stills.size(); ++i) {
        if (m_stills[i].frame == frame) {
            Write(*m_outputs[i], frame, before, after);
        }
    }
}

void CStills::Finish(std::uint64_t frames, const std::string& input) const {
    for (const Still& still : m_stills) {
        if (still.frame >= frames) {
            throw HostError(ExitCode::Input, input + ": has " + std::to_string(frames) +
                                                 (frames == 1 ? " frame" : " frames") + ", so there is no frame " +
                                                 std::to_string(still.frame) + " for " + still.path + ".");
        }
    }
}

void CStills::Write(IOutput& output, std::uint64_t frame, const std::uint8_t* before, const std::uint8_t* after) {
    Image beforePicture(m_shape.width, m_shape.height);
    Image afterPicture(m_shape.width, m_shape.height);
    const Window window = MostCombedWindow(m_shape.pixels, m_shape.width, m_shape.height, before);
    WritePng(output, ComposeStill(ToPicture(before, beforePicture), ToPicture(after, afterPicture), window, frame));
}

FrameView CStills::ToPicture(const std::uint8_t* frame, Image& picture) {
    FrameTarget target;
    target.layout = Layout::Rgb24;
    target.width = picture.width;
    target.height = picture.height;
    target.plane[0] = picture.pixels.data();
    target.stride[0] = std::ptrdiff_t{3} * picture.width;
    m_converter.Convert(PackedFrame(m_shape.pixels, m_shape.width, m_shape.height, frame), target, false);
    return AsView(target);
}

} // namespace host
