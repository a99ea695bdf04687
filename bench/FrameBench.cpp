// Whole frames through the engine alone: every work, either way of storing, and what the rule chooses. By turns with
// memcpy.
#include "bench/EngineWork.h"
#include "bench/Table.h"
#include "bench/Works.h"

#include <cstring>

namespace {

constexpr const char* kWhere = "engine, native";
constexpr int kRounds = 15;

constexpr FrameFormat kSizes[] = {
    {"YUY2", 720, 480, 16},   {"RGB24", 720, 480, 24},   {"YUY2", 1024, 576, 16},  {"RGB24", 1024, 576, 24},
    {"YUY2", 1280, 720, 16},  {"RGB24", 1280, 720, 24},  {"YUY2", 1920, 1080, 16}, {"RGB24", 1920, 1080, 24},
    {"YUY2", 3840, 2160, 16}, {"RGB24", 3840, 2160, 24},
};

Contestant Working(const FrameSet& frames, const FrameWork& work, Stores stores, const char* how) {
    return frames.MakeContestant(work.name + std::string(how),
                                 [&frames, work, stores](std::size_t i) { DoWork(work, frames, i, stores); });
}

void Measure(const FrameFormat& format, Flow flow, Content content) {
    const FrameSet frames(format, content, flow);
    const Stores chosen = StoresFor(format.Bytes());
    const bool streaming = chosen == Stores::Streaming;
    std::vector<Contestant> contestants{frames.MakeCopying()};
    std::vector<double> wanted{0};
    for (const FrameWork& work : FrameWorks()) {
        if (work.content != content) {
            continue;
        }
        contestants.push_back(Working(frames, work, Stores::Ordinary, streaming ? ", ordinary stores" : ""));
        contestants.push_back(Working(frames, work, Stores::Streaming, streaming ? "" : ", streaming stores"));
        wanted.push_back(streaming ? 0 : WantedRatio(work, format, flow, streaming));
        wanted.push_back(streaming ? WantedRatio(work, format, flow, streaming) : 0);
    }
    const std::vector<Result> results = TakeTurns(contestants, kRounds);
    for (std::size_t i = 0; i < results.size(); ++i) {
        PrintResult(kWhere, frames, flow, results[i], wanted[i]);
    }
}

bool IsWanted(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

} // namespace

// bench_frames: frames with either way of storing, but for the flow that reads cold frames after. bench_frames FRAME
// FLOW: all works on the frames whose name in the table has that text in it, in that flow.
int main(int argc, char** argv) {
    const bool all = argc > 2;
    for (const FrameFormat& format : kSizes) {
        for (const Flow flow : {Flow::Cold, Flow::Warm, Flow::Read, Flow::Chain}) {
            if (all ? !IsWanted(format.Text(), argv[1]) || std::strcmp(FlowName(flow), argv[2]) != 0
                    : flow == Flow::Read) {
                continue;
            }
            Measure(format, flow, Content::Clean);
            if (all || flow == Flow::Cold) {
                Measure(format, flow, Content::Busy);
                Measure(format, flow, Content::Combed);
            }
        }
    }
    return 0;
}
