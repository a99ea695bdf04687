// One frame in, one frame out.
#include "mft/MFTDeinterlace.h"

#include <mutex>

#include <mferror.h>

STDMETHODIMP CMFTDeinterlace::GetInputStatus(DWORD stream, DWORD* flags) {
    const std::lock_guard hold(m_lock);
    if (!flags) {
        return E_POINTER;
    }
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    *flags = m_pSample ? 0 : MFT_INPUT_STATUS_ACCEPT_DATA;
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::GetOutputStatus(DWORD* flags) {
    const std::lock_guard hold(m_lock);
    if (!flags) {
        return E_POINTER;
    }
    *flags = m_pSample ? MFT_OUTPUT_STATUS_SAMPLE_READY : 0;
    return S_OK;
}

STDMETHODIMP CMFTDeinterlace::SetOutputBounds(LONGLONG, LONGLONG) {
    return E_NOTIMPL;
}
STDMETHODIMP CMFTDeinterlace::ProcessEvent(DWORD, IMFMediaEvent*) {
    return E_NOTIMPL;
}

STDMETHODIMP CMFTDeinterlace::ProcessMessage(MFT_MESSAGE_TYPE message, ULONG_PTR) {
    const std::lock_guard hold(m_lock);
    switch (message) {
    case MFT_MESSAGE_COMMAND_FLUSH:
        m_pSample.Reset();
        return S_OK;
    case MFT_MESSAGE_SET_D3D_MANAGER:
        return E_NOTIMPL;
    case MFT_MESSAGE_NOTIFY_START_OF_STREAM:
        (void)StartStreaming(); // frames that cannot be processed are refused one by one
        return S_OK;
    case MFT_MESSAGE_NOTIFY_END_OF_STREAM:
        EndStreaming();
        return S_OK;
    default: // a drain among them: the held sample stays until it is asked for
        return S_OK;
    }
}

STDMETHODIMP CMFTDeinterlace::ProcessInput(DWORD stream, IMFSample* sample, DWORD flags) {
    const std::lock_guard hold(m_lock);
    if (!sample) {
        return E_POINTER;
    }
    if (stream != 0) {
        return MF_E_INVALIDSTREAMNUMBER;
    }
    if (flags != 0) {
        return E_INVALIDARG;
    }
    if (!m_pInputType || !m_pOutputType || m_pSample) {
        return MF_E_NOTACCEPTING;
    }
    DWORD buffers = 0;
    if (const HRESULT hr = sample->GetBufferCount(&buffers); FAILED(hr)) {
        return hr;
    }
    if (buffers != 1) {
        return buffers == 0 ? E_FAIL : MF_E_SAMPLE_HAS_TOO_MANY_BUFFERS;
    }
    m_pSample.Share(sample);
    return S_OK;
}

namespace {

// The duration, then the time stamp; a sample that lacks one passes none on.
HRESULT CopyTiming(IMFSample* from, IMFSample* to) {
    LONGLONG time = 0;
    if (SUCCEEDED(from->GetSampleDuration(&time))) {
        if (const HRESULT hr = to->SetSampleDuration(time); FAILED(hr)) {
            return hr;
        }
    }
    return SUCCEEDED(from->GetSampleTime(&time)) ? to->SetSampleTime(time) : S_OK;
}

} // namespace

STDMETHODIMP CMFTDeinterlace::ProcessOutput(DWORD flags, DWORD count, MFT_OUTPUT_DATA_BUFFER* buffers, DWORD* status) {
    const std::lock_guard hold(m_lock);
    if (flags != 0) {
        return E_INVALIDARG;
    }
    if (!buffers || !status) {
        return E_POINTER;
    }
    if (count != 1 || !buffers->pSample) {
        return E_INVALIDARG;
    }
    if (!m_pSample) {
        return MF_E_TRANSFORM_NEED_MORE_INPUT;
    }
    CComRef<IMFSample> input; // whatever happens, the sample is not held any longer
    *input.Put() = m_pSample.Detach();
    if (const HRESULT hr = DeinterlaceSample(input.Get(), buffers->pSample); FAILED(hr)) {
        return hr;
    }
    buffers->dwStatus = 0;
    *status = 0;
    return CopyTiming(input.Get(), buffers->pSample);
}

// Kept: a buffer already locked is not unlocked when locking the other one fails. Test: LockFailures.
HRESULT CMFTDeinterlace::DeinterlaceSample(IMFSample* inputSample, IMFSample* outputSample) {
    CComRef<IMFMediaBuffer> input;
    if (const HRESULT hr = inputSample->ConvertToContiguousBuffer(input.Put()); FAILED(hr)) {
        return hr;
    }
    CComRef<IMFMediaBuffer> output;
    if (const HRESULT hr = outputSample->ConvertToContiguousBuffer(output.Put()); FAILED(hr)) {
        return hr;
    }
    return DeinterlaceBuffers(input.Get(), output.Get());
}

// Kept: the engine's failure is not reported; the frame then comes out with its length not set. Test:
// UnprocessableFrames.
HRESULT CMFTDeinterlace::DeinterlaceBuffers(IMFMediaBuffer* input, IMFMediaBuffer* output) {
    BYTE* source = nullptr;
    if (const HRESULT hr = input->Lock(&source, nullptr, nullptr); FAILED(hr)) {
        return hr;
    }
    BYTE* destination = nullptr;
    if (const HRESULT hr = output->Lock(&destination, nullptr, nullptr); FAILED(hr)) {
        return hr;
    }
    const bool tooShort = IsTooShort(input) || IsTooShort(output);
    if (!tooShort && SUCCEEDED(Transform(source, destination))) {
        (void)output->SetCurrentLength(m_format.SampleBytes); // checked against the buffer's size above
    }
    (void)input->Unlock();
    (void)output->Unlock();
    return tooShort ? MF_E_BUFFERTOOSMALL : S_OK;
}

// A buffer that cannot tell its size counts as long enough; a frame that is not processed needs no bytes.
bool CMFTDeinterlace::IsTooShort(IMFMediaBuffer* buffer) const {
    DWORD length = 0;
    return Shape().IsProcessable() && SUCCEEDED(buffer->GetMaxLength(&length)) &&
           length < static_cast<DWORD>(Shape().Bytes());
}
