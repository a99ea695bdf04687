#include "bench/Frames.h"

#include "engine/kernels/CpuFeatures.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <random>

namespace {

constexpr std::size_t kColdBytes = std::size_t{192} << 20; // of each side; both together more than the largest cache
constexpr std::size_t kTurnBytes = std::size_t{24} << 20;
constexpr std::align_val_t kAlignment{4096};

constexpr std::int32_t kBlockRows = 12;
constexpr std::int32_t kBlockBytes = 240;

// Rows after which a picture repeats.
std::int32_t RowsOf(Content content) {
    return content == Content::Clean ? 1 : content == Content::Busy ? 4 : 3 * kBlockRows;
}

// What a byte of a combed block is above its neighbours: three bytes of 14 or four of 13 are a large step, three of 13
// or four of 12 are none.
int CombStep(std::mt19937& random) {
    return 12 + static_cast<int>(random() % 7);
}

// More than the largest cache holds.
std::size_t RunInBytes() {
    static const std::size_t bytes = std::max(std::size_t{64} << 20, LargestCacheBytes());
    return bytes;
}

// What a reader of the frame does at least.
void ReadFrame(const std::uint8_t* frame, std::size_t bytes) {
    static volatile std::uint64_t seen;
    std::uint64_t sums[8] = {};
    for (std::size_t i = 0; i + sizeof sums <= bytes; i += sizeof sums) {
        std::uint64_t words[8];
        std::memcpy(words, frame + i, sizeof words);
        for (int k = 0; k < 8; ++k) {
            sums[k] += words[k];
        }
    }
    seen = seen + sums[0] + sums[1] + sums[2] + sums[3] + sums[4] + sums[5] + sums[6] + sums[7];
}

std::size_t FrameCount(const FrameFormat& format, Flow flow) {
    switch (flow) {
    case Flow::Warm:
        return 1;
    case Flow::Chain:
        return 6;
    default:
        return std::max<std::size_t>(6, kColdBytes / format.Bytes());
    }
}

} // namespace

Picture::Picture(const FrameFormat& format, Content content)
    : m_stride(static_cast<std::size_t>(format.Stride()))
    , m_height(format.height) {
    std::mt19937 random(1);
    for (std::int32_t row = 0; row < RowsOf(content); ++row) {
        for (std::int32_t i = 0; i < format.Stride(); ++i) {
            const bool combed = content == Content::Combed && (row / kBlockRows + i / kBlockBytes) % 3 == 0;
            const int above = row % 2 && combed ? CombStep(random) : content == Content::Busy && row / 2 ? 120 : 0;
            m_rows.push_back(static_cast<std::uint8_t>(60 + above));
        }
    }
}

void Picture::Fill(std::uint8_t* frame) const {
    std::size_t at = 0;
    for (std::int32_t row = 0; row < m_height; ++row, frame += m_stride) {
        std::memcpy(frame, m_rows.data() + at, m_stride);
        at = (at + m_stride) % m_rows.size();
    }
}

const char* FlowName(Flow flow) {
    constexpr const char* kNames[] = {"cold", "warm", "cold, read after", "chain"};
    return kNames[static_cast<int>(flow)];
}

FrameMemory MemoryAt(Place place) {
    const std::size_t past = place == Place::Ordinary ? 16 : 0;
    return [past](std::size_t bytes) {
        auto* const block = static_cast<std::uint8_t*>(operator new(bytes + past, kAlignment));
        return std::shared_ptr<std::uint8_t>(block + past, [block](auto*) { operator delete(block, kAlignment); });
    };
}

std::string FrameText(const FrameFormat& format, Place place) {
    return format.Text() + (place == Place::Aligned ? ", aligned" : "");
}

FrameSet::FrameSet(const FrameFormat& format, Content content, Flow flow, Place place)
    : FrameSet(format, content, flow, place, MemoryAt(place)) {}

FrameSet::FrameSet(const FrameFormat& format, Content content, Flow flow, Place place, const FrameMemory& memory)
    : m_format(format)
    , m_picture(format, content)
    , m_flow(flow)
    , m_place(place) {
    const std::size_t count = FrameCount(format, flow);
    for (std::size_t i = 0; i < count; ++i) {
        m_picture.Fill(m_inputs.emplace_back(memory(format.Bytes())).get());
        m_picture.Fill(m_outputs.emplace_back(memory(format.Bytes())).get());
    }
    m_framesPerTurn = static_cast<int>(std::max(count, kTurnBytes / format.Bytes()));
}

Contestant FrameSet::MakeContestant(std::string name, Work work) const {
    const int runInFrames = static_cast<int>(RunInBytes() / m_format.Bytes()) + 1;
    const int runInFirst = std::max(0, m_framesPerTurn - runInFrames);
    return {std::move(name), [this, work, runInFirst] { Run(work, runInFirst); }, [this, work] { Run(work, 0); }};
}

Contestant FrameSet::MakeCopying() const {
    return MakeContestant("memcpy", [this](std::size_t i) { std::memcpy(Output(i), Input(i), m_format.Bytes()); });
}

void FrameSet::Run(const Work& work, int first) const {
    for (int i = first; i < m_framesPerTurn; ++i) {
        const std::size_t index = static_cast<std::size_t>(i) % Count();
        if (m_flow == Flow::Chain) {
            m_picture.Fill(Input(index));
        }
        work(index);
        if (m_flow == Flow::Chain || m_flow == Flow::Read) {
            ReadFrame(Output(index), m_format.Bytes());
        }
    }
}
