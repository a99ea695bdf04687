#include "host/formats/AviSource.h"

#include "host/formats/AviChunks.h"
#include "host/formats/FrameBytes.h"
#include "host/HostError.h"

#include <algorithm>

namespace host {

namespace {

struct AviFormat {
    std::uint32_t compression; // 0: none
    int bits;
    Layout layout;
};

constexpr AviFormat kFormats[] = {
    {0, 24, Layout::Rgb24},
    {0, 32, Layout::Rgb32},
    {FourCc('Y', 'U', 'Y', '2'), 16, Layout::Yuy2},
    {FourCc('Y', 'U', 'N', 'V'), 16, Layout::Yuy2},
    {FourCc('Y', 'U', 'Y', 'V'), 16, Layout::Yuy2},
    {FourCc('U', 'Y', 'V', 'Y'), 16, Layout::Uyvy},
    {FourCc('U', 'Y', 'N', 'V'), 16, Layout::Uyvy},
    {FourCc('H', 'D', 'Y', 'C'), 16, Layout::Uyvy},
    {FourCc('I', 'Y', 'U', '2'), 24, Layout::Iyu2},
};

// Writers that cannot go back leave a size like this.
constexpr std::uint32_t kUnknownSize = 0xFFFFFF00;

class CAviSource final : public IFrameSource {
public:
    explicit CAviSource(CInputStream& input)
        : m_input(input) {
        const auto riff = NextChunk(input);
        if (!riff || riff->id != FourCc('R', 'I', 'F', 'F') || riff->type != FourCc('A', 'V', 'I', ' ')) {
            Refuse("this is no AVI file (it does not begin with \"RIFF....AVI \"). Say what it is with --from.");
        }
        BeginPart(*riff);
        ReadHeaders();
        if (m_stream < 0) {
            Refuse("the AVI file holds no video stream before its frames.");
        }
    }

    const ClipInfo& Info() const override { return m_info; }
    bool FieldChroma() const override { return false; }
    bool Next() override;
    FrameView Frame() const override;

private:
    [[noreturn]] void Refuse(const std::string& why) const {
        throw HostError(ExitCode::Input, m_input.Name() + ": " + why);
    }
    void ReadHeaders();
    void TakeFormat(const AviStreamHeader& stream, const AviBitmapHeader& bitmap);
    void BeginPart(const AviChunk& riff);
    void Enter(const AviChunk& list);
    bool IsFrame(const AviChunk& chunk) const;
    bool PassesPart(const AviChunk& chunk) const;
    void ReadFrame(const AviChunk& chunk);
    bool Fits(const AviChunk& chunk) const;
    bool Pass(const AviChunk& chunk);
    bool IsComplete() const;
    void CheckEnd(std::uint64_t start) const;
    [[noreturn]] void ThrowTooLarge(const AviChunk& chunk) const;

