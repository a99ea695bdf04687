// Frames through the shipped DLL, as a host sends them: ProcessInput and ProcessOutput in every mode. By turns with
// this environment's memcpy.
#include <initguid.h>

#include "bench/Table.h"
#include "bench/Works.h"
#include "engine/pixels/Stores.h"
#include "tests/support/Media.h"
#include "tests/support/Module.h"
#include "tests/support/PrivateRegistry.h"

#include <cstdio>
#include <cstring>
#include <deque>
#include <thread>

namespace {

constexpr const char* kWhere = "DLL, Wine";
constexpr int kRounds = 11;

constexpr FrameFormat kSizes[] = {
    {"YUY2", 720, 480, 16},    {"RGB24", 720, 480, 24},  {"YUY2", 1920, 1080, 16},
    {"RGB24", 1920, 1080, 24}, {"YUY2", 3840, 2160, 16}, {"RGB24", 3840, 2160, 24},
};

// A sample around one frame of a FrameSet.
class FrameBuffer : public IMFMediaBuffer {
public:
    FrameBuffer(std::uint8_t* bytes, std::size_t size)
        : m_bytes(bytes)
        , m_size(static_cast<DWORD>(size)) {}

    STDMETHODIMP QueryInterface(REFIID riid, void** ppv) override {
        const bool known = riid == IID_IUnknown || riid == IID_IMFMediaBuffer;
        *ppv = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP Lock(BYTE** bytes, DWORD*, DWORD*) override {
        *bytes = m_bytes;
        return S_OK;
    }
    STDMETHODIMP Unlock() override { return S_OK; }
    STDMETHODIMP GetCurrentLength(DWORD* length) override {
        *length = m_size;
        return S_OK;
    }
    STDMETHODIMP SetCurrentLength(DWORD) override { return S_OK; }
    STDMETHODIMP GetMaxLength(DWORD* length) override {
        *length = m_size;
        return S_OK;
    }

private:
    std::uint8_t* m_bytes;
    DWORD m_size;
};

struct Samples {
    explicit Samples(const FrameSet& frames) {
        for (std::size_t i = 0; i < frames.Count(); ++i) {
            Add(frames.Input(i), frames.Format().Bytes(), inputs.emplace_back());
            Add(frames.Output(i), frames.Format().Bytes(), outputs.emplace_back());
        }
    }

    void Add(std::uint8_t* bytes, std::size_t size, CComRef<IMFSample>& sample) {
        MakeSample(&buffers.emplace_back(bytes, size), sample);
    }

    std::deque<FrameBuffer> buffers;
    std::deque<CComRef<IMFSample>> inputs, outputs;
};

// The DLL's transform for one format and work.
class Worker {
public:
    // False when the DLL doesn't take part.
    bool Start(const Module& module, const FrameFormat& format, const FrameWork& work) {
        CComRef<IMFMediaType> type;
        const GUID& subtype = format.bits == 16 ? MFVideoFormat_YUY2 : MFVideoFormat_RGB24;
        constexpr UINT32 kRate = 100'000; // a hold of five seconds lasts for all of the measurement
        MakeVideoType(subtype, static_cast<UINT32>(format.width), static_cast<UINT32>(format.height), type, kRate);
        CComRef<INMFVDeinterlace> control;
        if (FAILED(module.CreateTransform(m_transform)) ||
            FAILED(m_transform->QueryInterface(IID_INMFVDeinterlace, control.PutVoid())) ||
            FAILED(m_transform->SetInputType(0, type.Get(), 0)) ||
            FAILED(m_transform->SetOutputType(0, type.Get(), 0))) {
            return false;
        }
        control->ResetToDefaultsEx(1);
        control->put_Enabled(work.enabled ? VARIANT_TRUE : VARIANT_FALSE);
        control->put_AutoDeinterlace(work.automatic ? VARIANT_TRUE : VARIANT_FALSE);
        control->put_MergeFields(work.merge ? VARIANT_TRUE : VARIANT_FALSE);
        return SUCCEEDED(m_transform->ProcessMessage(MFT_MESSAGE_NOTIFY_START_OF_STREAM, 0));
    }

    bool Run(IMFSample* input, IMFSample* output) const {
        MFT_OUTPUT_DATA_BUFFER buffer{0, output, 0, nullptr};
        DWORD status = 0;
        return SUCCEEDED(m_transform->ProcessInput(0, input, 0)) &&
               SUCCEEDED(m_transform->ProcessOutput(0, 1, &buffer, &status));
    }

