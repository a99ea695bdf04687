#include "host/formats/ByteStream.h"

#include <algorithm>
#include <cstring>

namespace host {

namespace {
constexpr std::size_t kLookAhead = 16384;
}

CInputStream::CInputStream(IByteReader& reader)
    : m_reader(reader)
    , m_buffer(kLookAhead) {}

// Adds bytes to the look-ahead; false when the input has ended.
bool CInputStream::Fill() {
    std::memmove(m_buffer.data(), m_buffer.data() + m_begin, Buffered());
    m_end = Buffered();
    m_begin = 0;
    const std::size_t got = m_reader.Read(m_buffer.data() + m_end, m_buffer.size() - m_end);
    m_end += got;
    return got != 0;
}

std::vector<std::uint8_t> CInputStream::Peek(std::size_t bytes) {
    while (Buffered() < bytes && Fill()) {
    }
    const auto first = m_buffer.begin() + static_cast<std::ptrdiff_t>(m_begin);
    return {first, first + static_cast<std::ptrdiff_t>(std::min(bytes, Buffered()))};
}

std::size_t CInputStream::Read(void* buffer, std::size_t bytes) {
    auto* out = static_cast<std::uint8_t*>(buffer);
    std::size_t done = std::min(bytes, Buffered());
    if (done != 0) { // the buffer may be none for no bytes
        std::memcpy(out, m_buffer.data() + m_begin, done);
    }
    m_begin += done;
    // Large reads go past the look-ahead: a frame is copied once, by the system.
    while (done < bytes) {
        const std::size_t got = m_reader.Read(out + done, bytes - done);
        if (got == 0) {
            break;
        }
        done += got;
    }
    m_position += done;
    return done;
}

std::uint64_t CInputStream::Skip(std::uint64_t bytes) {
    std::uint64_t left = bytes;
    while (left != 0 && (Buffered() != 0 || Fill())) {
        const std::size_t step = static_cast<std::size_t>(std::min<std::uint64_t>(left, Buffered()));
        m_begin += step;
        m_position += step;
        left -= step;
    }
    return bytes - left;
}

std::optional<std::string> CInputStream::ReadLine(std::size_t limit) {
    std::string line;
    while (line.size() < limit && (Buffered() != 0 || Fill())) {
        const char c = static_cast<char>(m_buffer[m_begin++]);
        ++m_position;
        if (c == '\n') {
            return line;
        }
        line += c;
    }
    return std::nullopt;
}

} // namespace host
