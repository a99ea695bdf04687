#include "ui/pages/SegmentValues.h"

#include "ui/pages/DialogControls.h"
#include "ui/pages/ScopedFlag.h"
#include "ui/resources/ResourceIds.h"
#include "ui/rules/StartPoint.h"

#include <algorithm>
#include <iterator>

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

template <typename Rows>
bool Has(const Rows& rows, int control) {
    return std::any_of(std::begin(rows), std::end(rows), [control](const auto& row) { return row.control == control; });
}

} // namespace

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
    if (code == EN_CHANGE) {
        return OnEdit(control, segment);
    }
    return code == BN_CLICKED && OnButton(control, segment);
}

bool CSegmentValues::OnEdit(int control, PageSegment* segment) {
    if (Has(kStartEdits, control)) {
        ReadStart(segment);
        return true;
    }
    if (Has(kPatternEdits, control)) {
        for (const PatternRow& row : kPatternEdits) {
            segment->pattern.*row.field = ReadUnsigned(m_dialog, row.control);
        }
        return true;
    }
    return false;
}

bool CSegmentValues::OnButton(int control, PageSegment* segment) {
    for (const OperationRow& row : kOperations) {
        if (row.control == control) {
            segment->operation = row.operation;
            return true;
        }
    }
    if (control == IDC_SEGMENT_PREAMBLE_DEINTERLACE || control == IDC_SEGMENT_PREAMBLE_IGNORE) {
        segment->pattern.deintPreamble = control == IDC_SEGMENT_PREAMBLE_DEINTERLACE;
        return true;
    }
    return false;
}

void CSegmentValues::ReadStart(PageSegment* segment) {
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
