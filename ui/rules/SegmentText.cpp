#include "ui/rules/SegmentText.h"

#include <cstdio>

namespace {

// Operations that the page doesn't know, which a client may store, do nothing.
char OperationLetter(std::int32_t operation) {
    switch (operation) {
    case kOperationPattern:
        return 'P';
    case kOperationAll:
        return 'D';
    default:
        return 'N';
    }
}

int FormatStart(const PageSegment& segment, bool asTime, char (&text)[kSegmentTextSize]) {
    if (!asTime) {
        return std::snprintf(text, sizeof(text), " %lld", static_cast<long long>(segment.startFrame));
    }
    const SegmentTime& time = segment.startTime;
    return std::snprintf(text, sizeof(text), " %d : %d : %d . %d", static_cast<int>(time.hours),
                         static_cast<int>(time.minutes), static_cast<int>(time.seconds),
                         static_cast<int>(time.milliSeconds));
}

} // namespace

void FormatSegment(const PageSegment& segment, bool asTime, char (&text)[kSegmentTextSize]) {
    const int used = FormatStart(segment, asTime, text);
    char* const rest = text + used;
    const std::size_t size = sizeof(text) - static_cast<std::size_t>(used);
    const char letter = OperationLetter(segment.operation);
    if (letter == 'P') {
        const FramePattern& pattern = segment.pattern;
        std::snprintf(rest, size, " ( %c<%d:%d:%d>)", letter, static_cast<int>(pattern.preambleFrames),
                      static_cast<int>(pattern.ignoreFrames), static_cast<int>(pattern.deinterlaceFrames));
        return;
    }
    // Kept: two blanks between a frame and its letter, one after a time. Test: ListEntries.
    std::snprintf(rest, size, asTime ? " ( %c )" : "  ( %c )", letter);
}
