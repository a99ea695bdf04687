// The built DLL in a Media Session, which changes its mind: source, transform, sample grabber.
#include <initguid.h>

#include "host/formats/FrameSink.h"
#include "tests/host/MemoryStreams.h"
#include "tests/pipelines/MemorySource.h"
#include "tests/support/ComChecks.h"
#include "tests/support/Files.h"
#include "tests/support/Module.h"
#include "tests/support/OraclePixels.h"
#include "tests/support/PrivateRegistry.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;

// MF_TOPOLOGY_ENUMERATE_SOURCE_TYPES, which some headers lack.
constexpr GUID kEnumerateSourceTypes = {0x6248C36D, 0x5D0B, 0x4F40, {0xA0, 0xBB, 0xB0, 0xB3, 0x05, 0xF7, 0x76, 0x98}};
constexpr int kFrames = 1000, kLast = kFrames - 30; // the end may not come before it is wanted
constexpr UINT32 kRate = 200;                       // frames a second, by the session's clock
constexpr LONGLONG kFrameTime = 10'000'000 / kRate;
constexpr UINT32 kWidth = 36, kHeight = 21;

struct Row {
    const char* name;
    host::Pixels pixels;
    const GUID& subtype;
    bool file = false; // an AVI file, which the platform opens; otherwise frames in memory
};
const Row kRows[] = {{"Rgb24FromMemory", host::Pixels::Rgb24, MFVideoFormat_RGB24},
                     {"Yuy2FromMemory", host::Pixels::Yuy2, MFVideoFormat_YUY2},
                     {"UyvyFromMemory", host::Pixels::Uyvy, MFVideoFormat_UYVY},
                     {"Rgb24FromAvi", host::Pixels::Rgb24, MFVideoFormat_RGB24, true},
                     {"Yuy2FromAvi", host::Pixels::Yuy2, MFVideoFormat_YUY2, true},
                     {"UyvyFromAvi", host::Pixels::Uyvy, MFVideoFormat_UYVY, true}};

struct Grabbed {
    LONGLONG time, duration;
    std::vector<BYTE> bytes;
};

// Keeps every frame that arrives, on a thread of the session's.
class Grabber : public CRefCounted<IMFSampleGrabberSinkCallback> {
public:
    STDMETHODIMP QueryInterface(REFIID id, void** object) override {
        const bool known = id == IID_IUnknown || id == IID_IMFClockStateSink || id == IID_IMFSampleGrabberSinkCallback;
        *object = known ? this : nullptr;
        return known ? AddRef(), S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP OnClockStart(MFTIME, LONGLONG) override { return S_OK; }
    STDMETHODIMP OnClockStop(MFTIME) override { return S_OK; }
    STDMETHODIMP OnClockPause(MFTIME) override { return S_OK; }
    STDMETHODIMP OnClockRestart(MFTIME) override { return S_OK; }
    STDMETHODIMP OnClockSetRate(MFTIME, float) override { return S_OK; }
    STDMETHODIMP OnSetPresentationClock(IMFPresentationClock*) override { return S_OK; }
    STDMETHODIMP OnShutdown() override { return S_OK; }
    STDMETHODIMP OnProcessSample(REFGUID, DWORD, LONGLONG time, LONGLONG duration, const BYTE* bytes,
                                 DWORD length) override {
        const std::lock_guard lock(m_mutex);
        m_frames.push_back({time, duration, {bytes, bytes + length}});
        m_arrival.notify_all();
        return S_OK;
    }

    // Returns how many there are then: fewer when they don't come.
    std::size_t WaitForMore(std::size_t frames) {
        std::unique_lock lock(m_mutex);
        m_arrival.wait_for(lock, 10s, [this, enough = m_frames.size() + frames] { return m_frames.size() >= enough; });
        return m_frames.size();
    }
    const std::vector<Grabbed>& Frames() const { return m_frames; } // once the session is closed

private:
    std::mutex m_mutex;
    std::condition_variable m_arrival;
    std::vector<Grabbed> m_frames;
};

class Session : public testing::TestWithParam<Row> {
protected:
    static void SetUpTestSuite() {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        MFStartup(MF_VERSION, MFSTARTUP_FULL);
    }
    static void TearDownTestSuite() { MFShutdown(); }

    void SetUp() override {
        for (unsigned i = 0; i < kFrames; ++i) {
            m_clip.push_back(host::RandomBytes(static_cast<std::size_t>(m_shape.Bytes()), i));
        }
        MakeVideoType(GetParam().subtype, kWidth, kHeight, m_type, kRate);
        m_memory = std::make_unique<MemorySource>(m_type.Get(), m_clip, kFrameTime);
        ASSERT_NO_FATAL_FAILURE(GetParam().file ? OpenFile() : m_source.Share(m_memory.get()));
        ASSERT_HR(S_OK, m_module.CreateTransform(m_transform));
        ASSERT_HR(S_OK, m_transform->QueryInterface(IID_INMFVDeinterlace, m_control.PutVoid()));
        m_control->put_AutoDeinterlace(VARIANT_FALSE);
        ASSERT_HR(S_OK, MFCreateMediaSession(nullptr, m_session.Put()));
        ASSERT_HR(S_OK, SetTopology());
    }

