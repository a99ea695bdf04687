// AVI files of any length (OpenDML): a first RIFF part "AVI " with the old index, further parts "AVIX", each with
// indexes of its own, and in the header a list of those indexes. The header is written twice, empty at first and in the
// end with the counts.
#include "host/formats/AviChunks.h"
#include "host/formats/AviSinkHeader.h"
#include "host/HostError.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::uint32_t kKeyFrame = 0x10; // in the old index
constexpr std::uint32_t kFrameChunk = FourCc('0', '0', 'd', 'b');
constexpr std::uint32_t kList = FourCc('L', 'I', 'S', 'T');

// One chunk of the present part.
struct Entry {
    std::uint32_t id;
    std::uint32_t offset; // of its header, from the part's list of frames
    std::uint32_t bytes;
};

std::size_t StreamOf(const Entry& entry) {
    return static_cast<std::size_t>(AviStreamOf(entry.id));
}

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
        m_counts.scan = format.scan;
        m_counts.indexes.resize(1 + format.side.size());
        const CBytes header = AviHeaderBytes(m_format, m_counts);
        const std::uint64_t capacity = Capacity(header.Size());
        if (format.frames && *format.frames > capacity) {
            throw HostError(ExitCode::Output, writer.Name() + ": the input has " + std::to_string(*format.frames) +
                                                  " frames, of which an AVI file can hold " + std::to_string(capacity) +
                                                  ". Use --to y4m.");
        }
        Put(header);
        m_moviStart = m_position - 12;
    }

    void Write(const std::uint8_t* frame, Scan) override {
        PutEntry(kFrameChunk, {frame, m_frameBytes});
        ++m_counts.frames;
    }

    void WriteSide(std::size_t stream, std::uint32_t id, std::span<const std::uint8_t> bytes) override {
        if (stream < m_format.side.size()) {
            PutEntry(AviChunkId(stream + 1, id), bytes);
        }
    }

    void Finish(Scan scan) override {
        EndPart();
        m_counts.scan = scan;
        m_writer.Seek(0);
        const CBytes header = AviHeaderBytes(m_format, m_counts);
        m_writer.Write(header.Data(), header.Size());
    }

private:
    void Put(const CBytes& bytes) {
        m_writer.Write(bytes.Data(), bytes.Size());
        m_position += bytes.Size();
    }
    std::uint64_t Capacity(std::size_t headerBytes) const;
    void PutEntry(std::uint32_t id, std::span<const std::uint8_t> bytes);
    void BeginPart();
    void EndPart();
    void PutIndex(std::size_t stream);
    void PutOldIndex();
    std::uint32_t LengthOf(std::size_t stream) const;
    void PatchSize(std::uint64_t chunkStart, std::uint64_t end);

    IByteWriter& m_writer;
    SinkFormat m_format;
    std::uint64_t m_partBytes;
    std::uint32_t m_frameBytes;
    std::uint64_t m_position = 0;
    std::uint64_t m_partStart = 0; // of the RIFF chunk
    std::uint64_t m_moviStart = 0; // of the LIST chunk that holds the frames
    std::size_t m_parts = 0;       // that are whole
    std::vector<Entry> m_entries;
    AviCounts m_counts;
};

// The frames of all parts, each of which takes frames until the next would pass its size; the first begins with the
// header, the others with 24 bytes. Side streams take room of their own.
std::uint64_t CAviSink::Capacity(std::size_t headerBytes) const {
    const std::uint64_t chunkBytes = std::uint64_t{8} + m_frameBytes + (m_frameBytes & 1);
    const auto framesOf = [this, chunkBytes](std::uint64_t begin) {
        const std::uint64_t first = begin + m_frameBytes;
        return m_partBytes < first ? 1 : 1 + (m_partBytes - first) / chunkBytes;
    };
    return std::min<std::uint64_t>(framesOf(headerBytes) + (kMaxAviParts - 1) * framesOf(24), UINT32_MAX);
}

