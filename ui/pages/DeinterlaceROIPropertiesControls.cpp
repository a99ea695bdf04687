// The controls of the ROI page.
#include "ui/pages/DeinterlaceROIProperties.h"

#include "ui/pages/DialogControls.h"
#include "ui/pages/PageMessages.h"
#include "ui/pages/ScopedFlag.h"
#include "ui/resources/ResourceIds.h"

#include <commctrl.h>

struct CDeinterlaceROIProperties::EdgeRow {
    int edit;
    int spin;
    Area CDeinterlaceROIProperties::*area;
    Edge edge;
};

const CDeinterlaceROIProperties::EdgeRow CDeinterlaceROIProperties::kEdges[] = {
    {IDC_ROI_LEFT, IDC_ROI_LEFT_SPIN, &CDeinterlaceROIProperties::m_region, Edge::kLeft},
    {IDC_ROI_TOP, IDC_ROI_TOP_SPIN, &CDeinterlaceROIProperties::m_region, Edge::kTop},
    {IDC_ROI_RIGHT, IDC_ROI_RIGHT_SPIN, &CDeinterlaceROIProperties::m_region, Edge::kRight},
    {IDC_ROI_BOTTOM, IDC_ROI_BOTTOM_SPIN, &CDeinterlaceROIProperties::m_region, Edge::kBottom},
    {IDC_PROTECTED_LEFT, IDC_PROTECTED_LEFT_SPIN, &CDeinterlaceROIProperties::m_protected, Edge::kLeft},
    {IDC_PROTECTED_TOP, IDC_PROTECTED_TOP_SPIN, &CDeinterlaceROIProperties::m_protected, Edge::kTop},
    {IDC_PROTECTED_RIGHT, IDC_PROTECTED_RIGHT_SPIN, &CDeinterlaceROIProperties::m_protected, Edge::kRight},
    {IDC_PROTECTED_BOTTOM, IDC_PROTECTED_BOTTOM_SPIN, &CDeinterlaceROIProperties::m_protected, Edge::kBottom},
};

namespace {

struct InputSize {
    LONG width = 0;
    LONG height = 0;
};

InputSize ReadInputSize(INMFVDeinterlace* control) {
    InputSize size;
    if (control) {
        control->get_InWidth(&size.width);
        control->get_InHeight(&size.height);
    }
    return size;
}

// A spin button's limits have 16 bits; its position is 32 bits wide, so that a larger one becomes the limit.
void SetSpin(HWND spin, LONG limit, LONG position) {
    SendMessageA(spin, UDM_SETRANGE, 0, MAKELPARAM(limit, 0));
    SendMessageA(spin, UDM_SETPOS32, 0, position);
}

} // namespace

void CDeinterlaceROIProperties::FillArea(const Area& area) {
    Check(m_hDialog, area.box, area.enabled != 0);
    EnableArea(area);
}

// The spin buttons write their positions into the edits beside them.
void CDeinterlaceROIProperties::FillSpins() {
    const InputSize size = ReadInputSize(m_control.Get());
    const EdgeLimits limits = SpinLimits(size.width, size.height);
    for (const EdgeRow& row : kEdges) {
        const bool horizontal = row.edge == Edge::kLeft || row.edge == Edge::kRight;
        SetSpin(GetDlgItem(m_hDialog, row.spin), horizontal ? limits.width : limits.height,
                EdgeOf((this->*row.area).rectangle, row.edge));
    }
}

void CDeinterlaceROIProperties::EnableArea(const Area& area) {
    for (const EdgeRow& row : kEdges) {
        if (&(this->*row.area) == &area) {
            Enable(m_hDialog, row.edit, area.enabled != 0);
            Enable(m_hDialog, row.spin, area.enabled != 0);
        }
    }
}

INT_PTR CDeinterlaceROIProperties::PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    INT_PTR result = 0;
    if (AnswerPageMessage(window, message, wParam, lParam, m_displayName, &m_hover, &result)) {
        return result;
    }
    if (message == WM_COMMAND && m_ready && OnCommand(LOWORD(wParam), HIWORD(wParam))) {
        return TRUE;
    }
    return CBasePropertyPage::PageMessage(window, message, wParam, lParam);
}

// True when the notification is one of the page's.
bool CDeinterlaceROIProperties::OnCommand(int control, int code) {
    Area* const areas[] = {&m_region, &m_protected};
    for (Area* const area : areas) {
        if (area->box == control && code == BN_CLICKED) {
            OnBox(area);
            return true;
        }
    }
    for (const EdgeRow& row : kEdges) {
        if (row.edit == control && code == EN_CHANGE) {
            OnEdge(row);
            return true;
        }
    }
    return false;
}

void CDeinterlaceROIProperties::OnBox(Area* area) {
    area->enabled = IsChecked(m_hDialog, area->box) ? VARIANT_TRUE : VARIANT_FALSE;
    EnableArea(*area);
    Changed();
}

// Kept: a number that can stand is taken over and the page stays clean; it goes out with the next apply that something
// else brings about. Only a corrected number marks the page dirty. Test: EditsAreChecked.
void CDeinterlaceROIProperties::OnEdge(const EdgeRow& row) {
    if (m_updating) {
        return;
    }
    const InputSize size = ReadInputSize(m_control.Get());
    PageRectangle& rectangle = (this->*row.area).rectangle;
    // Kept: compared as a signed number, so that one from 2147483648 on is too small. Test: EditsAreChecked.
    const auto typed = static_cast<std::int32_t>(ReadUnsigned(m_hDialog, row.edit));
    std::int64_t corrected = 0;
    if (CheckEdge(rectangle, row.edge, EditLimits(size.width, size.height), typed, &corrected)) {
        EdgeOf(rectangle, row.edge) = typed;
        return;
    }
    {
        const ScopedFlag updating(m_updating);
        ReplaceNumber(m_hDialog, row.edit, corrected);
    }
    EdgeOf(rectangle, row.edge) = static_cast<std::int32_t>(ReadUnsigned(m_hDialog, row.edit));
    Changed();
}

void CDeinterlaceROIProperties::Changed() {
    MarkDirty();
    m_applied = false;
}
