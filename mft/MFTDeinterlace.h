// The transform: one object that is Media Foundation transform, settings holder and engine at once.
#pragma once

#include "com/BaseObject.h"
#include "com/ComObject.h"
#include "com/ComRef.h"
#include "com/CriticalSection.h"
#include "engine/DeinterlaceFilter.h"
#include "mft/StreamFormatReader.h"

#include <mftransform.h>

// One input stream and one output stream of the same type; each input frame gives one output frame. Callable from any
// thread: the type and streaming methods run whole under one lock, the control interface takes none.
class CMFTDeinterlace final : MediaFoundationSamples::BaseObject, public CRefCounted<IMFTransform, CDeinterlaceFilter> {
public:
    // Settings that cannot be loaded are no failure: the object then has its defaults.
    CMFTDeinterlace();

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override;

    // IMFTransform: streams and types
    STDMETHODIMP GetStreamLimits(DWORD* inputMinimum, DWORD* inputMaximum, DWORD* outputMinimum,
                                 DWORD* outputMaximum) override;
    STDMETHODIMP GetStreamCount(DWORD* inputStreams, DWORD* outputStreams) override;
    STDMETHODIMP GetStreamIDs(DWORD inputSize, DWORD* inputIds, DWORD outputSize, DWORD* outputIds) override;
    STDMETHODIMP GetInputStreamInfo(DWORD stream, MFT_INPUT_STREAM_INFO* info) override;
    STDMETHODIMP GetOutputStreamInfo(DWORD stream, MFT_OUTPUT_STREAM_INFO* info) override;
    STDMETHODIMP GetAttributes(IMFAttributes** attributes) override;
    STDMETHODIMP GetInputStreamAttributes(DWORD stream, IMFAttributes** attributes) override;
    STDMETHODIMP GetOutputStreamAttributes(DWORD stream, IMFAttributes** attributes) override;
    STDMETHODIMP DeleteInputStream(DWORD stream) override;
    STDMETHODIMP AddInputStreams(DWORD count, DWORD* ids) override;
    STDMETHODIMP GetInputAvailableType(DWORD stream, DWORD index, IMFMediaType** type) override;
    STDMETHODIMP GetOutputAvailableType(DWORD stream, DWORD index, IMFMediaType** type) override;
    STDMETHODIMP SetInputType(DWORD stream, IMFMediaType* type, DWORD flags) override;
    STDMETHODIMP SetOutputType(DWORD stream, IMFMediaType* type, DWORD flags) override;
    STDMETHODIMP GetInputCurrentType(DWORD stream, IMFMediaType** type) override;
    STDMETHODIMP GetOutputCurrentType(DWORD stream, IMFMediaType** type) override;

    // IMFTransform: streaming
    STDMETHODIMP GetInputStatus(DWORD stream, DWORD* flags) override;
    STDMETHODIMP GetOutputStatus(DWORD* flags) override;
    STDMETHODIMP SetOutputBounds(LONGLONG lower, LONGLONG upper) override;
    STDMETHODIMP ProcessEvent(DWORD stream, IMFMediaEvent* event) override;
    STDMETHODIMP ProcessMessage(MFT_MESSAGE_TYPE message, ULONG_PTR parameter) override;
    STDMETHODIMP ProcessInput(DWORD stream, IMFSample* sample, DWORD flags) override;
    STDMETHODIMP ProcessOutput(DWORD flags, DWORD count, MFT_OUTPUT_DATA_BUFFER* buffers, DWORD* status) override;

    // INMFVDeinterlace: what needs the store's owner
    STDMETHODIMP ResetToDefaultsEx(LONG ApiLevel) override;
    STDMETHODIMP LoadAttributes() override;
    STDMETHODIMP SaveAttributes() override;

private:
    ~CMFTDeinterlace() override;

    HRESULT CreateStore();
    HRESULT CheckInputMediaType(IMFMediaType* type) const;
    HRESULT CheckOutputMediaType(IMFMediaType* type) const;
    HRESULT CheckTypeChange(DWORD stream) const;
    HRESULT CopyCurrentType(DWORD stream, IMFMediaType* current, IMFMediaType** type);
    HRESULT DeinterlaceSample(IMFSample* input, IMFSample* output);
    HRESULT DeinterlaceBuffers(IMFMediaBuffer* input, IMFMediaBuffer* output);
    bool IsTooShort(IMFMediaBuffer* buffer) const;

    CCriticalSection m_lock;
    CComRef<IMFSample> m_pSample; // the held input; while there is one, no type may change
    CComRef<IMFMediaType> m_pInputType;
    CComRef<IMFMediaType> m_pOutputType;
    TransformFormat m_format;
};
