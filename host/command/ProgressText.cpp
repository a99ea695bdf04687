#include "host/command/ProgressText.h"

#include "host/command/Json.h"

#include <cmath>
#include <cstdio>

namespace host {

namespace {

using Count = unsigned long long;

std::string Duration(double seconds) {
    const auto whole = static_cast<Count>(std::ceil(seconds));
    char text[48];
    if (whole < 60) {
        std::snprintf(text, sizeof text, "%llu s", whole);
    } else if (whole < 3600) {
        std::snprintf(text, sizeof text, "%llu:%02llu min", whole / 60, whole % 60);
    } else {
        std::snprintf(text, sizeof text, "%llu:%02llu h", whole / 3600, whole / 60 % 60);
    }
    return text;
}

double Rate(std::uint64_t frames, double seconds) {
    return seconds > 0 ? static_cast<double>(frames) / seconds : 0;
}

std::string FramesText(std::uint64_t frames) {
    return std::to_string(frames) + (frames == 1 ? " frame" : " frames");
}

constexpr const char* kScanNames[] = {"unknown",    "progressive", "top field first", "bottom field first",
                                      "interlaced", "mixed"};

const char* NameOf(Scan scan) {
    return kScanNames[static_cast<std::size_t>(scan)];
}

// What the output says of its lines, where that is more than "progressive".
std::string LabelText(const RunSummary& summary) {
    if (summary.output == OutputKind::None || summary.output == OutputKind::Raw || summary.input == Scan::Progressive ||
        summary.truth == Scan::Unknown || (summary.written == summary.truth && summary.truth == Scan::Progressive)) {
        return {};
    }
    std::string text = std::string("The output is marked \"") + NameOf(summary.written) + "\"";
    if (summary.written != summary.truth) {
        return text +
               ", as its input was: a pipe's header is written before it is known which frames are deinterlaced.\n";
    }
    if (summary.truth == Scan::Mixed && summary.output == OutputKind::Y4m) {
        return text +
               ", each frame with a word of its own. Programs that refuse such a file take that of --mode all.\n";
    }
    return text +
           (summary.truth == Scan::Mixed ? ": some of its frames still are interlaced.\n" : ", as its input was.\n");
}

std::string Warnings(const RunSummary& summary) {
    std::string text = LabelText(summary);
    if (summary.unexpected != 0) {
        text +=
            "The transform changed " + FramesText(summary.unexpected) +
            " that this program's detector passes: it is another version, and what is said of frames may be wrong.\n";
    }
    if (summary.irregular) {
        text += "The input's frame rate varies; the output has the same frames at a constant rate.\n";
    }
    if (!summary.leftOut.empty()) {
        text += "Left out, as the output cannot hold it: " + summary.leftOut + ".\n";
    }
    return text;
}

} // namespace

std::string ProgressText(std::uint64_t frames, std::optional<std::uint64_t> total, double seconds) {
    const double rate = Rate(frames, seconds);
    char fps[32];
    std::snprintf(fps, sizeof fps, ", %.1f fps", rate);
    if (!total || frames > *total) {
        return FramesText(frames) + fps;
    }
    std::string text = std::to_string(frames) + " of " + FramesText(*total) + fps;
    if (rate > 0) {
        text += ", " + Duration(static_cast<double>(*total - frames) / rate) + " left";
    }
    return text;
}

std::string SummaryText(const RunSummary& summary) {
    char text[160];
    std::snprintf(text, sizeof text, "%s in %.2f s: %.1f frames per second, reading and writing included.\n",
                  FramesText(summary.frames).c_str(), summary.seconds, Rate(summary.frames, summary.seconds));
    std::string out = text;
    if (summary.frames > 0) {
        std::snprintf(text, sizeof text, "The transform itself took %.2f ms per frame.\n",
                      summary.transformSeconds * 1000 / static_cast<double>(summary.frames));
        out += text;
    }
    if (summary.calledInterlaced) {
        out += "The detector called " + FramesText(*summary.calledInterlaced) + " interlaced";
        if (summary.deinterlaced) {
            out += "; with its five-second hold " + FramesText(*summary.deinterlaced) + " were deinterlaced";
        }
        out += ".\n";
    }
    out += FramesText(summary.changed) + " came out different from what went in.\n";
    return out + Warnings(summary);
}

std::string SummaryJson(const RunSummary& summary, const std::string& input, const std::string& output) {
    CJsonObject json;
    json.Text("input", input);
    json.Text("output", output);
    json.Whole("frames", summary.frames);
    json.Number("seconds", summary.seconds);
    json.Number("transformSeconds", summary.transformSeconds);
    if (summary.calledInterlaced) {
        json.Whole("calledInterlaced", *summary.calledInterlaced);
        json.Whole("deinterlaced", *summary.deinterlaced);
    }
    json.Whole("changed", summary.changed);
    json.Text("inputScan", NameOf(summary.input));
    json.Text("outputScan", NameOf(summary.written));
    json.Flag("constantRate", !summary.irregular);
    json.Text("leftOut", summary.leftOut);
    return json.Line();
}

} // namespace host
