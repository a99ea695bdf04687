#include "host/command/Command.h"

namespace host {

namespace {

constexpr std::string_view kIntroduction =
    "nmfvdeint - sends video through the NMFVDeitrx deinterlacing transform\n"
    "\n"
    "An interlaced frame holds two moments: its even rows show one, its odd rows\n"
    "the next. Where something moves, a computer screen then shows combs. This\n"
    "program takes uncompressed video from a file or a pipe, lets the transform\n"
    "remove the combs, and writes as many frames of the same size.\n"
    "\n"
    "Usage:\n";

constexpr std::string_view kExamples =
    "\n"
    "Examples:\n"
    "  nmfvdeint clip.y4m clean.y4m\n"
    "  nmfvdeint capture.avi clean.avi --method rebuild --mode all\n"
    "  nmfvdeint clip.y4m --to none --still 120 before-after.png\n"
    "  nmfvdeint analyse clip.y4m\n"
    "  nmfvdeint pages --live clip.y4m\n"
    "  nmfvdeint register\n"
    "  ffmpeg -i tape.mpg -pix_fmt yuv422p -f yuv4mpegpipe - |\n"
    "    nmfvdeint - - --sensitivity 0.3 | ffmpeg -i - -c:v libx264 clean.mp4\n"
    "\n"
    "Pipes and formats:\n"
    "  \"-\" is standard input or output. Y4M may be 4:2:0, 4:2:2, 4:4:4 or mono; more\n"
    "  than 8 bits are rounded. What comes out is 4:2:2, or 4:4:4 when the transform\n"
    "  was fed rgb24 or iyu2, or 4:2:0 where --to-chroma asks for it. It is only\n"
    "  marked progressive when every frame was deinterlaced.\n"
    "  --even, --odd and raw frames go by the rows as they lie in memory; --keep,\n"
    "  --roi and --protect by the picture as it is seen.\n"
    "  An output gets its name when it is whole; until then it is OUTPUT.*.part.\n"
    "\n"
    "Exit codes:\n"
    "  0 done   1 command line   2 input   3 output   4 transform   5 interrupted\n"
    "  6 registration: could not be changed, or verify found something wrong\n"
    "  7 no desktop to show windows on\n";

// The verb of the first row need not be named.
std::string UsageText(std::span<const VerbRow> verbs, const VerbRow& verb) {
    std::string text = "  nmfvdeint ";
    for (const std::string_view word : {&verb == verbs.data() ? std::string_view() : verb.name, verb.arguments}) {
        text += word.empty() ? "" : std::string(word) + " ";
    }
    return text + "[options]\n      " + WrapHelp(verb.help, 6);
}

} // namespace

std::string HelpText(std::span<const VerbRow> verbs) {
    std::string text(kIntroduction);
    for (const VerbRow& verb : verbs) {
        text += UsageText(verbs, verb);
    }
    text += DescribeOptions(AllOptions(), [](const OptionRow&) { return true; });
    return text + std::string(kExamples);
}

std::string VerbHelpText(std::span<const VerbRow> verbs, const VerbRow& verb) {
    return "Usage:\n" + UsageText(verbs, verb) +
           DescribeOptions(AllOptions(), [&verb](const OptionRow& row) { return Knows(verb, row); });
}

} // namespace host
