#include "host/parts/AviSource.h"

#include "host/parts/AviChunks.h"
#include "host/parts/HostError.h"
#include "host/parts/Truncated.h"

#include <algorithm>
#include <numeric>
#include <vector>

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
        m_declaredEnd = riff->bytes < kUnknownSize ? std::uint64_t{riff->bytes} + 8 : 0;
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
    bool IsFrame(std::uint32_t id) const;
    void ReadFrame(const AviChunk& chunk);

    CInputStream& m_input;
    ClipInfo m_info;
    int m_stream = -1; // the video stream's number
    bool m_topDown = true;
    std::size_t m_tight = 0;  // bytes of a row without padding
    std::size_t m_padded = 0; // and with it
    std::size_t m_stride = 0; // as the current frame has it
    std::vector<std::uint8_t> m_frame;
    std::uint64_t m_next = 0;
    std::uint64_t m_declaredEnd = 0; // of the first RIFF chunk; 0 when a writer could not know it
};

void CAviSource::ReadHeaders() {
    int stream = -1;
    AviStreamHeader header;
    while (const auto chunk = NextChunk(m_input)) {
        if (chunk->type == FourCc('m', 'o', 'v', 'i')) {
            return;
        }
        if (chunk->type == FourCc('s', 't', 'r', 'l')) {
            ++stream;
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
    Refuse("the AVI file ends before its frames begin.");
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
    if (stream.rate != 0 && stream.scale != 0) {
        const std::uint32_t common = std::gcd(stream.rate, stream.scale);
        m_info.rate = Rational{stream.rate / common, stream.scale / common};
    }
    const bool rgb = found->compression == 0;
    m_topDown = !rgb || bitmap.height < 0;
    m_tight = static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(found->bits) / 8;
    m_padded = (m_tight + 3) & ~std::size_t{3};
    m_stride = m_padded;
    m_frame.resize(m_padded * static_cast<std::size_t>(height));
    // The count that the header names is believed only as far as the file can hold it; from a pipe it is a guess.
    if (const auto size = m_input.Size()) {
        m_info.frames = std::min<std::uint64_t>(stream.length, *size / (m_tight * static_cast<std::size_t>(height)));
    }
}

// Frames are chunks "NNdb" or "NNdc", NN the stream's number.
bool CAviSource::IsFrame(std::uint32_t id) const {
    const auto digit = [](int value) { return static_cast<char>('0' + value); };
    const char tens = digit(m_stream / 10);
    const char ones = digit(m_stream % 10);
    return id == FourCc(tens, ones, 'd', 'b') || id == FourCc(tens, ones, 'd', 'c');
}

bool CAviSource::Next() {
    while (const auto chunk = NextChunk(m_input)) {
        if (IsFrame(chunk->id)) {
            ReadFrame(*chunk);
            ++m_next;
            return true;
        }
        if (chunk->type == 0) {
            SkipChunk(m_input, *chunk);
        }
    }
    if (m_input.Position() < m_declaredEnd) {
        ThrowTruncated(m_input, m_next, 0, m_frame.size());
    }
    return false;
}

void CAviSource::ReadFrame(const AviChunk& chunk) {
    if (chunk.bytes == 0 && m_next != 0) {
        return; // an empty chunk stands for the frame before it, once more
    }
    const std::size_t rows = static_cast<std::size_t>(m_info.height);
    m_stride = chunk.bytes >= m_padded * rows ? m_padded : m_tight;
    const std::size_t wanted = m_stride * rows;
    if (chunk.bytes < wanted) {
        Refuse("frame " + std::to_string(m_next) + " (byte " + std::to_string(chunk.offset) + ") has " +
               std::to_string(chunk.bytes) + " bytes; a frame of this size needs " + std::to_string(wanted) +
               ". The file is damaged.");
    }
    const std::size_t got = m_input.Read(m_frame.data(), wanted);
    if (got != wanted) {
        ThrowTruncated(m_input, m_next, got, wanted);
    }
    m_input.Skip(std::uint64_t{chunk.bytes} + (chunk.bytes & 1) - wanted);
}

FrameView CAviSource::Frame() const {
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(m_stride);
    FrameView frame;
    frame.layout = m_info.layout;
    frame.width = m_info.width;
    frame.height = m_info.height;
    frame.plane[0] = m_topDown ? m_frame.data() : m_frame.data() + stride * (m_info.height - 1);
    frame.stride[0] = m_topDown ? stride : -stride;
    return frame;
}

} // namespace

std::unique_ptr<IFrameSource> OpenAvi(CInputStream& input) {
    return std::make_unique<CAviSource>(input);
}

} // namespace host
