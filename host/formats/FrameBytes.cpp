#include "host/formats/FrameBytes.h"

#include "host/HostError.h"

#include <algorithm>

namespace host {

namespace {
constexpr std::size_t kLeastStep = std::size_t{1} << 20;
}

std::size_t CFrameBytes::Read(CInputStream& input, std::size_t bytes) {
    std::size_t done = 0;
    while (done < bytes) {
        if (done == m_bytes.size()) {
            m_bytes.resize(std::min(bytes, std::max(kLeastStep, 2 * done)));
        }
        const std::size_t step = std::min(bytes, m_bytes.size()) - done;
        const std::size_t got = input.Read(m_bytes.data() + done, step);
        done += got;
        if (got != step) {
            break;
        }
    }
    return done;
}

void ThrowCutOff(const CInputStream& input, std::uint64_t frame, std::uint64_t got, std::uint64_t wanted) {
    throw DamagedError(input.Name() + ": cut off at byte " + std::to_string(input.Position()) + ", inside frame " +
                       std::to_string(frame) + " (" + std::to_string(got) + " of its " + std::to_string(wanted) +
                       " bytes are there).");
}

void ThrowDamaged(const CInputStream& input, std::uint64_t byte, std::uint64_t frame, const std::string& why) {
    throw DamagedError(input.Name() + ": damaged or cut off at byte " + std::to_string(byte) + ", at frame " +
                       std::to_string(frame) + ": " + why + ".");
}

} // namespace host