    // One combed frame, so that the hold runs.
    bool StartHold(const FrameFormat& format) const {
        std::vector<BYTE> bytes(format.Bytes());
        FillFrame(format, Content::Combed, bytes.data());
        CComRef<IMFSample> input, output;
        MakeSample(bytes, input);
        MakeSample(bytes, output);
        return Run(input.Get(), output.Get());
    }

private:
    CComRef<IMFTransform> m_transform;
};

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "bench_transform: %s\n", what);
    std::exit(1);
}

void Measure(const Module& module, const FrameFormat& format, Flow flow, Content content) {
    const FrameSet frames(format, content, flow);
    const Samples samples(frames);
    const bool streaming = StoresFor(format.Bytes()) == Stores::Streaming;
    std::vector<Contestant> contestants{frames.MakeCopying()};
    std::vector<double> wanted{0};
    std::vector<Worker> workers(FrameWorks().size());
    std::size_t next = 0;
    for (const FrameWork& work : FrameWorks()) {
        const Worker& worker = workers[next++];
        if (work.content != content) {
            continue;
        }
        if (!workers[next - 1].Start(module, format, work) || (work.holdRuns && !worker.StartHold(format))) {
            Fail("the DLL's transform can't be set up");
        }
        contestants.push_back(frames.MakeContestant(work.name, [&](std::size_t i) {
            if (!worker.Run(samples.inputs[i].Get(), samples.outputs[i].Get())) {
                Fail("a frame failed");
            }
        }));
        wanted.push_back(WantedRatio(work, format, flow, streaming));
    }
    const std::vector<Result> results = TakeTurns(contestants, kRounds);
    for (std::size_t i = content == Content::Clean ? 0 : 1; i < results.size(); ++i) { // one memcpy is enough
        PrintResult(kWhere, frames, flow, results[i], wanted[i]);
    }
}

// As many transforms as threads, each with its own frames: the frames of all in a second.
void MeasureThreads(const Module& module, const FrameFormat& format, const FrameWork& work, unsigned count) {
    std::vector<std::unique_ptr<FrameSet>> frames;
    std::vector<std::unique_ptr<Samples>> samples;
    std::vector<Worker> workers(count);
    for (Worker& worker : workers) {
        frames.push_back(std::make_unique<FrameSet>(format, work.content, Flow::Chain));
        samples.push_back(std::make_unique<Samples>(*frames.back()));
        if (!worker.Start(module, format, work)) {
            Fail("the DLL's transform can't be set up");
        }
    }
    std::vector<double> rates;
    for (int round = 0; round < kRounds; ++round) {
        const double seconds = SecondsOf([&] {
            std::vector<std::jthread> threads;
            for (unsigned t = 0; t < count; ++t) {
                threads.emplace_back([&, t] {
                    frames[t]->Run(
                        [&](std::size_t i) {
                            if (!workers[t].Run(samples[t]->inputs[i].Get(), samples[t]->outputs[i].Get())) {
                                Fail("a frame failed");
                            }
                        },
                        0);
                });
            }
        });
        const double turn = static_cast<double>(format.Bytes()) * frames[0]->FramesPerTurn();
        rates.push_back(turn * count / seconds * 1e-9);
    }
    PrintRate(kWhere, std::string(work.name) + ", " + std::to_string(count) + " transforms in as many threads",
              format.Text(), FlowName(Flow::Chain), SpreadOf(rates));
}

bool IsWanted(const std::string& text, const char* part) {
    return !part || text.find(part) != std::string::npos;
}

} // namespace

// bench_transform [FRAME [FLOW]]: only the frames whose name in the table has that text in it, in that flow.
int main(int argc, char** argv) {
    const PrivateRegistry user(HKEY_CURRENT_USER);
    const Module module;
    if (!module.Handle()) {
        Fail("NMFVDeitrx.dll must lie beside this program");
    }
    for (const FrameFormat& format : kSizes) {
        if (!IsWanted(format.Text(), argc > 1 ? argv[1] : nullptr)) {
            continue;
        }
        for (const Flow flow : {Flow::Cold, Flow::Warm, Flow::Read, Flow::Chain}) {
            if (argc > 2 && std::strcmp(FlowName(flow), argv[2]) != 0) {
                continue;
            }
            for (const Content content : {Content::Clean, Content::Busy, Content::Combed}) {
                Measure(module, format, flow, content);
            }
        }
        for (unsigned count = 1; count <= std::max(2u, std::thread::hardware_concurrency()); count *= 2) {
            MeasureThreads(module, format, FrameWorks()[1], count);
        }
    }
    return 0;
}
