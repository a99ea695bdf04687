#include "ui/pages/DeinterlaceProperties.h"

#include "ui/help/Shell.h"
#include "ui/pages/DialogControls.h"
#include "ui/pages/ScopedFlag.h"
#include "ui/pages/SettingsTransfer.h"
#include "ui/resources/PublishedNames.h"
#include "ui/resources/ResourceIds.h"

namespace {

struct BoxRow {
    int control;
    bool PageSettings::*field;
};

constexpr BoxRow kBoxes[] = {
    {IDC_ENABLE_DEINTERLACE, &PageSettings::enabled},
    {IDC_START_WITH_EVEN_LINES, &PageSettings::evenLines},
    {IDC_MERGE_FIELDS, &PageSettings::mergeFields},
    {IDC_START_WITH_EVEN_FRAME, &PageSettings::startWithEvenFrame},
    {IDC_GLOBAL_PATTERN, &PageSettings::globalPatternEnabled},
    {IDC_AUTO_DEINTERLACE, &PageSettings::automatic},
};

} // namespace

CDeinterlaceProperties::CDeinterlaceProperties()
    : CTransformPage(IDS_TITLE_SETTINGS, IDD_SETTINGS,
                     {&INMFVDeinterlace::get_DeinterlaceSettingsImportState,
                      &INMFVDeinterlace::put_DeinterlaceSettingsImportState})
    , m_segments(&m_settings, &m_updating) {}

STDMETHODIMP CDeinterlaceProperties::Show(UINT command) {
    if (!m_hDialog) {
        return S_OK;
    }
    (void)CBasePropertyPage::Show(command); // refuses what the dialog cannot do
    if (command != SW_HIDE && command != SW_MINIMIZE) {
        (void)ActivatePage();
    }
    return S_OK;
}

HRESULT CDeinterlaceProperties::Read(bool) {
    return ReadSettings(m_control.Get(), &m_settings);
}

// Kept: the settings are not saved here, as they are when the ROI page applies. Test: ApplyOrder.
HRESULT CDeinterlaceProperties::Write() {
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
        Fill();
    }
    WriteSettings(m_control.Get(), m_settings);
    return S_OK;
}

HRESULT CDeinterlaceProperties::RefuseSensitivity() {
    g_Shell.messageBox(m_hDialog, "The value you have entered is invalid. Please enter a value between 0.001 and 8.0",
                       NMFV_DISPLAY_NAME, MB_OK | MB_ICONWARNING);
    if (IsWindowVisible(m_hDialog)) {
        SendDlgItemMessageA(m_hDialog, IDC_SENSITIVITY, EM_SETSEL, 0, -1);
        SetFocus(GetDlgItem(m_hDialog, IDC_SENSITIVITY));
    }
    MarkDirty();
    return E_FAIL;
}

void CDeinterlaceProperties::AttachControls(HWND dialog) {
    SendDlgItemMessageA(dialog, IDC_SENSITIVITY, EM_LIMITTEXT, kSensitivityTextLength, 0);
    m_segments.Attach(dialog);
}

void CDeinterlaceProperties::DetachControls() {
    m_segments.Detach();
}

void CDeinterlaceProperties::Fill() {
    const ScopedFlag updating(m_updating);
    for (const BoxRow& row : kBoxes) {
        Check(m_hDialog, row.control, m_settings.*row.field);
    }
    FillSensitivity();
    FillGlobalPattern();
    m_segments.Fill();
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

// Kept: the edits of the global pattern's counts are missing. What is typed there is never read back, and apply writes
// the counts that the object had. Test: GlobalCountsAreNotReadBack.
CTransformPage::Outcome CDeinterlaceProperties::OnCommand(int control, int code) {
    if (code == BN_CLICKED && OnBox(control)) {
        return Outcome::kChanged;
    }
    if (code == EN_CHANGE && control == IDC_SENSITIVITY) {
        OnSensitivity();
        return Outcome::kChanged;
    }
    if (code == BN_CLICKED && (control == IDC_GLOBAL_PREAMBLE_DEINTERLACE || control == IDC_GLOBAL_PREAMBLE_IGNORE)) {
        OnGlobalPreamble(control);
        return Outcome::kChanged;
    }
    bool changed = false;
    if (!m_segments.OnCommand(control, code, &changed)) {
        return Outcome::kForeign;
    }
    return changed ? Outcome::kChanged : Outcome::kTaken;
}

bool CDeinterlaceProperties::OnBox(int control) {
    for (const BoxRow& row : kBoxes) {
        if (row.control == control) {
            m_settings.*row.field = IsChecked(m_hDialog, control);
            EnableByRules(m_hDialog, m_settings, m_segments.Selected());
            return true;
        }
    }
    return false;
}

void CDeinterlaceProperties::OnSensitivity() {
    GetDlgItemTextA(m_hDialog, IDC_SENSITIVITY, m_settings.sensitivityText, sizeof(m_settings.sensitivityText));
}

void CDeinterlaceProperties::OnGlobalPreamble(int control) {
    m_settings.globalPattern.deintPreamble = control == IDC_GLOBAL_PREAMBLE_DEINTERLACE;
    if (!m_segments.Selected()) {
        m_segments.FillSelection(); // a segment that is added now would have the new flag
    }
}
