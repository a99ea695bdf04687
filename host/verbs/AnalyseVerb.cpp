#include "host/verbs/Verbs.h"

#include "engine/detector/InterlaceDetector.h"
#include "host/analysis/Sensitivity.h"
#include "host/console/Console.h"
#include "host/files/Input.h"
#include "host/console/Interrupt.h"
#include "host/transform/Platform.h"

#include <cstdio>
#include <vector>

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

} // namespace

void RunAnalyse(const Command& command) {
    const CPlatform platform;
    CInput input(command);
    const ClipInfo& info = input.Info();
    const int bits = TraitsOf(input.Feed()).bits;
    const double sensitivity = command.options.sensitivity.value_or(kNormalSensitivity);
    const LineForm& form = command.options.csv ? kCsv : kTable;
    const std::uint32_t normal = InterlaceThreshold(info.width, info.height, kNormalSensitivity);
    std::vector<std::uint8_t> frame(FrameSize(input.Feed(), info.width, info.height));
    std::vector<FrameScore> scores;
    std::uint64_t interlaced = 0;
    CProgressLine progress(command.options.quiet, info.frames);
    Print(form.heading);
    while (input.Read(frame.data())) {
        ThrowIfInterrupted();
        const CombScan scan = ScanFrame(frame.data(), info.width, info.height, bits, nullptr, sensitivity);
        scores.push_back({scan.count, normal});
        interlaced += scan.interlaced ? 1 : 0;
        PrintFrame(form, scores.size() - 1, scan, scores.back().Ratio());
        progress.Update(scores.size());
    }
    const std::string closing = std::string("As ") + TraitsOf(input.Feed()).name + " frames of " +
                                std::to_string(info.width) + "x" + std::to_string(info.height) + ": " +
                                DescribeScores(scores, sensitivity, interlaced);
    if (command.options.csv) {
        Say(closing); // lines of another kind would spoil the table
    } else {
        Print("\n" + closing);
    }
}

} // namespace host
