// A media type in its legacy form, whose format block holds the bitmap header.
#pragma once

#include "mft/VideoFormatCheck.h"

#include <mfidl.h>

class CLegacyFormat {
public:
    CLegacyFormat() = default;
    CLegacyFormat(const CLegacyFormat&) = delete;
    CLegacyFormat& operator=(const CLegacyFormat&) = delete;
    ~CLegacyFormat();

    // Converts; called once. The platform chooses the format block. Its failure is passed on, and a type without a
    // bitmap header gives MF_E_INVALIDMEDIATYPE.
    HRESULT InitFrom(IMFMediaType* type);

    const AM_MEDIA_TYPE& Type() const { return m_type; }

    // Valid after InitFrom succeeded.
    BitmapBlock Bitmap() const { return FindBitmapBlock(m_type); }
    DWORD BitCount() const { return Bitmap().header->biBitCount; }

private:
    AM_MEDIA_TYPE m_type{};
};
