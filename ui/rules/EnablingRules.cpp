#include "ui/rules/EnablingRules.h"

#include "ui/resources/ResourceIds.h"

namespace {

using State = EnablingState;

bool Deinterlaces(const State& s) {
    return s.enabled;
}
bool WithoutReserved(const State& s) {
    return s.enabled && !s.reserved;
}
bool RebuildsField(const State& s) {
    return s.enabled && !s.reserved && !s.mergeFields;
}
// Kept: the reserved flag is never set, so this is never true. Test: EnablingFollowsTheBoxes.
bool WithReserved(const State& s) {
    return s.enabled && s.reserved;
}
bool Detects(const State& s) {
    return s.enabled && s.automatic;
}
bool HasGlobalPattern(const State& s) {
    return s.enabled && s.globalPattern && !s.reserved;
}
bool HasSegment(const State& s) {
    return s.segment;
}
bool HasClock(const State& s) {
    return s.segment && s.asTime;
}
bool MayHavePattern(const State& s) {
    return s.segment && !s.reserved && s.enabled;
}
bool HasSegmentPattern(const State& s) {
    return s.segment && s.pattern;
}
bool CanMoveUp(const State& s) {
    return s.segment && s.hasPrevious;
}
bool CanMoveDown(const State& s) {
    return s.segment && s.hasNext;
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
