#include "host/command/Options.h"

#include "host/HostError.h"
#include "host/command/OptionValues.h"
#include "settings/public/NMFVDeinterlaceLimits.h"

namespace host {

namespace {

constexpr Word<InputKind> kInputKinds[] = {
    {"y4m", InputKind::Y4m}, {"avi", InputKind::Avi}, {"raw", InputKind::Raw}, {"media", InputKind::Media}};
constexpr Word<OutputKind> kOutputKinds[] = {
    {"y4m", OutputKind::Y4m}, {"avi", OutputKind::Avi}, {"raw", OutputKind::Raw}, {"none", OutputKind::None}};
constexpr Word<Pixels> kFeeds[] = {
    {"rgb24", Pixels::Rgb24}, {"yuy2", Pixels::Yuy2}, {"uyvy", Pixels::Uyvy}, {"iyu2", Pixels::Iyu2}};
constexpr Word<bool> kChromas[] = {{"420", true}};
constexpr Word<LineSampling> kLines[] = {
    {"auto", LineSampling::Auto}, {"interlaced", LineSampling::Interlaced}, {"progressive", LineSampling::Progressive}};
constexpr Word<bool> kCutOff[] = {{"fail", false}, {"keep", true}};
constexpr Word<Mode> kModes[] = {{"off", Mode::Off}, {"all", Mode::All}, {"auto", Mode::Auto}};
constexpr Word<bool> kMethods[] = {{"merge", true}, {"rebuild", false}};
constexpr Word<SheetKind> kSheets[] = {{"platform", SheetKind::Platform}, {"own", SheetKind::Own}};
constexpr Word<bool> kFields[] = {{"top", true}, {"bottom", false}};
constexpr Word<bool> kOnOff[] = {{"on", true}, {"off", false}};
constexpr Word<bool> kTimeFormats[] = {{"time", true}, {"frame", false}};

void SetRaw(Options& options, std::string_view value) {
    options.raw = ParseRawFormat(value);
    if (!options.raw) {
        BadValue("--raw", value, "WIDTHxHEIGHT:FORMAT@FPS, as in 720x576:yuy2@25 (an even width for yuy2 and uyvy)");
    }
}

void SetSensitivity(Options& options, std::string_view value) {
    options.sensitivity = ParseDecimal(value);
    if (!options.sensitivity || *options.sensitivity < kLowestSensitivity ||
        *options.sensitivity > kHighestSensitivity) {
        BadValue("--sensitivity", value, "a number from 0.001 to 8");
    }
}

void SetEven(Options& options, bool even) {
    options.evenAndOdd = options.evenAndOdd || options.even == !even;
    options.even = even;
}

void AddStill(Options& options, std::string_view value) {
    const std::size_t comma = value.find(',');
    const auto frame = ParseWhole(value.substr(0, comma), UINT32_MAX);
    if (!frame || comma == value.npos || comma + 1 == value.size()) {
        BadValue("--still", value, "a frame number and a file, as in --still 120 picture.png");
    }
    options.stills.push_back({*frame, std::string(value.substr(comma + 1))});
}

constexpr std::string_view kInOut = "Input and output";
constexpr std::string_view kHow = "How frames are deinterlaced";
constexpr std::string_view kWhere = "Where the transform comes from, and its saved settings";
constexpr std::string_view kStored = "Settings that the transform stores and its frames do not show";
constexpr std::string_view kOther = "Other";

constexpr OptionRow kRows[] = {
    {kInOut, "--from", "y4m|avi|raw|media",
     "what the input is. Normally seen from its first bytes; media is whatever else the platform "
     "can decode.",
     [](Options& o, std::string_view v) { o.from = PickWord<InputKind>("--from", v, kInputKinds); }},
    {kInOut, "--to", "y4m|avi|raw|none",
     "what the output is; with none, no OUTPUT is named. Normally seen from its extension; a pipe "
     "gets y4m.",
     [](Options& o, std::string_view v) { o.to = PickWord<OutputKind>("--to", v, kOutputKinds); }},
    {kInOut, "--raw", "WxH:FORMAT@FPS",
     "the input is raw frames as the transform lays them out: FORMAT rgb24 (B G R, "
     "bottom row first), yuy2, uyvy or iyu2 (U Y V), rows padded to 4 bytes; FPS as "
     "25, 29.97 or 30000/1001.",
     SetRaw},
    {kInOut, "--feed", "FORMAT",
     "what the transform is given: rgb24, yuy2, uyvy or iyu2; the input is converted. "
     "Normally the nearest to the input; iyu2 for 4:2:0 and 4:2:2 of an odd width.",
     [](Options& o, std::string_view v) { o.feed = PickWord<Pixels>("--feed", v, kFeeds); }},
    {kInOut, "--to-chroma", "420",
     "write 4:2:0 to a Y4M output, by fields where a frame is interlaced. Normally 4:2:2, or 4:4:4 from rgb24 and "
     "iyu2.",
     [](Options& o, std::string_view v) { o.to420 = PickWord<bool>("--to-chroma", v, kChromas); }},
    {kInOut, "--lines", "HOW",
     "how the chroma of 4:2:0 input belongs to its lines: interlaced, progressive, or auto "
     "(as the input says; progressive where it says nothing).",
     [](Options& o, std::string_view v) { o.lines = PickWord<LineSampling>("--lines", v, kLines); }},
    {kInOut, "--cut-off", "fail|keep",
     "input that is cut off or damaged: fail (normal), or keep the whole frames before that place.",
     [](Options& o, std::string_view v) { o.keepCutOff = PickWord<bool>("--cut-off", v, kCutOff); }},
    {kInOut, "--no-side", "",
     "leave out what an AVI file holds beside its video. Normally sound and text go into an AVI output.",
     [](Options& o, std::string_view) { o.noSide = true; }},
    {kInOut, "--out-dir", "FOLDER",
     "every file named is an input, a folder stands for the clips in it, and each becomes NAME-deinterlaced there.",
     [](Options& o, std::string_view v) { o.outDir = v; }},
    {kInOut, "--force", "", "replace files that exist.", [](Options& o, std::string_view) { o.force = true; }},
    {kInOut, "--still", "N,FILE",
     "write a PNG of frame N (the first is 0) before and after, with the most combed place "
     "enlarged. \"--still N FILE\" works too. Repeat it for more pictures.",
     AddStill, 2},
    {kInOut, "--live", "INPUT",
     "pages: play this clip meanwhile, over and over, and show it before and after in a window "
     "of its own.",
     [](Options& o, std::string_view v) { o.live = v; }, 1, true},

    {kHow, "--mode", "off|all|auto",
     "off: pass every frame through; all: deinterlace every frame; auto (normal): only frames "
     "that look interlaced, and five seconds after each.",
     [](Options& o, std::string_view v) { o.mode = PickWord<Mode>("--mode", v, kModes); }},
    {kHow, "--method", "merge|rebuild",
     "merge (normal): blend the fields; rebuild: keep one field's rows and make the others "
     "from them.",
     [](Options& o, std::string_view v) { o.merge = PickWord<bool>("--method", v, kMethods); }},
    {kHow, "--keep", "top|bottom",
     "which of the picture's fields rebuild keeps: the one with its top row, or the other. Works out --even or --odd "
     "for "
     "the format and the region.",
     [](Options& o, std::string_view v) { o.keepTop = PickWord<bool>("--keep", v, kFields); }},
    {kHow, "--even", "", "rebuild keeps rows 0, 2, 4, ... and makes the odd ones.",
     [](Options& o, std::string_view) { SetEven(o, true); }},
    {kHow, "--odd", "",
     "rebuild keeps rows 1, 3, 5, ... (normal). Rows are counted from the first in memory of the "
     "picture or region: its top row for yuy2, uyvy and iyu2, its bottom row for rgb24.",
     [](Options& o, std::string_view) { SetEven(o, false); }},
    {kHow, "--sensitivity", "X",
     "of auto, 0.001 to 8 (normal 1): the smaller it is, the fewer combs make a frame interlaced. "
     "\"nmfvdeint analyse\" finds the value for a clip.",
     SetSensitivity},
    {kHow, "--roi", "L,T,R,B",
     "deinterlace this rectangle only: pixels from the picture's top left corner, right and "
     "bottom edge not included.",
     [](Options& o, std::string_view v) { o.region = ParseArea("--roi", v); }},

    {kWhere, "--dll", "FILE",
     "load the transform from this file; it need not be registered. Normally NMFVDeitrx.dll "
     "beside this program, else the registered one. For register and unregister: the file that is meant; for verify: "
     "the one whose version to compare.",
     [](Options& o, std::string_view v) { o.dll = v; }},
    {kWhere, "--registered", "", "use the registered transform.",
     [](Options& o, std::string_view) { o.registered = true; }},
    {kWhere, "--saved", "", "start from your saved settings instead of the defaults.",
     [](Options& o, std::string_view) { o.saved = true; }},
    {kWhere, "--save", "", "keep this run's settings as your saved settings; otherwise they stay as they were.",
     [](Options& o, std::string_view) { o.save = true; }},
    {kWhere, "--no-save", "", "pages: leave the saved settings as they were, whatever is applied.",
     [](Options& o, std::string_view) { o.noSave = true; }, 1, true},
    // pages: the window around them, for tests and for trying out what ShowPages chooses.
    {kWhere, "--sheet", "platform|own", "",
     [](Options& o, std::string_view v) { o.sheet = PickWord<SheetKind>("--sheet", v, kSheets); }, 1, true},

    {kStored, "--protect", "L,T,R,B",
     "protected area, as for --roi. The transform saves and restores it with a width "
     "of nothing, so no pixel changes.",
     [](Options& o, std::string_view v) { o.protectedArea = ParseArea("--protect", v); }},
    {kStored, "--resize", "on|off", "the resize setting.",
     [](Options& o, std::string_view v) { o.resize = PickWord<bool>("--resize", v, kOnOff); }},
    {kStored, "--start-with-even-frame", "on|off", "which frame a pattern begins with.",
     [](Options& o, std::string_view v) {
         o.startWithEvenFrame = PickWord<bool>("--start-with-even-frame", v, kOnOff);
     }},
    {kStored, "--pattern", "P,N,D,on|off",
     "global pattern: P frames of preamble, then N untouched and D deinterlaced "
     "in turn; whether the preamble is deinterlaced.",
     [](Options& o, std::string_view v) { o.pattern = ParsePattern("--pattern", v); }},
    {kStored, "--use-pattern", "on|off", "switch the global pattern; --pattern switches it on.",
     [](Options& o, std::string_view v) { o.usePattern = PickWord<bool>("--use-pattern", v, kOnOff); }},
    {kStored, "--segment", "START,MODE[,P,N,D,on|off]",
     "a segment that begins at a frame (90) or a time (0:00:03.600), "
     "MODE none, all or pattern. Repeat it for more; "
     "segments are never saved.",
     [](Options& o, std::string_view v) { o.segments.push_back(ParseSegment("--segment", v)); }},
    {kStored, "--segments-as", "frame|time", "how segment starts are shown.",
     [](Options& o, std::string_view v) { o.segmentsAsTimes = PickWord<bool>("--segments-as", v, kTimeFormats); }},

    {kOther, "--csv", "", "analyse: one comma-separated line per frame, with a heading.",
     [](Options& o, std::string_view) { o.csv = true; }},
    {kOther, "--json", "", "the summary, or what analyse found, as one JSON object per clip on standard output.",
     [](Options& o, std::string_view) { o.json = true; }},
    {kOther, "--plot", "FILE.svg", "analyse: write a picture of count, threshold and field order over the frames.",
     [](Options& o, std::string_view v) { o.plot = v; }},
    {kOther, "--quiet", "", "no progress and no summary, only errors.",
     [](Options& o, std::string_view) { o.quiet = true; }},
    {kOther, "--help", "", "this text; after a verb, that verb's.",
     [](Options& o, std::string_view) { o.help = true; }},
    {kOther, "-h", "", "the same, as are -? and /?.", [](Options& o, std::string_view) { o.help = true; }},
    {kOther, "--version", "", "the version.", [](Options& o, std::string_view) { o.version = true; }},
};

} // namespace

std::span<const OptionRow> AllOptions() {
    return kRows;
}

} // namespace host
