#include "host/analysis/FieldMeter.h"

#include "host/formats/FrameSource.h"

#include <algorithm>
#include <cmath>
#include <emmintrin.h>
#include <iterator>
#include <utility>

namespace host {

namespace {

constexpr int kBlock = 16; // pixels along either side: the bytes of one SSE2 register across
constexpr int kBlockPixels = kBlock * kBlock;
// A block has moved when a field of it changed by this much: noise and the unrest of compressed pictures stay below.
constexpr double kLeastChange = 2.5;
constexpr double kLeastBlockChange = kLeastChange * kBlockPixels / 2;

__m128i Load(const std::uint8_t* row) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(row));
}

// How far 16 pixels of two rows lie apart in all.
std::uint32_t Change(__m128i a, __m128i b) {
    const __m128i sums = _mm_sad_epu8(a, b);
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(sums) + _mm_extract_epi16(sums, 4));
}

// How far 16 pixels of a row lie from the mean of the rows above and below, and how much that changes along the row:
// where a picture has stripes of its own the former is large whatever moves, and only the latter tells.
std::uint32_t Zigzag(const std::uint8_t* above, const std::uint8_t* row, const std::uint8_t* below) {
    const __m128i mean = _mm_avg_epu8(Load(above), Load(below));
    const __m128i own = Load(row);
    // (mean - own) of either half less that of the other half is, halved, a difference of two means.
    const __m128i otherMean = _mm_shuffle_epi32(mean, 0x4E);
    const __m128i otherOwn = _mm_shuffle_epi32(own, 0x4E);
    return Change(mean, own) + 2 * Change(_mm_avg_epu8(mean, otherOwn), _mm_avg_epu8(otherMean, own));
}

// A difference of two sums as a multiple of its standard error, were the sign of each block's part a matter of chance.
class CDifference {
public:
    void Add(double part) {
        m_sum += part;
        m_squares += part * part;
    }
    double Certainty() const { return m_squares > 0 ? std::abs(m_sum) / std::sqrt(m_squares) : 0; }

private:
    double m_sum = 0;
    double m_squares = 0;
};

} // namespace

std::uint32_t CFieldMeter::Block::Spread() const {
    return std::max({own, topLater, bottomLater}) - std::min({own, topLater, bottomLater});
}

CFieldMeter::CFieldMeter(Pixels pixels, int width, int height)
    : m_pixels(pixels)
    , m_width(width)
    , m_height(height)
    , m_columns(width / kBlock) {
    m_now.width = m_before.width = m_columns * kBlock;
    m_now.height = m_before.height = height / kBlock * kBlock;
    const std::size_t bytes = std::size_t(m_now.width) * std::size_t(m_now.height);
    m_now.pixels.resize(bytes);
    m_before.pixels.resize(bytes);
    m_blocks.resize(bytes / kBlockPixels);
    m_sorted.reserve(m_blocks.size());
}

FieldReading CFieldMeter::Read(const std::uint8_t* frame) {
    std::swap(m_now, m_before);
    TakeLuma(PackedFrame(m_pixels, m_width, m_height, frame), m_now);
    if (std::exchange(m_isFirst, false)) {
        return {};
    }
    Measure();
    return Weigh();
}

void CFieldMeter::Measure() {
    std::fill(m_blocks.begin(), m_blocks.end(), Block{});
    for (int y = 1; y + 1 < m_now.height; ++y) {
        MeasureRow(y);
    }
}

// The row belongs to one field, its neighbours to the other; each of the two may come from either frame.
void CFieldMeter::MeasureRow(int y) {
    Block* block = &m_blocks[std::size_t(y / kBlock) * std::size_t(m_columns)];
    const bool top = y % 2 == 0;
    for (int x = 0; x < m_now.width; x += kBlock, ++block) {
        const std::uint8_t* const now = m_now.Row(y) + x;
        const std::uint8_t* const before = m_before.Row(y) + x;
        const std::ptrdiff_t stride = m_now.width;
        const std::uint32_t nowLater = Zigzag(before - stride, now, before + stride);
        const std::uint32_t nowEarlier = Zigzag(now - stride, before, now + stride);
        block->own += Zigzag(now - stride, now, now + stride);
        block->topLater += top ? nowLater : nowEarlier;
        block->bottomLater += top ? nowEarlier : nowLater;
        (top ? block->topChange : block->bottomChange) += Change(Load(now), Load(before));
    }
}

// Moves the blocks that moved to the front and says how many there are.
std::size_t CFieldMeter::KeepMoving() {
    const auto end = std::partition(m_blocks.begin(), m_blocks.end(),
                                    [](const Block& block) { return block.Change() >= kLeastBlockChange; });
    return static_cast<std::size_t>(end - m_blocks.begin());
}

FieldReading CFieldMeter::Weigh() {
    FieldReading reading;
    const std::size_t blocks = m_blocks.size();
    const std::size_t moving = KeepMoving();
    if (moving == 0) {
        return reading;
    }
    reading.moving = static_cast<double>(moving) / static_cast<double>(blocks);
    m_blocks.resize(moving);
    WeighFit(reading);
    WeighChange(reading);
    m_blocks.resize(blocks);
    return reading;
}

// The value from which on blocks are taken: twice the median, but not more than a quarter of the blocks fall short of
// being taken. A small object in noise then counts and the noise does not; of a picture that moves as a whole the
// quarter with the strongest edges counts.
template <class Key>
std::uint32_t CFieldMeter::TellingFrom(Key key) {
    m_sorted.clear();
    std::transform(m_blocks.begin(), m_blocks.end(), std::back_inserter(m_sorted), key);
    const auto quarter = m_sorted.begin() + static_cast<std::ptrdiff_t>(m_sorted.size() * 3 / 4);
    std::nth_element(m_sorted.begin(), quarter, m_sorted.end());
    const std::uint32_t upper = *quarter;
    const auto middle = m_sorted.begin() + static_cast<std::ptrdiff_t>(m_sorted.size() / 2);
    std::nth_element(m_sorted.begin(), middle, m_sorted.end());
    return std::min(upper, 2 * *middle);
}

void CFieldMeter::WeighFit(FieldReading& reading) {
    const std::uint32_t from = TellingFrom([](const Block& block) { return block.Spread(); });
    CDifference differences[3];
    double pixels = 0;
    for (const Block& block : m_blocks) {
        if (block.Spread() < from) {
            continue;
        }
        pixels += kBlockPixels;
        reading.own += block.own;
        reading.topLater += block.topLater;
        reading.bottomLater += block.bottomLater;
        differences[0].Add(double(block.topLater) - double(block.own));
        differences[1].Add(double(block.bottomLater) - double(block.own));
        differences[2].Add(double(block.topLater) - double(block.bottomLater));
    }
    for (double* sum : {&reading.own, &reading.topLater, &reading.bottomLater}) {
        *sum /= pixels;
    }
    for (const CDifference& difference : differences) {
        reading.certainty = std::max(reading.certainty, difference.Certainty());
    }
}

void CFieldMeter::WeighChange(FieldReading& reading) {
    const std::uint32_t from = TellingFrom([](const Block& block) { return block.Change(); });
    double pixels = 0;
    for (const Block& block : m_blocks) {
        if (block.Change() >= from) {
            pixels += kBlockPixels / 2.0;
            reading.topChange += block.topChange;
            reading.bottomChange += block.bottomChange;
        }
    }
    reading.topChange /= pixels;
    reading.bottomChange /= pixels;
}

} // namespace host
