#include "host/formats/Y4mHeader.h"

#include "host/HostError.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::string_view kMagic = "YUV4MPEG2";
constexpr std::string_view kFrame = "FRAME";

struct ColorTag {
    std::string_view tag;
    Layout layout;
};

constexpr ColorTag kColorTags[] = {
    {"420", Layout::Planar420},      {"420jpeg", Layout::Planar420}, {"420mpeg2", Layout::Planar420},
    {"420paldv", Layout::Planar420}, {"422", Layout::Planar422},     {"444", Layout::Planar444},
    {"mono", Layout::Gray},
};

[[noreturn]] void Refuse(const std::string& name, const std::string& why) {
    throw HostError(ExitCode::Input, name + ": " + why);
}

Layout LayoutFor(std::string_view tag, const std::string& name) {
    for (const ColorTag& known : kColorTags) {
        if (tag == known.tag) {
            return known.layout;
        }
    }
    Refuse(name, "Y4M pixel format C" + std::string(tag) +
                     " is not supported. 8-bit 4:2:0, 4:2:2, 4:4:4 and mono are; with ffmpeg add "
                     "\"-pix_fmt yuv422p\" before the output name.");
}

int Side(std::string_view text, const char* what, const std::string& name) {
    const auto value = ParseWhole(text, kMaxSide);
    if (!value || *value == 0) {
        Refuse(name, std::string("the Y4M header gives no usable ") + what + " (\"" + std::string(text) + "\"); 1 to " +
                         std::to_string(kMaxSide) + " is possible.");
    }
    return static_cast<int>(*value);
}

Scan ScanFor(std::string_view text) {
    if (text == "p") {
        return Scan::Progressive;
    }
    if (text == "t" || text == "b") {
        return Scan::Interlaced;
    }
    return text == "m" ? Scan::Mixed : Scan::Unknown;
}

void ApplyField(ClipInfo& clip, char key, std::string_view value, const std::string& name) {
    switch (key) {
    case 'W':
        clip.width = Side(value, "width", name);
        break;
    case 'H':
        clip.height = Side(value, "height", name);
        break;
    case 'F':
        clip.rate = ParseRate(value);
        break;
    case 'A':
        clip.aspect = ParseRate(value);
        break;
    case 'I':
        clip.scan = ScanFor(value);
        break;
    case 'C':
        clip.layout = LayoutFor(value, name);
        break;
    case 'X':
        clip.fullRange = clip.fullRange || value == "COLORRANGE=FULL";
        break;
    default: // unknown fields are to be ignored
        break;
    }
}

// Takes the next word off the line; words are separated by one blank or more.
std::string_view TakeWord(std::string_view& line) {
    const std::size_t begin = line.find_first_not_of(' ');
    line.remove_prefix(begin == std::string_view::npos ? line.size() : begin);
    const std::string_view word = line.substr(0, line.find(' '));
    line.remove_prefix(word.size());
    return word;
}

} // namespace

ClipInfo ParseY4mHeader(std::string_view line, const std::string& name) {
    if (TakeWord(line) != kMagic) {
        Refuse(name, "this is no Y4M stream (it does not begin with \"YUV4MPEG2\"). Say what it is with --from.");
    }
    ClipInfo clip;
    clip.layout = Layout::Planar420; // what a missing C field stands for
    for (std::string_view word = TakeWord(line); !word.empty(); word = TakeWord(line)) {
        ApplyField(clip, word[0], word.substr(1), name);
    }
    if (clip.width == 0 || clip.height == 0) {
        Refuse(name, "the Y4M header names no width or no height.");
    }
    return clip;
}

bool IsY4mFrameLine(std::string_view line) {
    if (!line.starts_with(kFrame)) {
        return false;
    }
    const std::string_view fields = line.substr(kFrame.size());
    const bool printable = std::all_of(fields.begin(), fields.end(), [](char c) { return c >= ' ' && c < 127; });
    return printable && (fields.empty() || fields[0] == ' ') && fields.find(kFrame) == fields.npos;
}

bool Y4mFrameHasFieldChroma(std::string_view frameLine, bool otherwise) {
    TakeWord(frameLine);
    for (std::string_view word = TakeWord(frameLine); !word.empty(); word = TakeWord(frameLine)) {
        // I, then presentation, temporal and spatial (chroma) sampling
        if (word.size() == 4 && word[0] == 'I' && word[3] != '?') {
            return word[3] == 'i';
        }
    }
    return otherwise;
}

std::string FormatY4mHeader(Layout layout, int width, int height, Rational rate, std::optional<Rational> aspect,
                            bool fullRange) {
    std::string line(kMagic);
    line += " W" + std::to_string(width) + " H" + std::to_string(height);
    line += " F" + std::to_string(rate.numerator) + ":" + std::to_string(rate.denominator) + " Ip";
    if (aspect) {
        line += " A" + std::to_string(aspect->numerator) + ":" + std::to_string(aspect->denominator);
    }
    line += layout == Layout::Planar444 ? " C444" : " C422";
    if (fullRange) {
        line += " XCOLORRANGE=FULL";
    }
    return line + "\n";
}

} // namespace host
