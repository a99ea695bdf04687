// What is true of the lines of what a run writes.
#pragma once

#include "host/formats/Scan.h"

#include <cstdint>

namespace host {

// Which frames of a run are deinterlaced as whole pictures.
enum class Deinterlaced { None, Some, All };

// An output is only called progressive where every frame is. What passes unchanged keeps the input's word, and so does
// a clip of which no frame was deinterlaced, or of whose frames only a region.
class CScanLabels {
public:
    CScanLabels(Scan input, Deinterlaced which)
        : m_input(input)
        , m_which(which) {}

    // The word before the first frame, and whether another may be true after the last.
    Scan AtFirst() const { return m_which == Deinterlaced::All ? Scan::Progressive : m_input; }
    bool MayChange() const { return m_which == Deinterlaced::Some && m_input != Scan::Progressive; }

    // The word for the next frame, of which the input says `scan`.
    Scan Next(Scan scan, bool deinterlaced);

    // The word for the clip after its last frame. A part of a clip that says nothing of its lines tells nothing.
    Scan AtLast() const;

private:
    Scan m_input;
    Deinterlaced m_which;
    std::uint64_t m_frames = 0;
    std::uint64_t m_deinterlaced = 0;
};

} // namespace host
