// Plays the video of a file through a Media Session: source, transform, sample grabber. Tells how many frames came.
//
//     session CLIP
#include <initguid.h>

#include <NMFVDeinterlace.h>
#include <mfapi.h>
#include <mferror.h>
#include <mfidl.h>
#include <mftransform.h>
#include <wrl/client.h>

#include <atomic>
#include <cstdio>
#include <stdexcept>

using Microsoft::WRL::ComPtr;

namespace {

// MF_TOPOLOGY_ENUMERATE_SOURCE_TYPES, which some headers lack.
constexpr GUID kEnumerateSourceTypes = {0x6248C36D, 0x5D0B, 0x4F40, {0xA0, 0xBB, 0xB0, 0xB3, 0x05, 0xF7, 0x76, 0x98}};

void Check(HRESULT hr, const char* what) {
    if (FAILED(hr)) {
        char text[160];
        std::snprintf(text, sizeof text, "%s: 0x%08lX", what, static_cast<unsigned long>(hr));
        throw std::runtime_error(text);
    }
}

// Counts the frames that the session delivers, on a thread of the session's. Lives on the stack of its owner, who shuts
// the session down first; hence no count of references.
class FrameCounter : public IMFSampleGrabberSinkCallback {
public:
    unsigned Frames() const { return m_frames; }

    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        if (!object) {
            return E_POINTER;
        }
        const bool known = id == __uuidof(IUnknown) || id == __uuidof(IMFClockStateSink) ||
                           id == __uuidof(IMFSampleGrabberSinkCallback);
        *object = known ? static_cast<IMFSampleGrabberSinkCallback*>(this) : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP OnClockStart(MFTIME, LONGLONG) override { return S_OK; }
    STDMETHODIMP OnClockStop(MFTIME) override { return S_OK; }
    STDMETHODIMP OnClockPause(MFTIME) override { return S_OK; }
    STDMETHODIMP OnClockRestart(MFTIME) override { return S_OK; }
    STDMETHODIMP OnClockSetRate(MFTIME, float) override { return S_OK; }
    STDMETHODIMP OnSetPresentationClock(IMFPresentationClock*) override { return S_OK; }
    STDMETHODIMP OnProcessSample(REFGUID, DWORD, LONGLONG, LONGLONG, const BYTE*, DWORD) override {
        ++m_frames;
        return S_OK;
    }
    STDMETHODIMP OnShutdown() override { return S_OK; }

private:
    std::atomic<unsigned> m_frames{0};
};

ComPtr<IMFTransform> MakeTransform() {
    ComPtr<IClassFactory> factory;
    ComPtr<IMFTransform> transform;
    Check(DllGetClassObject(CLSID_NMFVDeinterlace, IID_PPV_ARGS(factory.GetAddressOf())), "DllGetClassObject");
    Check(factory->CreateInstance(nullptr, IID_PPV_ARGS(transform.GetAddressOf())), "CreateInstance");
    return transform;
}

ComPtr<IMFMediaSource> OpenSource(const wchar_t* clip) {
    ComPtr<IMFSourceResolver> resolver;
    ComPtr<IUnknown> object;
    ComPtr<IMFMediaSource> source;
    MF_OBJECT_TYPE kind = MF_OBJECT_INVALID;
    Check(MFCreateSourceResolver(resolver.GetAddressOf()), "MFCreateSourceResolver");
    Check(resolver->CreateObjectFromURL(clip, MF_RESOLUTION_MEDIASOURCE, nullptr, &kind, object.GetAddressOf()),
          "the clip cannot be opened");
    Check(object.As(&source), "IMFMediaSource");
    return source;
}

bool IsVideo(IMFStreamDescriptor* stream) {
    ComPtr<IMFMediaTypeHandler> handler;
    GUID major{};
    Check(stream->GetMediaTypeHandler(handler.GetAddressOf()), "GetMediaTypeHandler");
    Check(handler->GetMajorType(&major), "GetMajorType");
    return major == MFMediaType_Video;
}

// The first video stream, selected; the others not.
ComPtr<IMFStreamDescriptor> SelectVideo(IMFPresentationDescriptor* presentation) {
    ComPtr<IMFStreamDescriptor> video;
    DWORD count = 0;
    Check(presentation->GetStreamDescriptorCount(&count), "GetStreamDescriptorCount");
    for (DWORD index = 0; index < count; ++index) {
        BOOL selected = FALSE;
        ComPtr<IMFStreamDescriptor> stream;
        Check(presentation->GetStreamDescriptorByIndex(index, &selected, stream.GetAddressOf()), "stream");
        if (!video && IsVideo(stream.Get())) {
            video = stream;
            Check(presentation->SelectStream(index), "SelectStream");
        } else {
            Check(presentation->DeselectStream(index), "DeselectStream");
        }
    }
    Check(video ? S_OK : MF_E_INVALIDSTREAMNUMBER, "the clip has no video");
    return video;
}

ComPtr<IMFTopologyNode> AddNode(IMFTopology* topology, MF_TOPOLOGY_TYPE kind) {
    ComPtr<IMFTopologyNode> node;
    Check(MFCreateTopologyNode(kind, node.GetAddressOf()), "MFCreateTopologyNode");
    Check(topology->AddNode(node.Get()), "AddNode");
    return node;
}

ComPtr<IMFTopologyNode> AddSource(IMFTopology* topology, IMFMediaSource* source) {
    ComPtr<IMFPresentationDescriptor> presentation;
    Check(source->CreatePresentationDescriptor(presentation.GetAddressOf()), "CreatePresentationDescriptor");
    const ComPtr<IMFStreamDescriptor> video = SelectVideo(presentation.Get());
    ComPtr<IMFTopologyNode> node = AddNode(topology, MF_TOPOLOGY_SOURCESTREAM_NODE);
    Check(node->SetUnknown(MF_TOPONODE_SOURCE, source), "TOPONODE_SOURCE");
    Check(node->SetUnknown(MF_TOPONODE_PRESENTATION_DESCRIPTOR, presentation.Get()), "TOPONODE_PRESENTATION");
    Check(node->SetUnknown(MF_TOPONODE_STREAM_DESCRIPTOR, video.Get()), "TOPONODE_STREAM");
    return node;
}

// As fast as the frames come, not as the clock would have them.
ComPtr<IMFActivate> MakeGrabber(IMFSampleGrabberSinkCallback* callback) {
    ComPtr<IMFMediaType> type;
    ComPtr<IMFActivate> grabber;
    Check(MFCreateMediaType(type.GetAddressOf()), "MFCreateMediaType");
    Check(type->SetGUID(MF_MT_MAJOR_TYPE, MFMediaType_Video), "major type");
    Check(type->SetGUID(MF_MT_SUBTYPE, MFVideoFormat_YUY2), "subtype");
    Check(MFCreateSampleGrabberSinkActivate(type.Get(), callback, grabber.GetAddressOf()), "sample grabber");
    Check(grabber->SetUINT32(MF_SAMPLEGRABBERSINK_IGNORE_CLOCK, TRUE), "IGNORE_CLOCK");
    return grabber;
}

ComPtr<IMFTopology> MakeTopology(IMFMediaSource* source, IMFTransform* transform, IMFActivate* grabber) {
    ComPtr<IMFTopology> topology;
    Check(MFCreateTopology(topology.GetAddressOf()), "MFCreateTopology");
    // The transform takes few formats: let every type of the source be tried.
    Check(topology->SetUINT32(kEnumerateSourceTypes, TRUE), "ENUMERATE_SOURCE_TYPES");
    const ComPtr<IMFTopologyNode> first = AddSource(topology.Get(), source);
    const ComPtr<IMFTopologyNode> second = AddNode(topology.Get(), MF_TOPOLOGY_TRANSFORM_NODE);
    const ComPtr<IMFTopologyNode> third = AddNode(topology.Get(), MF_TOPOLOGY_OUTPUT_NODE);
    Check(second->SetObject(transform), "SetObject");
    Check(third->SetObject(grabber), "SetObject");
    Check(first->ConnectOutput(0, second.Get(), 0), "ConnectOutput");
    Check(second->ConnectOutput(0, third.Get(), 0), "ConnectOutput");
    return topology;
}

// The next event of the session; its failure is one of the session.
MediaEventType NextEvent(IMFMediaSession* session, ComPtr<IMFMediaEvent>& event) {
    MediaEventType kind = MEUnknown;
    HRESULT status = S_OK;
    Check(session->GetEvent(0, event.ReleaseAndGetAddressOf()), "GetEvent");
    Check(event->GetType(&kind), "GetType");
    Check(event->GetStatus(&status), "GetStatus");
    Check(status, "the session fails");
    return kind;
}

void WaitFor(IMFMediaSession* session, MediaEventType kind) {
    ComPtr<IMFMediaEvent> event;
    while (NextEvent(session, event) != kind) {
    }
}

void WaitUntilReady(IMFMediaSession* session) {
    ComPtr<IMFMediaEvent> event;
    for (UINT32 status = MF_TOPOSTATUS_INVALID; status != MF_TOPOSTATUS_READY;) {
        if (NextEvent(session, event) == MESessionTopologyStatus) {
            Check(event->GetUINT32(MF_EVENT_TOPOLOGY_STATUS, &status), "TOPOLOGY_STATUS");
        }
    }
}

void Play(IMFMediaSession* session, IMFTopology* topology) {
    Check(session->SetTopology(0, topology), "SetTopology");
    WaitUntilReady(session);
    const GUID timeFormat{}; // 100 ns
    const PROPVARIANT fromHere{};
    Check(session->Start(&timeFormat, &fromHere), "Start");
    WaitFor(session, MESessionEnded);
    Check(session->Close(), "Close");
    WaitFor(session, MESessionClosed);
}

void PlayClip(const wchar_t* clip) {
    FrameCounter counter;
    const ComPtr<IMFTransform> transform = MakeTransform();
    ComPtr<INMFVDeinterlace> control;
    Check(transform.As(&control), "INMFVDeinterlace");
    Check(control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2), "ResetToDefaultsEx");
    const ComPtr<IMFMediaSource> source = OpenSource(clip);
    const ComPtr<IMFActivate> grabber = MakeGrabber(&counter);
    ComPtr<IMFMediaSession> session;
    Check(MFCreateMediaSession(nullptr, session.GetAddressOf()), "MFCreateMediaSession");
    Play(session.Get(), MakeTopology(source.Get(), transform.Get(), grabber.Get()).Get());
    Check(grabber->ShutdownObject(), "ShutdownObject");
    Check(source->Shutdown(), "Shutdown of the source");
    Check(session->Shutdown(), "Shutdown of the session");
    std::printf("%u frames\n", counter.Frames());
    // It saves its settings when it goes: let them be those that were saved.
    Check(control->ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2), "ResetToDefaultsEx");
    Check(control->LoadAttributes(), "LoadAttributes");
}

void Run(const wchar_t* clip) {
    Check(CoInitializeEx(nullptr, COINIT_MULTITHREADED), "CoInitializeEx");
    Check(MFStartup(MF_VERSION, MFSTARTUP_FULL), "MFStartup");
    PlayClip(clip);
    Check(MFShutdown(), "MFShutdown");
    CoUninitialize();
}

} // namespace

int wmain(int count, wchar_t** arguments) try {
    if (count != 2) {
        throw std::runtime_error("name a clip");
    }
    Run(arguments[1]);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "session: %s\n", error.what());
    return 1;
}
