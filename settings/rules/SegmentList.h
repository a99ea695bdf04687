// The segments that a client describes a stream with. The transform keeps them; no frame path reads them.
#pragma once

#include "settings/public/NMFVDeinterlaceLimits.h"

#include <cstdint>

struct SegmentRecord {
    SegmentTime startTime;
    std::int32_t index = 0; // position in the list, from 0, without gaps
    std::int64_t startFrame = 0;
    std::uint32_t segmentData = 0;   // the client's own
    std::int16_t deintPreamble = -1; // automation boolean: -1 or 0
    std::uint32_t preambleFrames = 0;
    std::uint32_t ignoreFrames = 0;
    std::uint32_t deinterlaceFrames = 0;
    std::int32_t operationMode = 0; // SEGMENT_OPERATION_MODE
    // Kept: setting a start frame fills startTime and leaves this alone, setting a start time fills both and leaves
    // startFrame alone; the two start points are independent. Nothing reads this one. Test: StartPointsAreIndependent.
    std::int64_t startTimeMs = 0;
    SegmentRecord* next = nullptr;
};

// Ordered by index alone; start points are neither sorted nor compared. Not synchronised.
class SegmentList {
public:
    SegmentList() = default;
    SegmentList(const SegmentList&) = delete;
    SegmentList& operator=(const SegmentList&) = delete;
    ~SegmentList();

    // Inserts a copy of `contents` before the record at `index`, or at the end when there is none. False when there is
    // no memory for it.
    bool Add(std::int32_t index, const SegmentRecord& contents);

    // False when there is no record at `index`.
    bool Remove(std::int32_t index);

    // The record at `index`, or null. Valid until that record is removed.
    SegmentRecord* Find(std::int32_t index) const;

    std::int32_t Count() const { return m_count; }

    // How many records were ever added at the end.
    // Kept: nothing in the module asks. Test: Fuzz/segments.
    std::uint32_t Appends() const { return m_appends; }

private:
    void Append(SegmentRecord* record);
    SegmentRecord** LinkTo(std::int32_t index);

    SegmentRecord* m_first = nullptr;
    SegmentRecord* m_last = nullptr;
    std::int32_t m_count = 0;
    std::uint32_t m_appends = 0;
};
