#include "ui/pages/DeinterlaceROIProperties.h"

#include "diag/Trace.h"
#include "ui/pages/DialogControls.h"
#include "ui/pages/ScopedFlag.h"
#include "ui/resources/ResourceIds.h"

#include <initializer_list>

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

CDeinterlaceROIProperties::CDeinterlaceROIProperties()
    : CTransformPage(IDS_TITLE_ROI, IDD_ROI,
                     {&INMFVDeinterlace::get_ROISettingsImportState, &INMFVDeinterlace::put_ROISettingsImportState})
    , m_region{IDC_ENABLE_ROI, false, {}}
    , m_protected{IDC_ENABLE_PROTECTED_AREA, false, {}} {}

// Kept: an import leaves the protected area as it is. Test: ImportReadsTheRegionOnly.
HRESULT CDeinterlaceROIProperties::Read(bool import) {
    ReadRegion();
    if (!import) {
        ReadProtectedArea();
    }
    return S_OK;
}

// What the object does not report stays as it was.
void CDeinterlaceROIProperties::ReadRegion() {
    ReadFlag(m_control.Get(), &INMFVDeinterlace::get_EnableROI, &m_region.enabled);
    PageRectangle& region = m_region.rectangle;
    LONG right = region.right;
    LONG left = region.left;
    LONG bottom = region.bottom;
    LONG top = region.top;
    m_control->get_ROIRight(&right);
    m_control->get_ROILeft(&left);
    m_control->get_ROIBottom(&bottom);
    m_control->get_ROITop(&top);
    region = {left, top, right, bottom};
}

void CDeinterlaceROIProperties::ReadProtectedArea() {
    ReadFlag(m_control.Get(), &INMFVDeinterlace::get_EnableProtectedArea, &m_protected.enabled);
    PageRectangle& area = m_protected.rectangle;
    LONG left = area.left;
    LONG right = area.right;
    LONG top = area.top;
    LONG bottom = area.bottom;
    m_control->GetProtectedAreaParams(&left, &right, &top, &bottom);
    area = {left, top, right, bottom};
}

void CDeinterlaceROIProperties::Fill() {
    for (const Area* const area : {&m_region, &m_protected}) {
        Check(m_hDialog, area->box, area->enabled);
        EnableArea(*area);
    }
    FillSpins();
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
            Enable(m_hDialog, row.edit, area.enabled);
            Enable(m_hDialog, row.spin, area.enabled);
        }
    }
}

CTransformPage::Outcome CDeinterlaceROIProperties::OnCommand(int control, int code) {
    for (Area* const area : {&m_region, &m_protected}) {
        if (area->box == control && code == BN_CLICKED) {
            return OnBox(area);
        }
    }
    for (const EdgeRow& row : kEdges) {
        if (row.edit == control && code == EN_CHANGE) {
            return OnEdge(row);
        }
    }
    return Outcome::kForeign;
}

CTransformPage::Outcome CDeinterlaceROIProperties::OnBox(Area* area) {
    area->enabled = IsChecked(m_hDialog, area->box);
    EnableArea(*area);
    return Outcome::kChanged;
}

// Kept: a valid number is taken over but leaves the page clean; it is written by the next apply that something else
// causes. Only a corrected number marks the page dirty. Test: EditsAreChecked.
CTransformPage::Outcome CDeinterlaceROIProperties::OnEdge(const EdgeRow& row) {
    const InputSize size = ReadInputSize(m_control.Get());
    PageRectangle& rectangle = (this->*row.area).rectangle;
    // Kept: compared as a signed number, so that numbers from 2147483648 on count as too small. Test: EditsAreChecked.
    const auto typed = static_cast<std::int32_t>(ReadUnsigned(m_hDialog, row.edit));
    std::int64_t corrected = 0;
    if (CheckEdge(rectangle, row.edge, EditLimits(size.width, size.height), typed, &corrected)) {
        EdgeOf(rectangle, row.edge) = typed;
        return Outcome::kTaken;
    }
    {
        const ScopedFlag updating(m_updating);
        ReplaceNumber(m_hDialog, row.edit, corrected);
    }
    EdgeOf(rectangle, row.edge) = static_cast<std::int32_t>(ReadUnsigned(m_hDialog, row.edit));
    return Outcome::kChanged;
}

// Kept: saves everything that the object holds, not only what this page edits, while the settings page saves nothing.
// What is written is what the page shows: this page takes an import when it is activated, the settings page also when
// it applies. Test: ApplyWritesInOrderAndSaves.
HRESULT CDeinterlaceROIProperties::Write() {
    const PageRectangle& region = m_region.rectangle;
    m_control->put_EnableROI(AutomationBool(m_region.enabled));
    m_control->put_ROIRight(region.right);
    m_control->put_ROILeft(region.left);
    m_control->put_ROIBottom(region.bottom);
    m_control->put_ROITop(region.top);
    const PageRectangle& area = m_protected.rectangle;
    m_control->put_EnableProtectedArea(AutomationBool(m_protected.enabled));
    m_control->SetProtectedAreaParams(area.left, area.right, area.top, area.bottom);
    if (const HRESULT hr = m_control->SaveAttributes(); FAILED(hr)) {
        Trace("\nCDeinterlaceROIProperties::ApplyChanges: settings not saved 0x%08x", static_cast<unsigned>(hr));
    }
    return S_OK;
}
