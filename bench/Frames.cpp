#include "bench/Frames.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t kColdBytes = std::size_t{192} << 20; // of each side; several times the largest cache
constexpr std::size_t kTurnBytes = std::size_t{24} << 20;
constexpr std::size_t kRunInBytes = std::size_t{64} << 20; // more than the largest cache holds
constexpr std::align_val_t kAlignment{4096};

std::uint8_t RowValue(Content content, std::int32_t row) {
    switch (content) {
    case Content::Busy:
        return row / 2 % 2 ? 180 : 60;
    case Content::Combed:
        return row % 2 ? 180 : 60;
    default:
        return 60;
    }
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

void FillFrame(const FrameFormat& format, Content content, std::uint8_t* frame) {
    const auto stride = static_cast<std::size_t>(format.Stride());
    for (std::int32_t row = 0; row < format.height; ++row, frame += stride) {
        std::memset(frame, RowValue(content, row), stride);
    }
}

const char* FlowName(Flow flow) {
    constexpr const char* kNames[] = {"cold", "warm", "cold, read after", "chain"};
    return kNames[static_cast<int>(flow)];
}

FrameSet::FrameSet(const FrameFormat& format, Content content, Flow flow)
    : m_format(format)
    , m_content(content)
    , m_flow(flow) {
    const std::size_t count = FrameCount(format, flow);
    for (std::size_t i = 0; i < count; ++i) {
        m_inputs.push_back(MakeFrame());
        m_outputs.push_back(MakeFrame());
    }
    m_framesPerTurn = static_cast<int>(std::max(count, kTurnBytes / format.Bytes()));
}

FrameSet::Frame FrameSet::MakeFrame() const {
    Frame frame(static_cast<std::uint8_t*>(operator new(m_format.Bytes(), kAlignment)));
    FillFrame(m_format, m_content, frame.get());
    return frame;
}

void FrameSet::Free::operator()(std::uint8_t* bytes) const {
    operator delete(bytes, kAlignment);
}

Contestant FrameSet::MakeContestant(std::string name, Work work) const {
    const int runInFrames = static_cast<int>(kRunInBytes / m_format.Bytes()) + 1;
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
            FillFrame(m_format, m_content, Input(index));
        }
        work(index);
        if (m_flow == Flow::Chain || m_flow == Flow::Read) {
            ReadFrame(Output(index), m_format.Bytes());
        }
    }
}
