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
constexpr int kRounds = 9;

constexpr FrameFormat kSizes[] = {
    {"YUY2", 720, 480, 16},   {"RGB24", 720, 480, 24},   {"YUY2", 720, 576, 16},   {"RGB24", 720, 576, 24},
    {"YUY2", 1920, 1080, 16}, {"RGB24", 1920, 1080, 24}, {"YUY2", 3840, 2160, 16}, {"RGB24", 3840, 2160, 24},
};

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "bench_transform: %s\n", what);
    std::exit(1);
}

// Frames in samples with the platform's buffers.
class SampleFrames {
public:
    SampleFrames(const FrameFormat& format, Content content, Flow flow, Place place)
        : frames(format, content, flow, place,
                 [&](std::size_t bytes) { return Add(static_cast<DWORD>(bytes), place); }) {}

    IMFSample* Input(std::size_t index) const { return m_samples[2 * index].Get(); }
    IMFSample* Output(std::size_t index) const { return m_samples[2 * index + 1].Get(); }

private:
    std::shared_ptr<std::uint8_t> Add(DWORD bytes, Place place) {
        CComRef<IMFMediaBuffer> buffer;
        BYTE* start = nullptr;
        const HRESULT made = place == Place::Aligned ? MFCreateAlignedMemoryBuffer(bytes, 4095, buffer.Put())
                                                     : MFCreateMemoryBuffer(bytes, buffer.Put());
        if (FAILED(made) || FAILED(buffer->Lock(&start, nullptr, nullptr))) {
            Fail("no memory for frames");
        }
        buffer->Unlock();
        buffer->SetCurrentLength(bytes);
        MakeSample(buffer.Get(), m_samples.emplace_back());
        return {start, [](auto*) {}}; // the sample's buffer owns it
    }

    std::deque<CComRef<IMFSample>> m_samples; // an input, its output, the next input

public:
    const FrameSet frames; // made last: its memory comes from the samples
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
        Picture(format, Content::Combed).Fill(bytes.data());
        CComRef<IMFSample> input, output;
        MakeSample(bytes, input);
        MakeSample(bytes, output);
        return Run(input.Get(), output.Get());
    }

private:
    CComRef<IMFTransform> m_transform;
};

void Measure(const Module& module, const FrameFormat& format, Flow flow, Place place, Content content) {
    const SampleFrames samples(format, content, flow, place);
    const FrameSet& frames = samples.frames;
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
            if (!worker.Run(samples.Input(i), samples.Output(i))) {
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
    std::vector<std::unique_ptr<SampleFrames>> samples;
    std::vector<Worker> workers(count);
    for (Worker& worker : workers) {
        samples.push_back(std::make_unique<SampleFrames>(format, work.content, Flow::Chain, Place::Ordinary));
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
                    samples[t]->frames.Run(
                        [&](std::size_t i) {
                            if (!workers[t].Run(samples[t]->Input(i), samples[t]->Output(i))) {
                                Fail("a frame failed");
                            }
                        },
                        0);
                });
            }
        });
        const double turn = static_cast<double>(format.Bytes()) * samples[0]->frames.FramesPerTurn();
        rates.push_back(turn * count / seconds * 1e-9);
    }
    PrintRate(kWhere, std::string(work.name) + ", " + std::to_string(count) + " transforms in as many threads",
              format.Text(), FlowName(Flow::Chain), SpreadOf(rates));
}

bool IsWanted(const std::string& text, const char* part) {
    return !part || text.find(part) != std::string::npos;
}

// Aligned frames in one flow only, unless another is asked for.
void MeasureAll(const Module& module, const FrameFormat& format, Place place, const char* wantedFlow) {
    for (const Flow flow : {Flow::Cold, Flow::Warm, Flow::Read, Flow::Chain}) {
        if (wantedFlow ? std::strcmp(FlowName(flow), wantedFlow) != 0 : place == Place::Aligned && flow != Flow::Cold) {
            continue;
        }
        for (const Content content : {Content::Clean, Content::Busy, Content::Combed}) {
            Measure(module, format, flow, place, content);
        }
    }
}

} // namespace

// bench_transform [FRAME [FLOW]]: only the frames whose name in the table has that text in it, in that flow.
int main(int argc, char** argv) {
    const PrivateRegistry user(HKEY_CURRENT_USER);
    const Module module;
    if (!module.Handle()) {
        Fail("NMFVDeitrx.dll must lie beside this program");
    }
    const char* const frame = argc > 1 ? argv[1] : nullptr;
    const char* const flow = argc > 2 ? argv[2] : nullptr;
    for (const FrameFormat& format : kSizes) {
        for (const Place place : {Place::Ordinary, Place::Aligned}) {
            if (IsWanted(FrameText(format, place), frame)) {
                MeasureAll(module, format, place, flow);
            }
        }
        for (unsigned count = 1; !frame && count <= std::max(2u, std::thread::hardware_concurrency()); count *= 2) {
            MeasureThreads(module, format, FrameWorks()[1], count);
        }
    }
    return 0;
}