void CAviSink::PutEntry(std::uint32_t id, std::span<const std::uint8_t> bytes) {
    if (m_position - m_partStart + bytes.size() > m_partBytes && !m_entries.empty()) {
        BeginPart();
    }
    if (m_counts.frames == UINT32_MAX) {
        throw OutputFullError(m_writer.Name() + ": an AVI file can hold no more frames. Use --to y4m.");
    }
    const auto size = static_cast<std::uint32_t>(bytes.size());
    m_entries.push_back({id, static_cast<std::uint32_t>(m_position - m_moviStart), size});
    Put(CBytes().U32(id).U32(size));
    m_writer.Write(bytes.data(), bytes.size());
    m_position += bytes.size();
    if (size & 1) {
        Put(CBytes().Zeros(1));
    }
}

void CAviSink::BeginPart() {
    if (m_parts + 1 == kMaxAviParts) {
        throw OutputFullError(m_writer.Name() + ": holds the first " + std::to_string(m_counts.frames) +
                              " frames; an AVI file can hold no more. Use --to y4m.");
    }
    EndPart();
    m_partStart = m_position;
    m_moviStart = m_position + 12;
    Put(CBytes().U32(FourCc('R', 'I', 'F', 'F')).U32(0).U32(FourCc('A', 'V', 'I', 'X')));
    Put(CBytes().U32(kList).U32(0).U32(FourCc('m', 'o', 'v', 'i')));
}

// Writes the part's indexes and its sizes.
void CAviSink::EndPart() {
    for (std::size_t i = 0; i < m_counts.indexes.size(); ++i) {
        PutIndex(i);
    }
    const std::uint64_t moviEnd = m_position;
    if (m_parts == 0) {
        PutOldIndex();
        m_counts.firstPartFrames = m_counts.frames;
        m_counts.firstPartBytes = static_cast<std::uint32_t>(m_position - 8);
        m_counts.firstMoviBytes = static_cast<std::uint32_t>(moviEnd - m_moviStart - 8);
    } else {
        PatchSize(m_partStart, m_position);
        PatchSize(m_moviStart, moviEnd);
        m_writer.Seek(m_position);
    }
    ++m_parts;
    m_entries.clear();
}

void CAviSink::PutIndex(std::size_t stream) {
    const auto count = std::count_if(m_entries.begin(), m_entries.end(),
                                     [stream](const Entry& entry) { return StreamOf(entry) == stream; });
    CBytes index;
    const std::size_t open =
        index.Open(FourCc('i', 'x', static_cast<char>('0' + stream / 10), static_cast<char>('0' + stream % 10)));
    index.U16(2).U16(0x0100).U32(static_cast<std::uint32_t>(count));
    index.U32(AviChunkId(stream, kFrameChunk)).U64(m_moviStart).U32(0);
    for (const Entry& entry : m_entries) {
        if (StreamOf(entry) == stream) {
            index.U32(entry.offset + 8).U32(entry.bytes);
        }
    }
    index.Close(open);
    const std::uint64_t start = m_position;
    Put(index);
    m_counts.indexes[stream].push_back({start, static_cast<std::uint32_t>(index.Size()), LengthOf(stream)});
}

// In the stream's own unit: frames or packets, or the samples of a fixed size that sound consists of.
std::uint32_t CAviSink::LengthOf(std::size_t stream) const {
    const std::uint32_t sample = stream == 0 ? 0 : ParseStreamHeader(m_format.side[stream - 1].header).sampleBytes;
    std::uint32_t length = 0;
    for (const Entry& entry : m_entries) {
        if (StreamOf(entry) == stream) {
            length += sample == 0 ? 1 : entry.bytes / sample;
        }
    }
    return length;
}

void CAviSink::PutOldIndex() {
    CBytes index;
    const std::size_t open = index.Open(FourCc('i', 'd', 'x', '1'));
    for (const Entry& entry : m_entries) {
        index.U32(entry.id).U32(kKeyFrame).U32(entry.offset - 8).U32(entry.bytes);
    }
    index.Close(open);
    Put(index);
}

void CAviSink::PatchSize(std::uint64_t chunkStart, std::uint64_t end) {
    m_writer.Seek(chunkStart + 4);
    const CBytes size = CBytes().U32(static_cast<std::uint32_t>(end - chunkStart - 8));
    m_writer.Write(size.Data(), size.Size());
}

} // namespace

std::unique_ptr<IFrameSink> MakeAviSink(IByteWriter& writer, const SinkFormat& format, std::uint64_t partBytes) {
    return std::make_unique<CAviSink>(writer, format, partBytes);
}

} // namespace host
