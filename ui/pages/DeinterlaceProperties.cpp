// Connecting, showing and applying.
#include "ui/pages/DeinterlaceProperties.h"

#include "ui/help/Help.h"
#include "ui/help/HelpHook.h"
#include "ui/help/Shell.h"
#include "ui/resources/ResourceIds.h"
#include "ui/rules/HelpTopic.h"

CDeinterlaceProperties::CDeinterlaceProperties()
    : CBasePropertyPage(IDS_TITLE_SETTINGS, IDD_SETTINGS) {}

STDMETHODIMP CDeinterlaceProperties::Show(UINT command) {
    if (!m_hDialog) {
        return S_OK;
    }
    (void)CBasePropertyPage::Show(command); // refuses what the dialog can't do
    if (command != SW_HIDE && command != SW_MINIMIZE) {
        (void)ActivatePage();
    }
    return S_OK;
}

STDMETHODIMP CDeinterlaceProperties::GetPageInfo(PROPPAGEINFO* info) {
    const HRESULT hr = CBasePropertyPage::GetPageInfo(info);
    if (SUCCEEDED(hr)) {
        SetPageHelpInfo(info, m_displayName);
    }
    return hr;
}

STDMETHODIMP CDeinterlaceProperties::Help(LPCOLESTR) {
    (void)ShowHelpTopic(m_displayName, kUserInterfaceTopic);
    return S_OK;
}

HRESULT CDeinterlaceProperties::ConnectObject(IUnknown* object) {
    if (FAILED(object->QueryInterface(IID_INMFVDeinterlace, m_control.PutVoid()))) {
        return E_NOINTERFACE;
    }
    if (const HRESULT hr = ReadSettings(m_control.Get(), &m_settings); FAILED(hr)) {
        m_control.Reset(); // half a list must not replace the object's
        return hr;
    }
    m_applied = true;
    m_ready = false;
    return S_OK;
}

HRESULT CDeinterlaceProperties::DisconnectObject() {
    if (!m_control) {
        return E_UNEXPECTED;
    }
    m_control.Reset();
    m_bDirty = FALSE;
    return S_OK;
}

HRESULT CDeinterlaceProperties::ActivatePage() {
    m_ready = false;
    bool taken = false;
    const HRESULT hr = TakeImport(&taken);
    if (!taken && !m_applied && m_pSite) {
        m_pSite->OnStatusChange(PROPPAGESTATUS_DIRTY);
    }
    FillControls();
    (void)InstallHelpHook(m_hDialog, m_displayName, kUserInterfaceTopic); // the page works without help
    m_ready = true;
    return hr;
}

HRESULT CDeinterlaceProperties::DeactivatePage() {
    m_ready = false;
    m_selected = m_list.Selection();
    m_list.Empty();
    m_list.Attach(nullptr);
    m_timeFormat = nullptr;
    m_hover.Forget();
    RemoveHelpHook(m_hDialog);
    return S_OK;
}

// Kept: the settings are not saved here, as they are when the ROI page applies. Test: ApplyOrder.
HRESULT CDeinterlaceProperties::ApplyChanges() {
    if (!m_control) {
        return S_FALSE;
    }
    if (!ParseSensitivity(m_settings.sensitivityText, &m_settings.sensitivity)) {
        return RefuseSensitivity();
    }
    FormatSensitivity(m_settings.sensitivity, m_settings.sensitivityText);
    FillSensitivity();
    bool taken = false;
    if (const HRESULT hr = TakeImport(&taken); FAILED(hr)) {
        return hr;
    }
    if (taken && m_hDialog) {
        FillControls();
    }
    WriteSettings(m_control.Get(), m_settings);
    m_applied = true;
    return S_OK;
}

// The object's settings were changed by other means: reads them anew and tells the sheet that what it shows is stale.
HRESULT CDeinterlaceProperties::TakeImport(bool* taken) {
    VARIANT_BOOL imported = VARIANT_FALSE;
    if (m_control) {
        m_control->get_DeinterlaceSettingsImportState(&imported);
    }
    *taken = imported != VARIANT_FALSE;
    if (!*taken) {
        return S_OK;
    }
    if (m_pSite) {
        m_pSite->OnStatusChange(PROPPAGESTATUS_VALIDATE);
    }
    const HRESULT hr = ReadSettings(m_control.Get(), &m_settings);
    m_control->put_DeinterlaceSettingsImportState(VARIANT_FALSE);
    return hr;
}

HRESULT CDeinterlaceProperties::RefuseSensitivity() {
    g_Shell.messageBox(m_hDialog, "The value you have entered is invalid. Please enter a value between 0.001 and 8.0",
                       m_displayName, MB_OK | MB_ICONWARNING);
    if (IsWindowVisible(m_hDialog)) {
        SendDlgItemMessageA(m_hDialog, IDC_SENSITIVITY, EM_SETSEL, 0, -1);
        SetFocus(GetDlgItem(m_hDialog, IDC_SENSITIVITY));
    }
    MarkDirty();
    return E_FAIL;
}
