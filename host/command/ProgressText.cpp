#include "host/command/ProgressText.h"

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
    return out + FramesText(summary.changed) + " came out different from what went in.\n";
}

} // namespace host
