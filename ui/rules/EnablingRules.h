// Which controls of the settings page can be used when.
#pragma once

#include "ui/rules/PageSettings.h"

#include <span>

struct EnablingRule {
    int control;
    bool (*allowed)(const PageSettings& settings, const PageSegment* selected); // null: no segment is selected
};

// One row a control; controls without a row can always be used.
std::span<const EnablingRule> EnablingRules();
