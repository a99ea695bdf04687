// Media types, buffers and samples of the real platform.
#pragma once

#include "com/ComRef.h"

#include <cstring>
#include <vector>

#include <mfapi.h>
#include <mfidl.h>

// A complete video type; a rate of 0 leaves the frame rate out.
inline void MakeVideoType(REFGUID subtype, UINT32 width, UINT32 height, CComRef<IMFMediaType>& type, UINT32 rate = 25) {
    MFCreateMediaType(type.Put());
    type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video);
    type->SetGUID(MF_MT_SUBTYPE, subtype);
    type->SetUINT64(MF_MT_FRAME_SIZE, static_cast<UINT64>(width) << 32 | height);
    if (rate) {
        type->SetUINT64(MF_MT_FRAME_RATE, static_cast<UINT64>(rate) << 32 | 1);
    }
}

inline IMFMediaBuffer* MakeBuffer(const std::vector<BYTE>& bytes, CComRef<IMFMediaBuffer>& buffer) {
    MFCreateMemoryBuffer(static_cast<DWORD>(bytes.size()), buffer.Put());
    BYTE* data = nullptr;
    buffer->Lock(&data, nullptr, nullptr);
    std::memcpy(data, bytes.data(), bytes.size());
    buffer->Unlock();
    buffer->SetCurrentLength(static_cast<DWORD>(bytes.size()));
    return buffer.Get();
}

inline IMFSample* MakeSample(IMFMediaBuffer* buffer, CComRef<IMFSample>& sample) {
    MFCreateSample(sample.Put());
    if (buffer) {
        sample->AddBuffer(buffer);
    }
    return sample.Get();
}

inline void MakeSample(const std::vector<BYTE>& bytes, CComRef<IMFSample>& sample) {
    CComRef<IMFMediaBuffer> buffer;
    MakeBuffer(bytes, buffer);
    MakeSample(buffer.Get(), sample);
}

// The bytes that a sample's current length covers.
inline std::vector<BYTE> BytesOf(IMFSample* sample) {
    CComRef<IMFMediaBuffer> buffer;
    sample->ConvertToContiguousBuffer(buffer.Put());
    BYTE* data = nullptr;
    DWORD length = 0;
    buffer->Lock(&data, nullptr, &length);
    std::vector<BYTE> bytes(data, data + length);
    buffer->Unlock();
    return bytes;
}
