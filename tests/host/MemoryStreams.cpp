#include "tests/host/MemoryStreams.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace host {

std::size_t CMemoryReader::Read(void* buffer, std::size_t bytes) {
    const std::size_t step = std::min({bytes, m_portion, m_bytes.size() - m_position});
    std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_position), step, static_cast<std::uint8_t*>(buffer));
    m_position += step;
    m_largestRequest = std::max(m_largestRequest, bytes);
    return step;
}

std::optional<std::uint64_t> CMemoryReader::Size() const {
    return m_sized ? std::optional<std::uint64_t>(m_bytes.size()) : std::nullopt;
}

void CMemoryWriter::Write(const void* data, std::size_t bytes) {
    m_bytes.resize(std::max<std::size_t>(m_bytes.size(), m_position + bytes));
    std::memcpy(m_bytes.data() + m_position, data, bytes);
    m_position += bytes;
}

Bytes FromText(const std::string& text) {
    return {text.begin(), text.end()};
}

Bytes RandomBytes(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    Bytes bytes(count);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<std::uint8_t>(random()); });
    return bytes;
}

namespace {

struct PlaneSize {
    int bytesPerRow;
    int rows;
};

std::vector<PlaneSize> PlanesOf(const FrameView& frame) {
    const int width = frame.width;
    switch (frame.layout) {
    case Layout::Yuy2:
    case Layout::Uyvy:
        return {{2 * width, frame.height}};
    case Layout::Iyu2:
    case Layout::Rgb24:
        return {{3 * width, frame.height}};
    case Layout::Rgb32:
        return {{4 * width, frame.height}};
    case Layout::Gray:
        return {{width, frame.height}};
    default:
        break;
    }
    const ChromaSize chroma = ChromaSizeOf(frame.layout, width, frame.height);
    return {{width, frame.height}, {chroma.width, chroma.height}, {chroma.width, chroma.height}};
}

} // namespace

Bytes PictureOf(const FrameView& frame) {
    Bytes picture;
    int plane = 0;
    for (const PlaneSize& size : PlanesOf(frame)) {
        for (int y = 0; y < size.rows; ++y) {
            const std::uint8_t* const row = frame.Row(plane, y);
            picture.insert(picture.end(), row, row + size.bytesPerRow);
        }
        ++plane;
    }
    return picture;
}

std::vector<Bytes> ReadAll(IFrameSource& source) {
    std::vector<Bytes> frames;
    while (source.Next()) {
        frames.push_back(PictureOf(source.Frame()));
    }
    return frames;
}

Thrown ErrorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const HostError& error) {
        return {true, error.Code(), error.what()};
    }
    return {};
}

void ExpectError(ExitCode code, const std::string& said, const std::string& name, const std::function<void()>& action) {
    const Thrown error = ErrorOf(action);
    EXPECT_TRUE(error.any && error.code == code) << name;
    EXPECT_NE(error.text.find(said), std::string::npos) << name << ": " << error.text;
}

} // namespace host
