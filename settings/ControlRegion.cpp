// The region of interest and the protected area.
#include "settings/DeinterlaceControl.h"

#include "settings/rules/RegionClamp.h"

#include "NMFVDeinterlaceKeys.h"

STDMETHODIMP CDeinterlaceControl::get_ROILeft(LONG* pVal) {
    return GetLong(NMFV_DEINTERLACE_ROI_LEFT, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_ROITop(LONG* pVal) {
    return GetLong(NMFV_DEINTERLACE_ROI_TOP, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_ROIRight(LONG* pVal) {
    return GetLong(NMFV_DEINTERLACE_ROI_RIGHT, pVal);
}
STDMETHODIMP CDeinterlaceControl::get_ROIBottom(LONG* pVal) {
    return GetLong(NMFV_DEINTERLACE_ROI_BOTTOM, pVal);
}

STDMETHODIMP CDeinterlaceControl::put_ROILeft(LONG newVal) {
    return Write(NMFV_DEINTERLACE_ROI_LEFT, ClampRoiLeft(newVal, Read(NMFV_DEINTERLACE_ROI_RIGHT)));
}

STDMETHODIMP CDeinterlaceControl::put_ROITop(LONG newVal) {
    return Write(NMFV_DEINTERLACE_ROI_TOP,
                 ClampRoiTop(newVal, Read(NMFV_DEINTERLACE_ROI_TOP), Read(NMFV_DEINTERLACE_ROI_BOTTOM)));
}

STDMETHODIMP CDeinterlaceControl::put_ROIRight(LONG newVal) {
    return Write(NMFV_DEINTERLACE_ROI_RIGHT, ClampRoiRight(newVal, Read(NMFV_DEINTERLACE_ROI_LEFT), m_lWidth));
}

STDMETHODIMP CDeinterlaceControl::put_ROIBottom(LONG newVal) {
    return Write(NMFV_DEINTERLACE_ROI_BOTTOM,
                 ClampRoiBottom(newVal, Read(NMFV_DEINTERLACE_ROI_TOP), Read(NMFV_DEINTERLACE_ROI_BOTTOM), m_lHeight));
}

STDMETHODIMP CDeinterlaceControl::SetProtectedAreaParams(LONG Left, LONG Right, LONG Top, LONG Bottom) {
    const ProtectedEdges across = ClampProtectedEdges(KeptOr(Left, NMFV_DEINTERLACE_PROTECTED_LEFT),
                                                      KeptOr(Right, NMFV_DEINTERLACE_PROTECTED_RIGHT), m_lWidth);
    const ProtectedEdges down = ClampProtectedEdges(KeptOr(Top, NMFV_DEINTERLACE_PROTECTED_TOP),
                                                    KeptOr(Bottom, NMFV_DEINTERLACE_PROTECTED_BOTTOM), m_lHeight);
    Write(NMFV_DEINTERLACE_PROTECTED_LEFT, across.nearEdge);
    Write(NMFV_DEINTERLACE_PROTECTED_RIGHT, across.farEdge);
    Write(NMFV_DEINTERLACE_PROTECTED_TOP, down.nearEdge);
    return Write(NMFV_DEINTERLACE_PROTECTED_BOTTOM, down.farEdge);
}

// Kept: Right is read from the left-edge key; the stored right edge is never reported. No pointer is required: with all
// of them null this succeeds. Test: ProtectedAreaRightIsLeft.
STDMETHODIMP CDeinterlaceControl::GetProtectedAreaParams(LONG* Left, LONG* Right, LONG* Top, LONG* Bottom) {
    (void)GetLong(NMFV_DEINTERLACE_PROTECTED_LEFT, Left);
    (void)GetLong(NMFV_DEINTERLACE_PROTECTED_LEFT, Right);
    (void)GetLong(NMFV_DEINTERLACE_PROTECTED_TOP, Top);
    (void)GetLong(NMFV_DEINTERLACE_PROTECTED_BOTTOM, Bottom);
    return S_OK;
}
