// From the copy of the settings to the controls.
#include "ui/pages/DeinterlaceProperties.h"

#include "ui/pages/DeinterlaceControls.h"
#include "ui/pages/DialogControls.h"
#include "ui/pages/ScopedFlag.h"
#include "ui/resources/ResourceIds.h"
#include "ui/rules/EnablingRules.h"

namespace {

constexpr int kTimeLine = 0; // of the time format's list
constexpr int kFrameLine = 1;

} // namespace

void CDeinterlaceProperties::FillControls() {
    const ScopedFlag updating(m_updating);
    FillBoxes();
    FillSensitivity();
    FillGlobalPattern();
    FillTimeFormat();
    FillSegments();
    SelectSegment(m_selected);
}

void CDeinterlaceProperties::FillBoxes() {
    for (const BoxRow& row : kBoxes) {
        Check(m_hDialog, row.control, m_settings.*row.field);
    }
}

void CDeinterlaceProperties::FillSensitivity() {
    const ScopedFlag updating(m_updating);
    SetDlgItemTextA(m_hDialog, IDC_SENSITIVITY, m_settings.sensitivityText);
}

void CDeinterlaceProperties::FillGlobalPattern() {
    const FramePattern& pattern = m_settings.globalPattern;
    Check(m_hDialog, IDC_GLOBAL_PREAMBLE_DEINTERLACE, pattern.deintPreamble);
    Check(m_hDialog, IDC_GLOBAL_PREAMBLE_IGNORE, !pattern.deintPreamble);
    ShowUnsigned(m_hDialog, IDC_GLOBAL_PREAMBLE, pattern.preambleFrames);
    ShowUnsigned(m_hDialog, IDC_GLOBAL_NO_DEINTERLACE, pattern.ignoreFrames);
    ShowUnsigned(m_hDialog, IDC_GLOBAL_DEINTERLACE, pattern.deinterlaceFrames);
}

// Kept: the label's text is written when its format changes only; until then the dialog's own stands, which ends in a
// blank. Test: LabelNamesTheFormat.
void CDeinterlaceProperties::FillTimeFormat() {
    const bool asTime = m_settings.asTime;
    SendMessageA(m_timeFormat, CB_SETCURSEL, asTime ? kTimeLine : kFrameLine, 0);
    if (asTime != m_labelledAsTime) {
        SetDlgItemTextA(m_hDialog, IDC_SEGMENT_START_LABEL,
                        asTime ? "Segment Start Time (HH:MM:SS.mS):" : "Segment Start Frame (SF):");
        m_labelledAsTime = asTime;
    }
}

void CDeinterlaceProperties::FillSegments() {
    m_list.Fill(m_settings.segments, m_settings.asTime);
}

// The controls below the list: the selected segment's values, or those that a segment added here would have.
void CDeinterlaceProperties::FillSelection() {
    const ScopedFlag updating(m_updating);
    const PageSegment segment = NewSegment();
    FillStart(segment);
    for (const OperationRow& row : kOperations) {
        Check(m_hDialog, row.control, segment.operation == row.operation);
    }
    for (const PatternRow& row : kSegmentPattern) {
        ShowUnsigned(m_hDialog, row.control, segment.pattern.*row.field);
    }
    Check(m_hDialog, IDC_SEGMENT_PREAMBLE_DEINTERLACE, segment.pattern.deintPreamble);
    Check(m_hDialog, IDC_SEGMENT_PREAMBLE_IGNORE, !segment.pattern.deintPreamble);
    EnableControls();
}

// A start frame stands in the last of the four edits; the others are empty then.
void CDeinterlaceProperties::FillStart(const PageSegment& segment) {
    if (m_settings.asTime) {
        for (const StartRow& row : kStartEdits) {
            ShowUnsigned(m_hDialog, row.control, segment.startTime.*row.field);
        }
        return;
    }
    for (const StartRow& row : kStartEdits) {
        SetDlgItemTextA(m_hDialog, row.control, "");
    }
    ReplaceNumber(m_hDialog, IDC_START_MILLISECONDS, segment.startFrame);
}

void CDeinterlaceProperties::EnableControls() {
    const PageSegment* const segment = Selected();
    for (const EnablingRule& rule : EnablingRules()) {
        Enable(m_hDialog, rule.control, rule.allowed(m_settings, segment));
    }
}
