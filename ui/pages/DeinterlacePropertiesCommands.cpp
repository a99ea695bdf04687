// From the controls to the copy of the settings: everything but the segments.
#include "ui/pages/DeinterlaceProperties.h"

#include "ui/pages/DeinterlaceControls.h"
#include "ui/pages/DialogControls.h"

void CDeinterlaceProperties::Changed() {
    MarkDirty();
    m_applied = false;
}

void CDeinterlaceProperties::OnBox(int control) {
    for (const BoxRow& row : kBoxes) {
        if (row.control == control) {
            m_settings.*row.field = IsChecked(m_hDialog, control);
        }
    }
    EnableControls();
    Changed();
}

void CDeinterlaceProperties::OnSensitivity(int control) {
    GetDlgItemTextA(m_hDialog, control, m_settings.sensitivityText, sizeof(m_settings.sensitivityText));
    Changed();
}

void CDeinterlaceProperties::OnGlobalPreamble(int control) {
    m_settings.globalPattern.deintPreamble = control == IDC_GLOBAL_PREAMBLE_DEINTERLACE;
    if (!Selected()) {
        FillSelection(); // a segment that is added now would have the new flag
    }
    Changed();
}

void CDeinterlaceProperties::OnTimeFormat(int) {
    m_settings.asTime = SendMessageA(m_timeFormat, CB_GETCURSEL, 0, 0) == 0;
    FillTimeFormat();
    FillSegments();
    SelectSegment(m_selected);
    Changed();
}
