// Connecting and applying.
#include "ui/pages/DeinterlaceROIProperties.h"

#include "diag/Trace.h"
#include "ui/help/Help.h"
#include "ui/help/HelpHook.h"
#include "ui/resources/ResourceIds.h"
#include "ui/rules/HelpTopic.h"

#include <commctrl.h>

namespace {

constexpr VARIANT_BOOL AutomationBool(LONG value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

} // namespace

CDeinterlaceROIProperties::CDeinterlaceROIProperties()
    : CBasePropertyPage(IDS_TITLE_ROI, IDD_ROI)
    , m_region{IDC_ENABLE_ROI, VARIANT_FALSE, {}}
    , m_protected{IDC_ENABLE_PROTECTED_AREA, VARIANT_FALSE, {}} {
    // The dialog can't be made without the window class of its spin buttons.
    const INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&classes);
}

STDMETHODIMP CDeinterlaceROIProperties::GetPageInfo(PROPPAGEINFO* info) {
    const HRESULT hr = CBasePropertyPage::GetPageInfo(info);
    if (SUCCEEDED(hr)) {
        SetPageHelpInfo(info, m_displayName);
    }
    return hr;
}

STDMETHODIMP CDeinterlaceROIProperties::Help(LPCOLESTR) {
    (void)ShowHelpTopic(m_displayName, kUserInterfaceTopic);
    return S_OK;
}

HRESULT CDeinterlaceROIProperties::ConnectObject(IUnknown* object) {
    if (FAILED(object->QueryInterface(IID_INMFVDeinterlace, m_control.PutVoid()))) {
        return E_NOINTERFACE;
    }
    ReadRegion();
    ReadProtectedArea();
    m_applied = true;
    m_ready = false;
    return S_OK;
}

HRESULT CDeinterlaceROIProperties::DisconnectObject() {
    if (!m_control) {
        return E_UNEXPECTED;
    }
    m_control.Reset();
    m_bDirty = FALSE;
    return S_OK;
}

HRESULT CDeinterlaceROIProperties::ActivatePage() {
    m_ready = false;
    if (!TakeImport() && !m_applied && m_pSite) {
        m_pSite->OnStatusChange(PROPPAGESTATUS_DIRTY);
    }
    FillArea(m_region);
    FillSpins();
    FillArea(m_protected);
    (void)InstallHelpHook(m_hDialog, m_displayName, kUserInterfaceTopic); // the page works without help
    m_ready = true;
    return S_OK;
}

HRESULT CDeinterlaceROIProperties::DeactivatePage() {
    RemoveHelpHook(m_hDialog);
    m_hover.Forget();
    m_ready = false;
    return S_OK;
}

// Kept: saves everything that the object holds, not only what this page edits, while the settings page saves nothing.
// What is written is what the page shows: this page takes an import when it is activated, the settings page also when
// it applies. Test: ApplyWritesInOrderAndSaves.
HRESULT CDeinterlaceROIProperties::ApplyChanges() {
    if (!m_control) {
        return S_FALSE;
    }
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
    m_applied = true;
    return S_OK;
}

// What the object doesn't tell stays as it was.
void CDeinterlaceROIProperties::ReadRegion() {
    VARIANT_BOOL enabled = AutomationBool(m_region.enabled);
    PageRectangle& region = m_region.rectangle;
    LONG right = region.right;
    LONG left = region.left;
    LONG bottom = region.bottom;
    LONG top = region.top;
    m_control->get_EnableROI(&enabled);
    m_control->get_ROIRight(&right);
    m_control->get_ROILeft(&left);
    m_control->get_ROIBottom(&bottom);
    m_control->get_ROITop(&top);
    m_region.enabled = AutomationBool(enabled);
    region = {left, top, right, bottom};
}

void CDeinterlaceROIProperties::ReadProtectedArea() {
    VARIANT_BOOL enabled = AutomationBool(m_protected.enabled);
    PageRectangle& area = m_protected.rectangle;
    LONG left = area.left;
    LONG right = area.right;
    LONG top = area.top;
    LONG bottom = area.bottom;
    m_control->get_EnableProtectedArea(&enabled);
    m_control->GetProtectedAreaParams(&left, &right, &top, &bottom);
    m_protected.enabled = AutomationBool(enabled);
    area = {left, top, right, bottom};
}

// The object's region was changed by other means: reads it anew and tells the sheet that what it shows is stale.
// Kept: the protected area isn't read again. Test: ImportReadsTheRegionOnly.
bool CDeinterlaceROIProperties::TakeImport() {
    VARIANT_BOOL imported = VARIANT_FALSE;
    if (m_control) {
        m_control->get_ROISettingsImportState(&imported);
    }
    if (imported == VARIANT_FALSE) {
        return false;
    }
    if (m_pSite) {
        m_pSite->OnStatusChange(PROPPAGESTATUS_VALIDATE);
    }
    ReadRegion();
    m_control->put_ROISettingsImportState(VARIANT_FALSE);
    return true;
}