    void OpenFile() {
        host::CMemoryWriter writer;
        const auto sink = host::MakeAviSink(writer, {GetParam().pixels, kWidth, kHeight, {kRate, 1}, {}, false});
        for (const auto& frame : m_clip) {
            sink->Write(frame.data());
        }
        sink->Finish();
        const std::filesystem::path path = m_folder.Path() / "clip.avi";
        WriteFileBytes(path, writer.Written());
        CComRef<IMFSourceResolver> resolver;
        CComRef<IUnknown> object;
        MF_OBJECT_TYPE kind{};
        MFCreateSourceResolver(resolver.Put());
        ASSERT_HR(S_OK,
                  resolver->CreateObjectFromURL(path.c_str(), MF_RESOLUTION_MEDIASOURCE, nullptr, &kind, object.Put()));
        object->QueryInterface(IID_IMFMediaSource, m_source.PutVoid());
    }

    void AddNode(IMFTopology* topology, MF_TOPOLOGY_TYPE kind, IUnknown* object, CComRef<IMFTopologyNode>& node) {
        MFCreateTopologyNode(kind, node.Put());
        node->SetObject(object);
        topology->AddNode(node.Get());
    }

    HRESULT SetTopology() {
        CComRef<IMFTopology> topology;
        CComRef<IMFTopologyNode> source, transform, output;
        CComRef<IMFPresentationDescriptor> presentation;
        CComRef<IMFStreamDescriptor> stream;
        CComRef<IMFActivate> sink;
        BOOL selected = FALSE;
        MFCreateSampleGrabberSinkActivate(m_type.Get(), &m_grabber, sink.Put());
        MFCreateTopology(topology.Put());
        topology->SetUINT32(kEnumerateSourceTypes, TRUE); // the transform takes few formats
        AddNode(topology.Get(), MF_TOPOLOGY_SOURCESTREAM_NODE, nullptr, source);
        AddNode(topology.Get(), MF_TOPOLOGY_TRANSFORM_NODE, m_transform.Get(), transform);
        AddNode(topology.Get(), MF_TOPOLOGY_OUTPUT_NODE, sink.Get(), output);
        m_source->CreatePresentationDescriptor(presentation.Put());
        presentation->SelectStream(0);
        presentation->GetStreamDescriptorByIndex(0, &selected, stream.Put());
        source->SetUnknown(MF_TOPONODE_SOURCE, m_source.Get());
        source->SetUnknown(MF_TOPONODE_PRESENTATION_DESCRIPTOR, presentation.Get());
        source->SetUnknown(MF_TOPONODE_STREAM_DESCRIPTOR, stream.Get());
        source->ConnectOutput(0, transform.Get(), 0);
        transform->ConnectOutput(0, output.Get(), 0);
        return m_session->SetTopology(MFSESSION_SETTOPOLOGY_IMMEDIATE, topology.Get());
    }

    // A failure when it does not come within ten seconds, or an event before it tells of one.
    void WaitFor(MediaEventType wanted) {
        MediaEventType kind = MEUnknown;
        for (const auto end = std::chrono::steady_clock::now() + 10s; kind != wanted;) {
            CComRef<IMFMediaEvent> event;
            HRESULT status = S_OK;
            ASSERT_LT(std::chrono::steady_clock::now(), end) << "no event " << wanted;
            if (m_session->GetEvent(MF_EVENT_FLAG_NO_WAIT, event.Put()) == MF_E_NO_EVENTS_AVAILABLE) {
                Sleep(1);
                continue;
            }
            event->GetType(&kind);
            event->GetStatus(&status);
            ASSERT_HR(S_OK, status) << "event " << kind;
        }
    }

    // From frame number `from`, or from where it is.
    void Start(int from = -1) {
        PROPVARIANT position{};
        position.vt = static_cast<VARTYPE>(from < 0 ? VT_EMPTY : VT_I8);
        position.hVal.QuadPart = from * kFrameTime;
        ASSERT_HR(S_OK, m_session->Start(&GUID_NULL, &position));
        WaitFor(MESessionStarted);
    }

    void Restart(int from) {
        ASSERT_HR(S_OK, m_session->Stop());
        ASSERT_NO_FATAL_FAILURE(WaitFor(MESessionStopped));
        ASSERT_HR(S_OK, GetParam().file ? SetTopology() : S_OK);
        Start(from);
    }

