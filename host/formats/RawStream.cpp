#include "host/formats/RawStream.h"

#include "host/formats/FrameBytes.h"
#include "host/formats/FrameSink.h"

namespace host {

namespace {

class CRawSource final : public IFrameSource {
public:
    CRawSource(CInputStream& input, const RawFormat& format)
        : m_input(input)
        , m_pixels(format.pixels)
        , m_frameBytes(FrameSize(format.pixels, format.width, format.height)) {
        m_info.layout = LayoutOf(format.pixels);
        m_info.width = format.width;
        m_info.height = format.height;
        m_info.rate = format.rate;
        if (const auto size = input.Size()) {
            m_info.frames = *size / m_frameBytes;
        }
    }

    const ClipInfo& Info() const override { return m_info; }

    bool Next() override {
        const std::size_t got = m_frame.Read(m_input, m_frameBytes);
        if (got != 0 && got != m_frameBytes) {
            ThrowCutOff(m_input, m_next, got, m_frameBytes);
        }
        ++m_next;
        return got != 0;
    }

    FrameView Frame() const override { return PackedFrame(m_pixels, m_info.width, m_info.height, m_frame.Data()); }
    bool FieldChroma() const override { return false; }

private:
    CInputStream& m_input;
    Pixels m_pixels;
    ClipInfo m_info;
    std::size_t m_frameBytes;
    CFrameBytes m_frame;
    std::uint64_t m_next = 0;
};

class CRawSink final : public IFrameSink {
public:
    CRawSink(IByteWriter& writer, const SinkFormat& format)
        : m_writer(writer)
        , m_bytes(FrameSize(format.pixels, format.width, format.height)) {}

    void Write(const std::uint8_t* frame, Scan) override { m_writer.Write(frame, m_bytes); }
    void Finish(Scan) override {}

private:
    IByteWriter& m_writer;
    std::size_t m_bytes;
};

} // namespace

std::optional<RawFormat> ParseRawFormat(std::string_view text) {
    const std::size_t cross = text.find('x');
    const std::size_t colon = text.find(':');
    const std::size_t at = text.find('@');
    if (cross == text.npos || colon == text.npos || at == text.npos || cross > colon || colon > at) {
        return std::nullopt;
    }
    const auto width = ParseWhole(text.substr(0, cross), kMaxSide);
    const auto height = ParseWhole(text.substr(cross + 1, colon - cross - 1), kMaxSide);
    const auto pixels = PixelsByName(text.substr(colon + 1, at - colon - 1));
    const auto rate = ParseRate(text.substr(at + 1));
    if (!width || !height || !pixels || !rate || *width == 0 || *height == 0) {
        return std::nullopt;
    }
    if (TraitsOf(*pixels).evenWidth && *width % 2 != 0) {
        return std::nullopt;
    }
    return RawFormat{static_cast<int>(*width), static_cast<int>(*height), *pixels, *rate};
}

std::unique_ptr<IFrameSource> OpenRaw(CInputStream& input, const RawFormat& format) {
    return std::make_unique<CRawSource>(input, format);
}

std::unique_ptr<IFrameSink> MakeRawSink(IByteWriter& writer, const SinkFormat& format) {
    return std::make_unique<CRawSink>(writer, format);
}

} // namespace host
