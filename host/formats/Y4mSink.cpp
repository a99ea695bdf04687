#include "host/picture/FrameConvert.h"
#include "host/formats/FrameSink.h"
#include "host/formats/Y4mHeader.h"

#include <cstring>
#include <vector>

namespace host {

namespace {

constexpr char kFrameLine[] = "FRAME\n";
constexpr std::size_t kFrameLineBytes = sizeof kFrameLine - 1;

Layout PlanarLayoutFor(Pixels pixels) {
    return TraitsOf(pixels).evenWidth ? Layout::Planar422 : Layout::Planar444;
}

class CY4mSink final : public IFrameSink {
public:
    CY4mSink(IByteWriter& writer, const SinkFormat& format)
        : m_writer(writer)
        , m_format(format)
        , m_layout(PlanarLayoutFor(format.pixels))
        , m_converter(LayoutOf(format.pixels), m_layout, format.width, format.height, format.fullRange)
        , m_bytes(kFrameLineBytes + PlanarBytes(m_layout, format.width, format.height)) {
        std::memcpy(m_bytes.data(), kFrameLine, kFrameLineBytes);
        const std::string header =
            FormatY4mHeader(m_layout, format.width, format.height, format.rate, format.aspect, format.fullRange);
        m_writer.Write(header.data(), header.size());
    }

    void Write(const std::uint8_t* frame) override {
        m_converter.Convert(PackedFrame(m_format.pixels, m_format.width, m_format.height, frame),
                            PlanarFrame(m_layout, m_format.width, m_format.height, m_bytes.data() + kFrameLineBytes),
                            false);
        m_writer.Write(m_bytes.data(), m_bytes.size());
    }

    void Finish() override {}

private:
    IByteWriter& m_writer;
    SinkFormat m_format;
    Layout m_layout;
    CFrameConverter m_converter;
    std::vector<std::uint8_t> m_bytes; // a frame line and the planes: one write per frame
};

} // namespace

std::unique_ptr<IFrameSink> MakeY4mSink(IByteWriter& writer, const SinkFormat& format) {
    return std::make_unique<CY4mSink>(writer, format);
}

} // namespace host
