// Every byte flipped and every cut, over small files of each kind: what is read ends in an error, or is all there.
#include "host/formats/FrameSource.h"
#include "host/formats/FrameSink.h"
#include "tests/host/MemoryStreams.h"

#include <algorithm>
#include <numeric>

namespace host {
namespace {

constexpr std::size_t kFrames = 3;

struct Sample {
    const char* name;
    std::unique_ptr<IFrameSource> (*open)(CInputStream& input);
    Bytes file;
    std::size_t framesBegin = 0;
    // How many frames are whole in the file cut to this length; nothing when that is an error.
    std::function<std::optional<std::size_t>(std::size_t length)> framesIn;
};

std::size_t FindLast(const Bytes& file, const std::string& text) {
    return static_cast<std::size_t>(std::find_end(file.begin(), file.end(), text.begin(), text.end()) - file.begin());
}

Bytes WriteClip(std::unique_ptr<IFrameSink> (*make)(IByteWriter& writer)) {
    CMemoryWriter writer;
    const auto sink = make(writer);
    for (unsigned i = 0; i < kFrames; ++i) {
        sink->Write(RandomBytes(FrameSize(Pixels::Yuy2, 4, 2), i).data());
    }
    sink->Finish();
    return writer.Written();
}

const SinkFormat kFormat{Pixels::Yuy2, 4, 2, {25, 1}, {}, false};

Sample AviSample(const char* name, Bytes file) {
    const std::size_t indexBegins = FindLast(file, "ix00");
    const std::string list = "movi";
    const auto begin = std::search(file.begin(), file.end(), list.begin(), list.end()) - file.begin() + 4;
    return {name, &OpenAvi, std::move(file), static_cast<std::size_t>(begin),
            [indexBegins](std::size_t length) { return length < indexBegins ? std::nullopt : std::optional(kFrames); }};
}

// Frames of 16 bytes, so that entries of the index could be taken for frames; a sound chunk before the last frame.
Sample AviWithSound() {
    Bytes file = WriteClip([](IByteWriter& writer) { return MakeAviSink(writer, kFormat); });
    Bytes sound = FromText("01wb");
    sound.resize(8 + 22);
    sound[4] = 22;
    const std::size_t last = FindLast(file, "ix00") - 24;
    file.insert(file.begin() + static_cast<std::ptrdiff_t>(last), sound.begin(), sound.end());
    file[4] = static_cast<std::uint8_t>(file[4] + sound.size());
    return AviSample("AVI with sound", file);
}

Sample AviOfThreeParts() {
    return AviSample("AVI of three parts",
                     WriteClip([](IByteWriter& writer) { return MakeAviSink(writer, kFormat, 1); }));
}

// Streams declare no number of frames: one that is cut between two is whole.
Sample Y4mStream() {
    const Bytes file = WriteClip([](IByteWriter& writer) { return MakeY4mSink(writer, kFormat); });
    const std::size_t header = file.size() - kFrames * (6 + 16);
    return {"Y4M", &OpenY4m, file, header, [header](std::size_t length) {
                const bool whole = length >= header && (length - header) % (6 + 16) == 0;
                return whole ? std::optional((length - header) / (6 + 16)) : std::nullopt;
            }};
}

struct Outcome {
    std::size_t frames = 0;
    Bytes pictures;
    std::string error;
    bool kept = false; // the frames before the damage can be kept
};

Outcome ReadWhatIsThere(const Sample& sample, const Bytes& file) {
    Outcome outcome;
    CMemoryReader reader(file, 777, file.back() % 2 != 0);
    CInputStream input(reader);
    try {
        for (const auto source = sample.open(input); source->Next();) {
            const Bytes picture = PictureOf(source->Frame());
            outcome.pictures.insert(outcome.pictures.end(), picture.begin(), picture.end());
            ++outcome.frames;
        }
    } catch (const HostError& error) {
        outcome.error = error.what();
        outcome.kept = dynamic_cast<const DamagedError*>(&error) != nullptr;
    }
    return outcome;
}

// Where the frames are, an error names the byte and the frame, and leaves the frames before it.
void ExpectNamed(const Outcome& outcome, const std::string& where) {
    EXPECT_TRUE(outcome.kept) << where << ": " << outcome.error;
    EXPECT_NE(outcome.error.find("byte "), std::string::npos) << where << ": " << outcome.error;
    EXPECT_NE(outcome.error.find("frame " + std::to_string(outcome.frames)), std::string::npos)
        << where << ": " << outcome.error;
}

// The flipped byte itself may be one of a picture.
bool SameButOne(const Bytes& a, const Bytes& b) {
    return a.size() == b.size() && std::inner_product(a.begin(), a.end(), b.begin(), 0, std::plus<>(),
                                                      [](int x, int y) { return x == y ? 0 : 1; }) <= 1;
}

// One byte on; through long runs of zeros, which nothing reads, with longer steps.
std::size_t Behind(const Bytes& file, std::size_t at) {
    constexpr std::size_t kStep = 97;
    const auto end = file.begin() + static_cast<std::ptrdiff_t>(std::min(at + kStep, file.size()));
    return std::any_of(file.begin() + static_cast<std::ptrdiff_t>(at), end, [](int byte) { return byte != 0; })
               ? at + 1
               : at + kStep;
}

class Damage : public testing::TestWithParam<Sample (*)()> {
protected:
    const Sample m_sample = GetParam()();
    const Bytes& m_file = m_sample.file;
};

TEST_P(Damage, FlippedBytesLoseNothingUnsaid) {
    const Outcome good = ReadWhatIsThere(m_sample, m_file);
    ASSERT_EQ(good.frames, kFrames);
    for (std::size_t at = 0; at < m_file.size(); at = Behind(m_file, at)) {
        for (const int mask : {0x01, 0x06, 0x80, 0xFF}) {
            Bytes file = m_file;
            file[at] = static_cast<std::uint8_t>(file[at] ^ mask);
            const Outcome outcome = ReadWhatIsThere(m_sample, file);
            const std::string where = m_sample.name + (" at " + std::to_string(at)) + " by " + std::to_string(mask);
            if (outcome.error.empty()) {
                EXPECT_TRUE(SameButOne(outcome.pictures, good.pictures)) << where;
            } else if (at >= m_sample.framesBegin) {
                ExpectNamed(outcome, where);
            }
        }
    }
}

TEST_P(Damage, CutsLoseNothingUnsaid) {
    for (std::size_t length = 1; length < m_file.size(); length = Behind(m_file, length)) {
        const Bytes file(m_file.begin(), m_file.begin() + static_cast<std::ptrdiff_t>(length));
        const Outcome outcome = ReadWhatIsThere(m_sample, file);
        const std::string where = m_sample.name + (" to " + std::to_string(length));
        const auto expected = m_sample.framesIn(length);
        if (expected) {
            EXPECT_TRUE(outcome.error.empty() && outcome.frames == *expected) << where << ": " << outcome.error;
        } else if (length < m_sample.framesBegin) {
            EXPECT_FALSE(outcome.error.empty()) << where;
        } else {
            ExpectNamed(outcome, where);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Files, Damage, testing::Values(&AviWithSound, &AviOfThreeParts, &Y4mStream));

} // namespace
} // namespace host
