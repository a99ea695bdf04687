// Media types that the transform makes and hands out.
#pragma once

#include "com/ComRef.h"

#include <mfidl.h>

namespace MediaFoundationSamples {

// Holds one media type.
class MediaType {
public:
    MediaType() = default;
    virtual ~MediaType() = default;

    // Releases the held type and takes a new, empty one.
    virtual HRESULT CreateEmptyType();

    IMFMediaType* Get() const { return m_type.Get(); }
    IMFMediaType* Detach() { return m_type.Detach(); }

private:
    CComRef<IMFMediaType> m_type;
};

// A media type whose major type is video.
class VideoType : public MediaType {
public:
    HRESULT CreateEmptyType() override;
};

} // namespace MediaFoundationSamples

// A new media type with a copy of all attributes of `source`, with one reference. E_POINTER for a null pointer.
HRESULT CloneMediaType(IMFMediaType* source, IMFMediaType** copy);
