#include "mft/LegacyFormat.h"

#include "mft/InputSubtypes.h"

#include <mfapi.h>
#include <mferror.h>
#include <objbase.h>

CLegacyFormat::~CLegacyFormat() {
    CoTaskMemFree(m_type.pbFormat);
    if (m_type.pUnk) {
        m_type.pUnk->Release();
    }
}

HRESULT CLegacyFormat::InitFrom(IMFMediaType* type) {
    if (const HRESULT hr = MFInitAMMediaTypeFromMFMediaType(type, GUID_NULL, &m_type); FAILED(hr)) {
        m_type = {};
        return hr;
    }
    const BitmapBlock bitmap = Bitmap();
    if (!bitmap.header) {
        return MF_E_INVALIDMEDIATYPE;
    }
    // A platform that doesn't know a listed format leaves its bit count 0 (Wine does for IYU2; Windows is documented to
    // fill it in): the table's bits stand in.
    const InputSubtype* known = FindInputSubtype(m_type.subtype);
    if (known && bitmap.header->biBitCount == 0) {
        const_cast<BITMAPINFOHEADER*>(bitmap.header)->biBitCount = known->bitsPerPixel;
    }
    return S_OK;
}
