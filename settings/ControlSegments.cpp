// The global pattern and the segment list.
#include "settings/DeinterlaceControl.h"

#include "com/AutomationBool.h"

#include "NMFVDeinterlaceKeys.h"

namespace {

// For getters of several values, which need only one of their pointers.
template <typename Value, typename Out>
void StoreIfWanted(Value value, Out* out) {
    if (out) {
        *out = static_cast<Out>(value);
    }
}

} // namespace

STDMETHODIMP CDeinterlaceControl::SetGlobalPattern(LONG PreambleFrames, LONG NoDeinterlaceFrames,
                                                   LONG DeinterlaceFrames, VARIANT_BOOL DeintPreamble) {
    Write(NMFV_DEINTERLACE_PATTERN_PREAMBLE_FRAMES, PreambleFrames);
    Write(NMFV_DEINTERLACE_PATTERN_NO_DEINTERLACE_FRAMES, NoDeinterlaceFrames);
    Write(NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES, DeinterlaceFrames);
    return PutFlag(NMFV_DEINTERLACE_PATTERN_DEINT_PREAMBLE, DeintPreamble);
}

STDMETHODIMP CDeinterlaceControl::GetGlobalPattern(LONG* pPreambleFrames, LONG* pNoDeinterlaceFrames,
                                                   LONG* pDeinterlaceFrames, VARIANT_BOOL* pDeintPreamble) {
    if (!pPreambleFrames && !pNoDeinterlaceFrames && !pDeinterlaceFrames && !pDeintPreamble) {
        return E_POINTER;
    }
    StoreIfWanted(Read(NMFV_DEINTERLACE_PATTERN_PREAMBLE_FRAMES), pPreambleFrames);
    StoreIfWanted(Read(NMFV_DEINTERLACE_PATTERN_NO_DEINTERLACE_FRAMES), pNoDeinterlaceFrames);
    StoreIfWanted(Read(NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES), pDeinterlaceFrames);
    StoreIfWanted(Read(NMFV_DEINTERLACE_PATTERN_DEINT_PREAMBLE), pDeintPreamble);
    return S_OK;
}

// Kept: a new segment deinterlaces its preamble whatever the global pattern says. Test: NewSegmentTakesGlobalCounts.
STDMETHODIMP CDeinterlaceControl::AddSegment(LONG Index) {
    SegmentRecord record;
    record.operationMode = MODE_NO_DEINTERLACE;
    record.deintPreamble = VARIANT_TRUE;
    record.preambleFrames = Read(NMFV_DEINTERLACE_PATTERN_PREAMBLE_FRAMES);
    record.ignoreFrames = Read(NMFV_DEINTERLACE_PATTERN_NO_DEINTERLACE_FRAMES);
    record.deinterlaceFrames = Read(NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES);
    return m_segments.Add(Index, record) ? S_OK : S_FALSE;
}

STDMETHODIMP CDeinterlaceControl::RemoveSegment(LONG Index) {
    return m_segments.Remove(Index) ? S_OK : E_INVALIDARG;
}

