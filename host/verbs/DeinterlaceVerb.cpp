#include "host/verbs/Verbs.h"

#include "engine/detector/AutoHold.h"
#include "engine/detector/InterlaceDetector.h"
#include "host/formats/FrameSink.h"
#include "host/HostError.h"
#include "host/command/ProgressText.h"
#include "host/picture/Still.h"
#include "host/console/Console.h"
#include "host/files/Files.h"
#include "host/files/Input.h"
#include "host/console/Interrupt.h"
#include "host/transform/Platform.h"
#include "host/files/Png.h"
#include "host/console/Text.h"
#include "host/transform/TransformClient.h"

#include <algorithm>

namespace host {

namespace {

// Keeps count of what the transform decides in auto mode, by asking the detector the same question and keeping the same
// hold. In the other modes there is nothing to ask.
class CDecisions {
public:
    CDecisions(const ActiveSettings& active, std::int64_t timePerFrame)
        : m_active(active)
        , m_holdFrames(HoldFrames(timePerFrame)) {}

    void Look(const std::uint8_t* frame, const StreamShape& shape) {
        if (m_active.mode != Mode::Auto) {
            return;
        }
        const bool interlaced = IsFrameInterlaced(frame, shape.width, shape.height, TraitsOf(shape.pixels).bits,
                                                  nullptr, m_active.sensitivity) != 0;
        m_called += interlaced ? 1 : 0;
        m_deinterlaced += AdvanceHold(interlaced, m_holdFrames, m_counter) ? 1 : 0;
    }

    void Report(RunSummary& summary) const {
        if (m_active.mode == Mode::Auto) {
            summary.calledInterlaced = m_called;
            summary.deinterlaced = m_deinterlaced;
        }
    }

private:
    ActiveSettings m_active;
    std::int32_t m_holdFrames;
    std::int32_t m_counter = 0;
    std::uint64_t m_called = 0;
    std::uint64_t m_deinterlaced = 0;
};

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

// All files that the run writes, opened before any work is done: what is wrong with a name is told at once. The input
// must not be open yet, as an output may replace it.
struct Outputs {
    std::unique_ptr<IOutput> clip; // none for --to none
    std::vector<std::unique_ptr<IOutput>> stills;
};

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

// The clip's output and what is written to it; nothing at all for --to none.
class CClipOutput {
public:
    CClipOutput(std::unique_ptr<IOutput> output, OutputKind kind, const ClipInfo& clip, const StreamShape& shape)
        : m_output(std::move(output)) {
        const SinkFormat format{shape.pixels, shape.width,    shape.height, shape.rate,
                                clip.aspect,  clip.fullRange, clip.frames};
        switch (kind) {
        case OutputKind::None:
            break;
        case OutputKind::Avi:
            m_sink = MakeAviSink(*m_output, format);
            break;
        case OutputKind::Raw:
            m_sink = MakeRawSink(*m_output, format);
            break;
        case OutputKind::Y4m:
            m_sink = MakeY4mSink(*m_output, format);
            break;
        }
    }

    void Write(const std::uint8_t* frame) try {
        if (m_sink) {
            m_sink->Write(frame);
        }
    } catch (const OutputFullError&) {
        Finish(); // what it holds is kept
        throw;
    }

    void Finish() {
        if (m_sink) {
            m_sink->Finish();
            m_output->Commit();
        }
    }

private:
    std::unique_ptr<IOutput> m_output;
    std::unique_ptr<IFrameSink> m_sink;
};

// The pictures that --still asks for.
class CStills {
public:
    CStills(const std::vector<Still>& stills, std::vector<std::unique_ptr<IOutput>> outputs, const StreamShape& shape,
            bool fullRange)
        : m_stills(stills)
        , m_outputs(std::move(outputs))
        , m_shape(shape)
        , m_converter(LayoutOf(shape.pixels), Layout::Rgb24, shape.width, shape.height, fullRange) {}

    void Look(std::uint64_t frame, const std::uint8_t* before, const std::uint8_t* after) {
        for (std::size_t i = 0; i < m_stills.size(); ++i) {
            if (m_stills[i].frame == frame) {
                Write(*m_outputs[i], frame, before, after);
            }
        }
    }

    // Throws when a picture was asked for of a frame that the clip does not have.
    void Finish(std::uint64_t frames, const std::string& input) const {
        for (const Still& still : m_stills) {
            if (still.frame >= frames) {
                throw HostError(ExitCode::Input, input + ": has " + std::to_string(frames) +
                                                     (frames == 1 ? " frame" : " frames") + ", so there is no frame " +
                                                     std::to_string(still.frame) + " for " + still.path + ".");
            }
        }
    }

private:
    void Write(IOutput& output, std::uint64_t frame, const std::uint8_t* before, const std::uint8_t* after) {
        Image beforePicture(m_shape.width, m_shape.height);
        Image afterPicture(m_shape.width, m_shape.height);
        const Window window = MostCombedWindow(m_shape.pixels, m_shape.width, m_shape.height, before);
        WritePng(output, ComposeStill(ToPicture(before, beforePicture), ToPicture(after, afterPicture), window, frame));
    }

    FrameView ToPicture(const std::uint8_t* frame, Image& picture) {
        FrameTarget target;
        target.layout = Layout::Rgb24;
        target.width = picture.width;
        target.height = picture.height;
        target.plane[0] = picture.pixels.data();
        target.stride[0] = std::ptrdiff_t{3} * picture.width;
        m_converter.Convert(PackedFrame(m_shape.pixels, m_shape.width, m_shape.height, frame), target, false);
        return AsView(target);
    }

    std::vector<Still> m_stills;
    std::vector<std::unique_ptr<IOutput>> m_outputs; // of each still its own
    StreamShape m_shape;
    CFrameConverter m_converter;
};

} // namespace

void RunDeinterlace(const Command& command) {
    const CPlatform platform;
    Outputs outputs = OpenOutputs(command);
    CInput input(command);
    const ClipInfo clip = input.Info();
    const StreamShape shape{input.Feed(), clip.width, clip.height, input.Rate()};
    CTransformClient client(command.options, shape);
    CClipOutput output(std::move(outputs.clip), command.outputKind, clip, shape);
    CStills stills(command.options.stills, std::move(outputs.stills), shape, clip.fullRange);
    CDecisions decisions(client.Active(), client.TimePerFrame());
    RunSummary summary;
    {
        CProgressLine progress(command.options.quiet, clip.frames);
        while (input.Read(client.Input())) {
            ThrowIfInterrupted();
            if (!command.options.quiet) {
                decisions.Look(client.Input(), shape);
            }
            const std::uint8_t* const result = client.Process();
            output.Write(result);
            summary.changed += !command.options.quiet &&
                                       PicturesDiffer(shape.pixels, shape.width, shape.height, client.Input(), result)
                                   ? 1
                                   : 0;
            stills.Look(summary.frames, client.Input(), result);
            progress.Update(++summary.frames);
        }
        summary.seconds = progress.Seconds();
    }
    input.Close();
    client.Finish();
    output.Finish();
    if (!command.options.quiet) {
        summary.transformSeconds = std::chrono::duration<double>(client.Worked()).count();
        decisions.Report(summary);
        Say(SummaryText(summary));
    }
    stills.Finish(summary.frames, command.input);
}

} // namespace host
