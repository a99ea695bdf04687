#include "host/verbs/ClipRun.h"

#include "engine/detector/AutoHold.h"
#include "engine/detector/InterlaceDetector.h"
#include "host/HostError.h"
#include "host/analysis/Advice.h"
#include "host/console/Console.h"
#include "host/console/Interrupt.h"
#include "host/console/Text.h"
#include "host/files/Input.h"
#include "host/formats/LeftOut.h"
#include "host/formats/ScanLabels.h"
#include "host/verbs/ClipFiles.h"

#include <algorithm>

namespace host {

namespace {

// Keeps count of what the transform decides in auto mode. It says so to nobody; what decides is the engine's own
// detector and hold, here as there, and the frames that come out are compared with it.
class CDecisions {
public:
    CDecisions(const CTransformClient& client, const StreamShape& shape)
        : m_active(client.Active())
        , m_shape(shape)
        , m_holdFrames(HoldFrames(client.TimePerFrame())) {}

    // Whether the transform deinterlaces this frame, the next in order.
    bool Look(const std::uint8_t* frame) {
        if (m_active.mode != Mode::Auto) {
            return m_active.mode == Mode::All;
        }
        const bool interlaced = IsFrameInterlaced(frame, m_shape.width, m_shape.height, TraitsOf(m_shape.pixels).bits,
                                                  nullptr, m_active.sensitivity) != 0;
        const bool deinterlaced = AdvanceHold(interlaced, m_holdFrames, m_counter);
        m_called += interlaced ? 1 : 0;
        m_deinterlaced += deinterlaced ? 1 : 0;
        return deinterlaced;
    }

    std::uint64_t Called() const { return m_called; }

    void Report(RunSummary& summary) const {
        if (m_active.mode == Mode::Auto) {
            summary.calledInterlaced = m_called;
            summary.deinterlaced = m_deinterlaced;
        }
    }

private:
    ActiveSettings m_active;
    StreamShape m_shape;
    std::int32_t m_holdFrames;
    std::int32_t m_counter = 0;
    std::uint64_t m_called = 0;
    std::uint64_t m_deinterlaced = 0;
};

constexpr double kSilentSeconds = 5;

Deinterlaced WhichFrames(const ActiveSettings& active, const StreamShape& shape) {
    const bool whole = active.area == Area{0, 0, shape.width, shape.height};
    return !whole || active.mode == Mode::Off ? Deinterlaced::None
           : active.mode == Mode::All         ? Deinterlaced::All
                                              : Deinterlaced::Some;
}

ClipInfo ClipOf(const CInput& input, const Options& options) {
    ClipInfo clip = input.Info();
    if (options.noSide) {
        clip.sideStreams.clear();
    }
    return clip;
}

// 4:2:0 from 4:2:2 has its chroma where MPEG-2 has it.
constexpr const char* kChroma420 = "420mpeg2";

SinkFormat FormatOf(const ClipInfo& clip, const StreamShape& shape, const CScanLabels& labels, bool to420) {
    SinkFormat format{shape.pixels, shape.width, shape.height, shape.rate, clip.aspect, clip.fullRange, clip.frames};
    format.bt709 = clip.UsesBt709();
    format.scan = labels.AtFirst();
    format.scanMayChange = labels.MayChange();
    format.comments = clip.comments;
    if (to420) {
        format.chroma420 = clip.chroma420.empty() ? kChroma420 : clip.chroma420;
        format.undo420 = clip.layout == Layout::Planar420 || clip.layout == Layout::Nv12;
    }
    for (const SideStream& side : clip.sideStreams) {
        if (!side.header.empty()) {
            format.side.push_back(side);
        }
    }
    return format;
}

// One clip's run: what is opened in the beginning, then frame after frame, then what is told in the end.
class CClipRun {
public:
    explicit CClipRun(const Command& command)
        : m_command(command)
        , m_outputs(OpenOutputs(command))
        , m_input(command)
        , m_clip(ClipOf(m_input, command.options))
        , m_shape{m_input.Feed(), m_clip.width, m_clip.height, m_input.Rate()}
        , m_client(command.options, m_shape)
        , m_labels(m_clip.scan, WhichFrames(m_client.Active(), m_shape))
        , m_output(std::move(m_outputs.clip), command.outputKind,
                   FormatOf(m_clip, m_shape, m_labels, command.options.to420))
        , m_stills(command.options.stills, std::move(m_outputs.stills), m_shape, m_clip)
        , m_decisions(m_client, m_shape)
        , m_progress(command.options.quiet, m_clip.frames) {
        if (!command.options.noSide) {
            m_input.SetSidePackets(
                [this](std::size_t stream, std::uint32_t id, auto bytes) { m_output.WriteSide(stream, id, bytes); });
        }
    }

