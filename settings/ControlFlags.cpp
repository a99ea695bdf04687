// The flags: booleans that are stored as 1 or 0, and the two import states.
#include "settings/DeinterlaceControl.h"

#include "com/AutomationBool.h"

#include "NMFVDeinterlaceKeys.h"

#define NMFV_FLAG(Name, Key, Form)                                                                                     \
    STDMETHODIMP CDeinterlaceControl::get_##Name(VARIANT_BOOL* value) {                                                \
        return GetFlag(NMFV_DEINTERLACE_##Key, FlagForm::Form, value);                                                 \
    }                                                                                                                  \
    STDMETHODIMP CDeinterlaceControl::put_##Name(VARIANT_BOOL value) {                                                 \
        return PutFlag(NMFV_DEINTERLACE_##Key, value);                                                                 \
    }

// clang-format off
NMFV_FLAG(Enabled, ENABLED, Normalised)
NMFV_FLAG(Even, EVEN, Normalised)
NMFV_FLAG(Resize, RESIZE, Normalised)
NMFV_FLAG(StartWithEvenFrame, START_WITH_EVEN_FRAME, Normalised)
NMFV_FLAG(MergeFields, MERGE_FIELDS, Normalised)
NMFV_FLAG(EnableROI, ENABLE_ROI, AsStored)
NMFV_FLAG(EnableGlobalPattern, ENABLE_GLOBAL_PATTERN, AsStored)
NMFV_FLAG(EnableProtectedArea, ENABLE_PROTECTED_AREA, AsStored)
NMFV_FLAG(AutoDeinterlace, AUTO_DEINTERLACE, AsStored)
// clang-format on

namespace {

HRESULT GetImportState(VARIANT_BOOL state, VARIANT_BOOL* value) {
    if (!value) {
        return E_POINTER;
    }
    *value = state;
    return S_OK;
}

HRESULT PutImportState(VARIANT_BOOL value, VARIANT_BOOL& state) {
    state = AutomationBool(value != 0);
    return S_OK;
}

} // namespace

STDMETHODIMP CDeinterlaceControl::get_DeinterlaceSettingsImportState(VARIANT_BOOL* pNew) {
    return GetImportState(m_bDeinterlaceSettingsImported, pNew);
}

STDMETHODIMP CDeinterlaceControl::put_DeinterlaceSettingsImportState(VARIANT_BOOL newVal) {
    return PutImportState(newVal, m_bDeinterlaceSettingsImported);
}

STDMETHODIMP CDeinterlaceControl::get_ROISettingsImportState(VARIANT_BOOL* pNew) {
    return GetImportState(m_bROISettingsImported, pNew);
}

STDMETHODIMP CDeinterlaceControl::put_ROISettingsImportState(VARIANT_BOOL newVal) {
    return PutImportState(newVal, m_bROISettingsImported);
}
