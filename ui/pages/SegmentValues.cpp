#include "ui/pages/SegmentValues.h"

#include "ui/pages/DialogControls.h"
#include "ui/pages/ScopedFlag.h"
#include "ui/resources/ResourceIds.h"

namespace {

struct StartRow {
    int control;
    std::uint32_t SegmentTime::*field;
};

constexpr StartRow kStartEdits[] = {
    {IDC_START_HOURS, &SegmentTime::hours},
    {IDC_START_MINUTES, &SegmentTime::minutes},
    {IDC_START_SECONDS, &SegmentTime::seconds},
    {IDC_START_MILLISECONDS, &SegmentTime::milliSeconds},
};

struct PatternRow {
    int control;
    std::uint32_t FramePattern::*field;
};

constexpr PatternRow kPatternEdits[] = {
    {IDC_SEGMENT_PREAMBLE, &FramePattern::preambleFrames},
    {IDC_SEGMENT_NO_DEINTERLACE, &FramePattern::ignoreFrames},
    {IDC_SEGMENT_DEINTERLACE, &FramePattern::deinterlaceFrames},
};

struct OperationRow {
    int control;
    std::int32_t operation;
};

constexpr OperationRow kOperations[] = {
    {IDC_OPERATION_NO_DEINTERLACE, kOperationNone},
    {IDC_OPERATION_DEINTERLACE, kOperationAll},
    {IDC_OPERATION_PATTERN, kOperationPattern},
};

} // namespace

struct CSegmentValues::Command {
    int control;
    int code;
    void (CSegmentValues::*handler)(int control, PageSegment* segment);
};

const CSegmentValues::Command CSegmentValues::kCommands[] = {
    {IDC_START_HOURS, EN_CHANGE, &CSegmentValues::OnStart},
    {IDC_START_MINUTES, EN_CHANGE, &CSegmentValues::OnStart},
    {IDC_START_SECONDS, EN_CHANGE, &CSegmentValues::OnStart},
    {IDC_START_MILLISECONDS, EN_CHANGE, &CSegmentValues::OnStart},
    {IDC_OPERATION_NO_DEINTERLACE, BN_CLICKED, &CSegmentValues::OnOperation},
    {IDC_OPERATION_DEINTERLACE, BN_CLICKED, &CSegmentValues::OnOperation},
    {IDC_OPERATION_PATTERN, BN_CLICKED, &CSegmentValues::OnOperation},
    {IDC_SEGMENT_PREAMBLE, EN_CHANGE, &CSegmentValues::OnPattern},
    {IDC_SEGMENT_NO_DEINTERLACE, EN_CHANGE, &CSegmentValues::OnPattern},
    {IDC_SEGMENT_DEINTERLACE, EN_CHANGE, &CSegmentValues::OnPattern},
    {IDC_SEGMENT_PREAMBLE_DEINTERLACE, BN_CLICKED, &CSegmentValues::OnPreamble},
    {IDC_SEGMENT_PREAMBLE_IGNORE, BN_CLICKED, &CSegmentValues::OnPreamble},
};

CSegmentValues::CSegmentValues(const PageSettings* settings, bool* updating)
    : m_settings(settings)
    , m_updating(updating) {}

void CSegmentValues::Fill(const PageSegment& segment) {
    FillStart(segment);
    for (const OperationRow& row : kOperations) {
        Check(m_dialog, row.control, segment.operation == row.operation);
    }
    for (const PatternRow& row : kPatternEdits) {
        ShowUnsigned(m_dialog, row.control, segment.pattern.*row.field);
    }
    Check(m_dialog, IDC_SEGMENT_PREAMBLE_DEINTERLACE, segment.pattern.deintPreamble);
    Check(m_dialog, IDC_SEGMENT_PREAMBLE_IGNORE, !segment.pattern.deintPreamble);
}

// A start frame stands in the last of the four edits; the others are empty then.
void CSegmentValues::FillStart(const PageSegment& segment) {
    if (m_settings->asTime) {
        for (const StartRow& row : kStartEdits) {
            ShowUnsigned(m_dialog, row.control, segment.startTime.*row.field);
        }
        return;
    }
    for (const StartRow& row : kStartEdits) {
        SetDlgItemTextA(m_dialog, row.control, "");
    }
    ReplaceNumber(m_dialog, IDC_START_MILLISECONDS, segment.startFrame);
}

bool CSegmentValues::OnCommand(int control, int code, PageSegment* segment) {
    for (const Command& command : kCommands) {
        if (command.control == control && command.code == code) {
            if (segment) {
                (this->*command.handler)(control, segment);
            }
            return true;
        }
    }
    return false;
}

void CSegmentValues::OnOperation(int control, PageSegment* segment) {
    for (const OperationRow& row : kOperations) {
        if (row.control == control) {
            segment->operation = row.operation;
        }
    }
}

void CSegmentValues::OnPreamble(int control, PageSegment* segment) {
    segment->pattern.deintPreamble = control == IDC_SEGMENT_PREAMBLE_DEINTERLACE;
}

void CSegmentValues::OnPattern(int, PageSegment* segment) {
    for (const PatternRow& row : kPatternEdits) {
        segment->pattern.*row.field = ReadUnsigned(m_dialog, row.control);
    }
}

void CSegmentValues::OnStart(int, PageSegment* segment) {
    if (m_settings->asTime) {
        segment->startTime = ReadStartTime();
        segment->startFrame = FrameOfStartTime(segment->startTime, m_settings->frameRate);
    } else {
        segment->startFrame = ReadStartFrame();
        segment->startTime = TimeOfStartFrame(segment->startFrame, m_settings->frameRate);
    }
}

// What is too large is corrected in its edit too.
SegmentTime CSegmentValues::ReadStartTime() {
    SegmentTime typed;
    for (const StartRow& row : kStartEdits) {
        typed.*row.field = ReadUnsigned(m_dialog, row.control);
    }
    const SegmentTime time = ClampStartTime(typed);
    const ScopedFlag updating(*m_updating);
    for (const StartRow& row : kStartEdits) {
        if (typed.*row.field != time.*row.field) {
            ReplaceNumber(m_dialog, row.control, time.*row.field);
        }
    }
    return time;
}

std::int64_t CSegmentValues::ReadStartFrame() {
    const std::int64_t typed = ReadFrame(m_dialog, IDC_START_MILLISECONDS);
    const std::int64_t frame = ClampStartFrame(typed);
    if (frame != typed) {
        const ScopedFlag updating(*m_updating);
        ReplaceNumber(m_dialog, IDC_START_MILLISECONDS, frame);
    }
    return frame;
}