    // Nothing arrives in a pause.
    void Pause() {
        ASSERT_HR(S_OK, m_session->Pause());
        ASSERT_NO_FATAL_FAILURE(WaitFor(MESessionPaused));
        const std::size_t before = m_grabber.WaitForMore(0);
        Sleep(50);
        EXPECT_EQ(before, m_grabber.WaitForMore(0));
    }

    void Close() {
        m_session->Close();
        WaitFor(MESessionClosed);
        m_source->Shutdown();
        m_session->Shutdown();
    }

    // From a file the platform hands over RGB's rows in either order, and its type says so by the stride.
    void TurnOverAsTheSourceDid() {
        CComRef<IMFMediaType> type;
        ASSERT_HR(S_OK, m_transform->GetInputCurrentType(0, type.Put()));
        const auto stride = static_cast<INT32>(MFGetAttributeUINT32(type.Get(), MF_MT_DEFAULT_STRIDE, 0));
        for (auto& frame : m_clip) {
            for (std::size_t row = 0; GetParam().subtype == MFVideoFormat_RGB24 && stride > 0 && row < kHeight / 2;
                 ++row) {
                std::swap_ranges(&frame[row * m_shape.Stride()], &frame[(row + 1) * m_shape.Stride()],
                                 &frame[(kHeight - 1 - row) * m_shape.Stride()]);
            }
        }
    }

    void PlayAround();

    std::vector<BYTE> Expected(LONGLONG number, bool merge) const {
        const std::vector<BYTE>& in = m_clip[static_cast<std::size_t>(number)];
        std::vector<BYTE> out(in.size());
        OracleDeinterlace(m_shape, {.merge = merge}, in.data(), out.data());
        return out;
    }

    const OracleFrame m_shape{kWidth, kHeight, host::TraitsOf(GetParam().pixels).bits};
    PrivateRegistry m_user{HKEY_CURRENT_USER};
    const TempFolder m_folder;
    MemoryFrames m_clip;
    CComRef<IMFMediaType> m_type;
    std::unique_ptr<MemorySource> m_memory;
    Module m_module;
    CComRef<IMFTransform> m_transform;
    CComRef<INMFVDeinterlace> m_control;
    Grabber m_grabber;
    CComRef<IMFMediaSource> m_source;
    CComRef<IMFMediaSession> m_session;
    std::size_t m_change = 0; // frames that had arrived when the setting changed
};

// Seeks from the pause: Wine's grabber asks for no frames after a seek while it plays. Wine's source of a file forgets
// what was asked of it when it moves, and the session waits for that: a file is stopped instead, and its topology set
// again.
void Session::PlayAround() {
    ASSERT_NO_FATAL_FAILURE(Start(0));
    m_grabber.WaitForMore(10);
    m_control->put_MergeFields(VARIANT_FALSE);
    m_change = m_grabber.WaitForMore(0);
    m_grabber.WaitForMore(15);
    ASSERT_NO_FATAL_FAILURE(Pause());
    ASSERT_NO_FATAL_FAILURE(Start());
    m_grabber.WaitForMore(10);
    ASSERT_NO_FATAL_FAILURE(Pause());
    ASSERT_NO_FATAL_FAILURE(GetParam().file ? Restart(5) : Start(5));
    m_grabber.WaitForMore(10);
    ASSERT_NO_FATAL_FAILURE(Restart(kLast));
    WaitFor(MESessionEnded);
}

TEST_P(Session, DeliversTheOraclesFrames) {
    PlayAround();
    Close();
    TurnOverAsTheSourceDid();
    std::vector<LONGLONG> starts; // where a frame doesn't follow the one before
    LONGLONG next = kFrames;
    std::size_t merged = 0;
    for (const Grabbed& frame : m_grabber.Frames()) {
        const LONGLONG number = frame.time / kFrameTime;
        ASSERT_LT(number, kFrames);
        EXPECT_EQ(frame.time, number * kFrameTime);
        EXPECT_EQ(frame.duration, kFrameTime);
        if (number != next) {
            starts.push_back(number);
        }
        next = number + 1;
        const bool merge = &frame == &m_grabber.Frames()[merged] && frame.bytes == Expected(number, true);
        merged += merge;
        ASSERT_TRUE(merge || frame.bytes == Expected(number, false)) << "frame " << number;
    }
    EXPECT_EQ(starts, (std::vector<LONGLONG>{0, 5, kLast}));
    EXPECT_EQ(next, kFrames);
    EXPECT_GE(merged, 10u);
    EXPECT_LE(merged, m_change + 10); // those that were under way
}

INSTANTIATE_TEST_SUITE_P(Pipelines, Session, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
