#include "mft/StreamFormatReader.h"

#include "engine/pixels/FrameShape.h"
#include "mft/LegacyFormat.h"

#include <cstring>

#include <mfapi.h>

namespace {

UINT32 HighHalf(UINT64 pair) {
    return static_cast<UINT32>(pair >> 32);
}
UINT32 LowHalf(UINT64 pair) {
    return static_cast<UINT32>(pair);
}

INT32 AbsoluteHeight(INT32 height) {
    return height < 0 ? static_cast<INT32>(0u - static_cast<UINT32>(height)) : height;
}

HRESULT ReadFrameSize(IMFMediaType* type, StreamFormat& stream) {
    UINT64 size = 0;
    if (const HRESULT hr = type->GetUINT64(MF_MT_FRAME_SIZE, &size); FAILED(hr)) {
        return hr;
    }
    stream.m_lWidth = static_cast<INT32>(HighHalf(size));
    stream.m_lHeight = static_cast<INT32>(LowHalf(size));
    return S_OK;
}

// Kept: the frame buffer's size takes the absolute height, the sample's size the signed one. Test: NegativeHeight.
HRESULT ReadBitmap(IMFMediaType* type, StreamFormat& stream, TransformFormat& transform) {
    CLegacyFormat legacy;
    if (const HRESULT hr = legacy.InitFrom(type); FAILED(hr)) {
        return hr;
    }
    stream.m_lBitCount = static_cast<INT32>(legacy.BitCount());
    stream.m_lStride = StrideBytes(stream.m_lBitCount, stream.m_lWidth);
    stream.m_lBufferSize = FrameBytes(stream.m_lStride, AbsoluteHeight(stream.m_lHeight));
    stream.m_bGrayPalette = HasGrayPalette(legacy.Bitmap());
    transform.SampleBytes = static_cast<UINT32>(FrameBytes(stream.m_lStride, stream.m_lHeight));
    return S_OK;
}

HRESULT ReadFrameTime(IMFMediaType* type, StreamFormat& stream) {
    UINT64 rate = 0;
    if (const HRESULT hr = type->GetUINT64(MF_MT_FRAME_RATE, &rate); FAILED(hr)) {
        return hr;
    }
    UINT64 time = 0;
    if (const HRESULT hr = MFFrameRateToAverageTimePerFrame(HighHalf(rate), LowHalf(rate), &time); FAILED(hr)) {
        return hr;
    }
    stream.m_rtAvgTimePerFrame = static_cast<INT64>(time);
    return S_OK;
}

HRESULT ReadSubtype(IMFMediaType* type, StreamFormat& stream, TransformFormat& transform) {
    GUID subtype{};
    if (const HRESULT hr = type->GetGUID(MF_MT_SUBTYPE, &subtype); FAILED(hr)) {
        return hr;
    }
    stream.m_bPacked422 = subtype == MFVideoFormat_YUY2 || subtype == MFVideoFormat_UYVY;
    stream.m_dFrameRate = stream.m_rtAvgTimePerFrame < 1 ? 30.0 : 1e7 / static_cast<double>(stream.m_rtAvgTimePerFrame);
    std::memcpy(&transform.SubtypeCode, &subtype, sizeof(transform.SubtypeCode));
    return S_OK;
}

} // namespace

HRESULT ReadStreamFormat(IMFMediaType* type, StreamFormat& stream, TransformFormat& transform) {
    if (const HRESULT hr = ReadFrameSize(type, stream); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = ReadBitmap(type, stream, transform); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = ReadFrameTime(type, stream); FAILED(hr)) {
        return hr;
    }
    return ReadSubtype(type, stream, transform);
}
