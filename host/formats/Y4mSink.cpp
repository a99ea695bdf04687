#include "host/picture/FrameConvert.h"
#include "host/formats/FrameSink.h"
#include "host/formats/Y4mHeader.h"

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace host {

namespace {

constexpr std::string_view kFrame = "FRAME";
constexpr std::string_view kNoWord = "     "; // as long as a frame's word

Layout PlanarLayoutFor(const SinkFormat& format) {
    return !format.chroma420.empty()           ? Layout::Planar420
           : TraitsOf(format.pixels).evenWidth ? Layout::Planar422
                                               : Layout::Planar444;
}

// A header up to its word on the lines, that letter excluded, and what follows the letter.
struct Header {
    std::string before;
    std::string after;
};

Header HeaderOf(const SinkFormat& format, Layout layout) {
    Header header;
    header.before = "YUV4MPEG2 W" + std::to_string(format.width) + " H" + std::to_string(format.height) + " F" +
                    std::to_string(format.rate.numerator) + ":" + std::to_string(format.rate.denominator) + " I";
    if (format.aspect) {
        header.after =
            " A" + std::to_string(format.aspect->numerator) + ":" + std::to_string(format.aspect->denominator);
    }
    header.after += layout == Layout::Planar444   ? " C444"
                    : layout == Layout::Planar422 ? " C422"
                                                  : " C" + format.chroma420;
    header.after += (format.fullRange ? " XCOLORRANGE=FULL" : "") + format.comments + "\n";
    return header;
}

// What the header says of the lines may only be known in the end. Where that can still be written, FRAME lines leave
// room for the words that a mixed stream needs and others must not have.
class CY4mSink final : public IFrameSink {
public:
    CY4mSink(IByteWriter& writer, const SinkFormat& format)
        : m_writer(writer)
        , m_format(format)
        , m_layout(PlanarLayoutFor(format))
        , m_converter(LayoutOf(format.pixels), m_layout, format.width, format.height, format.fullRange, format.bt709,
                      format.undo420)
        , m_header(HeaderOf(format, m_layout))
        , m_hasWords(format.scan == Scan::Mixed || MayChange())
        , m_lineBytes(kFrame.size() + (m_hasWords ? kNoWord.size() : 0) + 1)
        , m_bytes(m_lineBytes + PlanarBytes(m_layout, format.width, format.height)) {
        std::memcpy(m_bytes.data(), kFrame.data(), kFrame.size());
        m_bytes[m_lineBytes - 1] = '\n';
        Put(m_header.before + Y4mScanLetter(format.scan) + m_header.after);
    }

    void Write(const std::uint8_t* frame, Scan scan) override {
        if (m_hasWords) {
            std::memcpy(m_bytes.data() + kFrame.size(), WordFor(m_format.scan, scan).data(), kNoWord.size());
        }
        if (MayChange()) {
            m_scans.push_back(scan);
        }
        m_converter.Convert(PackedFrame(m_format.pixels, m_format.width, m_format.height, frame),
                            PlanarFrame(m_layout, m_format.width, m_format.height, m_bytes.data() + m_lineBytes),
                            HasFieldChroma(scan));
        m_writer.Write(m_bytes.data(), m_bytes.size());
    }

    void Finish(Scan scan) override {
        if (!MayChange() || scan == m_format.scan) {
            return;
        }
        m_writer.Seek(m_header.before.size());
        Put(std::string(1, Y4mScanLetter(scan)));
        const std::uint64_t frames = m_header.before.size() + 1 + m_header.after.size();
        const bool change = scan == Scan::Mixed || m_format.scan == Scan::Mixed;
        for (std::size_t i = 0; change && i < m_scans.size(); ++i) {
            m_writer.Seek(frames + i * m_bytes.size() + kFrame.size());
            Put(WordFor(scan, m_scans[i]));
        }
    }

private:
    bool MayChange() const { return m_format.scanMayChange && m_writer.CanSeek(); }
    void Put(std::string_view text) { m_writer.Write(text.data(), text.size()); }
    // By the frame, where the stream can tell them apart; else as a reader takes them all.
    bool HasFieldChroma(Scan frame) const { return MayBeInterlaced(m_hasWords ? frame : m_format.scan); }
    std::string WordFor(Scan stream, Scan frame) const {
        std::string word(stream == Scan::Mixed ? Y4mFrameWord(frame) : kNoWord);
        if (stream == Scan::Mixed && m_layout == Layout::Planar420) {
            word.back() = HasFieldChroma(frame) ? 'i' : 'p';
        }
        return word;
    }

    IByteWriter& m_writer;
    SinkFormat m_format;
    Layout m_layout;
    CFrameConverter m_converter;
    Header m_header;
    bool m_hasWords;
    std::size_t m_lineBytes;
    std::vector<std::uint8_t> m_bytes; // a frame line and the planes: one write per frame
    std::vector<Scan> m_scans;
};

} // namespace

std::unique_ptr<IFrameSink> MakeY4mSink(IByteWriter& writer, const SinkFormat& format) {
    return std::make_unique<CY4mSink>(writer, format);
}

} // namespace host
