#include "mft/MediaTypes.h"

#include <mfapi.h>

namespace MediaFoundationSamples {

HRESULT MediaType::CreateEmptyType() {
    return MFCreateMediaType(m_type.Put());
}

HRESULT VideoType::CreateEmptyType() {
    if (const HRESULT hr = MediaType::CreateEmptyType(); FAILED(hr)) {
        return hr;
    }
    return Get()->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video);
}

} // namespace MediaFoundationSamples

HRESULT CloneMediaType(IMFMediaType* source, IMFMediaType** copy) {
    if (!source || !copy) {
        return E_POINTER;
    }
    CComRef<IMFMediaType> type;
    if (const HRESULT hr = MFCreateMediaType(type.Put()); FAILED(hr)) {
        return hr;
    }
    if (const HRESULT hr = source->CopyAllItems(type.Get()); FAILED(hr)) {
        return hr;
    }
    *copy = type.Detach();
    return S_OK;
}