    RunSummary Run();

private:
    // Nobody asks for what is counted.
    bool IsQuiet() const { return m_command.options.quiet && !m_command.options.json; }
    void OneFrame();
    void WarnIfSilent();
    std::string Advice() const {
        return SilentDetectorAdvice(m_command, m_clip.scan, m_summary.frames, m_decisions.Called());
    }
    void Finish();
    void Describe();

    const Command& m_command;
    Outputs m_outputs;
    CInput m_input;
    ClipInfo m_clip;
    StreamShape m_shape;
    CTransformClient m_client;
    CScanLabels m_labels;
    CClipOutput m_output;
    CStills m_stills;
    CDecisions m_decisions;
    RunSummary m_summary;
    CProgressLine m_progress;
};

void CClipRun::OneFrame() {
    const std::uint8_t* const before = m_client.Input();
    const bool wanted = !IsQuiet() || m_labels.MayChange(); // else nobody asks
    const bool deinterlaced = wanted && m_decisions.Look(before);
    const std::uint8_t* const after = m_client.Process();
    m_output.Write(after, m_labels.Next(m_input.FrameScan(), deinterlaced));
    if (!IsQuiet() && PicturesDiffer(m_shape.pixels, m_shape.width, m_shape.height, before, after)) {
        ++m_summary.changed;
        m_summary.unexpected += deinterlaced ? 0 : 1;
    }
    m_stills.Look(m_summary.frames, before, after);
    ++m_summary.frames;
    WarnIfSilent();
}

// After some seconds of an interlaced clip in which the detector saw nothing.
void CClipRun::WarnIfSilent() {
    const auto seconds = static_cast<std::uint64_t>(kSilentSeconds * m_shape.rate.Value());
    if (m_summary.frames == std::max<std::uint64_t>(seconds, 1) && !m_command.options.quiet) {
        m_progress.Say(Advice());
    }
}

void CClipRun::Finish() {
    m_summary.irregular = m_input.IsIrregular();
    m_input.Close();
    m_client.Finish();
    m_summary.seekable = m_output.CanSeek();
    m_output.Finish(m_labels.AtLast());
    Describe();
}

void CClipRun::Describe() {
    m_summary.transformSeconds = std::chrono::duration<double>(m_client.Worked()).count();
    m_summary.input = m_clip.scan;
    m_summary.written = m_summary.seekable ? m_labels.AtLast() : m_labels.AtFirst();
    m_summary.truth = m_labels.AtLast();
    m_summary.output = m_command.outputKind;
    m_summary.leftOut = LeftOut(m_clip, m_command.outputKind);
    m_decisions.Report(m_summary);
}

RunSummary CClipRun::Run() {
    while (m_input.Read(m_client.Input())) {
        ThrowIfInterrupted();
        OneFrame();
        m_progress.Update(m_summary.frames);
    }
    m_summary.seconds = m_progress.Seconds();
    m_progress.Clear();
    Finish();
    if (m_command.options.json) {
        Print(SummaryJson(m_summary, m_command.input, m_command.output));
    } else if (!m_command.options.quiet) {
        Say(SummaryText(m_summary) + Advice());
    }
    m_stills.Finish(m_summary.frames, m_command.input);
    return m_summary;
}

} // namespace

RunSummary RunClip(const Command& command) {
    if (command.options.to420 && command.outputKind != OutputKind::Y4m) {
        throw HostError(ExitCode::Usage, "--to-chroma 420 is for Y4M outputs only: the other kinds hold the frames of "
                                         "the transform as they are.");
    }
    return CClipRun(command).Run();
}

} // namespace host
