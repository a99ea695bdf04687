#include "host/parts/FrameBytes.h"

#include "host/parts/HostError.h"

namespace host {

void ThrowCutOff(const CInputStream& input, std::uint64_t frame, std::uint64_t got, std::uint64_t wanted) {
    throw DamagedError(input.Name() + ": cut off at byte " + std::to_string(input.Position()) + ", inside frame " +
                       std::to_string(frame) + " (" + std::to_string(got) + " of its " + std::to_string(wanted) +
                       " bytes are there). Make the input anew, or use --cut-off keep to take the whole frames before "
                       "it.");
}

void ThrowDamaged(const CInputStream& input, std::uint64_t byte, std::uint64_t frame, const std::string& why) {
    throw DamagedError(input.Name() + ": damaged or cut off at byte " + std::to_string(byte) + ", at frame " +
                       std::to_string(frame) + ": " + why +
                       ". Make the input anew, or use --cut-off keep to take the whole frames before it.");
}

} // namespace host
