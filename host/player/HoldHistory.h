// The hold of automatic deinterlacing for frames that are not seen in their order.
#pragma once

#include "engine/detector/AutoHold.h"

#include <cstdint>
#include <vector>

namespace host {

// What the detector counted in the clip's frames. That depends on no setting, so the hold before any frame can be told
// for the sensitivity as it is now: as if the clip had run from its beginning with it.
class CHoldHistory {
public:
    // Frames come in their order; one that is known already stays as it is.
    void Add(std::uint64_t frame, std::uint32_t count);
    std::uint32_t CountOf(std::uint64_t frame) const { return m_counts[frame]; }
    // The counter of AdvanceHold before `frame`. Looks back as far as a hold goes: 0 also stands for what lies below.
    std::int32_t CounterBefore(std::uint64_t frame, std::uint32_t threshold, std::int32_t holdFrames) const;

private:
    std::vector<std::uint32_t> m_counts;
};

// What must be done with the transform before a frame, so that it comes out as in a run from the clip's beginning.
enum class HoldStep {
    None,
    Restart, // begin the stream anew: no hold
    Prime,   // begin the stream anew, and send a frame that is all combs: holding
};

// Follows the transform's own counter. A frame that is processed twice, a jump and a change of the sensitivity leave it
// at another number than the run would have; that matters only where the frame comes out otherwise.
class CHoldMirror {
public:
    HoldStep Before(std::int32_t wanted, std::int32_t holdFrames);
    // The frame went through while the transform was in automatic mode.
    void After(bool interlaced, std::int32_t holdFrames) { (void)AdvanceHold(interlaced, holdFrames, m_counter); }
    // Its settings changed while a frame went through: nobody knows its counter.
    void Forget() { m_known = false; }

private:
    std::int32_t m_counter = 0;
    bool m_known = true;
};

} // namespace host
