#include "host/picture/FrameConvert.h"
#include "host/formats/BobWatch.h"
#include "host/formats/FrameSink.h"
#include "host/formats/InputKind.h"
#include "host/formats/RawStream.h"
#include "host/formats/ScanLabels.h"
#include "host/formats/Y4mHeader.h"
#include "host/formats/FrameSource.h"
#include "tests/host/MemoryStreams.h"

#include <sstream>
#include <utility>

namespace host {
namespace {

TEST(Y4m, ReadsHeaders) {
    struct Case {
        const char* line;
        Layout layout;
        int width, height;
        Scan scan;
        double rate;
        bool fullRange;
    };
    constexpr Case kCases[] = {
        {"YUV4MPEG2 W720 H576 F25:1 It A59:54 C422", Layout::Planar422, 720, 576, Scan::TopFirst, 25, false},
        {"YUV4MPEG2 W2 H1 F30000:1001 Ip C420mpeg2 XYSCSS=420MPEG2", Layout::Planar420, 2, 1, Scan::Progressive,
         30000.0 / 1001, false},
        {"YUV4MPEG2  H576  W720 C420paldv Ib XCOLORRANGE=FULL", Layout::Planar420, 720, 576, Scan::BottomFirst, 0,
         true},
        {"YUV4MPEG2 W8 H8 F0:0 I?", Layout::Planar420, 8, 8, Scan::Unknown, 0, false},
        {"YUV4MPEG2 W8 H8 F1:4294967295", Layout::Planar420, 8, 8, Scan::Unknown, 0, false},
        {"YUV4MPEG2 W8 H8 F50:2 Im C444", Layout::Planar444, 8, 8, Scan::Mixed, 25, false},
        {"YUV4MPEG2 W8 H8 Cmono C420jpeg", Layout::Planar420, 8, 8, Scan::Unknown, 0, false},
    };
    for (const Case& c : kCases) {
        const ClipInfo clip = ParseY4mHeader(c.line, "clip");
        EXPECT_EQ(clip.layout, c.layout) << c.line;
        EXPECT_EQ(clip.width, c.width) << c.line;
        EXPECT_EQ(clip.height, c.height) << c.line;
        EXPECT_EQ(clip.scan, c.scan) << c.line;
        EXPECT_EQ(clip.rate.has_value(), c.rate != 0) << c.line;
        EXPECT_DOUBLE_EQ(clip.rate ? clip.rate->Value() : 0, c.rate) << c.line;
        EXPECT_EQ(clip.fullRange, c.fullRange) << c.line;
    }
}

TEST(Y4m, RefusesHeadersAndSaysWhy) {
    constexpr struct {
        const char* line;
        const char* said;
    } kCases[] = {
        {"", "no Y4M"},
        {"YUV4MPEG W8 H8", "no Y4M"},
        {"YUV4MPEG2 W8 H8 C411", "C411 is not supported"},
        {"YUV4MPEG2 W0 H8", "width"},
        {"YUV4MPEG2 W8 H99999", "height"},
        {"YUV4MPEG2 W8x H8", "\"8x\""},
        {"YUV4MPEG2 W8 C422", "no height"},
    };
    for (const auto& c : kCases) {
        ExpectError(ExitCode::Input, c.said, c.line, [&] { ParseY4mHeader(c.line, "clip.y4m"); });
    }
}

// A clip of four frames, of which `deinterlaced` say '#', goes through; what its lines are called then.
struct LabelCase {
    Scan input;
    Deinterlaced which;
    const char* deinterlaced;
    bool seekable;
    const char* header;
    const char* lines; // what follows FRAME, of each frame
    bool to420 = false;
};
constexpr LabelCase kLabels[] = {
    {Scan::BottomFirst, Deinterlaced::None, "....", true, "Ib", "|||"},
    {Scan::TopFirst, Deinterlaced::All, "####", false, "Ip", "|||"},
    {Scan::TopFirst, Deinterlaced::Some, "....", true, "It", "     |     |     |     "},
    {Scan::TopFirst, Deinterlaced::Some, "####", true, "Ip", "     |     |     |     "},
    {Scan::TopFirst, Deinterlaced::Some, ".##.", true, "Im", " Iti?| I1p?| I1p?| Iti?"},
    {Scan::BottomFirst, Deinterlaced::Some, "###.", false, "Ib", "|||"}, // a pipe: too late to say more
    {Scan::Mixed, Deinterlaced::Some, "##..", false, "Im", " I1p?| I1p?| Ibi?| I???"},
    {Scan::Mixed, Deinterlaced::Some, "####", true, "Ip", "     |     |     |     "},
    {Scan::Mixed, Deinterlaced::Some, ".#..", false, "Im", " Itii| I1pp| Ibii| I??p", true},
    {Scan::TopFirst, Deinterlaced::Some, ".##.", true, "Im", " Itii| I1pp| I1pp| Itii", true},
    {Scan::Progressive, Deinterlaced::Some, ".#..", true, "Ip", "|||"},
    {Scan::Unknown, Deinterlaced::Some, ".#..", true, "I?", "     |     |     |     "},
    {Scan::Interlaced, Deinterlaced::None, "....", true, "I?", "|||"},
};

std::string LabelledClip(const LabelCase& c) {
    constexpr Scan kMixed[] = {Scan::TopFirst, Scan::Progressive, Scan::BottomFirst, Scan::Unknown};
    CScanLabels labels(c.input, c.which);
    SinkFormat format{Pixels::Iyu2, 1, 1, {25, 1}, {}, false};
    format.scan = labels.AtFirst();
    format.scanMayChange = labels.MayChange();
    format.chroma420 = c.to420 ? "420paldv" : "";
    CMemoryWriter writer(c.seekable);
    const auto sink = MakeY4mSink(writer, format);
    const Bytes frame = FromText("UYV ");
    for (std::size_t i = 0; i < 4; ++i) {
        const Scan scan = c.input == Scan::Mixed ? kMixed[i] : c.input;
        sink->Write(frame.data(), labels.Next(scan, c.deinterlaced[i] == '#'));
    }
    sink->Finish(labels.AtLast());
    return {writer.Written().begin(), writer.Written().end()};
}

TEST(Y4m, SaysOfLinesWhatIsTrue) {
    for (const LabelCase& c : kLabels) {
        const std::string name = std::to_string(static_cast<int>(c.input)) + c.deinterlaced;
        std::istringstream lines(LabelledClip(c));
        std::string header, line, words;
        std::getline(lines, header);
        EXPECT_EQ(header, "YUV4MPEG2 W1 H1 F25:1 " + std::string(c.header) + (c.to420 ? " C420paldv" : " C444"))
            << name;
        for (int i = 0; i < 4; ++i) {
            std::getline(lines, line);
            words += (i == 0 ? "" : "|") + line.substr(5);
            EXPECT_EQ(line.substr(0, 5), "FRAME") << name;
            lines.read(line.data(), 3);
            EXPECT_EQ(line.substr(0, 3), "YUV") << name;
        }
        EXPECT_EQ(words, c.lines) << name;
        EXPECT_EQ(lines.peek(), EOF) << name;
    }
}

TEST(Y4m, ReadsWordsOfFrames) {
    constexpr struct {
        const char* line;
        Scan scan;
        bool fieldChroma[2]; // where the stream has none, and where it has
    } kCases[] = {
        {"FRAME Itii", Scan::TopFirst, {true, true}},      {"FRAME X=1 IBip", Scan::BottomFirst, {false, false}},
        {"FRAME I1pp", Scan::Progressive, {false, false}}, {"FRAME Itpp", Scan::Progressive, {false, false}},
        {"FRAME I?i?", Scan::Interlaced, {false, true}},   {"FRAME", Scan::Unknown, {false, true}},
        {"FRAME It?", Scan::Unknown, {false, true}},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(Y4mFrameScan(c.line), c.scan) << c.line;
        EXPECT_EQ(Y4mFrameHasFieldChroma(c.line, false), c.fieldChroma[0]) << c.line;
        EXPECT_EQ(Y4mFrameHasFieldChroma(c.line, true), c.fieldChroma[1]) << c.line;
    }
}

TEST(Y4m, SamplesOfMoreBitsAreRounded) {
    struct Case {
        const char* tag;
        int bits;
        std::vector<int> samples; // of a picture of two pixels
        Bytes rounded;
    };
    const Case cases[] = {
        {"mono10", 10, {0x001, 0x002}, {0, 1}},
        {"422p10", 10, {0x040, 0x3FD, 0x3FE, 0x201}, {16, 255, 255, 128}},
        {"420p12", 12, {0xEB0, 0x807, 0x808, 0xFFF}, {235, 128, 129, 255}},
        {"444p16", 16, {0x127F, 0x1280, 0, 0x80, 0xFF7F, 0xFFFF}, {18, 19, 0, 1, 255, 255}},
    };
    for (const Case& c : cases) {
        Bytes clip = FromText(std::string("YUV4MPEG2 W2 H1 C") + c.tag + "\nFRAME\n");
        for (const int sample : c.samples) {
            clip.push_back(static_cast<std::uint8_t>(sample));
            clip.push_back(static_cast<std::uint8_t>(sample >> 8));
        }
        CMemoryReader reader(clip);
        CInputStream input(reader);
        const auto source = OpenY4m(input);
        EXPECT_EQ(source->Info().sampleBits, c.bits);
        EXPECT_EQ(ReadAll(*source), std::vector<Bytes>{c.rounded}) << c.tag;
    }
}

// Combed chroma becomes a row for each field in a frame that is called interlaced, and a mean in others.
TEST(Y4m, HalvesChromaAsTheFramesLinesAre) {
    const Bytes frame = {1, 0, 2, 50, 3, 200, 4, 90, 5, 0, 6, 50, 7, 200, 8, 90};
    for (const bool seekable : {true, false}) { // a pipe's header has no room for words, and is believed
        SinkFormat format{Pixels::Yuy2, 2, 4, {25, 1}, {}, false};
        format.scan = Scan::BottomFirst;
        format.scanMayChange = true;
        format.chroma420 = "420jpeg";
        CMemoryWriter writer(seekable);
        const auto sink = MakeY4mSink(writer, format);
        sink->Write(frame.data(), Scan::BottomFirst);
        sink->Write(frame.data(), Scan::Progressive);
        sink->Finish(Scan::Mixed);
        CMemoryReader reader(writer.Written());
        CInputStream input(reader);
        const auto source = OpenY4m(input);
        const Bytes byFields = {1, 2, 3, 4, 5, 6, 7, 8, 0, 200, 50, 90};
        const Bytes byFrame = {1, 2, 3, 4, 5, 6, 7, 8, 100, 100, 70, 70};
        for (const bool fields : {true, !seekable}) {
            ASSERT_TRUE(source->Next());
            EXPECT_EQ(source->FieldChroma(), fields);
            EXPECT_EQ(PictureOf(source->Frame()), fields ? byFields : byFrame);
        }
    }
}

// A 2x2 clip of 4:2:0 with three frames of six bytes.
const std::string kClip =
    std::string("YUV4MPEG2 W2 H2 F25:1 Ip C420\n") + "FRAME\nabcdef" + "FRAME Ippp\nghijkl" + "FRAME\nmnopqr";

TEST(Y4m, ReadsFramesInPortionsOfAnySize) {
    for (const std::size_t portion : {1, 2, 5, 7, 64, 100000}) {
        CMemoryReader reader(FromText(kClip), portion, portion % 2 == 0);
        CInputStream input(reader);
        const auto source = OpenY4m(input);
        const std::vector<Bytes> want = {FromText("abcdef"), FromText("ghijkl"), FromText("mnopqr")};
        EXPECT_EQ(ReadAll(*source), want) << "portion " << portion;
    }
}

TEST(Y4m, WritesWhatItReads) {
    struct Case {
        Pixels pixels;
        int width, height;
        const char* header;
    };
    constexpr Case kCases[] = {
        {Pixels::Yuy2, 6, 3, "YUV4MPEG2 W6 H3 F30000:1001 Ip A59:54 C422\n"},
        {Pixels::Uyvy, 2, 5, "YUV4MPEG2 W2 H5 F30000:1001 Ip A59:54 C422\n"},
        {Pixels::Iyu2, 5, 3, "YUV4MPEG2 W5 H3 F30000:1001 Ip A59:54 C444\n"},
    };
    for (const Case& c : kCases) {
        CMemoryWriter writer(false);
        const auto sink = MakeY4mSink(writer, {c.pixels, c.width, c.height, {30000, 1001}, Rational{59, 54}, false});
        const Bytes frame = RandomBytes(FrameSize(c.pixels, c.width, c.height), 5);
        sink->Write(frame.data());
        sink->Write(frame.data());
        sink->Finish();
        const std::string text(writer.Written().begin(), writer.Written().end());
        EXPECT_EQ(text.substr(0, text.find('\n') + 1), c.header);

        CMemoryReader reader(writer.Written());
        CInputStream input(reader);
        const auto source = OpenY4m(input);
        ASSERT_TRUE(source->Next());
        Bytes back(frame.size());
        CFrameConverter(source->Info().layout, LayoutOf(c.pixels), c.width, c.height, false)
            .Convert(source->Frame(), PackedFrame(c.pixels, c.width, c.height, back.data()), false);
        EXPECT_EQ(PictureOf(PackedFrame(c.pixels, c.width, c.height, std::as_const(back).data())),
                  PictureOf(PackedFrame(c.pixels, c.width, c.height, frame.data())));
        ASSERT_TRUE(source->Next());
        EXPECT_FALSE(source->Next());
        EXPECT_EQ(source->Info().frames, 2u);
    }
}

// Frames of a moving texture: as they are, or each field made into a frame whose other rows are means.
bool IsSeenAsBobbed(bool means, int firstField, bool alternating, Layout layout) {
    constexpr int kWidth = 8, kHeight = 9;
    CBobWatch watch;
    bool seen = false;
    for (int n = 0; n < 6; ++n) {
        Bytes bytes = RandomBytes(kWidth * kHeight * 2, static_cast<unsigned>(n / 2));
        const int step = layout == Layout::Yuy2 ? 2 : 1;
        const int kept = alternating ? (firstField + n) % 2 : firstField;
        for (int y = 1; means && y + 1 < kHeight; ++y) {
            std::uint8_t* const row = bytes.data() + y * kWidth * step;
            for (int x = 0; y % 2 != kept && x < kWidth * step; ++x) {
                row[x] = static_cast<std::uint8_t>((row[x - kWidth * step] + row[x + kWidth * step] + 1) / 2);
            }
        }
        FrameView frame{layout, kWidth, kHeight, {bytes.data()}, {kWidth * step}};
        seen = seen || watch.Look(frame);
    }
    return seen;
}

TEST(BobWatch, SeesFieldsThatWereMadeFramesAndNothingElse) {
    for (const Layout layout : {Layout::Yuy2, Layout::Nv12}) {
        EXPECT_TRUE(IsSeenAsBobbed(true, 0, true, layout));
        EXPECT_TRUE(IsSeenAsBobbed(true, 1, true, layout));
        EXPECT_FALSE(IsSeenAsBobbed(true, 0, false, layout)); // deinterlaced, but a frame for a frame
        EXPECT_FALSE(IsSeenAsBobbed(false, 0, true, layout));
    }
}

TEST(InputKind, IsSeenFromTheFirstBytes) {
    constexpr struct {
        const char* bytes;
        bool sized, named;
        std::optional<InputKind> kind;
        const char* said;
    } kCases[] = {
        {"YUV4MPEG2 W8 H8", true, true, InputKind::Y4m, ""},
        {"RIFF....AVI LIST", false, false, InputKind::Avi, ""},
        {"no video at all", true, true, InputKind::Media, ""},
        {"no video at all", false, true, {}, "neither Y4M nor AVI"},
        {"no video at all", true, false, {}, "neither Y4M nor AVI"}, // a file by way of standard input
        {"", true, true, {}, "empty"},
    };
    for (const auto& c : kCases) {
        CMemoryReader reader(FromText(c.bytes), 1000, c.sized);
        CInputStream input(reader);
        std::optional<InputKind> kind;
        const Thrown error = ErrorOf([&] { kind = KindByContent(input, c.named); });
        EXPECT_EQ(kind, c.kind) << c.bytes;
        EXPECT_NE(error.text.find(c.said), std::string::npos) << c.bytes << ": " << error.text;
    }
}

TEST(RawFormat, TakesOnlyWholeDescriptions) {
    const auto good = ParseRawFormat("720x576:uyvy@30000/1001");
    ASSERT_TRUE(good);
    EXPECT_EQ(good->width, 720);
    EXPECT_EQ(good->height, 576);
    EXPECT_EQ(good->pixels, Pixels::Uyvy);
    EXPECT_EQ(good->rate, (Rational{30000, 1001}));
    EXPECT_TRUE(ParseRawFormat("7x5:rgb24@29.97"));
    for (const char* bad : {"", "720x576", "720x576:yuy2", "720x576:nv12@25", "721x576:yuy2@25", "0x5:rgb24@25",
                            "7x0:rgb24@25", "7x5:rgb24@0", "7x5@25:rgb24", "-7x5:rgb24@25", "7x5:rgb24@25 "}) {
        EXPECT_FALSE(ParseRawFormat(bad)) << bad;
    }
}

TEST(Rate, NtscDecimalsBecomeFractions) {
    struct Case {
        const char* text;
        Rational rate;
    };
    constexpr Case kCases[] = {
        {"25", {25, 1}},   {"29.97", {30000, 1001}}, {"23.976", {24000, 1001}},     {"59.94", {60000, 1001}},
        {"12.5", {25, 2}}, {"50/2", {25, 1}},        {"30000:1001", {30000, 1001}}, {"1/3600", {1, 3600}}};
    for (const Case& c : kCases) {
        const auto rate = ParseRate(c.text);
        ASSERT_TRUE(rate) << c.text;
        EXPECT_EQ(*rate, c.rate) << c.text;
    }
    for (const char* bad : {"", "0", "-25", "25/0", "0/1", "nan", "1e9", "1/3601", "10001", "25fps", "25/", "/25"}) {
        EXPECT_FALSE(ParseRate(bad)) << bad;
    }
}

// Raw RGB24 frames are bottom row first with rows padded to four bytes.
TEST(RawStream, ReadsFramesAsTheyLieInMemory) {
    Bytes bytes = RandomBytes(3 * FrameSize(Pixels::Rgb24, 3, 2), 9);
    CMemoryReader reader(bytes);
    CInputStream input(reader);
    const auto source = OpenRaw(input, *ParseRawFormat("3x2:rgb24@25"));
    EXPECT_EQ(source->Info().frames, 3u);
    ASSERT_TRUE(source->Next());
    const Bytes lower(bytes.begin(), bytes.begin() + 9);
    const Bytes upper(bytes.begin() + 12, bytes.begin() + 21);
    Bytes want = upper;
    want.insert(want.end(), lower.begin(), lower.end());
    EXPECT_EQ(PictureOf(source->Frame()), want);

    bytes.pop_back();
    CMemoryReader cut(bytes);
    CInputStream cutInput(cut);
    const auto cutSource = OpenRaw(cutInput, *ParseRawFormat("3x2:rgb24@25"));
    EXPECT_THROW(ReadAll(*cutSource), DamagedError);
}

} // namespace
} // namespace host
