// The control interface of the transform: every setting, by vtable and by automation, and the list of property pages.
//
// No member takes a lock: single settings are read and written atomically by the store, sequences of them are not.
#pragma once

#include "com/DispatchImpl.h"
#include "settings/rules/SegmentList.h"
#include "settings/StreamFormat.h"

#include "NMFVDeinterlace.h"

#include <mfobjects.h>
#include <ocidl.h>

// The type information of INMFVDeinterlace.
CComTypeInfoHolder& DeinterlaceTypeInfo();

class CDeinterlaceControl : public IDispatchImpl<INMFVDeinterlace, &DeinterlaceTypeInfo>,
                            public ISpecifyPropertyPages,
                            protected StreamFormat {
public:
    // INMFVDeinterlace, but for ResetToDefaultsEx, LoadAttributes and SaveAttributes.
    STDMETHODIMP get_Enabled(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_Enabled(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_Even(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_Even(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_Resize(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_Resize(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_InWidth(LONG* pVal) override;
    STDMETHODIMP get_InHeight(LONG* pVal) override;
    STDMETHODIMP get_OutWidth(LONG* pVal) override;
    STDMETHODIMP get_OutHeight(LONG* pVal) override;
    STDMETHODIMP get_InBits(LONG* pVal) override;
    STDMETHODIMP get_OutBits(LONG* pVal) override;
    STDMETHODIMP get_StartWithEvenFrame(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_StartWithEvenFrame(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_EnableROI(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_EnableROI(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_ROILeft(LONG* pVal) override;
    STDMETHODIMP put_ROILeft(LONG newVal) override;
    STDMETHODIMP get_ROITop(LONG* pVal) override;
    STDMETHODIMP put_ROITop(LONG newVal) override;
    STDMETHODIMP get_ROIRight(LONG* pVal) override;
    STDMETHODIMP put_ROIRight(LONG newVal) override;
    STDMETHODIMP get_ROIBottom(LONG* pVal) override;
    STDMETHODIMP put_ROIBottom(LONG newVal) override;
    STDMETHODIMP get_EnableGlobalPattern(VARIANT_BOOL* pDintPre) override;
    STDMETHODIMP put_EnableGlobalPattern(VARIANT_BOOL newVal) override;
    STDMETHODIMP SetGlobalPattern(LONG PreambleFrames, LONG NoDeinterlaceFrames, LONG DeinterlaceFrames,
                                  VARIANT_BOOL DeintPreamble) override;
    STDMETHODIMP GetGlobalPattern(LONG* pPreambleFrames, LONG* pNoDeinterlaceFrames, LONG* pDeinterlaceFrames,
                                  VARIANT_BOOL* pDeintPreamble) override;
    STDMETHODIMP AddSegment(LONG Index) override;
    STDMETHODIMP RemoveSegment(LONG Index) override;
    STDMETHODIMP SetSegmentData(LONG Index, LONG SegmentData) override;
    STDMETHODIMP GetSegmentData(LONG Index, LONG* pSegmentData) override;
    STDMETHODIMP get_SegmentsCount(LONG* pCount) override;
    STDMETHODIMP get_SegmentsTimeFormat(SEGMENT_TIME_FORMAT* pVal) override;
    STDMETHODIMP put_SegmentsTimeFormat(SEGMENT_TIME_FORMAT newVal) override;
    STDMETHODIMP GetSegmentStartTime(LONG Index, LONG* pHours, LONG* pMinutes, LONG* pSeconds,
                                     LONG* pMilliSeconds) override;
    STDMETHODIMP SetSegmentStartTime(LONG Index, LONG Hours, LONG Minutes, LONG Seconds, LONG MilliSeconds) override;
    STDMETHODIMP GetSegmentStartFrame(LONG Index, hyper* pStartFrame) override;
    STDMETHODIMP SetSegmentStartFrame(LONG Index, hyper StartFrame) override;
    STDMETHODIMP GetSegmentOperationMode(LONG Index, SEGMENT_OPERATION_MODE* pOperationMode) override;
    STDMETHODIMP SetSegmentOperationMode(LONG Index, SEGMENT_OPERATION_MODE OperationMode) override;
    STDMETHODIMP GetSegmentPattern(LONG Index, LONG* pPreambleFrames, LONG* pIgnoreFrames, LONG* pDeinterlaceFrames,
                                   VARIANT_BOOL* pDeintPreamble) override;
    STDMETHODIMP SetSegmentPattern(LONG Index, LONG PreambleFrames, LONG IgnoreFrames, LONG DeinterlaceFrames,
                                   VARIANT_BOOL DeintPreamble) override;
    STDMETHODIMP get_FrameRate(double* pFrameRate) override;
    STDMETHODIMP put_FrameRate(double newVal) override;
    STDMETHODIMP get_EnableProtectedArea(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_EnableProtectedArea(VARIANT_BOOL newVal) override;
    STDMETHODIMP SetProtectedAreaParams(LONG Left, LONG Right, LONG Top, LONG Bottom) override;
    STDMETHODIMP GetProtectedAreaParams(LONG* Left, LONG* Right, LONG* Top, LONG* Bottom) override;
    STDMETHODIMP get_DeinterlaceSettingsImportState(VARIANT_BOOL* pNew) override;
    STDMETHODIMP put_DeinterlaceSettingsImportState(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_ROISettingsImportState(VARIANT_BOOL* pNew) override;
    STDMETHODIMP put_ROISettingsImportState(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_AutoDeinterlace(VARIANT_BOOL* pNew) override;
    STDMETHODIMP put_AutoDeinterlace(VARIANT_BOOL newVal) override;
    STDMETHODIMP ResetToDefaults() override;
    STDMETHODIMP get_MergeFields(VARIANT_BOOL* pVal) override;
    STDMETHODIMP put_MergeFields(VARIANT_BOOL newVal) override;
    STDMETHODIMP get_AutoDeinterlaceSensitivity(double* pVal) override;
    STDMETHODIMP put_AutoDeinterlaceSensitivity(double newVal) override;

    // ISpecifyPropertyPages. The caller frees the array with CoTaskMemFree.
    STDMETHODIMP GetPages(CAUUID* pages) override;

protected:
    CDeinterlaceControl() = default;
    CDeinterlaceControl(const CDeinterlaceControl&) = delete;
    CDeinterlaceControl& operator=(const CDeinterlaceControl&) = delete;
    ~CDeinterlaceControl() = default; // never destroyed through an interface

    IMFAttributes* Store() const { return m_pStore.Get(); }

    CComRef<IMFAttributes> m_pStore; // empty until the first LoadAttributes
    SegmentList m_segments;

private:
    // Kept: some getters report a stored flag as an automation boolean, others as the 1 or 0 that the store holds.
    // Test: FlagsReportInTheirForm.
    enum class FlagForm { Normalised, AsStored };

    HRESULT GetFlag(REFGUID key, FlagForm form, VARIANT_BOOL* value) const;
    HRESULT PutFlag(REFGUID key, VARIANT_BOOL value);
    HRESULT GetLong(REFGUID key, LONG* value) const;
    UINT32 Read(REFGUID key) const;
    HRESULT Write(REFGUID key, LONG value);
    LONG KeptOr(LONG value, REFGUID key) const;

    VARIANT_BOOL m_bDeinterlaceSettingsImported = VARIANT_FALSE;
    VARIANT_BOOL m_bROISettingsImported = VARIANT_FALSE;
};
