// The deinterlace settings page's copy of the settings, read from a transform and written to one as a whole.
#pragma once

#include "ui/rules/SegmentRecords.h"
#include "ui/rules/SensitivityText.h"

#include "NMFVDeinterlace.h"

struct PageSettings {
    VARIANT_BOOL enabled = VARIANT_FALSE;
    VARIANT_BOOL evenLines = VARIANT_FALSE;
    VARIANT_BOOL mergeFields = VARIANT_FALSE;
    VARIANT_BOOL reserved = VARIANT_FALSE; // always false; only asked by the enabling rules, for a later meaning
    VARIANT_BOOL startWithEvenFrame = VARIANT_FALSE;
    VARIANT_BOOL automatic = VARIANT_FALSE;
    double sensitivity = 1.0;
    SensitivityText sensitivityText = ""; // what stands in the edit, valid or not
    SEGMENT_TIME_FORMAT timeFormat = SEGMENT_TIME_FORMAT_TIME;
    FramePattern globalPattern;
    VARIANT_BOOL globalPatternEnabled = VARIANT_TRUE;
    std::int32_t defaultOperation = kOperationPattern;
    PageSegmentList segments;
    double frameRate = 30.0; // between start times and start frames

    bool AsTime() const { return timeFormat == SEGMENT_TIME_FORMAT_TIME; }
};

// Reads everything; what the object doesn't tell stays as it was. Of each segment's two start points the one that the
// object's time format names counts, and the other is converted from it, so that both forms of an entry agree.
// E_OUTOFMEMORY when a segment finds no room: the segments are then as they were.
HRESULT ReadSettings(INMFVDeinterlace* control, PageSettings* settings);

// Writes everything and replaces the object's segments. What the object refuses is skipped.
void WriteSettings(INMFVDeinterlace* control, const PageSettings& settings);

// The automation boolean for a condition.
constexpr VARIANT_BOOL AutomationBool(bool value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}
