// The segments that the settings page edits: a list of its own, written to the transform as a whole.
#pragma once

#include "ui/rules/StartPoint.h"

#include <cstdint>

// SEGMENT_OPERATION_MODE, as far as the page tells operations apart.
enum SegmentOperation : std::int32_t { kOperationNone = 0, kOperationAll = 1, kOperationPattern = 2 };

// Frame counts of a pattern and whether its preamble is deinterlaced.
struct FramePattern {
    bool deintPreamble = true;
    std::uint32_t preambleFrames = 1;
    std::uint32_t ignoreFrames = 1;
    std::uint32_t deinterlaceFrames = 1;
};

struct PageSegment {
    SegmentTime startTime;
    std::int32_t index = 0; // position in the list, from 0, without gaps
    std::int64_t startFrame = 0;
    std::uint32_t segmentData = 0; // the client's own: read, copied and written back
    FramePattern pattern;
    std::int32_t operation = kOperationPattern;
    PageSegment* next = nullptr;
};

class PageSegmentList {
public:
    PageSegmentList() = default;
    PageSegmentList(const PageSegmentList&) = delete;
    PageSegmentList& operator=(const PageSegmentList&) = delete;
    ~PageSegmentList() { Clear(); }

    void Clear();

    // Takes over what `other` holds, and gives it what was held here.
    void Swap(PageSegmentList& other);

    // A copy of `contents` before the segment at `index`, or at the end when there is none. False without memory.
    bool Insert(std::int32_t index, const PageSegment& contents);

    // False when there is no segment at `index`.
    bool Remove(std::int32_t index);

    // Exchanges the segments at `index` and `index` + 1; false when either is missing.
    bool ExchangeWithNext(std::int32_t index);

    // What a segment added at `index` starts as: a copy of the one there, else of the last one, else a new one at the
    // start of the stream with `pattern` and `operation`.
    PageSegment Template(std::int32_t index, const FramePattern& pattern, std::int32_t operation) const;

    // The segment at `index`, or null. Valid until the list changes.
    PageSegment* Find(std::int32_t index) const;

    PageSegment* First() const { return m_first; }
    std::int32_t Count() const { return m_count; }

private:
    PageSegment** LinkTo(std::int32_t index);
    void Renumber();

    PageSegment* m_first = nullptr;
    std::int32_t m_count = 0;
};
