// Which control of the settings page stands for which field.
#pragma once

#include "ui/rules/PageSettings.h"
#include "ui/resources/ResourceIds.h"

struct BoxRow {
    int control;
    bool PageSettings::*field;
};

inline constexpr BoxRow kBoxes[] = {
    {IDC_ENABLE_DEINTERLACE, &PageSettings::enabled},
    {IDC_START_WITH_EVEN_LINES, &PageSettings::evenLines},
    {IDC_MERGE_FIELDS, &PageSettings::mergeFields},
    {IDC_START_WITH_EVEN_FRAME, &PageSettings::startWithEvenFrame},
    {IDC_GLOBAL_PATTERN, &PageSettings::globalPatternEnabled},
    {IDC_AUTO_DEINTERLACE, &PageSettings::automatic},
};

struct StartRow {
    int control;
    std::uint32_t StartTime::*field;
};

inline constexpr StartRow kStartEdits[] = {
    {IDC_START_HOURS, &StartTime::hours},
    {IDC_START_MINUTES, &StartTime::minutes},
    {IDC_START_SECONDS, &StartTime::seconds},
    {IDC_START_MILLISECONDS, &StartTime::milliSeconds},
};

struct PatternRow {
    int control;
    std::uint32_t FramePattern::*field;
};

inline constexpr PatternRow kSegmentPattern[] = {
    {IDC_SEGMENT_PREAMBLE, &FramePattern::preambleFrames},
    {IDC_SEGMENT_NO_DEINTERLACE, &FramePattern::ignoreFrames},
    {IDC_SEGMENT_DEINTERLACE, &FramePattern::deinterlaceFrames},
};

struct OperationRow {
    int control;
    std::int32_t operation;
};

inline constexpr OperationRow kOperations[] = {
    {IDC_OPERATION_NO_DEINTERLACE, kOperationNone},
    {IDC_OPERATION_DEINTERLACE, kOperationAll},
    {IDC_OPERATION_PATTERN, kOperationPattern},
};
