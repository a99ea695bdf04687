#include "host/formats/AviSourceHeader.h"

#include "host/HostError.h"

namespace host {

namespace {

constexpr std::size_t kMaxHeader = 1 << 16;

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

struct SideKind {
    std::uint32_t type;
    const char* name;
};

constexpr SideKind kSideKinds[] = {
    {FourCc('v', 'i', 'd', 's'), "video"}, {FourCc('a', 'u', 'd', 's'), "audio"}, {FourCc('t', 'x', 't', 's'), "text"}};

std::string KindOf(std::uint32_t type) {
    for (const SideKind& kind : kSideKinds) {
        if (kind.type == type) {
            return kind.name;
        }
    }
    return FourCcText(type);
}

class CHeaderReader {
public:
    explicit CHeaderReader(CInputStream& input)
        : m_input(input) {}

    AviHeaders Read();

private:
    [[noreturn]] void Refuse(const std::string& why) const {
        throw HostError(ExitCode::Input, m_input.Name() + ": " + why);
    }
    void TakeChunk(const AviChunk& chunk);
    void TakeFormat(std::vector<std::uint8_t> format);
    void TakeVideo(const AviStreamHeader& stream, const AviBitmapHeader& bitmap);
    bool IsAtVideo() const { return m_headers.stream == static_cast<int>(m_headers.sides.size()) - 1; }

    CInputStream& m_input;
    AviHeaders m_headers;
    std::vector<std::uint8_t> m_stream; // the header of the stream that is being read
};

AviHeaders CHeaderReader::Read() {
    while (const auto chunk = NextChunk(m_input)) {
        if (chunk->type == FourCc('m', 'o', 'v', 'i')) {
            if (m_headers.stream < 0) {
                Refuse("the AVI file holds no video stream before its frames.");
            }
            return std::move(m_headers);
        }
        if (chunk->type == FourCc('s', 't', 'r', 'l')) {
            m_headers.sides.emplace_back();
            m_stream.clear();
        } else if (chunk->type == 0) {
            TakeChunk(*chunk);
        }
    }
    Refuse("the AVI file ends at byte " + std::to_string(m_input.Position()) +
           ", before its frames begin: it is cut off or damaged.");
}

void CHeaderReader::TakeChunk(const AviChunk& chunk) {
    const auto bytes = ReadChunk(m_input, chunk, kMaxHeader);
    if (chunk.id == FourCc('a', 'v', 'i', 'h')) {
        m_headers.main = ParseMainHeader(bytes);
    } else if (chunk.id == FourCc('s', 't', 'r', 'h')) {
        m_stream = bytes;
    } else if (chunk.id == FourCc('s', 't', 'r', 'f') && !m_headers.sides.empty()) {
        TakeFormat(bytes);
    } else if (chunk.id == FourCc('v', 'p', 'r', 'p') && m_headers.stream >= 0 && IsAtVideo()) {
        const AviVideoProperties properties = ParseVideoProperties(bytes);
        m_headers.info.aspect = properties.aspect;
        m_headers.info.scan = properties.scan;
    }
}

void CHeaderReader::TakeFormat(std::vector<std::uint8_t> format) {
    const AviStreamHeader header = ParseStreamHeader(m_stream);
    if (header.type == FourCc('v', 'i', 'd', 's') && m_headers.stream < 0) {
        TakeVideo(header, ParseBitmapHeader(format));
        m_headers.stream = static_cast<int>(m_headers.sides.size()) - 1;
    } else if (!IsAtVideo() && !m_headers.sides.back()) {
        auto& streams = m_headers.info.sideStreams;
        m_headers.sides.back() = streams.size();
        streams.push_back({KindOf(header.type), m_stream, std::move(format)});
    }
}

void CHeaderReader::TakeVideo(const AviStreamHeader& stream, const AviBitmapHeader& bitmap) {
    const AviFormat* found = nullptr;
    for (const AviFormat& format : kFormats) {
        if (format.compression == bitmap.compression && format.bits == bitmap.bits) {
            found = &format;
        }
    }
    if (!found) {
        throw UnknownFormatError(m_input.Name() + ": its video is " +
                                 (bitmap.compression ? FourCcText(bitmap.compression) : std::string("RGB")) + " with " +
                                 std::to_string(bitmap.bits) +
                                 " bits per pixel; uncompressed RGB24, RGB32, YUY2, UYVY and IYU2 can be read. Pipe it "
                                 "in: ffmpeg -i FILE -pix_fmt yuv422p -f yuv4mpegpipe - | nmfvdeint - ...");
    }
    const std::int64_t height = bitmap.height < 0 ? -std::int64_t{bitmap.height} : bitmap.height;
    if (bitmap.width <= 0 || bitmap.width > kMaxSide || height == 0 || height > kMaxSide) {
        Refuse("a picture of " + std::to_string(bitmap.width) + "x" + std::to_string(height) + " cannot be read.");
    }
    m_headers.info.layout = found->layout;
    m_headers.info.width = bitmap.width;
    m_headers.info.height = static_cast<int>(height);
    m_headers.info.rate = UsableRate({stream.rate, stream.scale});
    m_headers.length = stream.length;
    m_headers.rows.topDown = found->compression != 0 || bitmap.height < 0;
    m_headers.rows.tight = static_cast<std::size_t>(bitmap.width) * static_cast<std::size_t>(found->bits) / 8;
    m_headers.rows.padded = (m_headers.rows.tight + 3) & ~std::size_t{3};
}

} // namespace

AviHeaders ReadAviHeaders(CInputStream& input) {
    return CHeaderReader(input).Read();
}

} // namespace host