STDMETHODIMP CDeinterlaceControl::SetSegmentData(LONG Index, LONG SegmentData) {
    SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    segment->segmentData = static_cast<UINT32>(SegmentData);
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::GetSegmentData(LONG Index, LONG* pSegmentData) {
    if (!pSegmentData) {
        return E_POINTER;
    }
    const SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    *pSegmentData = static_cast<LONG>(segment->segmentData);
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::get_SegmentsCount(LONG* pCount) {
    if (!pCount) {
        return E_POINTER;
    }
    *pCount = m_segments.Count();
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::get_SegmentsTimeFormat(SEGMENT_TIME_FORMAT* pVal) {
    if (!pVal) {
        return E_POINTER;
    }
    *pVal = static_cast<SEGMENT_TIME_FORMAT>(Read(NMFV_DEINTERLACE_SEGMENTS_TIME_FORMAT));
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::put_SegmentsTimeFormat(SEGMENT_TIME_FORMAT newVal) {
    if (static_cast<UINT32>(newVal) > SEGMENT_TIME_FORMAT_TIME) {
        return E_INVALIDARG;
    }
    return Write(NMFV_DEINTERLACE_SEGMENTS_TIME_FORMAT, newVal);
}

STDMETHODIMP CDeinterlaceControl::GetSegmentStartTime(LONG Index, LONG* pHours, LONG* pMinutes, LONG* pSeconds,
                                                      LONG* pMilliSeconds) {
    if (!pHours && !pMinutes && !pSeconds && !pMilliSeconds) {
        return E_POINTER;
    }
    const SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    StoreIfWanted(segment->startTime.hours, pHours);
    StoreIfWanted(segment->startTime.minutes, pMinutes);
    StoreIfWanted(segment->startTime.seconds, pSeconds);
    StoreIfWanted(segment->startTime.milliSeconds, pMilliSeconds);
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::SetSegmentStartTime(LONG Index, LONG Hours, LONG Minutes, LONG Seconds,
                                                      LONG MilliSeconds) {
    const SegmentTime time{static_cast<UINT32>(Hours), static_cast<UINT32>(Minutes), static_cast<UINT32>(Seconds),
                           static_cast<UINT32>(MilliSeconds)};
    if (!IsStartTime(time)) {
        return E_INVALIDARG;
    }
    SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    segment->startTime = time;
    segment->startTimeMs = MillisecondsOf(time);
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::GetSegmentStartFrame(LONG Index, hyper* pStartFrame) {
    if (!pStartFrame) {
        return E_POINTER;
    }
    const SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    *pStartFrame = segment->startFrame;
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::SetSegmentStartFrame(LONG Index, hyper StartFrame) {
    if (StartFrame < 0 || StartFrame > kLastStartFrame) {
        return E_INVALIDARG;
    }
    SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    segment->startFrame = StartFrame;
    segment->startTime = TimeOfFrame(StartFrame, m_dFrameRate);
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::GetSegmentOperationMode(LONG Index, SEGMENT_OPERATION_MODE* pOperationMode) {
    if (!pOperationMode) {
        return E_POINTER;
    }
    const SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    *pOperationMode = static_cast<SEGMENT_OPERATION_MODE>(segment->operationMode);
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::SetSegmentOperationMode(LONG Index, SEGMENT_OPERATION_MODE OperationMode) {
    SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    segment->operationMode = OperationMode;
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::GetSegmentPattern(LONG Index, LONG* pPreambleFrames, LONG* pIgnoreFrames,
                                                    LONG* pDeinterlaceFrames, VARIANT_BOOL* pDeintPreamble) {
    if (!pPreambleFrames && !pIgnoreFrames && !pDeinterlaceFrames && !pDeintPreamble) {
        return E_POINTER;
    }
    const SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    StoreIfWanted(segment->preambleFrames, pPreambleFrames);
    StoreIfWanted(segment->ignoreFrames, pIgnoreFrames);
    StoreIfWanted(segment->deinterlaceFrames, pDeinterlaceFrames);
    StoreIfWanted(segment->deintPreamble, pDeintPreamble);
    return S_OK;
}

STDMETHODIMP CDeinterlaceControl::SetSegmentPattern(LONG Index, LONG PreambleFrames, LONG IgnoreFrames,
                                                    LONG DeinterlaceFrames, VARIANT_BOOL DeintPreamble) {
    SegmentRecord* const segment = m_segments.Find(Index);
    if (!segment) {
        return E_INVALIDARG;
    }
    segment->preambleFrames = static_cast<UINT32>(PreambleFrames);
    segment->ignoreFrames = static_cast<UINT32>(IgnoreFrames);
    segment->deinterlaceFrames = static_cast<UINT32>(DeinterlaceFrames);
    segment->deintPreamble = AutomationBool(DeintPreamble != 0);
    return S_OK;
}
