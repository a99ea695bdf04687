// Streams and media types of the transform. The output type is always the input type itself.
#include "mft/MFTDeinterlace.h"

#include "diag/Trace.h"
#include "mft/InputSubtypes.h"
#include "mft/LegacyFormat.h"
#include "mft/MediaTypes.h"

#include <mutex>

#include <mfapi.h>
#include <mferror.h>

namespace {

constexpr DWORD kAcceptedFormats = kFormatRgb8Gray | kFormatRgb24 | kFormatYuy2 | kFormatUyvy | kFormatIyu2;

// Rows padded to whole 32-bit words, in 32-bit arithmetic that wraps.
DWORD ImageBytes(DWORD bits, INT32 width, INT32 height) {
    const DWORD rowBits = (bits * static_cast<DWORD>(width) + 31) & ~31u;
    return static_cast<DWORD>(static_cast<INT32>(rowBits) / 8) * static_cast<DWORD>(height);
}

} // namespace

STDMETHODIMP CMFTDeinterlace::GetStreamLimits(DWORD* inputMinimum, DWORD* inputMaximum, DWORD* outputMinimum,
                                              DWORD* outputMaximum) {
    if (!inputMinimum || !inputMaximum || !outputMinimum || !outputMaximum) {
        return E_POINTER;
    }
    *inputMinimum = *inputMaximum = *outputMinimum = *outputMaximum = 1;
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::GetStreamCount(DWORD* inputStreams, DWORD* outputStreams) {
    if (!inputStreams || !outputStreams) {
        return E_POINTER;
    }
    *inputStreams = *outputStreams = 1;
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::GetStreamIDs(DWORD, DWORD*, DWORD, DWORD*) {
    return E_NOTIMPL;
}
STDMETHODIMP CMFTDeinterlace::GetInputStreamAttributes(DWORD, IMFAttributes**) {
    return E_NOTIMPL;
}
STDMETHODIMP CMFTDeinterlace::GetOutputStreamAttributes(DWORD, IMFAttributes**) {
    return E_NOTIMPL;
}
STDMETHODIMP CMFTDeinterlace::DeleteInputStream(DWORD) {
    return E_NOTIMPL;
}
STDMETHODIMP CMFTDeinterlace::AddInputStreams(DWORD, DWORD*) {
    return E_NOTIMPL;
}

STDMETHODIMP CMFTDeinterlace::GetInputStreamInfo(DWORD stream, MFT_INPUT_STREAM_INFO* info) {
    if (!info) {
        return E_POINTER;
    }
    const std::lock_guard hold(m_lock);
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    *info = {};
    info->dwFlags = MFT_INPUT_STREAM_WHOLE_SAMPLES | MFT_INPUT_STREAM_SINGLE_SAMPLE_PER_BUFFER;
    info->cbSize = m_pInputType ? m_format.SampleBytes : 0;
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::GetOutputStreamInfo(DWORD stream, MFT_OUTPUT_STREAM_INFO* info) {
    if (!info) {
        return E_POINTER;
    }
    const std::lock_guard hold(m_lock);
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    info->dwFlags = MFT_OUTPUT_STREAM_WHOLE_SAMPLES | MFT_OUTPUT_STREAM_SINGLE_SAMPLE_PER_BUFFER |
                    MFT_OUTPUT_STREAM_FIXED_SAMPLE_SIZE;
    info->cbSize = 0;
    info->cbAlignment = 0;
    if (!m_pInputType) {
        return S_OK;
    }
    CLegacyFormat legacy;
    if (const HRESULT hr = legacy.InitFrom(m_pInputType.Get()); FAILED(hr)) {
        return hr;
    }
    info->cbSize = ImageBytes(legacy.BitCount(), m_lWidth, m_lHeight);
    return S_OK;
}

// Kept: a null out-pointer gives E_INVALIDARG in the two available-type methods. Test: NullPointers.
STDMETHODIMP CMFTDeinterlace::GetInputAvailableType(DWORD stream, DWORD index, IMFMediaType** type) {
    Trace("GetInputAvailableType (stream = %d, type index = %d)\n", stream, index);
    const std::lock_guard hold(m_lock);
    if (!type) {
        return E_INVALIDARG;
    }
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    if (index >= InputSubtypes().size()) {
        return MF_E_NO_MORE_TYPES;
    }
    MediaFoundationSamples::VideoType offered;
    if (const HRESULT hr = offered.CreateEmptyType(); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = offered.Get()->SetGUID(MF_MT_SUBTYPE, *InputSubtypes()[index].subtype); FAILED(hr)) {
        return hr;
    }
    *type = offered.Detach();
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::GetOutputAvailableType(DWORD stream, DWORD index, IMFMediaType** type) {
    Trace("GetOutputAvailableType (stream = %d, type index = %d)\n", stream, index);
    if (!type) {
        return E_INVALIDARG;
    }
    const std::lock_guard hold(m_lock);
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    if (!m_pInputType) {
        return MF_E_TRANSFORM_TYPE_NOT_SET;
    }
    if (index != 0) {
        return MF_E_NO_MORE_TYPES;
    }
    CComRef<IMFMediaType> offered;
    if (const HRESULT hr = CloneMediaType(m_pInputType.Get(), offered.Put()); FAILED(hr)) {
        return hr;
    }
    CLegacyFormat legacy;
    if (SUCCEEDED(legacy.InitFrom(m_pInputType.Get()))) {
        // The type is good without them.
        (void)offered->SetUINT32(MF_MT_FIXED_SIZE_SAMPLES, TRUE);
        (void)offered->SetUINT32(MF_MT_SAMPLE_SIZE, m_format.SampleBytes);
    }
    *type = offered.Detach();
    return S_OK;
}

HRESULT CMFTDeinterlace::CheckTypeChange(DWORD stream) const {
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    return m_pSample ? MF_E_TRANSFORM_CANNOT_CHANGE_MEDIATYPE_WHILE_PROCESSING : S_OK;
}

STDMETHODIMP CMFTDeinterlace::SetInputType(DWORD stream, IMFMediaType* type, DWORD flags) {
    Trace("CMFTDeinterlace::SetInputType\n");
    const std::lock_guard hold(m_lock);
    if (flags & ~DWORD{MFT_SET_TYPE_TEST_ONLY}) {
        return E_INVALIDARG;
    }
    if (!type) { // clears the type, whatever the stream
        m_pInputType.Reset();
        return S_OK;
    }
    if (const HRESULT hr = CheckTypeChange(stream); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = CheckInputMediaType(type); FAILED(hr)) {
        return hr;
    }
    if (flags & MFT_SET_TYPE_TEST_ONLY) {
        return S_OK;
    }
    m_pInputType.Share(type);
    (void)ReadStreamFormat(type, *this, m_format); // the type stays set with what could be read
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::SetOutputType(DWORD stream, IMFMediaType* type, DWORD flags) {
    Trace("CMFTDeinterlace::SetOutputType\n");
    const std::lock_guard hold(m_lock);
    if (flags & ~DWORD{MFT_SET_TYPE_TEST_ONLY}) {
        return E_INVALIDARG;
    }
    if (!type) {
        m_pOutputType.Reset();
        return S_OK;
    }
    if (const HRESULT hr = CheckTypeChange(stream); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = CheckOutputMediaType(type); FAILED(hr)) {
        return hr;
    }
    if (!(flags & MFT_SET_TYPE_TEST_ONLY)) {
        m_pOutputType.Share(type);
    }
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::GetInputCurrentType(DWORD stream, IMFMediaType** type) {
    const std::lock_guard hold(m_lock);
    return CopyCurrentType(stream, m_pInputType.Get(), type);
}

STDMETHODIMP CMFTDeinterlace::GetOutputCurrentType(DWORD stream, IMFMediaType** type) {
    const std::lock_guard hold(m_lock);
    return CopyCurrentType(stream, m_pOutputType.Get(), type);
}

HRESULT CMFTDeinterlace::CopyCurrentType(DWORD stream, IMFMediaType* current, IMFMediaType** type) {
    if (!type) {
        return E_POINTER;
    }
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    return current ? CloneMediaType(current, type) : MF_E_TRANSFORM_TYPE_NOT_SET;
}

HRESULT CMFTDeinterlace::CheckInputMediaType(IMFMediaType* type) const {
    GUID major{};
    if (const HRESULT hr = type->GetGUID(MF_MT_MAJOR_TYPE, &major); FAILED(hr)) {
        return hr;
    }
    if (major != MFMediaType_Video) {
        return MF_E_INVALIDMEDIATYPE;
    }
    GUID subtype{};
    if (const HRESULT hr = type->GetGUID(MF_MT_SUBTYPE, &subtype); FAILED(hr)) {
        return hr;
    }
    if (!FindInputSubtype(subtype)) {
        return MF_E_INVALIDMEDIATYPE;
    }
    CLegacyFormat legacy;
    if (const HRESULT hr = legacy.InitFrom(type); FAILED(hr)) {
        return hr;
    }
    const HRESULT hr = CheckVideoFormat(legacy.Type(), kAcceptedFormats, FormatBlocks::Both);
    return FAILED(hr) ? MF_E_INVALIDMEDIATYPE : S_OK;
}

HRESULT CMFTDeinterlace::CheckOutputMediaType(IMFMediaType* type) const {
    if (!m_pInputType) {
        return CheckInputMediaType(type);
    }
    DWORD equal = 0;
    return type->IsEqual(m_pInputType.Get(), &equal) == S_OK ? S_OK : MF_E_INVALIDMEDIATYPE;
}
