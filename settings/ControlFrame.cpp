// The frame's size, depth and rate, and the detector's sensitivity.
#include "settings/DeinterlaceControl.h"

#include "settings/SettingsStore.h"

#include "NMFVDeinterlaceKeys.h"
#include "NMFVDeinterlaceLimits.h"

namespace {

template <typename Value>
HRESULT Report(Value value, Value* out) {
    if (!out) {
        return E_POINTER;
    }
    *out = value;
    return S_OK;
}

} // namespace

// The transform changes neither size nor format: what goes out is what comes in.
// Kept: a null pointer gives E_POINTER, as in every other getter. Test: FrameNumbersComeFromTheInputType.
STDMETHODIMP CDeinterlaceControl::get_InWidth(LONG* pVal) {
    return Report<LONG>(m_lWidth, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_InHeight(LONG* pVal) {
    return Report<LONG>(m_lHeight, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_OutWidth(LONG* pVal) {
    return Report<LONG>(m_lWidth, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_OutHeight(LONG* pVal) {
    return Report<LONG>(m_lHeight, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_InBits(LONG* pVal) {
    return Report<LONG>(m_lBitCount, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_OutBits(LONG* pVal) {
    return Report<LONG>(m_lBitCount, pVal);
}

STDMETHODIMP CDeinterlaceControl::get_FrameRate(double* pFrameRate) {
    return Report(m_dFrameRate, pFrameRate);
}

STDMETHODIMP CDeinterlaceControl::put_FrameRate(double newVal) {
    if (!(newVal > 0.0)) {
        return E_INVALIDARG;
    }
    m_dFrameRate = newVal;
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::get_AutoDeinterlaceSensitivity(double* pVal) {
    return Report(ReadDoubleSetting(Store(), NMFV_DEINTERLACE_AUTO_SENSITIVITY), pVal);
}

STDMETHODIMP CDeinterlaceControl::put_AutoDeinterlaceSensitivity(double newVal) {
    if (!(newVal >= kLowestSensitivity && newVal <= kHighestSensitivity)) {
        return E_INVALIDARG;
    }
    if (Store() && ReadDoubleSetting(Store(), NMFV_DEINTERLACE_AUTO_SENSITIVITY) != newVal) {
        (void)Store()->SetDouble(NMFV_DEINTERLACE_AUTO_SENSITIVITY, newVal); // setters don't report the store
    }
    return S_OK;
}