    CInputStream& m_input;
    ClipInfo m_info;
    AviMainHeader m_main;
    int m_stream = -1; // the video stream's number
    bool m_topDown = true;
    std::size_t m_tight = 0;  // bytes of a row without padding
    std::size_t m_padded = 0; // and with it
    std::size_t m_stride = 0; // as the current frame has it
    CFrameBytes m_frame;
    std::uint64_t m_next = 0;
    std::uint64_t m_declared = 0;           // frames that the header promises; 0 when its writer could not know
    std::uint32_t m_chunkBytes = 0;         // of every frame that is there
    std::optional<std::uint64_t> m_partEnd; // of the current RIFF chunk, when its writer could know it
    bool m_inFrames = false;                // after the list of frames comes the part's index
};

void CAviSource::ReadHeaders() {
    int stream = -1;
    AviStreamHeader header;
    while (const auto chunk = NextChunk(m_input)) {
        if (chunk->type == FourCc('m', 'o', 'v', 'i')) {
            Enter(*chunk);
            return;
        }
        if (chunk->type == FourCc('s', 't', 'r', 'l')) {
            ++stream;
        } else if (chunk->id == FourCc('a', 'v', 'i', 'h')) {
            m_main = ReadMainHeader(m_input, *chunk);
        } else if (chunk->id == FourCc('s', 't', 'r', 'h')) {
            header = ReadStreamHeader(m_input, *chunk);
        } else if (chunk->id == FourCc('s', 't', 'r', 'f') && header.type == FourCc('v', 'i', 'd', 's') &&
                   m_stream < 0) {
            TakeFormat(header, ReadBitmapHeader(m_input, *chunk));
            m_stream = stream;
        } else if (chunk->type == 0) {
            SkipChunk(m_input, *chunk);
        }
    }
    Refuse("the AVI file ends at byte " + std::to_string(m_input.Position()) +
           ", before its frames begin: it is cut off or damaged.");
}

void CAviSource::TakeFormat(const AviStreamHeader& stream, const AviBitmapHeader& bitmap) {
    const AviFormat* found = nullptr;
    for (const AviFormat& format : kFormats) {
        if (format.compression == bitmap.compression && format.bits == bitmap.bits) {
            found = &format;
        }
    }
    if (!found) {
        Refuse("its video is " + (bitmap.compression ? FourCcText(bitmap.compression) : std::string("RGB")) + " with " +
               std::to_string(bitmap.bits) +
               " bits per pixel; uncompressed RGB24, RGB32, YUY2, UYVY and IYU2 can be read. Let --from media decode "
               "it, or pipe it in: ffmpeg -i FILE -pix_fmt yuv422p -f yuv4mpegpipe - | nmfvdeint - ...");
    }
    const std::int64_t height = bitmap.height < 0 ? -std::int64_t{bitmap.height} : bitmap.height;
    if (bitmap.width <= 0 || bitmap.width > kMaxSide || height == 0 || height > kMaxSide) {
        Refuse("a picture of " + std::to_string(bitmap.width) + "x" + std::to_string(height) + " cannot be read.");
    }
    m_info.layout = found->layout;
    m_info.width = bitmap.width;
    m_info.height = static_cast<int>(height);
    m_info.rate = UsableRate({stream.rate, stream.scale});
    const bool rgb = found->compression == 0;
    m_topDown = !rgb || bitmap.height < 0;
    m_tight = static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(found->bits) / 8;
    m_padded = (m_tight + 3) & ~std::size_t{3};
    m_stride = m_padded;
    // A writer that could not go back to write sizes had no count either, whatever stands there. Other headers count
    // the frames of one part, or the chunks of all streams.
    m_declared = m_partEnd ? stream.length : 0;
    // The count that the header names is believed only as far as the file can hold it; from a pipe it is a guess.
    if (const auto size = m_input.Size()) {
        m_info.frames = std::min<std::uint64_t>(stream.length, *size / (m_tight * static_cast<std::size_t>(height)));
    }
}

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
    const auto digit = [](int value) { return static_cast<char>('0' + value); };
    const char tens = digit(m_stream / 10);
    const char ones = digit(m_stream % 10);
    return m_inFrames && (chunk.id == FourCc(tens, ones, 'd', 'b') || chunk.id == FourCc(tens, ones, 'd', 'c'));
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
    const auto width = static_cast<std::uint32_t>(m_info.width);
    const auto rows = static_cast<std::uint32_t>(m_info.height);
    const bool otherPicture = m_main.width != 0 && (m_main.width != width || m_main.height != rows);
    return chunk.bytes == m_tight * rows || chunk.bytes == m_padded * rows ||
           (chunk.bytes > m_tight * rows && !otherPicture);
}

void CAviSource::ReadFrame(const AviChunk& chunk) {
    if (chunk.bytes == 0 && m_next != 0) {
        return; // an empty chunk stands for the frame before it, once more
    }
    if (PassesPart(chunk)) {
        ThrowTooLarge(chunk);
    }
    const std::size_t rows = static_cast<std::size_t>(m_info.height);
    m_stride = chunk.bytes >= m_padded * rows ? m_padded : m_tight;
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
    frame.layout = m_info.layout;
    frame.width = m_info.width;
    frame.height = m_info.height;
    frame.plane[0] = m_topDown ? m_frame.Data() : m_frame.Data() + stride * (m_info.height - 1);
    frame.stride[0] = m_topDown ? stride : -stride;
    return frame;
}

} // namespace

std::unique_ptr<IFrameSource> OpenAvi(CInputStream& input) {
    return std::make_unique<CAviSource>(input);
}

} // namespace host
