// AVI files of any length (OpenDML): a first RIFF part "AVI " with the old index, further parts "AVIX", each with an
// index of its own, and in the header a list of those indexes. The header is written twice, empty at first and in the
// end with the counts.
#include "host/formats/FrameSink.h"
#include "host/HostError.h"

#include <algorithm>
#include <vector>

namespace host {

namespace {

constexpr std::size_t kMaxParts = 1024;
constexpr std::uint32_t kHasIndex = 0x10; // in the main header
constexpr std::uint32_t kKeyFrame = 0x10; // in the old index
constexpr std::uint32_t kVideo = FourCc('v', 'i', 'd', 's');
constexpr std::uint32_t kFrameChunk = FourCc('0', '0', 'd', 'b');
constexpr std::uint32_t kIndexChunk = FourCc('i', 'x', '0', '0');
constexpr std::uint32_t kList = FourCc('L', 'I', 'S', 'T');
constexpr std::uint32_t kMovi = FourCc('m', 'o', 'v', 'i');

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

struct PartIndex {
    std::uint64_t offset;
    std::uint32_t bytes;
    std::uint32_t frames;
};

class CAviSink final : public IFrameSink {
public:
    CAviSink(IByteWriter& writer, const SinkFormat& format, std::uint64_t partBytes)
        : m_writer(writer)
        , m_format(format)
        , m_partBytes(partBytes)
        , m_frameBytes(static_cast<std::uint32_t>(FrameSize(format.pixels, format.width, format.height))) {
        if (!writer.CanSeek()) {
            throw HostError(ExitCode::Output, "AVI cannot be written to a pipe, as its header is completed at the end. "
                                              "Write it to a file, or use --to y4m for pipes.");
        }
        const CBytes header = Header();
        m_capacity = Capacity(header.Size());
        if (format.frames && *format.frames > m_capacity) {
            throw HostError(ExitCode::Output, writer.Name() + ": the input has " + std::to_string(*format.frames) +
                                                  " frames, of which an AVI file can hold " +
                                                  std::to_string(m_capacity) + ". Use --to y4m.");
        }
        Put(header);
        BeginPart(m_position - 12);
    }

    void Write(const std::uint8_t* frame) override {
        if (m_frames == m_capacity) {
            throw OutputFullError(m_writer.Name() + ": holds the first " + std::to_string(m_frames) +
                                  " frames; an AVI file can hold no more. Use --to y4m.");
        }
        if (m_position - m_partStart + m_frameBytes > m_partBytes && m_partFrames != 0) {
            EndPart();
            Put(CBytes()
                    .U32(FourCc('R', 'I', 'F', 'F'))
                    .U32(0)
                    .U32(FourCc('A', 'V', 'I', 'X'))
                    .U32(kList)
                    .U32(0)
                    .U32(kMovi));
            BeginPart(m_position - 12);
            m_partStart = m_position - 24;
        }
        Put(CBytes().U32(kFrameChunk).U32(m_frameBytes));
        m_writer.Write(frame, m_frameBytes);
        m_position += m_frameBytes;
        if (m_frameBytes & 1) {
            Put(CBytes().Zeros(1));
        }
        ++m_partFrames;
        ++m_frames;
    }

    void Finish() override {
        EndPart();
        m_writer.Seek(0);
        const CBytes header = Header();
        m_writer.Write(header.Data(), header.Size());
    }

private:
    void Put(const CBytes& bytes) {
        m_writer.Write(bytes.Data(), bytes.Size());
        m_position += bytes.Size();
    }
    void BeginPart(std::uint64_t moviStart) {
        m_moviStart = moviStart;
        m_partFrames = 0;
    }
    std::uint64_t Capacity(std::size_t headerBytes) const;
    std::uint32_t ChunkBytes() const { return 8 + m_frameBytes + (m_frameBytes & 1); }
    void EndPart();
    void PatchSize(std::uint64_t chunkStart, std::uint64_t end);
    CBytes Header() const;
    void PutStream(CBytes& header) const;
    void PutPartList(CBytes& header) const;

