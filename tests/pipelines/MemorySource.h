// A media source whose frames lie in memory: what a session asks of a source, and no more.
#pragma once

#include "com/ComObject.h"
#include "tests/support/Media.h"

#include <mutex>

#include <mferror.h>

using MemoryFrames = std::vector<std::vector<BYTE>>;

// What a source and its stream have in common: events, which the platform's queue keeps.
template <typename Interface>
class EventSender : public CRefCounted<Interface> {
public:
    EventSender() { MFCreateEventQueue(m_events.Put()); }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        const bool known = id == IID_IUnknown || id == IID_IMFMediaEventGenerator || id == __uuidof(Interface);
        *object = known ? static_cast<Interface*>(this) : nullptr;
        return known ? this->AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP GetEvent(DWORD flags, IMFMediaEvent** event) override { return m_events->GetEvent(flags, event); }
    STDMETHODIMP BeginGetEvent(IMFAsyncCallback* callback, IUnknown* state) override {
        return m_events->BeginGetEvent(callback, state);
    }
    STDMETHODIMP EndGetEvent(IMFAsyncResult* result, IMFMediaEvent** event) override {
        return m_events->EndGetEvent(result, event);
    }
    STDMETHODIMP QueueEvent(MediaEventType kind, REFGUID extended, HRESULT status, const PROPVARIANT* value) override {
        return m_events->QueueEventParamVar(kind, extended, status, value);
    }
    HRESULT Tell(MediaEventType kind, const PROPVARIANT* value = nullptr) {
        return QueueEvent(kind, GUID_NULL, S_OK, value);
    }
    HRESULT TellOf(MediaEventType kind, IUnknown* object) {
        return m_events->QueueEventParamUnk(kind, GUID_NULL, S_OK, object);
    }
    HRESULT EndEvents() { return m_events->Shutdown(); }

private:
    CComRef<IMFMediaEventQueue> m_events;
};

// The one stream. A frame is delivered as soon as it is asked for.
class MemoryStream : public EventSender<IMFMediaStream> {
public:
    MemoryStream(EventSender<IMFMediaSource>& source, IMFMediaType* type, const MemoryFrames& frames,
                 LONGLONG frameTime)
        : m_source(source)
        , m_frames(frames)
        , m_frameTime(frameTime) {
        CComRef<IMFMediaTypeHandler> handler;
        MFCreateStreamDescriptor(1, 1, &type, m_descriptor.Put());
        m_descriptor->GetMediaTypeHandler(handler.Put());
        handler->SetCurrentMediaType(type);
    }

    STDMETHODIMP GetMediaSource(IMFMediaSource** source) override {
        return m_source.QueryInterface(IID_IMFMediaSource, reinterpret_cast<void**>(source));
    }
    STDMETHODIMP GetStreamDescriptor(IMFStreamDescriptor** descriptor) override {
        return m_descriptor->QueryInterface(IID_IMFStreamDescriptor, reinterpret_cast<void**>(descriptor));
    }
    STDMETHODIMP RequestSample(IUnknown* token) override {
        const std::lock_guard lock(m_mutex);
        if (m_next == m_frames.size()) {
            return MF_E_END_OF_STREAM;
        }
        CComRef<IMFSample> sample;
        MakeSample(m_frames[m_next], sample);
        sample->SetSampleTime(static_cast<LONGLONG>(m_next) * m_frameTime);
        sample->SetSampleDuration(m_frameTime);
        if (token) {
            sample->SetUnknown(MFSampleExtension_Token, token);
        }
        TellOf(MEMediaSample, sample.Get());
        if (++m_next == m_frames.size()) {
            Tell(MEEndOfStream);
            m_source.Tell(MEEndOfPresentation);
        }
        return S_OK;
    }
    void GoTo(LONGLONG time) {
        const std::lock_guard lock(m_mutex);
        m_next = static_cast<std::size_t>(time / m_frameTime);
    }

private:
    EventSender<IMFMediaSource>& m_source;
    const MemoryFrames& m_frames;
    const LONGLONG m_frameTime; // in 100 ns
    CComRef<IMFStreamDescriptor> m_descriptor;
    std::mutex m_mutex;
    std::size_t m_next = 0;
};

// The frames must outlive the source, and the source the session: references are counted, and not acted upon.
class MemorySource : public EventSender<IMFMediaSource> {
public:
    MemorySource(IMFMediaType* type, const MemoryFrames& frames, LONGLONG frameTime)
        : m_stream(*this, type, frames, frameTime) {
        CComRef<IMFStreamDescriptor> descriptor;
        m_stream.GetStreamDescriptor(descriptor.Put());
        IMFStreamDescriptor* streams[] = {descriptor.Get()};
        MFCreatePresentationDescriptor(1, streams, m_presentation.Put());
    }

    STDMETHODIMP GetCharacteristics(DWORD* flags) override {
        *flags = MFMEDIASOURCE_CAN_PAUSE | MFMEDIASOURCE_CAN_SEEK;
        return S_OK;
    }
    STDMETHODIMP CreatePresentationDescriptor(IMFPresentationDescriptor** copy) override {
        return m_presentation->Clone(copy);
    }
    STDMETHODIMP Start(IMFPresentationDescriptor*, const GUID*, const PROPVARIANT* position) override {
        const bool moves = position->vt == VT_I8;
        const bool seeks = moves && m_isUnderWay;
        if (moves || !m_isUnderWay) {
            m_stream.GoTo(moves ? position->hVal.QuadPart : 0);
        }
        TellOf(m_isKnown ? MEUpdatedStream : MENewStream, static_cast<IMFMediaStream*>(&m_stream));
        m_isKnown = m_isUnderWay = true;
        Tell(seeks ? MESourceSeeked : MESourceStarted, position);
        return m_stream.Tell(seeks ? MEStreamSeeked : MEStreamStarted, position);
    }
    STDMETHODIMP Stop() override {
        m_isUnderWay = false;
        Tell(MESourceStopped);
        return m_stream.Tell(MEStreamStopped);
    }
    STDMETHODIMP Pause() override {
        Tell(MESourcePaused);
        return m_stream.Tell(MEStreamPaused);
    }
    STDMETHODIMP Shutdown() override {
        m_stream.EndEvents();
        return EndEvents();
    }

private:
    MemoryStream m_stream;
    CComRef<IMFPresentationDescriptor> m_presentation;
    bool m_isUnderWay = false; // running or paused
    bool m_isKnown = false;    // the stream has been told of
};
