// What an AVI file that is written begins with.
#pragma once

#include "host/formats/FrameSink.h"

#include <vector>

namespace host {

// Bytes of chunks, the lowest byte of a number first.
class CBytes {
public:
    CBytes& U16(std::uint32_t value) {
        m_bytes.push_back(static_cast<std::uint8_t>(value));
        m_bytes.push_back(static_cast<std::uint8_t>(value >> 8));
        return *this;
    }
    CBytes& U32(std::uint32_t value) { return U16(value).U16(value >> 16); }
    CBytes& U64(std::uint64_t value) {
        return U32(static_cast<std::uint32_t>(value)).U32(static_cast<std::uint32_t>(value >> 32));
    }
    CBytes& Zeros(std::size_t count) {
        m_bytes.resize(m_bytes.size() + count);
        return *this;
    }
    CBytes& Bytes(std::span<const std::uint8_t> bytes) {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }
    // A chunk whose size is filled in by Close with the value that Open returned.
    std::size_t Open(std::uint32_t id) {
        U32(id).U32(0);
        return m_bytes.size();
    }
    void Close(std::size_t begin) {
        const std::size_t size = m_bytes.size() - begin;
        for (std::size_t i = 0; i < 4; ++i) {
            m_bytes[begin - 4 + i] = static_cast<std::uint8_t>(size >> (8 * i));
        }
    }
    std::size_t Size() const { return m_bytes.size(); }
    const std::uint8_t* Data() const { return m_bytes.data(); }

private:
    std::vector<std::uint8_t> m_bytes;
};

inline constexpr std::size_t kMaxAviParts = 1024;

// Where one part of the file has the index of one stream.
struct AviPartIndex {
    std::uint64_t offset;
    std::uint32_t bytes;
    std::uint32_t length; // of the stream in this part, in its own unit
};

// What is only known in the end.
struct AviCounts {
    std::uint32_t frames = 0;
    std::uint32_t firstPartFrames = 0;
    std::uint32_t firstPartBytes = 0; // as its RIFF chunk says
    std::uint32_t firstMoviBytes = 0;
    Scan scan = Scan::Progressive;
    std::vector<std::vector<AviPartIndex>> indexes; // of the video, then of each side stream
};

// "00db" for the video, "NNxx" for a packet of a side stream, whose last two letters say what it is.
std::uint32_t AviChunkId(std::size_t stream, std::uint32_t kind);

// Everything up to the first frame; for one format always of the same length.
CBytes AviHeaderBytes(const SinkFormat& format, const AviCounts& counts);

} // namespace host
