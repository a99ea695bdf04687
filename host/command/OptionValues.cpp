#include "host/command/OptionValues.h"

#include "host/HostError.h"
#include "host/picture/Rational.h"
#include "settings/public/NMFVDeinterlaceLimits.h"

namespace host {

namespace {

constexpr std::string_view kAreaForm = "LEFT,TOP,RIGHT,BOTTOM in pixels, as in 0,0,360,288";
constexpr std::string_view kPatternForm = "PREAMBLE,UNTOUCHED,DEINTERLACED,on|off, as in 0,1,4,off";
constexpr std::string_view kSegmentForm =
    "START,none|all|pattern with START a frame up to 107999999 or a time H:MM:SS.mmm up to 999:59:59.999, "
    "then perhaps a pattern P,N,D,on|off";

constexpr Word<SegmentMode> kSegmentModes[] = {
    {"none", SegmentMode::None}, {"all", SegmentMode::All}, {"pattern", SegmentMode::Pattern}};

std::vector<std::string_view> Split(std::string_view text, char mark) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t end = text.find(mark);
        parts.push_back(text.substr(0, end));
        if (end == text.npos) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

std::optional<int> Number(std::string_view text, int limit = INT32_MAX) {
    const auto value = ParseWhole(text, static_cast<std::uint64_t>(limit));
    return value ? std::optional<int>(static_cast<int>(*value)) : std::nullopt;
}

std::optional<Pattern> PatternFrom(std::span<const std::string_view> parts) {
    if (parts.size() != 4 || (parts[3] != "on" && parts[3] != "off")) {
        return std::nullopt;
    }
    const auto preamble = Number(parts[0]);
    const auto untouched = Number(parts[1]);
    const auto deinterlaced = Number(parts[2]);
    if (!preamble || !untouched || !deinterlaced) {
        return std::nullopt;
    }
    return Pattern{*preamble, *untouched, *deinterlaced, parts[3] == "on"};
}

// H:MM:SS or H:MM:SS.mmm
bool ReadTime(std::string_view text, Segment& segment) {
    const auto parts = Split(text, ':');
    if (parts.size() != 3) {
        return false;
    }
    const std::size_t dot = parts[2].find('.');
    const std::string_view thousandths = dot == text.npos ? "000" : parts[2].substr(dot + 1);
    const auto hours = Number(parts[0], 999);
    const auto minutes = Number(parts[1], 59);
    const auto seconds = Number(parts[2].substr(0, dot), 59);
    const auto milliseconds = Number(thousandths, 999);
    if (!hours || !minutes || !seconds || !milliseconds || thousandths.size() != 3) {
        return false;
    }
    segment.hours = *hours;
    segment.minutes = *minutes;
    segment.seconds = *seconds;
    segment.milliseconds = *milliseconds;
    return true;
}

} // namespace

void BadValue(std::string_view option, std::string_view value, std::string_view expected) {
    throw HostError(ExitCode::Usage, std::string(option) + " \"" + std::string(value) +
                                         "\" is no value for it: it takes " + std::string(expected));
}

namespace {

constexpr const char* kEdges[] = {"left", "top", "right", "bottom"};

[[noreturn]] void BadEdge(std::string_view option, std::string_view value, const std::string& why) {
    throw HostError(ExitCode::Usage, std::string(option) + " \"" + std::string(value) + "\": " + why + "; it takes " +
                                         std::string(kAreaForm));
}

} // namespace

Area ParseArea(std::string_view option, std::string_view value) {
    const auto parts = Split(value, ',');
    if (parts.size() != 4) {
        BadValue(option, value, kAreaForm);
    }
    int edges[4];
    for (std::size_t i = 0; i < 4; ++i) {
        const auto edge = Number(parts[i], kMaxSide);
        if (!edge) {
            BadEdge(option, value,
                    std::string("its ") + kEdges[i] + " edge \"" + std::string(parts[i]) +
                        "\" is no whole number from 0 to " + std::to_string(kMaxSide));
        }
        edges[i] = *edge;
    }
    for (std::size_t i = 0; i < 2; ++i) {
        if (edges[i] >= edges[i + 2]) {
            BadEdge(option, value,
                    std::string("its ") + kEdges[i + 2] + " edge, " + std::to_string(edges[i + 2]) +
                        ", must be beyond the " + kEdges[i] + " one, " + std::to_string(edges[i]) +
                        " (they are edges, not a size)");
        }
    }
    return {edges[0], edges[1], edges[2], edges[3]};
}

Pattern ParsePattern(std::string_view option, std::string_view value) {
    const auto parts = Split(value, ',');
    const auto pattern = PatternFrom(parts);
    if (!pattern) {
        BadValue(option, value, kPatternForm);
    }
    return *pattern;
}

Segment ParseSegment(std::string_view option, std::string_view value) {
    const auto parts = Split(value, ',');
    if (parts.size() != 2 && parts.size() != 6) {
        BadValue(option, value, kSegmentForm);
    }
    Segment segment;
    if (const auto frame = ParseWhole(parts[0], kLastStartFrame)) {
        segment.frame = static_cast<std::int64_t>(*frame);
    } else if (!ReadTime(parts[0], segment)) {
        BadValue(option, value, kSegmentForm);
    }
    segment.mode = PickWord<SegmentMode>(option, parts[1], kSegmentModes);
    if (parts.size() == 6) {
        segment.pattern = PatternFrom(std::span(parts).subspan(2));
        if (!segment.pattern) {
            BadValue(option, value, kSegmentForm);
        }
    }
    return segment;
}

} // namespace host
