#include "ui/rules/EnablingRules.h"

#include "ui/resources/ResourceIds.h"

namespace {

using Settings = PageSettings;
using Selected = const PageSegment*;

bool Deinterlaces(const Settings& s, Selected) {
    return s.enabled;
}
bool WithoutReserved(const Settings& s, Selected) {
    return s.enabled && !s.reserved;
}
bool RebuildsField(const Settings& s, Selected) {
    return s.enabled && !s.reserved && !s.mergeFields;
}
// Kept: the reserved flag is never set, so this is never true. Test: EnablingFollowsTheBoxes.
bool WithReserved(const Settings& s, Selected) {
    return s.enabled && s.reserved;
}
bool Detects(const Settings& s, Selected) {
    return s.enabled && s.automatic;
}
bool HasGlobalPattern(const Settings& s, Selected) {
    return s.enabled && s.globalPatternEnabled && !s.reserved;
}
bool HasSegment(const Settings&, Selected segment) {
    return segment != nullptr;
}
bool HasClock(const Settings& s, Selected segment) {
    return segment && s.asTime;
}
bool MayHavePattern(const Settings& s, Selected segment) {
    return segment && !s.reserved && s.enabled;
}
bool HasSegmentPattern(const Settings&, Selected segment) {
    return segment && segment->operation == kOperationPattern;
}
bool CanMoveUp(const Settings&, Selected segment) {
    return segment && segment->index > 0;
}
bool CanMoveDown(const Settings&, Selected segment) {
    return segment && segment->next != nullptr;
}

constexpr EnablingRule kRules[] = {
    {IDC_START_WITH_EVEN_LINES, RebuildsField},
    {IDC_AUTO_DEINTERLACE, Deinterlaces},
    {IDC_MERGE_FIELDS, WithoutReserved},
    {IDC_START_WITH_EVEN_FRAME, WithReserved},
    {IDC_SENSITIVITY_LABEL, Detects},
    {IDC_SENSITIVITY, Detects},
    {IDC_GLOBAL_PATTERN, WithoutReserved},
    {IDC_GLOBAL_PREAMBLE, HasGlobalPattern},
    {IDC_GLOBAL_NO_DEINTERLACE, HasGlobalPattern},
    {IDC_GLOBAL_DEINTERLACE, HasGlobalPattern},
    {IDC_GLOBAL_PREAMBLE_DEINTERLACE, HasGlobalPattern},
    {IDC_GLOBAL_PREAMBLE_IGNORE, HasGlobalPattern},
    {IDC_REMOVE_SEGMENT, HasSegment},
    {IDC_SEGMENT_UP, CanMoveUp},
    {IDC_SEGMENT_DOWN, CanMoveDown},
    {IDC_START_HOURS, HasClock},
    {IDC_START_MINUTES, HasClock},
    {IDC_START_SECONDS, HasClock},
    {IDC_START_MILLISECONDS, HasSegment}, // or the start frame
    {IDC_OPERATION_NO_DEINTERLACE, HasSegment},
    {IDC_OPERATION_DEINTERLACE, HasSegment},
    {IDC_OPERATION_PATTERN, MayHavePattern},
    {IDC_SEGMENT_PREAMBLE, HasSegmentPattern},
    {IDC_SEGMENT_PREAMBLE_DEINTERLACE, HasSegmentPattern},
    {IDC_SEGMENT_PREAMBLE_IGNORE, HasSegmentPattern},
    {IDC_SEGMENT_NO_DEINTERLACE, HasSegmentPattern},
    {IDC_SEGMENT_DEINTERLACE, HasSegmentPattern},
};

} // namespace

std::span<const EnablingRule> EnablingRules() {
    return kRules;
}
