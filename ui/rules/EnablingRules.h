// Which controls of the settings page can be used when.
#pragma once

#include <span>

struct EnablingState {
    bool enabled;       // deinterlacing is on
    bool reserved;      // see PageSettings::reserved
    bool mergeFields;   // both fields go into each frame
    bool automatic;     // the detector decides
    bool globalPattern; // the global pattern's box is checked
    bool asTime;        // start points are times
    bool segment;       // a segment is selected
    bool pattern;       // its operation is the pattern
    bool hasPrevious;   // there is one before it
    bool hasNext;       // there is one after it
};

struct EnablingRule {
    int control;
    bool (*allowed)(const EnablingState&);
};

// One row a control; controls without a row can always be used.
std::span<const EnablingRule> EnablingRules();