    IByteWriter& m_writer;
    SinkFormat m_format;
    std::uint64_t m_partBytes;
    std::uint32_t m_frameBytes;
    std::uint64_t m_capacity = 0; // in frames
    std::uint64_t m_position = 0;
    std::uint64_t m_partStart = 0; // of the RIFF chunk
    std::uint64_t m_moviStart = 0; // of the LIST chunk that holds the frames
    std::uint32_t m_partFrames = 0;
    std::uint32_t m_frames = 0;
    std::uint32_t m_firstPartFrames = 0;
    std::uint32_t m_firstPartBytes = 0; // as its RIFF chunk says
    std::uint32_t m_firstMoviBytes = 0;
    std::vector<PartIndex> m_parts;
};

// The frames of all parts, each of which takes frames until the next would pass its size; the first begins with the
// header, the others with 24 bytes.
std::uint64_t CAviSink::Capacity(std::size_t headerBytes) const {
    const auto framesOf = [this](std::uint64_t begin) {
        const std::uint64_t first = begin + m_frameBytes;
        return m_partBytes < first ? 1 : 1 + (m_partBytes - first) / ChunkBytes();
    };
    return std::min<std::uint64_t>(framesOf(headerBytes) + (kMaxParts - 1) * framesOf(24), UINT32_MAX);
}

// Writes the part's indexes and its sizes. Frames are all of one size, so the indexes are counted out.
void CAviSink::EndPart() {
    const std::uint64_t indexStart = m_position;
    CBytes index;
    const std::size_t open = index.Open(kIndexChunk);
    index.U16(2).U16(0x0100).U32(m_partFrames).U32(kFrameChunk).U64(m_moviStart).U32(0);
    for (std::uint32_t i = 0; i < m_partFrames; ++i) {
        index.U32(12 + i * ChunkBytes() + 8).U32(m_frameBytes);
    }
    index.Close(open);
    Put(index);
    m_parts.push_back({indexStart, static_cast<std::uint32_t>(index.Size()), m_partFrames});
    const std::uint64_t moviEnd = m_position;
    const bool first = m_partStart == 0;
    if (first) {
        CBytes old;
        const std::size_t openOld = old.Open(FourCc('i', 'd', 'x', '1'));
        for (std::uint32_t i = 0; i < m_partFrames; ++i) {
            old.U32(kFrameChunk).U32(kKeyFrame).U32(4 + i * ChunkBytes()).U32(m_frameBytes);
        }
        old.Close(openOld);
        Put(old);
        m_firstPartFrames = m_partFrames;
        m_firstPartBytes = static_cast<std::uint32_t>(m_position - 8);
        m_firstMoviBytes = static_cast<std::uint32_t>(moviEnd - m_moviStart - 8);
    } else {
        PatchSize(m_partStart, m_position);
        PatchSize(m_moviStart, moviEnd);
        m_writer.Seek(m_position);
    }
}

void CAviSink::PatchSize(std::uint64_t chunkStart, std::uint64_t end) {
    m_writer.Seek(chunkStart + 4);
    const CBytes size = CBytes().U32(static_cast<std::uint32_t>(end - chunkStart - 8));
    m_writer.Write(size.Data(), size.Size());
}

// Everything up to the first frame; always of the same length.
CBytes CAviSink::Header() const {
    const double bytesPerSecond = m_frameBytes * m_format.rate.Value();
    CBytes header;
    header.U32(FourCc('R', 'I', 'F', 'F')).U32(m_firstPartBytes).U32(FourCc('A', 'V', 'I', ' '));
    const std::size_t headerList = header.Open(kList);
    header.U32(FourCc('h', 'd', 'r', 'l'));
    const std::size_t main = header.Open(FourCc('a', 'v', 'i', 'h'));
    header.U32(static_cast<std::uint32_t>(1e6 / m_format.rate.Value() + 0.5))
        .U32(bytesPerSecond < UINT32_MAX ? static_cast<std::uint32_t>(bytesPerSecond) : UINT32_MAX)
        .U32(0)
        .U32(kHasIndex)
        .U32(m_firstPartFrames)
        .U32(0)
        .U32(1)
        .U32(m_frameBytes)
        .U32(static_cast<std::uint32_t>(m_format.width))
        .U32(static_cast<std::uint32_t>(m_format.height))
        .Zeros(16);
    header.Close(main);
    PutStream(header);
    const std::size_t extended = header.Open(kList);
    header.U32(FourCc('o', 'd', 'm', 'l'));
    const std::size_t total = header.Open(FourCc('d', 'm', 'l', 'h'));
    header.U32(m_frames).Zeros(244);
    header.Close(total);
    header.Close(extended);
    header.Close(headerList);
    header.U32(kList).U32(m_firstMoviBytes).U32(kMovi);
    return header;
}

void CAviSink::PutStream(CBytes& header) const {
    const PixelTraits& traits = TraitsOf(m_format.pixels);
    const std::size_t list = header.Open(kList);
    header.U32(FourCc('s', 't', 'r', 'l'));
    const std::size_t stream = header.Open(FourCc('s', 't', 'r', 'h'));
    header.U32(kVideo).U32(traits.fourcc).U32(0).U32(0).U32(0);
    header.U32(m_format.rate.denominator).U32(m_format.rate.numerator).U32(0).U32(m_frames).U32(m_frameBytes);
    header.U32(UINT32_MAX).U32(0).U16(0).U16(0);
    header.U16(static_cast<std::uint32_t>(m_format.width)).U16(static_cast<std::uint32_t>(m_format.height));
    header.Close(stream);
    const std::size_t format = header.Open(FourCc('s', 't', 'r', 'f'));
    header.U32(40).U32(static_cast<std::uint32_t>(m_format.width)).U32(static_cast<std::uint32_t>(m_format.height));
    header.U16(1).U16(static_cast<std::uint32_t>(traits.bits)).U32(traits.fourcc).U32(m_frameBytes).Zeros(16);
    header.Close(format);
    PutPartList(header);
    header.Close(list);
}

void CAviSink::PutPartList(CBytes& header) const {
    const std::size_t list = header.Open(FourCc('i', 'n', 'd', 'x'));
    header.U16(4).U16(0).U32(static_cast<std::uint32_t>(m_parts.size())).U32(kFrameChunk).Zeros(12);
    for (const PartIndex& part : m_parts) {
        header.U64(part.offset).U32(part.bytes).U32(part.frames);
    }
    header.Zeros((kMaxParts - m_parts.size()) * 16);
    header.Close(list);
}

} // namespace

std::unique_ptr<IFrameSink> MakeAviSink(IByteWriter& writer, const SinkFormat& format, std::uint64_t partBytes) {
    return std::make_unique<CAviSink>(writer, format, partBytes);
}

} // namespace host
