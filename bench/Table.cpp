#include "bench/Table.h"

#include <cstdio>

namespace {

std::string Verdict(const Spread& ratio, double wanted) {
    if (wanted <= 0) {
        return "";
    }
    char text[40];
    std::snprintf(text, sizeof text, "%.2f: %s", wanted, ratio.median <= wanted + 0.005 ? "met" : "**missed**");
    return text;
}

} // namespace

void PrintRow(const char* where, const std::string& what, const std::string& frame, const char* flow,
              double gigabytesPerSecond, const Spread& ratio, double wanted) {
    std::printf("| %s | %s | %s | %s | %.2f | %.2f (%.2f to %.2f) | %s |\n", where, what.c_str(), frame.c_str(), flow,
                gigabytesPerSecond, ratio.median, ratio.low, ratio.high, Verdict(ratio, wanted).c_str());
    std::fflush(stdout);
}

void PrintResult(const char* where, const FrameSet& frames, Flow flow, const Result& result, double wanted) {
    const double bytes = static_cast<double>(frames.Format().Bytes()) * frames.FramesPerTurn();
    PrintRow(where, result.name, frames.Text(), FlowName(flow), bytes / result.seconds.median * 1e-9, result.ratio,
             wanted);
}

void PrintRate(const char* where, const std::string& what, const std::string& frame, const char* flow,
               const Spread& rate) {
    std::printf("| %s | %s | %s | %s | %.2f (%.2f to %.2f) | | |\n", where, what.c_str(), frame.c_str(), flow,
                rate.median, rate.low, rate.high);
    std::fflush(stdout);
}
