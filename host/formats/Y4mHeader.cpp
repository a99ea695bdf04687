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
    int bits = 8; // of a sample
};

constexpr ColorTag kColorTags[] = {
    {"420", Layout::Planar420},
    {"420jpeg", Layout::Planar420},
    {"420mpeg2", Layout::Planar420},
    {"420paldv", Layout::Planar420},
    {"422", Layout::Planar422},
    {"444", Layout::Planar444},
    {"mono", Layout::Gray},
    {"420p10", Layout::Planar420, 10},
    {"422p10", Layout::Planar422, 10},
    {"444p10", Layout::Planar444, 10},
    {"mono10", Layout::Gray, 10},
    {"420p12", Layout::Planar420, 12},
    {"422p12", Layout::Planar422, 12},
    {"444p12", Layout::Planar444, 12},
    {"mono12", Layout::Gray, 12},
    {"420p16", Layout::Planar420, 16},
    {"422p16", Layout::Planar422, 16},
    {"444p16", Layout::Planar444, 16},
    {"mono16", Layout::Gray, 16},
};

[[noreturn]] void Refuse(const std::string& name, const std::string& why) {
    throw HostError(ExitCode::Input, name + ": " + why);
}

void ApplyColor(ClipInfo& clip, std::string_view tag, const std::string& name) {
    const auto known = std::find_if(std::begin(kColorTags), std::end(kColorTags),
                                    [tag](const ColorTag& color) { return color.tag == tag; });
    if (known == std::end(kColorTags)) {
        Refuse(name, "Y4M pixel format C" + std::string(tag) +
                         " is not supported. 4:2:0, 4:2:2, 4:4:4 and mono are, of 8, 10, 12 or 16 bits; with ffmpeg "
                         "add \"-pix_fmt yuv422p\" before the output name.");
    }
    clip.layout = known->layout;
    clip.sampleBits = known->bits;
    clip.chroma420 = known->layout == Layout::Planar420 && known->bits == 8 ? tag : std::string_view();
}

int Side(std::string_view text, const char* what, const std::string& name) {
    const auto value = ParseWhole(text, kMaxSide);
    if (!value || *value == 0) {
        Refuse(name, std::string("the Y4M header gives no usable ") + what + " (\"" + std::string(text) + "\"); 1 to " +
                         std::to_string(kMaxSide) + " is possible.");
    }
    return static_cast<int>(*value);
}

struct ScanWord {
    Scan scan;
    char letter;            // in the header
    std::string_view frame; // in a FRAME line: presentation, temporal and spatial (chroma) sampling
};

constexpr ScanWord kScanWords[] = {
    {Scan::Progressive, 'p', " I1p?"}, {Scan::TopFirst, 't', " Iti?"},   {Scan::BottomFirst, 'b', " Ibi?"},
    {Scan::Mixed, 'm', " I???"},       {Scan::Interlaced, '?', " I?i?"}, {Scan::Unknown, '?', " I???"},
};

const ScanWord& WordOf(Scan scan) {
    return *std::find_if(std::begin(kScanWords), std::end(kScanWords) - 1,
                         [scan](const ScanWord& word) { return word.scan == scan; });
}

Scan ScanFor(std::string_view text) {
    for (const ScanWord& word : kScanWords) {
        if (word.letter != '?' && text == std::string_view(&word.letter, 1)) {
            return word.scan;
        }
    }
    return Scan::Unknown;
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
        ApplyColor(clip, value, name);
        break;
    case 'X':
        if (value == "COLORRANGE=FULL") {
            clip.fullRange = true;
        } else if (!value.starts_with("YSCSS=")) { // that one names the chroma once more
            clip.comments += " X" + std::string(value);
        }
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

// The word of a FRAME line that tells its sampling: I, then three characters; empty where there is none.
std::string_view FieldsOf(std::string_view frameLine) {
    TakeWord(frameLine);
    for (std::string_view word = TakeWord(frameLine); !word.empty(); word = TakeWord(frameLine)) {
        if (word.size() == 4 && word[0] == 'I') {
            return word;
        }
    }
    return {};
}

} // namespace

ClipInfo ParseY4mHeader(std::string_view line, const std::string& name) {
    if (TakeWord(line) != kMagic) {
        Refuse(name, "this is no Y4M stream (it does not begin with \"YUV4MPEG2\"). Say what it is with --from.");
    }
    ClipInfo clip;
    clip.layout = Layout::Planar420; // what a missing C field stands for
    clip.chroma420 = "420jpeg";
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
    const std::string_view word = FieldsOf(frameLine);
    return word.empty() || word[3] == '?' ? otherwise : word[3] == 'i';
}

Scan Y4mFrameScan(std::string_view frameLine) {
    const std::string_view word = FieldsOf(frameLine);
    switch (word.empty() ? '?' : word[1]) {
    case 't':
    case 'T':
        return word[2] == 'p' ? Scan::Progressive : Scan::TopFirst;
    case 'b':
    case 'B':
        return word[2] == 'p' ? Scan::Progressive : Scan::BottomFirst;
    case '1':
    case '2':
    case '3':
        return Scan::Progressive;
    default:
        return word.empty() || word[2] != 'i' ? Scan::Unknown : Scan::Interlaced;
    }
}

std::string_view Y4mFrameWord(Scan scan) {
    return WordOf(scan).frame;
}

char Y4mScanLetter(Scan scan) {
    return WordOf(scan).letter;
}

} // namespace host
