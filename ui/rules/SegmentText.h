// A segment as a line of the settings page's list.
#pragma once

#include "ui/rules/SegmentRecords.h"

// Room for the longest line.
inline constexpr int kSegmentTextSize = 128;

// Start point, letter of the operation (P pattern, D deinterlace, N none) and, for a pattern, its frame counts.
void FormatSegment(const PageSegment& segment, bool asTime, char (&text)[kSegmentTextSize]);
