// What the settings page edits: its copy of the settings.
#pragma once

#include "ui/rules/SegmentRecords.h"
#include "ui/rules/SensitivityText.h"

struct PageSettings {
    bool enabled = false;
    bool evenLines = false;
    bool mergeFields = false;
    bool reserved = false; // always false; only asked by the enabling rules, for a later meaning
    bool startWithEvenFrame = false;
    bool automatic = false;
    double sensitivity = 1.0;
    SensitivityText sensitivityText = ""; // what stands in the edit, valid or not
    bool asTime = true;                   // start points are shown and written as times, else as frames
    FramePattern globalPattern;
    bool globalPatternEnabled = true;
    std::int32_t defaultOperation = kOperationPattern;
    PageSegmentList segments;
    double frameRate = 30.0; // between start times and start frames
};
