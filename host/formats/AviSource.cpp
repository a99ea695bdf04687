#include "host/formats/FrameSource.h"

#include "host/formats/AviSourceHeader.h"
#include "host/formats/FrameBytes.h"
#include "host/HostError.h"

#include <algorithm>

namespace host {

namespace {

// Writers that cannot go back leave a size like this.
constexpr std::uint32_t kUnknownSize = 0xFFFFFF00;
constexpr std::uint32_t kMaxSidePacket = 1u << 28;

class CAviSource final : public IFrameSource {
public:
    explicit CAviSource(CInputStream& input)
        : m_input(input) {
        const auto riff = NextChunk(input);
        if (!riff || riff->id != FourCc('R', 'I', 'F', 'F') || riff->type != FourCc('A', 'V', 'I', ' ')) {
            Refuse("this is no AVI file (it does not begin with \"RIFF....AVI \"). Say what it is with --from.");
        }
        BeginPart(*riff);
        m_headers = ReadAviHeaders(input);
        m_inFrames = true;
        const PackedRows& rows = m_headers.rows;
        m_stride = rows.padded;
        // A writer that could not go back to write sizes had no count either, whatever stands there. Other headers
        // count the frames of one part, or the chunks of all streams.
        m_declared = m_partEnd ? m_headers.length : 0;
        // The count that the header names is believed only as far as the file can hold it; from a pipe it is a guess.
        if (const auto size = m_input.Size()) {
            m_headers.info.frames = std::min<std::uint64_t>(
                m_headers.length, *size / (rows.tight * static_cast<std::size_t>(m_headers.info.height)));
        }
    }

    const ClipInfo& Info() const override { return m_headers.info; }
    bool FieldChroma() const override { return false; }
    void SetSidePackets(SidePackets packets) override { m_sidePackets = std::move(packets); }
    bool Next() override;
    FrameView Frame() const override;

private:
    [[noreturn]] void Refuse(const std::string& why) const {
        throw HostError(ExitCode::Input, m_input.Name() + ": " + why);
    }
    void BeginPart(const AviChunk& riff);
    void Enter(const AviChunk& list);
    bool IsFrame(const AviChunk& chunk) const;
    bool PassesPart(const AviChunk& chunk) const;
    void ReadFrame(const AviChunk& chunk);
    bool IsSidePacket(const AviChunk& chunk) const;
    void ReadSidePacket(const AviChunk& chunk);
    bool Fits(const AviChunk& chunk) const;
    bool Pass(const AviChunk& chunk);
    bool IsComplete() const;
    void CheckEnd(std::uint64_t start) const;
    [[noreturn]] void ThrowTooLarge(const AviChunk& chunk) const;

