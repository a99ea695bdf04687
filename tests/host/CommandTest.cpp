#include "host/command/Command.h"
#include "host/command/ProgressText.h"
#include "tests/host/MemoryStreams.h"

#include <iterator>
#include <sstream>
#include <tuple>

namespace host {
namespace {

void DoNothing(const Command&) {}

constexpr std::string_view kFewOptions[] = {"--dll", "--quiet"};
constexpr VerbRow kVerbs[] = {
    {"deinterlace", "INPUT OUTPUT", "the first", 1, 2, &DoNothing},
    {"analyse", "INPUT", "the second", 1, 1, &DoNothing},
    {"verify", "", "the third", 0, 0, &DoNothing, kFewOptions},
};

// Words separated by blanks.
Command Parse(const std::string& line) {
    std::istringstream words(line);
    return ParseCommand(kVerbs, std::vector<std::string>{std::istream_iterator<std::string>(words), {}});
}

TEST(Command, FilesAndVerbs) {
    constexpr struct {
        const char* line;
        const char* verb;
        const char* input;
        const char* output;
        OutputKind kind;
    } kCases[] = {
        {"a.y4m b.y4m", "deinterlace", "a.y4m", "b.y4m", OutputKind::Y4m},
        {"deinterlace a.y4m B.AVI", "deinterlace", "a.y4m", "B.AVI", OutputKind::Avi},
        {"- -", "deinterlace", "-", "-", OutputKind::Y4m},
        {"a.y4m", "deinterlace", "a.y4m", "", OutputKind::None},
        {"a.y4m b.y4m c.avi --out-dir d", "deinterlace", "a.y4m", "", OutputKind::None},
        {"- - --to raw", "deinterlace", "-", "-", OutputKind::Raw},
        {"a.y4m --to none", "deinterlace", "a.y4m", "", OutputKind::None},
        {"--mode all a b --to=avi", "deinterlace", "a", "b", OutputKind::Avi},
        {"-- --mode b.yuv", "deinterlace", "--mode", "b.yuv", OutputKind::Raw},
        {"analyse a.y4m --csv", "analyse", "a.y4m", "", OutputKind::None},
        {"verify --quiet", "verify", "", "", OutputKind::None},
        {"analise.y4m b.y4m", "deinterlace", "analise.y4m", "b.y4m", OutputKind::Y4m},
        {"./analyse b.y4m", "deinterlace", "./analyse", "b.y4m", OutputKind::Y4m},
    };
    for (const auto& c : kCases) {
        const Command command = Parse(c.line);
        EXPECT_EQ(command.verb->name, c.verb) << c.line;
        EXPECT_EQ(command.input, c.input) << c.line;
        EXPECT_EQ(command.output, c.output) << c.line;
        EXPECT_EQ(command.outputKind, c.kind) << c.line;
    }
}

TEST(Command, EveryMistakeIsNamed) {
    constexpr struct {
        const char* line;
        const char* said;
    } kCases[] = {
        {"", "no input"},
        {"a b c --to y4m", "\"c\" is one word too many"},
        {"a.y4m b.y4m --to none", "\"b.y4m\" is one word too many"},
        {"a.y4m b.mp4", "--to"},
        {"a.y4m - --to avi", "pipe"},
        {"a b.y4m --mod all", "did you mean --mode?"},
        {"a b.y4m --sensitivty 1", "did you mean --sensitivity?"},
        {"a b.y4m --ovne", "did you mean --even?"},
        {"a b.y4m --frobnicate", "there is no option --frobnicate ("},
        {"a b.y4m --mode", "--mode needs a value"},
        {"a b.y4m --mode sometimes", "one of off, all, auto"},
        {"a b.y4m --even=1", "takes no value"},
        {"a b.y4m --sensitivity 0.0009", "0.001 to 8"},
        {"a b.y4m --sensitivity 8.1", "0.001 to 8"},
        {"a b.y4m --sensitivity nan", "0.001 to 8"},
        {"a b.y4m --roi 10,0,10,5", "its right edge, 10, must be beyond the left one, 10"},
        {"a b.y4m --roi 0,5,10,5", "its bottom edge, 5,"},
        {"a b.y4m --roi 0,0,10", "LEFT,TOP,RIGHT,BOTTOM"},
        {"a b.y4m --roi -1,0,10,5", "its left edge \"-1\""},
        {"a b.y4m --pattern 1,2,3", "PREAMBLE"},
        {"a b.y4m --segment 108000000,all", "START"},
        {"a b.y4m --segment 0:60:00,all", "START"},
        {"a b.y4m --segment 0:00:01.5,all", "START"},
        {"a b.y4m --segment 5,some", "one of none, all, pattern"},
        {"a b.y4m --still 5", "--still"},
        {"a b.y4m --still x,p.png", "--still"},
        {"a b.y4m --dll x.dll --registered", "give one"},
        {"a b.y4m --from raw", "--raw"},
        {"a b.y4m --from avi --raw 2x2:yuy2@25", "give one"},
        {"a b.y4m --raw 3x2:yuy2@25", "even width"},
        {"a b.y4m --even --odd", "exclude each other"},
        {"a b.y4m --keep top --odd", "give one"},
        {"a b.y4m --method merge --even", "keeps none"},
        {"a b.y4m --mode all --sensitivity 1", "--mode auto only"},
        {"a - --json", "standard output"},
        {"a b.y4m --to-chroma 422", "one of 420"},
        {"analise a", "did you mean analyse?"},
        {"verify a", "\"a\" is one word too many. Usage: nmfvdeint verify"},
        {"verify --dll x.dll --mode all", "verify has no option --mode"},
        {"analyse a b", "\"b\" is one word too many"},
    };
    for (const auto& c : kCases) {
        ExpectError(ExitCode::Usage, c.said, c.line, [&] { Parse(c.line); });
    }
}

TEST(Command, SettingsArriveInTheOptions) {
    const Options o = Parse("a b.y4m --mode off --method rebuild --even --sensitivity 0.25 --roi 1,2,3,4 --protect "
                            "5,6,7,8 --resize on --start-with-even-frame off --pattern 1,2,3,on --use-pattern off "
                            "--segments-as frame --save --saved --force --quiet --lines interlaced --cut-off keep")
                          .options;
    EXPECT_EQ(o.mode, Mode::Off);
    EXPECT_EQ(o.merge, false);
    EXPECT_EQ(o.even, true);
    EXPECT_EQ(o.sensitivity, 0.25);
    EXPECT_EQ(std::tie(o.region->left, o.region->top, o.region->right, o.region->bottom), std::tuple(1, 2, 3, 4));
    EXPECT_EQ(o.protectedArea->bottom, 8);
    EXPECT_EQ(o.resize, true);
    EXPECT_EQ(o.startWithEvenFrame, false);
    EXPECT_EQ(o.pattern->untouched, 2);
    EXPECT_TRUE(o.pattern->deinterlacePreamble);
    EXPECT_EQ(o.usePattern, false);
    EXPECT_EQ(o.segmentsAsTimes, false);
    EXPECT_TRUE(o.save && o.saved && o.force && o.quiet && o.keepCutOff);
    EXPECT_EQ(o.lines, LineSampling::Interlaced);
    EXPECT_TRUE(Parse("a b.y4m --method merge --odd --mode all --sensitivity 1 --save").options.save);
    EXPECT_FALSE(Parse("a b.y4m").options.even);
}

TEST(Command, SegmentsAndStills) {
    const Options o = Parse("a b.y4m --segment 90,all --segment 1:02:03.045,pattern,4,5,6,off --still 7 x.png "
                            "--still 8,y.png --still=9,z,1.png")
                          .options;
    ASSERT_EQ(o.segments.size(), 2u);
    EXPECT_EQ(o.segments[0].frame, 90);
    EXPECT_EQ(o.segments[0].mode, SegmentMode::All);
    EXPECT_FALSE(o.segments[0].pattern);
    EXPECT_FALSE(o.segments[1].frame);
    const auto& start = o.segments[1];
    EXPECT_EQ(std::tie(start.hours, start.minutes, start.seconds, start.milliseconds), std::tuple(1, 2, 3, 45));
    EXPECT_EQ(o.segments[1].pattern->deinterlaced, 6);
    ASSERT_EQ(o.stills.size(), 3u);
    EXPECT_EQ(o.stills[0].frame, 7u);
    EXPECT_EQ(o.stills[0].path, "x.png");
    EXPECT_EQ(o.stills[1].path, "y.png");
    EXPECT_EQ(o.stills[2].path, "z,1.png");
}

TEST(Command, OutputsGetNamesOfTheirOwn) {
    EXPECT_EQ(OutputBeside("x/a.b.Y4M", "", {}), "x/a.b-deinterlaced.y4m");
    EXPECT_EQ(OutputBeside("C:\\x\\clip.mp4", "out", {}), "out/clip-deinterlaced.avi");
    EXPECT_EQ(OutputBeside("x.y/clip", "out/", OutputKind::Raw), "out/clip-deinterlaced.raw");
}

TEST(Command, HelpNamesEverythingWithinALine) {
    const std::string help = HelpText(kVerbs);
    for (const OptionRow& row : AllOptions()) {
        EXPECT_EQ(help.find("  " + std::string(row.name)) == std::string::npos, row.name == "--sheet") << row.name;
    }
    for (std::size_t at = 0; at < help.size();) {
        const std::size_t end = help.find('\n', at);
        EXPECT_LE(end - at, 80u) << help.substr(at, end - at);
        at = end + 1;
    }
}

TEST(Command, HelpNeedsNoFiles) {
    EXPECT_TRUE(Parse("/?").options.help);
    const Command analyse = Parse("verify -?");
    EXPECT_TRUE(analyse.options.help && analyse.isVerbNamed);
    const std::string help = VerbHelpText(kVerbs, *analyse.verb);
    EXPECT_NE(help.find("--dll"), help.npos);
    EXPECT_EQ(help.find("--mode"), help.npos) << help;
    EXPECT_TRUE(Parse("--help").options.help);
    EXPECT_TRUE(Parse("-h nonsense").options.help);
    EXPECT_TRUE(Parse("--version").options.version);
}

TEST(Command, OddWidthsAreRefusedWhereChromaIsShared) {
    ClipInfo clip;
    clip.layout = Layout::Planar420;
    clip.width = 721;
    clip.height = 5;
    ExpectError(ExitCode::Input, "721", "", [&] { CheckFeed(clip, Pixels::Yuy2, "odd.y4m"); });
    EXPECT_FALSE(ErrorOf([&] { CheckFeed(clip, Pixels::Iyu2, ""); }).any);
    EXPECT_FALSE(ErrorOf([&] { CheckFeed(clip, Pixels::Rgb24, ""); }).any);
    clip.layout = Layout::Uyvy;
    EXPECT_TRUE(ErrorOf([&] { CheckFeed(clip, Pixels::Rgb24, ""); }).any);
}

TEST(Progress, TellsTheTimeLeftOnlyWhenItIsKnown) {
    EXPECT_EQ(ProgressText(50, 150, 2), "50 of 150 frames, 25.0 fps, 4 s left");
    EXPECT_EQ(ProgressText(1, std::nullopt, 0.5), "1 frame, 2.0 fps");
    EXPECT_EQ(ProgressText(0, 10, 0), "0 of 10 frames, 0.0 fps");
    EXPECT_EQ(ProgressText(151, 150, 2), "151 frames, 75.5 fps"); // the total was a guess
    EXPECT_EQ(ProgressText(10, 6010, 1), "10 of 6010 frames, 10.0 fps, 10:00 min left");
    EXPECT_EQ(ProgressText(1, 7201, 1), "1 of 7201 frames, 1.0 fps, 2:00 h left");
}

} // namespace
} // namespace host
