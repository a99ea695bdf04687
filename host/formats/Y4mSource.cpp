#include "host/formats/FrameSource.h"

#include "host/formats/FrameBytes.h"
#include "host/HostError.h"
#include "host/formats/Y4mHeader.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::size_t kMaxHeader = 4096;
constexpr std::size_t kMaxFrameLine = 256;

class CY4mSource final : public IFrameSource {
public:
    explicit CY4mSource(CInputStream& input)
        : m_input(input) {
        const auto header = input.ReadLine(kMaxHeader);
        if (!header) {
            throw HostError(ExitCode::Input,
                            input.Name() + ": its first line has no end: the stream is cut off, or no Y4M at all.");
        }
        m_info = ParseY4mHeader(*header, input.Name());
        m_frameBytes = PlanarBytes(m_info.layout, m_info.width, m_info.height) * (IsDeep() ? 2 : 1);
        if (const auto size = input.Size()) {
            // Frame lines are 6 bytes unless they carry fields, so this may promise a frame too many for odd streams.
            m_info.frames = (*size - input.Position()) / (m_frameBytes + 6);
        }
    }

    const ClipInfo& Info() const override { return m_info; }

    bool Next() override {
        const std::uint64_t start = m_input.Position();
        const auto line = m_input.ReadLine(kMaxFrameLine);
        if (!line && m_input.Position() == start) {
            return false;
        }
        if (!line || !IsY4mFrameLine(*line)) {
            ThrowDamaged(m_input, start, m_next, "it has no whole \"FRAME\" line");
        }
        const std::size_t got = m_frame.Read(m_input, m_frameBytes);
        if (got != m_frameBytes) {
            ThrowCutOff(m_input, m_next, got, m_frameBytes);
        }
        if (IsDeep()) {
            Reduce();
        }
        m_fieldChroma = Y4mFrameHasFieldChroma(*line, MayBeInterlaced(m_info.scan));
        m_scan = m_info.scan == Scan::Mixed ? Y4mFrameScan(*line) : m_info.scan;
        ++m_next;
        return true;
    }

    FrameView Frame() const override {
        return PlanarFrame(m_info.layout, m_info.width, m_info.height, IsDeep() ? m_reduced.data() : m_frame.Data());
    }

    bool FieldChroma() const override { return m_fieldChroma; }
    Scan FrameScan() const override { return m_scan; }

private:
    bool IsDeep() const { return m_info.sampleBits > 8; }

    // Samples of two bytes, the lower one first, to eight bits.
    void Reduce() {
        const int shift = m_info.sampleBits - 8;
        const std::uint8_t* const in = m_frame.Data();
        m_reduced.resize(m_frameBytes / 2);
        for (std::size_t i = 0; i < m_reduced.size(); ++i) {
            const int sample = in[2 * i] | in[2 * i + 1] << 8;
            m_reduced[i] = static_cast<std::uint8_t>(std::min((sample + (1 << (shift - 1))) >> shift, 255));
        }
    }

    CInputStream& m_input;
    ClipInfo m_info;
    std::size_t m_frameBytes = 0;
    CFrameBytes m_frame;
    std::vector<std::uint8_t> m_reduced;
    std::uint64_t m_next = 0;
    bool m_fieldChroma = false;
    Scan m_scan = Scan::Unknown;
};

} // namespace

std::unique_ptr<IFrameSource> OpenY4m(CInputStream& input) {
    return std::make_unique<CY4mSource>(input);
}

} // namespace host