    CInputStream& m_input;
    AviHeaders m_headers;
    SidePackets m_sidePackets;
    std::size_t m_stride = 0; // of the current frame
    CFrameBytes m_frame;
    CFrameBytes m_side;
    std::uint64_t m_next = 0;
    std::uint64_t m_declared = 0;           // frames that the header promises; 0 when its writer could not know
    std::uint32_t m_chunkBytes = 0;         // of every frame that is there
    std::optional<std::uint64_t> m_partEnd; // of the current RIFF chunk, when its writer could know it
    bool m_inFrames = false;                // after the list of frames comes the part's index
};

void CAviSource::BeginPart(const AviChunk& riff) {
    const bool known = riff.bytes != 0 && riff.bytes < kUnknownSize;
    m_partEnd = known ? std::optional<std::uint64_t>(riff.offset + 8 + riff.bytes) : std::nullopt;
    m_inFrames = false;
}

void CAviSource::Enter(const AviChunk& list) {
    if (list.id == FourCc('R', 'I', 'F', 'F')) {
        BeginPart(list);
    } else if (list.type == FourCc('m', 'o', 'v', 'i')) {
        m_inFrames = true;
    }
}

// Frames are chunks "NNdb" or "NNdc", NN the stream's number. Entries of the index look the same.
bool CAviSource::IsFrame(const AviChunk& chunk) const {
    const std::uint32_t kind = chunk.id >> 16;
    return m_inFrames && AviStreamOf(chunk.id) == m_headers.stream &&
           (kind == ('d' | 'b' << 8) || kind == ('d' | 'c' << 8));
}

// Packets of other streams are chunks "NNxx" with their streams' numbers.
bool CAviSource::IsSidePacket(const AviChunk& chunk) const {
    return m_sidePackets && m_inFrames && m_headers.SideOf(AviStreamOf(chunk.id)).has_value();
}

void CAviSource::ReadSidePacket(const AviChunk& chunk) {
    if (chunk.bytes > kMaxSidePacket) {
        throw HostError(ExitCode::Input,
                        m_input.Name() + ": a packet of its stream " + std::to_string(AviStreamOf(chunk.id)) + " has " +
                            std::to_string(chunk.bytes) + " bytes; one that long cannot be carried. Use --no-side.");
    }
    const std::size_t got = m_side.Read(m_input, chunk.bytes);
    if (got != chunk.bytes) {
        ThrowCutOff(m_input, m_next, got, chunk.bytes);
    }
    m_input.Skip(chunk.bytes & 1);
    m_sidePackets(*m_headers.SideOf(AviStreamOf(chunk.id)), chunk.id, {m_side.Data(), got});
}

bool CAviSource::PassesPart(const AviChunk& chunk) const {
    return m_partEnd && chunk.offset + 8 + chunk.bytes > *m_partEnd;
}

bool CAviSource::Next() {
    std::uint64_t start = m_input.Position();
    while (const auto chunk = NextChunk(m_input)) {
        if (chunk->type != 0) {
            Enter(*chunk);
        } else if (m_partEnd && start >= *m_partEnd) {
            break; // what follows the last part is no part of the clip
        } else if (IsFrame(*chunk)) {
            ReadFrame(*chunk);
            ++m_next;
            return true;
        } else if (!Pass(*chunk)) {
            break;
        }
        start = m_input.Position();
    }
    CheckEnd(start);
    return false;
}

// Takes a chunk that is no frame. False where the file ends or goes wrong in an index after the last frame: nothing is
// lost with that.
bool CAviSource::Pass(const AviChunk& chunk) {
    m_inFrames = m_inFrames && chunk.id != FourCc('i', 'd', 'x', '1');
    if (m_inFrames && !IsFourCcText(chunk.id)) {
        ThrowDamaged(m_input, chunk.offset, m_next, "no chunk begins there");
    }
    if (IsSidePacket(chunk) && !PassesPart(chunk)) {
        ReadSidePacket(chunk);
        return true;
    }
    if (!PassesPart(chunk) && SkipChunk(m_input, chunk)) {
        return true;
    }
    const bool index = !m_inFrames || (chunk.id & 0xFFFF) == FourCc('i', 'x', 0, 0);
    if (!index || !IsComplete()) {
        ThrowTooLarge(chunk);
    }
    return false;
}

void CAviSource::ThrowTooLarge(const AviChunk& chunk) const {
    ThrowDamaged(m_input, chunk.offset, m_next,
                 "the " + std::to_string(chunk.bytes) + " bytes of the chunk " + FourCcText(chunk.id) +
                     " are more than what is left of the file or of its part");
}

// Whether all frames are there. A count that was too low for the frames so far says nothing of the rest.
bool CAviSource::IsComplete() const {
    return m_next >= m_declared && (!m_inFrames || (m_declared != 0 && m_next == m_declared));
}

// Throws when frames are missing at the end; `start` is where another chunk would have begun.
void CAviSource::CheckEnd(std::uint64_t start) const {
    const bool cut = m_partEnd ? start < *m_partEnd : m_input.Position() != start;
    if (cut && !IsComplete()) {
        ThrowDamaged(m_input, m_input.Position(), m_next, "the file ends inside one of its parts");
    }
    if (m_next < m_declared) {
        ThrowDamaged(m_input, m_input.Position(), m_next,
                     "the header declares " + std::to_string(m_declared) + " frames, and no more are there");
    }
}

// Whether this can be a frame: all have one size. Some writers make them larger than the picture; but when the main
// header tells another picture, it is the bitmap header that is damaged.
bool CAviSource::Fits(const AviChunk& chunk) const {
    if (m_chunkBytes != 0) {
        return chunk.bytes == m_chunkBytes;
    }
    const auto width = static_cast<std::uint32_t>(m_headers.info.width);
    const auto rows = static_cast<std::uint32_t>(m_headers.info.height);
    const bool otherPicture =
        m_headers.main.width != 0 && (m_headers.main.width != width || m_headers.main.height != rows);
    return chunk.bytes == m_headers.rows.tight * rows || chunk.bytes == m_headers.rows.padded * rows ||
           (chunk.bytes > m_headers.rows.tight * rows && !otherPicture);
}

void CAviSource::ReadFrame(const AviChunk& chunk) {
    if (chunk.bytes == 0 && m_next != 0) {
        return; // an empty chunk stands for the frame before it, once more
    }
    if (PassesPart(chunk)) {
        ThrowTooLarge(chunk);
    }
    const std::size_t rows = static_cast<std::size_t>(m_headers.info.height);
    m_stride = chunk.bytes >= m_headers.rows.padded * rows ? m_headers.rows.padded : m_headers.rows.tight;
    const std::size_t wanted = m_stride * rows;
    if (!Fits(chunk)) {
        ThrowDamaged(m_input, chunk.offset, m_next,
                     "it has " + std::to_string(chunk.bytes) + " bytes instead of " +
                         std::to_string(m_chunkBytes != 0 ? m_chunkBytes : wanted));
    }
    m_chunkBytes = chunk.bytes;
    const std::size_t got = m_frame.Read(m_input, wanted);
    if (got != wanted || !SkipChunk(m_input, chunk, wanted)) {
        ThrowCutOff(m_input, m_next, got, wanted);
    }
}

FrameView CAviSource::Frame() const {
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(m_stride);
    FrameView frame;
    frame.layout = m_headers.info.layout;
    frame.width = m_headers.info.width;
    frame.height = m_headers.info.height;
    frame.plane[0] = m_headers.rows.topDown ? m_frame.Data() : m_frame.Data() + stride * (m_headers.info.height - 1);
    frame.stride[0] = m_headers.rows.topDown ? stride : -stride;
    return frame;
}

} // namespace

std::unique_ptr<IFrameSource> OpenAvi(CInputStream& input) {
    return std::make_unique<CAviSource>(input);
}

} // namespace host
