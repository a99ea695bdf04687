#include "host/verbs/Verbs.h"

#include "engine/detector/AutoHold.h"
#include "engine/detector/InterlaceDetector.h"
#include "host/analysis/FieldMeter.h"
#include "host/analysis/Plot.h"
#include "host/analysis/Report.h"
#include "host/console/Console.h"
#include "host/console/Interrupt.h"
#include "host/files/Files.h"
#include "host/files/Input.h"
#include "host/transform/Platform.h"

#include <cstdio>
#include <vector>
#include <mfapi.h>

namespace host {

namespace {

constexpr double kNormalSensitivity = 1.0;

struct LineForm {
    const char* heading;
    const char* format;
};
constexpr LineForm kTable = {"  frame      count  threshold    ratio  verdict\n", "%7llu %10lu %10lu %8.4f  %s\n"};
constexpr LineForm kCsv = {"frame,count,threshold,ratio,verdict\n", "%llu,%lu,%lu,%.6f,%s\n"};

// The ratio is to the threshold at sensitivity 1: it is the lowest sensitivity that calls the frame clean.
void PrintFrame(const LineForm& form, std::size_t frame, const CombScan& scan, double ratio) {
    char line[120];
    std::snprintf(line, sizeof line, form.format, static_cast<unsigned long long>(frame),
                  static_cast<unsigned long>(scan.count), static_cast<unsigned long>(scan.threshold), ratio,
                  scan.interlaced ? "interlaced" : "clean");
    Print(line);
}

// Numbers of every frame; no picture is kept.
struct Readings {
    std::vector<FrameScore> scores;
    std::vector<FieldReading> fields;
};

// `form`: how each frame is printed; null: not at all.
Readings ReadClip(CInput& input, const Command& command, double sensitivity, const LineForm* form) {
    const ClipInfo& info = input.Info();
    const int bits = TraitsOf(input.Feed()).bits;
    const std::uint32_t normal = InterlaceThreshold(info.width, info.height, kNormalSensitivity);
    std::vector<std::uint8_t> frame(FrameSize(input.Feed(), info.width, info.height));
    CFieldMeter meter(input.Feed(), info.width, info.height);
    Readings readings;
    CProgressLine progress(command.options.quiet, info.frames);
    while (input.Read(frame.data())) {
        ThrowIfInterrupted();
        const CombScan scan = ScanFrame(frame.data(), info.width, info.height, bits, nullptr, sensitivity);
        readings.scores.push_back({scan.count, normal});
        readings.fields.push_back(meter.Read(frame.data()));
        if (form) {
            PrintFrame(*form, readings.scores.size() - 1, scan, readings.scores.back().Ratio());
        }
        progress.Update(readings.scores.size());
    }
    return readings;
}

std::int32_t HoldOf(Rational rate) {
    UINT64 time = 0; // 0, too, is a time for which there is a hold
    MFFrameRateToAverageTimePerFrame(rate.numerator, rate.denominator, &time);
    return HoldFrames(static_cast<std::int64_t>(time));
}

std::string ClosingText(const Analysis& analysis, const Command& command) {
    return std::string("As ") + TraitsOf(analysis.feed).name + " frames of " + std::to_string(analysis.scores.width) +
           "x" + std::to_string(analysis.scores.height) + ": " +
           DescribeScores(analysis.scores.frames, analysis.given.sensitivity, analysis.given.called) +
           DescribeAnalysis(analysis, command);
}

void WritePlot(IOutput& output, const std::string& svg) {
    output.Write(svg.data(), svg.size());
    output.Commit();
}

} // namespace

void RunAnalyse(const Command& command) {
    const CPlatform platform;
    const Options& options = command.options;
    const auto plot = options.plot.empty() ? nullptr : OpenOutput(options.plot, options.force);
    CInput input(command);
    const ClipInfo info = input.Info();
    const LineForm* const form = options.json ? nullptr : options.csv ? &kCsv : &kTable;
    const double sensitivity = options.sensitivity.value_or(kNormalSensitivity);
    Print(form ? form->heading : "");
    const Readings readings = ReadClip(input, command, sensitivity, form);
    const ClipScores scores{info.width, info.height, HoldOf(input.Rate()), readings.scores};
    const Analysis analysis = Conclude(scores, readings.fields, info.scan, input.Feed(), sensitivity);
    if (options.json) {
        Print(AnalysisJson(analysis, command));
    } else if (options.csv) {
        Say(ClosingText(analysis, command)); // lines of another kind would spoil the table
    } else {
        Print("\n" + ClosingText(analysis, command));
    }
    if (plot) {
        WritePlot(*plot, PlotSvg(analysis, command.input.substr(command.input.find_last_of("/\\") + 1)));
    }
}

} // namespace host
