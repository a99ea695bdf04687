// What the host reads: files and pipes of every kind, and its command line.
#include "host/command/Command.h"
#include "host/formats/FrameSink.h"
#include "host/formats/FrameSource.h"
#include "host/formats/InputKind.h"
#include "host/picture/FrameConvert.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/host/MemoryStreams.h"

#include <memory>

namespace host {
namespace {

constexpr std::size_t kMostPixels = 1 << 14; // of frames that are worth their time here
constexpr std::size_t kMostFrames = 40;

struct Clip {
    SinkFormat format;
    std::vector<Bytes> frames; // as the transform gets them
};

Clip ReadClip(IFrameSource& source) {
    const ClipInfo& info = source.Info();
    Require(info.width > 0 && info.width <= kMaxSide && info.height > 0 && info.height <= kMaxSide, "sides in limits");
    Require(!info.rate || UsableRate(*info.rate) == info.rate, "a rate is usable");
    const Pixels feed = NaturalFeed(info.layout, info.width);
    CheckFeed(info, feed, "input");
    Clip clip{{feed, info.width, info.height, info.rate.value_or(Rational{25, 1}), info.aspect}, {}};
    CFrameConverter converter(info.layout, LayoutOf(feed), info.width, info.height, info.fullRange, info.bt709);
    while (clip.frames.size() < kMostFrames && source.Next()) {
        (void)source.FrameScan();
        (void)source.IsIrregular();
        if (std::size_t(info.width) * std::size_t(info.height) > kMostPixels) {
            continue;
        }
        Bytes& frame = clip.frames.emplace_back(FrameSize(feed, info.width, info.height));
        converter.Convert(source.Frame(), PackedFrame(feed, info.width, info.height, frame.data()),
                          source.FieldChroma());
    }
    return clip;
}

// What was read is written as an AVI file and read again.
void ExpectSameAgain(const Clip& clip) {
    CMemoryWriter writer;
    const auto sink = MakeAviSink(writer, clip.format, clip.frames.size() % 2 ? 1 : 1 << 20);
    for (const Bytes& frame : clip.frames) {
        sink->Write(frame.data());
    }
    sink->Finish();
    CMemoryReader reader(writer.Written());
    CInputStream again(reader);
    const Clip read = ReadClip(*OpenAvi(again));
    Require(read.frames == clip.frames, "frames are the same when they are read again");
    Require(read.format.rate == clip.format.rate && read.format.pixels == clip.format.pixels, "and so is the format");
}

// `open` may throw what it promises; memory is taken as bytes arrive, whatever the headers declare.
template <typename Open>
void ReadAny(std::span<const std::uint8_t> bytes, const Open& open) {
    CMemoryReader reader({bytes.begin(), bytes.end()}, 777, bytes.size() % 2 != 0);
    CInputStream input(reader);
    Clip clip;
    try {
        const std::unique_ptr<IFrameSource> source = open(input);
        source->SetSidePackets([](std::size_t, std::uint32_t, std::span<const std::uint8_t>) {});
        clip = ReadClip(*source);
    } catch (const HostError&) {
    }
    Require(reader.LargestRequest() <= std::size_t{1} << 20, "memory is taken as bytes arrive");
    if (!clip.frames.empty()) {
        ExpectSameAgain(clip);
    }
}

void RunFile(std::span<const std::uint8_t> bytes) {
    ReadAny(bytes, [](CInputStream& input) {
        return KindByContent(input, true) == InputKind::Avi ? OpenAvi(input) : OpenY4m(input);
    });
}

// The format in the first line.
void RunRaw(std::span<const std::uint8_t> bytes) {
    const auto end = std::find(bytes.begin(), bytes.end(), '\n');
    const auto format = ParseRawFormat(std::string(bytes.begin(), end));
    if (format && end != bytes.end()) {
        ReadAny({end + 1, bytes.end()}, [&](CInputStream& input) { return OpenRaw(input, *format); });
    }
}

Bytes AviSeed(Pixels pixels, std::uint64_t partBytes) {
    CMemoryWriter writer;
    const int width = pixels == Pixels::Rgb24 || pixels == Pixels::Iyu2 ? 5 : 4; // rows with padding where there can be
    const auto sink = MakeAviSink(writer, {pixels, width, 3, {30000, 1001}, {}}, partBytes);
    for (unsigned frame = 0; frame < 3; ++frame) {
        sink->Write(RandomBytes(FrameSize(pixels, width, 3), frame).data());
    }
    sink->Finish();
    return writer.Written();
}

std::vector<Bytes> AviSeeds() {
    Bytes wide = AviSeed(Pixels::Yuy2, 1 << 20);
    const std::string format = "strf";
    std::search(wide.begin(), wide.end(), format.begin(), format.end())[13] = 64; // 16384 pixels in a row
    return {AviSeed(Pixels::Rgb24, 1), AviSeed(Pixels::Yuy2, 1 << 20), AviSeed(Pixels::Uyvy, 1),
            AviSeed(Pixels::Iyu2, 1 << 20), wide};
}

std::vector<Bytes> Y4mSeeds() {
    std::vector<Bytes> seeds{FromText("YUV4MPEG2 W16384 H16384 F25:1 C444\nFRAME\n")};
    for (const char* header : {"W4 H2 F25:1 Ip A1:1 C420mpeg2 XCOLORRANGE=FULL", "W4 H4 F30000:1001 It C420paldv",
                               "W3 H3 C444 Im XA=b", "W2 H2 F25:1 C422", "W5 H2 F1:1 Cmono"}) {
        const std::string frame = "FRAME Ip\n" + std::string(48, 'x');
        seeds.push_back(FromText(std::string("YUV4MPEG2 ") + header + "\n" + frame + frame));
    }
    return seeds;
}

std::vector<Bytes> RawSeeds() {
    std::vector<Bytes> seeds;
    for (const char* format : {"4x2:yuy2@25", "5x1:rgb24@30000/1001", "2x2:iyu2@29.97", "16384x16384:uyvy@1"}) {
        seeds.push_back(FromText(format + ("\n" + std::string(100, 'r'))));
    }
    return seeds;
}

void DoNothing(const Command&) {}

constexpr std::string_view kFewOptions[] = {"--dll", "--quiet"};
constexpr VerbRow kVerbs[] = {{"deinterlace", "INPUT OUTPUT", "the first", 1, 2, &DoNothing},
                              {"verify", "", "the second", 0, 0, &DoNothing, kFewOptions}};

void CheckOptions(const Options& options) {
    for (const auto& area : {options.region, options.protectedArea}) {
        Require(!area || (area->left < area->right && area->top < area->bottom), "an area has an inside");
    }
    Require(!options.sensitivity || (*options.sensitivity >= 0.001 && *options.sensitivity <= 8), "a sensitivity");
    for (const Segment& segment : options.segments) {
        Require(segment.milliseconds < 1000 && segment.seconds < 60 && segment.minutes < 60, "a start time");
    }
}

// Arguments with a 0 after each.
void RunOptions(std::span<const std::uint8_t> bytes) {
    std::vector<std::string> arguments;
    for (FuzzInput input(bytes); !input.IsEmpty();) {
        arguments.push_back(input.Text());
    }
    try {
        const Command command = ParseCommand(kVerbs, arguments);
        CheckOptions(command.options);
        (void)OutputBeside(command.input, command.options.outDir, command.options.to);
    } catch (const HostError& error) {
        Require(error.Code() == ExitCode::Usage && error.what()[0], "a mistake has its code and a text");
    }
}

// Each option with values that some take.
std::vector<Bytes> OptionSeeds() {
    std::vector<std::string> lines{"verify|--quiet|", "--|-a|-b.avi"};
    for (const OptionRow& row : AllOptions()) {
        for (const char* value : {"", "=1,2,30,40", "=2,1,3,on", "=0:01:02.003,pattern,1,2,3,off", "=0.5", "=auto"}) {
            lines.push_back("in.y4m|out.avi|" + std::string(row.name) + (row.value.empty() ? "" : value));
        }
    }
    std::vector<Bytes> seeds;
    for (std::string& line : lines) {
        std::replace(line.begin(), line.end(), '|', char(0));
        seeds.push_back(FromText(line));
    }
    return seeds;
}

} // namespace
} // namespace host

std::vector<FuzzTarget> ClipTargets() {
    return {{"avi", &host::RunFile, &host::AviSeeds},
            {"y4m", &host::RunFile, &host::Y4mSeeds},
            {"raw", &host::RunRaw, &host::RawSeeds},
            {"options", &host::RunOptions, &host::OptionSeeds}};
}
