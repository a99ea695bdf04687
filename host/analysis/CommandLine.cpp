#include "host/analysis/CommandLine.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::string_view kPlain = "-_./\\:@%+=,";

bool IsPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           static_cast<unsigned char>(c) >= 0x80 || kPlain.find(c) != kPlain.npos;
}

std::string RawText(const RawFormat& raw) {
    return std::to_string(raw.width) + "x" + std::to_string(raw.height) + ":" + TraitsOf(raw.pixels).name + "@" +
           std::to_string(raw.rate.numerator) + "/" + std::to_string(raw.rate.denominator);
}

const char* KindName(InputKind kind) {
    constexpr const char* kNames[] = {"y4m", "avi", "raw", "media"}; // in the order of InputKind
    return kNames[static_cast<std::size_t>(kind)];
}

// The options that say what the input is and who works on it.
std::string Repeated(const Options& options) {
    std::string text;
    text += options.raw ? " --raw " + RawText(*options.raw) : "";
    text += options.from && !options.raw ? std::string(" --from ") + KindName(*options.from) : "";
    text += options.feed ? std::string(" --feed ") + TraitsOf(*options.feed).name : "";
    text += options.lines == LineSampling::Interlaced    ? " --lines interlaced"
            : options.lines == LineSampling::Progressive ? " --lines progressive"
                                                         : "";
    text += options.keepCutOff ? " --cut-off keep" : "";
    text += options.registered ? " --registered" : "";
    return text + (options.dll.empty() ? "" : " --dll " + Quoted(options.dll));
}

} // namespace

std::string Quoted(std::string_view word) {
    std::string text(word);
    if (text.size() > 1 && text[0] == '-') {
        text.insert(0, "./");
    }
    return !text.empty() && std::all_of(text.begin(), text.end(), IsPlain) ? text : "\"" + text + "\"";
}

std::string OutputNameFor(const std::string& input) {
    return input == "-" ? input : OutputBeside(input, "", {});
}

std::string DeinterlaceLine(const Command& command, std::string_view output, std::string_view settings) {
    const std::string to = output.empty() ? "" : " " + Quoted(output);
    return "nmfvdeint " + Quoted(command.input) + to + Repeated(command.options) + " " + std::string(settings);
}

} // namespace host
