#include "host/formats/FrameSource.h"
#include "host/formats/FrameSink.h"
#include "tests/host/MemoryStreams.h"

#include <cstring>

namespace host {
namespace {

std::uint32_t Word32(const Bytes& bytes, std::size_t at) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

std::uint64_t Word64(const Bytes& bytes, std::size_t at) {
    return Word32(bytes, at) | std::uint64_t{Word32(bytes, at + 4)} << 32;
}

void Put32(Bytes& bytes, std::size_t at, std::uint32_t value) {
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

std::size_t Find(const Bytes& bytes, const char* id, std::size_t from = 0) {
    for (std::size_t at = from; at + 4 <= bytes.size(); ++at) {
        if (std::memcmp(bytes.data() + at, id, 4) == 0) {
            return at;
        }
    }
    return std::string::npos;
}

struct Clip {
    Pixels pixels;
    int width, height;
    std::vector<Bytes> frames; // as the transform lays them out
    Bytes file;

    std::vector<Bytes> Pictures() const {
        std::vector<Bytes> pictures;
        for (const Bytes& frame : frames) {
            pictures.push_back(PictureOf(PackedFrame(pixels, width, height, frame.data())));
        }
        return pictures;
    }
};

Clip MakeClip(Pixels pixels, int width, int height, unsigned frames, std::uint64_t partBytes = 1 << 30) {
    Clip clip{pixels, width, height, {}, {}};
    CMemoryWriter writer;
    const auto sink = MakeAviSink(writer, {pixels, width, height, {30000, 1001}, {}, false}, partBytes);
    for (unsigned i = 0; i < frames; ++i) {
        clip.frames.push_back(RandomBytes(FrameSize(pixels, width, height), i));
        sink->Write(clip.frames.back().data());
    }
    sink->Finish();
    clip.file = writer.Written();
    return clip;
}

std::vector<Bytes> ReadClip(const Bytes& file, bool sized = true, ClipInfo* info = nullptr) {
    CMemoryReader reader(file, 777, sized);
    CInputStream input(reader);
    const auto source = OpenAvi(input);
    if (info) {
        *info = source->Info();
    }
    return ReadAll(*source);
}

// What players seek by: sizes of parts, and every index entry pointing at its frame.
TEST(Avi, PartsAndIndexesFitTheFrames) {
    const Clip clip = MakeClip(Pixels::Yuy2, 6, 3, 9, 300);
    const Bytes& file = clip.file;
    std::size_t part = 0;
    while (part < file.size()) {
        ASSERT_EQ(std::memcmp(file.data() + part, "RIFF", 4), 0) << "at " << part;
        part += 8 + Word32(file, part + 4);
    }
    EXPECT_EQ(part, file.size());

    const std::size_t list = Find(file, "indx");
    const std::uint32_t parts = Word32(file, list + 12);
    ASSERT_GT(parts, 2u);
    std::size_t frame = 0;
    for (std::uint32_t i = 0; i < parts; ++i) {
        const std::size_t index = Word64(file, list + 32 + 16 * i);
        ASSERT_EQ(std::memcmp(file.data() + index, "ix00", 4), 0);
        EXPECT_EQ(Word32(file, index + 4) + 8, Word32(file, list + 32 + 16 * i + 8));
        const std::uint64_t base = Word64(file, index + 20);
        for (std::uint32_t entry = 0; entry < Word32(file, index + 12); ++entry, ++frame) {
            const std::size_t at = base + Word32(file, index + 32 + 8 * entry);
            ASSERT_LT(frame, clip.frames.size());
            EXPECT_EQ(std::memcmp(file.data() + at, clip.frames[frame].data(), clip.frames[frame].size()), 0);
            EXPECT_EQ(Word32(file, index + 36 + 8 * entry), clip.frames[frame].size());
        }
    }
    EXPECT_EQ(frame, clip.frames.size());
    for (const bool sized : {true, false}) {
        ClipInfo info;
        EXPECT_EQ(ReadClip(file, sized, &info), clip.Pictures());
        EXPECT_EQ(info.frames, sized ? std::optional<std::uint64_t>(frame) : std::nullopt);
    }

    const std::size_t old = Find(file, "idx1");
    const std::size_t movi = Find(file, "movi");
    for (std::uint32_t entry = 0; entry < Word32(file, old + 4) / 16; ++entry) {
        const std::size_t chunk = movi + Word32(file, old + 8 + 16 * entry + 8);
        ASSERT_EQ(std::memcmp(file.data() + chunk, "00db", 4), 0);
        EXPECT_EQ(std::memcmp(file.data() + chunk + 8, clip.frames[entry].data(), clip.frames[entry].size()), 0);
    }
}

// A clip that needs more than 1024 parts is refused when its length is known, else closed where they are full.
TEST(Avi, FullFilesAreWhole) {
    const Bytes frame = RandomBytes(4, 1);
    for (const std::uint64_t partBytes : {1, 27, 28, 39, 40, 100}) {
        CMemoryWriter writer;
        SinkFormat format{Pixels::Rgb24, 1, 1, {25, 1}, {}, false};
        const auto sink = MakeAviSink(writer, format, partBytes);
        std::uint64_t frames = 0;
        const auto fill = [&] {
            for (; frames < 100000; ++frames) {
                sink->Write(frame.data());
            }
        };
        EXPECT_THROW(fill(), OutputFullError);
        sink->Finish();
        EXPECT_EQ(Word32(writer.Written(), Find(writer.Written(), "indx") + 12), 1024u) << partBytes;
        EXPECT_EQ(ReadClip(writer.Written()).size(), frames) << partBytes;

        CMemoryWriter untouched;
        format.frames = frames + 1;
        ExpectError(ExitCode::Output, std::to_string(frames + 1), "",
                    [&] { MakeAviSink(untouched, format, partBytes); });
        EXPECT_TRUE(untouched.Written().empty());
        format.frames = frames;
        EXPECT_NO_THROW(MakeAviSink(untouched, format, partBytes));
    }
}

TEST(Avi, TurnsTopDownRgbOver) {
    Clip clip = MakeClip(Pixels::Rgb24, 4, 3, 1);
    const std::size_t height = Find(clip.file, "strf") + 8 + 8;
    Put32(clip.file, height, static_cast<std::uint32_t>(-3));
    const Bytes upsideDown = clip.Pictures()[0];
    Bytes want;
    for (int row = 2; row >= 0; --row) {
        want.insert(want.end(), upsideDown.begin() + row * 12, upsideDown.begin() + row * 12 + 12);
    }
    EXPECT_EQ(ReadClip(clip.file)[0], want);
}

TEST(Avi, EmptyChunkRepeatsTheFrame) {
    Clip clip = MakeClip(Pixels::Yuy2, 2, 2, 1);
    const std::size_t index = Find(clip.file, "ix00");
    const Bytes empty = {'0', '0', 'd', 'b', 0, 0, 0, 0};
    clip.file.insert(clip.file.begin() + static_cast<std::ptrdiff_t>(index), empty.begin(), empty.end());
    EXPECT_EQ(ReadClip(clip.file), std::vector<Bytes>(2, clip.Pictures()[0]));
}

TEST(Avi, RowsMayLackTheirPadding) {
    Clip clip = MakeClip(Pixels::Rgb24, 3, 2, 1); // 9 bytes of 12
    const std::size_t chunk = Find(clip.file, "00db", Find(clip.file, "movi"));
    Put32(clip.file, chunk + 4, 18);
    const auto first = clip.file.begin() + static_cast<std::ptrdiff_t>(chunk + 8);
    Bytes want(first + 9, first + 18); // the picture's upper row is stored after the lower one
    want.insert(want.end(), first, first + 9);
    clip.file.erase(first + 18, first + 24);
    Put32(clip.file, 4, Word32(clip.file, 4) - 6);
    EXPECT_EQ(ReadClip(clip.file, false), std::vector<Bytes>{want});
}

TEST(Avi, ReadsWhatOtherWritersLeave) {
    struct Case {
        const char* name;
        std::function<void(Bytes&)> change;
        bool rated = true;
    };
    const auto streamed = [](Bytes& b, std::uint32_t riffBytes) {
        Put32(b, 4, riffBytes);
        Put32(b, Find(b, "strh") + 8 + 32, 0x40000000);
        b.resize(Find(b, "ix00"));
    };
    const Case cases[] = {
        {"stream without sizes", [&](Bytes& b) { streamed(b, 0); }},
        {"stream with the largest size", [&](Bytes& b) { streamed(b, 0xFFFFFFFF); }},
        {"size of the file as that of its part", [](Bytes& b) { Put32(b, 4, Word32(b, 4) + 8); }},
        {"bytes after the last part", [](Bytes& b) { b.resize(b.size() + 21, 'x'); }},
        {"no count", [](Bytes& b) { Put32(b, Find(b, "strh") + 8 + 32, 0); }},
        {"count of the first part", [](Bytes& b) { Put32(b, Find(b, "strh") + 8 + 32, 1); }},
        {"count of pictures and sound", [](Bytes& b) { Put32(b, Find(b, "dmlh") + 8, 748); }},
        {"rate beyond reason", [](Bytes& b) { Put32(b, Find(b, "strh") + 8 + 24, 0xFFFFFFFF); }, false},
    };
    const Clip clip = MakeClip(Pixels::Yuy2, 2, 2, 3);
    for (const Case& c : cases) {
        Bytes file = clip.file;
        c.change(file);
        ClipInfo info;
        EXPECT_EQ(ReadClip(file, true, &info), clip.Pictures()) << c.name;
        EXPECT_EQ(info.rate.has_value(), c.rated) << c.name;
    }
}

TEST(Avi, RefusesWhatItCannotReadAndSaysWhy) {
    const Bytes good = MakeClip(Pixels::Yuy2, 2, 2, 3).file;
    const std::size_t format = Find(good, "strf") + 8;
    struct Case {
        const char* name;
        std::function<void(Bytes&)> change;
        const char* said;
    };
    const Case cases[] = {
        {"compressed", [&](Bytes& b) { std::memcpy(b.data() + format + 16, "H264", 4); }, "'H264'"},
        {"other depth", [&](Bytes& b) { b[format + 14] = 12; }, "12 bits"},
        {"no width", [&](Bytes& b) { Put32(b, format + 4, 0); }, "0x2"},
        {"wide", [&](Bytes& b) { Put32(b, format + 4, 0x7FFFFFFF); }, "cannot be read"},
        {"least height", [&](Bytes& b) { Put32(b, format + 8, 0x80000000); }, "cannot be read"},
        {"sound only", [&](Bytes& b) { std::memcpy(b.data() + Find(b, "strh") + 8, "auds", 4); }, "no video"},
        {"short frame", [&](Bytes& b) { Put32(b, Find(b, "00db", Find(b, "movi")) + 4, 6); }, "frame 0"},
        {"cut where the count says nothing",
         [&](Bytes& b) {
             Put32(b, Find(b, "strh") + 8 + 32, 1);
             b.resize(Find(b, "ix00") - 16);
         },
         "frame 2"},
        {"no AVI", [&](Bytes& b) { b[8] = 'W'; }, "no AVI"},
        {"empty", [&](Bytes& b) { b.clear(); }, "no AVI"},
    };
    for (const Case& c : cases) {
        Bytes file = good;
        c.change(file);
        ExpectError(ExitCode::Input, c.said, c.name, [&] { ReadClip(file); });
    }
}

// Sound and text between the frames, in files of one part and of several: what is read again is what was written.
TEST(Avi, CarriesSideStreamsAndWordsOnThePicture) {
    for (const std::uint64_t partBytes : {std::uint64_t{100}, std::uint64_t{1} << 30}) {
        SinkFormat format{Pixels::Iyu2, 4, 2, {25, 1}, Rational{64, 45}, false};
        format.scan = Scan::TopFirst;
        for (const char* const type : {"auds", "txts"}) {
            Bytes header = FromText(type);
            header.resize(56);
            format.side.push_back({"", header, FromText("four and more")});
        }
        CMemoryWriter writer;
        const auto sink = MakeAviSink(writer, format, partBytes);
        std::vector<std::pair<std::size_t, Bytes>> packets;
        for (unsigned i = 0; i < 6; ++i) {
            packets.emplace_back(i % 2, RandomBytes(3 + 7 * i, i));
            sink->WriteSide(i % 2, FourCc('9', '9', 'w', 'b'), packets.back().second);
            sink->Write(RandomBytes(24, i).data(), Scan::BottomFirst);
        }
        sink->Finish(Scan::BottomFirst);

        CMemoryReader reader(writer.Written(), 50);
        CInputStream input(reader);
        const auto source = OpenAvi(input);
        EXPECT_EQ(source->Info().aspect, format.aspect);
        EXPECT_EQ(source->Info().scan, Scan::BottomFirst);
        ASSERT_EQ(source->Info().sideStreams.size(), 2u);
        EXPECT_EQ(source->Info().sideStreams[0].kind + source->Info().sideStreams[1].kind, "audiotext");
        EXPECT_EQ(source->Info().sideStreams[1].header, format.side[1].header);
        EXPECT_EQ(source->Info().sideStreams[1].format, format.side[1].format);
        std::vector<std::pair<std::size_t, Bytes>> back;
        source->SetSidePackets([&back](std::size_t stream, std::uint32_t, auto bytes) {
            back.emplace_back(stream, Bytes(bytes.begin(), bytes.end()));
        });
        EXPECT_EQ(ReadAll(*source).size(), 6u);
        EXPECT_EQ(back, packets) << "parts of " << partBytes;
    }
}

TEST(Avi, PipesAreRefused) {
    CMemoryWriter pipe(false);
    const Thrown error = ErrorOf([&] { MakeAviSink(pipe, {}); });
    EXPECT_EQ(error.code, ExitCode::Output);
    EXPECT_TRUE(pipe.Written().empty());
}

} // namespace
} // namespace host
