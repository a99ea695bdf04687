// What the program makes of pictures, against an oracle of the pixel rules.
#include "host/formats/FrameSource.h"
#include "tests/host/ToolRun.h"
#include "tests/support/OraclePixels.h"

#include <cstring>

namespace host {
namespace {

using ToolPictures = ToolTest;

Bytes Deinterlaced(Pixels pixels, int width, int height, const OracleOptions& options, const Bytes& in) {
    const bool topDown = !TraitsOf(pixels).bottomUp; // so regions count from the picture's top
    const std::size_t size = FrameSize(pixels, width, height);
    Bytes out(in.size());
    for (std::size_t at = 0; at < in.size(); at += size) {
        OracleDeinterlace({width, height, TraitsOf(pixels).bits, topDown}, options, in.data() + at, out.data() + at);
    }
    return out;
}

// Padding is no part of the picture.
Bytes WithoutPadding(Pixels pixels, int width, int height, const Bytes& frames) {
    Bytes out;
    const std::size_t size = FrameSize(pixels, width, height);
    for (std::size_t at = 0; at < frames.size(); at += size) {
        const Bytes picture = PictureOf(PackedFrame(pixels, width, height, frames.data() + at));
        out.insert(out.end(), picture.begin(), picture.end());
    }
    return out;
}

TEST_F(ToolPictures, EveryFormatAndMethodFollowsTheRules) {
    constexpr OracleOptions merge{false, true}, odd{}, even{true}, part{false, true, true, true, 4, 1, 14, 7},
        partEven{true, false, true, true, 4, 1, 14, 7};
    constexpr struct {
        Pixels pixels;
        int width, height;
        const char* options;
        OracleOptions oracle;
    } kCases[] = {
        {Pixels::Rgb24, 17, 9, "", merge},
        {Pixels::Rgb24, 17, 9, "--method rebuild", odd},
        {Pixels::Rgb24, 17, 9, "--method rebuild --even", even},
        {Pixels::Rgb24, 17, 9, "--roi 4,1,14,7", part},
        {Pixels::Yuy2, 16, 10, "--method merge", merge},
        {Pixels::Yuy2, 16, 10, "--method rebuild --odd", odd},
        {Pixels::Yuy2, 16, 10, "--method rebuild --even --roi 4,1,14,7", partEven},
        {Pixels::Uyvy, 16, 9, "--method rebuild --even", even},
        {Pixels::Uyvy, 16, 9, "--roi 4,1,14,7", part},
        {Pixels::Iyu2, 15, 9, "", merge},
        {Pixels::Iyu2, 15, 9, "--method rebuild --even --roi=4,1,14,7 --protect 1,1,9,9", partEven},
    };
    for (const auto& c : kCases) {
        const Bytes in = RandomBytes(3 * FrameSize(c.pixels, c.width, c.height), 77);
        Write("in.raw", in);
        const std::string size = std::to_string(c.width) + "x" + std::to_string(c.height);
        const ToolResult result =
            Run("in.raw out.raw --force --mode all --raw " + size + ":" + TraitsOf(c.pixels).name + "@25 " + c.options);
        ASSERT_EQ(result.code, 0u) << result.errors;
        EXPECT_EQ(WithoutPadding(c.pixels, c.width, c.height, Read("out.raw")),
                  WithoutPadding(c.pixels, c.width, c.height, Deinterlaced(c.pixels, c.width, c.height, c.oracle, in)))
            << TraitsOf(c.pixels).name << " " << c.options;
    }
}

// A Y4M file's planes, without its text lines.
Bytes Pictures(const Bytes& file) {
    CMemoryReader reader(file);
    CInputStream input(reader);
    const auto source = OpenY4m(input);
    Bytes pictures;
    for (const Bytes& picture : ReadAll(*source)) {
        pictures.insert(pictures.end(), picture.begin(), picture.end());
    }
    return pictures;
}

TEST_F(ToolPictures, PipesAndFilesAndFormatsAgree) {
    const Bytes clip = MakeY4m(32, 24, 6, {1, 2});
    Write("in.y4m", clip);
    ASSERT_EQ(Run("in.y4m file.y4m").code, 0u);
    const Bytes want = Pictures(Read("file.y4m"));
    EXPECT_NE(want, Pictures(clip));

    const ToolResult piped = Run("- -", {clip});
    EXPECT_EQ(piped.code, 0u) << piped.errors;
    EXPECT_EQ(Pictures(piped.output), want);

    ASSERT_EQ(Run("in.y4m between.avi").code, 0u);
    ASSERT_EQ(Run("between.avi again.y4m --mode off").code, 0u);
    EXPECT_EQ(Pictures(Read("again.y4m")), want);
}

TEST_F(ToolPictures, OddWidthsAndDeepSamplesNeedNoOption) {
    const Bytes clip = FromText("YUV4MPEG2 W3 H2 F25:1 Ip C422p10\nFRAME\n" + std::string(28, '\1'));
    for (const auto& [option, tag] : {std::pair("", " C444\n"), std::pair(" --to-chroma 420", " C420mpeg2\n")}) {
        const ToolResult result = Run(std::string("- -") + option, {clip});
        EXPECT_EQ(result.code, 0u);
        EXPECT_NE(result.errors.find("10-bit samples are rounded"), std::string::npos) << result.errors;
        EXPECT_NE(std::string(result.output.begin(), result.output.end()).find(tag), std::string::npos) << option;
    }
}

TEST_F(ToolPictures, ThePlatformsReaderTakesOddWidths) {
    Write("in.raw", RandomBytes(2 * FrameSize(Pixels::Rgb24, 15, 7), 3));
    ASSERT_EQ(Run("in.raw odd.avi --mode off --raw 15x7:rgb24@25").code, 0u);
    const ToolResult result = Run("odd.avi out.raw --mode off --from media");
    if (result.errors.find("the platform cannot decode it") != std::string::npos) {
        GTEST_SKIP() << result.errors;
    }
    EXPECT_EQ(result.code, 0u) << result.errors;
    EXPECT_EQ(WithoutPadding(Pixels::Rgb24, 15, 7, Read("out.raw")),
              WithoutPadding(Pixels::Rgb24, 15, 7, Read("in.raw")));
}

// At one frame per second the hold is five frames, and blending changes every frame of this clip.
TEST_F(ToolPictures, SummaryCountsWhatTheTransformDid) {
    struct Case {
        std::vector<int> combed;
        const char* options;
        long called, deinterlaced, changed;
    };
    const Case cases[] = {
        {{3}, "", 1, 5, 5},
        {{3, 5}, "", 2, 7, 7},
        {{10, 11}, "", 2, 2, 2},
        {{}, "", 0, 0, 0},
        {{3}, "--sensitivity 8", 0, 0, 0},
        {{3}, "--mode all", -1, -1, 12},
        {{3}, "--mode off", -1, -1, 0},
    };
    for (const Case& c : cases) {
        const ToolResult result = Run(std::string("- --to none ") + c.options, {MakeY4m(32, 24, 12, c.combed, "1:1")});
        ASSERT_EQ(result.code, 0u) << result.errors;
        EXPECT_EQ(NumberBefore(result.errors, " frames in "), 12) << result.errors;
        const std::string called = c.called == 1 ? " frame interlaced" : " frames interlaced";
        EXPECT_EQ(NumberBefore(result.errors, called), c.called) << result.errors;
        EXPECT_EQ(NumberBefore(result.errors, " frames were deinterlaced"), c.deinterlaced) << result.errors;
        EXPECT_EQ(NumberBefore(result.errors, " frames came out different"), c.changed) << result.errors;
    }
}

// --keep names the picture's field: its rows come out as they went in, whatever the order in memory and wherever the
// region begins. Rows of the region's edge are copied and say nothing.
TEST_F(ToolPictures, KeptFieldsAreThePictures) {
    constexpr int kWidth = 8, kHeight = 12;
    constexpr struct {
        Pixels pixels;
        const char* options;
        int top, bottom, kept;
    } kCases[] = {
        {Pixels::Rgb24, " --keep top", 0, kHeight, 0},
        {Pixels::Rgb24, " --keep bottom --roi 0,3,8,11", 3, 11, 1},
        {Pixels::Rgb24, " --keep bottom --roi 0,2,8,10", 2, 10, 1},
        {Pixels::Yuy2, " --keep bottom", 0, kHeight, 1},
        {Pixels::Yuy2, " --keep top --roi 0,3,8,11", 3, 11, 0},
    };
    for (const auto& c : kCases) {
        const Bytes frame = RandomBytes(FrameSize(c.pixels, kWidth, kHeight), 9);
        Write("in.raw", frame);
        const std::string line = std::string("in.raw out.raw --force --mode all --method rebuild --raw 8x12:") +
                                 TraitsOf(c.pixels).name + "@25" + c.options;
        ASSERT_EQ(Run(line).code, 0u);
        const Bytes out = Read("out.raw");
        const FrameView before = PackedFrame(c.pixels, kWidth, kHeight, frame.data());
        const FrameView after = PackedFrame(c.pixels, kWidth, kHeight, out.data());
        for (int y = c.top + 1; y + 1 < c.bottom; ++y) {
            const bool same = std::memcmp(before.Row(0, y), after.Row(0, y), kWidth * 2) == 0;
            EXPECT_EQ(same, y % 2 == c.kept) << line << ", row " << y;
        }
    }
}

std::uint32_t Big32(const Bytes& bytes, std::size_t at) {
    return std::uint32_t{bytes[at]} << 24 | bytes[at + 1] << 16 | bytes[at + 2] << 8 | bytes[at + 3];
}

TEST_F(ToolPictures, StillIsAPictureOfBothSides) {
    const Bytes clip = MakeY4m(64, 48, 4, {2});
    const ToolResult result = Run("- --to none --still 2 p.png --still 0,q.png", {clip});
    ASSERT_EQ(result.code, 0u) << result.errors;
    EXPECT_EQ(Files(), (std::vector<std::string>{"p.png", "q.png"}));
    const Bytes png = Read("p.png");
    ASSERT_GT(png.size(), 33u);
    EXPECT_EQ(std::memcmp(png.data(), "\x89PNG\r\n\x1a\n", 8), 0);
    EXPECT_GT(Big32(png, 16), 2 * 64u);
    EXPECT_GT(Big32(png, 20), 2 * 48u);

    // The clip is written all the same when a picture's frame is not there.
    const ToolResult missing = Run("- out.y4m --still 9 r.png", {clip});
    EXPECT_EQ(missing.code, 2u);
    EXPECT_NE(missing.errors.find("4 frames"), std::string::npos) << missing.errors;
    EXPECT_EQ(Files(), (std::vector<std::string>{"out.y4m", "p.png", "q.png"}));
}

// The sensitivity that an analysis recommends makes the transform pick the combed frames and no others.
TEST_F(ToolPictures, AnalysisNamesASensitivityThatWorks) {
    Bytes clip = MakeY4m(64, 48, 10, {});
    // A comb of eight pixels' width in frames 4 and 7: too little for the normal sensitivity.
    const std::size_t header = static_cast<std::size_t>(std::find(clip.begin(), clip.end(), '\n') - clip.begin()) + 1;
    for (const std::size_t frame : {4, 7}) {
        for (std::size_t y = 0; y < 48; ++y) {
            std::uint8_t* const row = clip.data() + header + frame * (6 + 64 * 48 * 2) + 6 + y * 64;
            std::fill(row, row + 4, static_cast<std::uint8_t>(y % 2 ? 220 : 30));
        }
    }
    const ToolResult analysis = Run("analyse -", {clip});
    ASSERT_EQ(analysis.code, 0u) << analysis.errors;
    EXPECT_EQ(NumberBefore(analysis.Text(), " of 10 frames are called interlaced"), 0) << analysis.Text();
    const std::string option = "--sensitivity ";
    const std::size_t at = analysis.Text().find(option);
    ASSERT_NE(at, std::string::npos) << analysis.Text();
    const std::string value = analysis.Text().substr(at + option.size(), 5);
    const ToolResult run = Run("- --to none --sensitivity " + value.substr(0, value.find(' ')), {clip});
    EXPECT_EQ(NumberBefore(run.errors, " frames interlaced"), 2) << run.errors;

    const ToolResult csv = Run("analyse - --csv --sensitivity 0.1", {clip});
    EXPECT_EQ(csv.Text().find("frame,count,threshold,ratio,verdict"), 0u);
    EXPECT_EQ(std::count(csv.output.begin(), csv.output.end(), '\n'), 11);
    EXPECT_NE(csv.Text().find("\n7,"), std::string::npos);

    const ToolResult json = Run("analyse - --json --plot p.svg", {clip});
    EXPECT_EQ(json.Text().find("{\"input\": \"-\", \"verdict\": \"undecided\""), 0u) << json.Text();
    EXPECT_NE(json.Text().find("\"command\": \"nmfvdeint - - --mode auto " + option + value.substr(0, value.find(' '))),
              std::string::npos)
        << json.Text();
    const Bytes plot = Read("p.svg");
    EXPECT_EQ(std::string(plot.begin(), plot.end()).find("<svg"), 0u);
}

} // namespace
} // namespace host
