// Whole frames through the engine alone: every work, either way of storing, and what the rule chooses. By turns with
// memcpy.
#include "bench/EngineWork.h"
#include "bench/Table.h"
#include "bench/Works.h"

#include <cstring>

namespace {

constexpr const char* kWhere = "engine, native";
constexpr int kRounds = 9;

constexpr FrameFormat kSizes[] = {
    {"YUY2", 720, 480, 16},   {"RGB24", 720, 480, 24},   {"YUY2", 720, 576, 16},   {"RGB24", 720, 576, 24},
    {"YUY2", 1024, 576, 16},  {"RGB24", 1024, 576, 24},  {"YUY2", 1280, 720, 16},  {"RGB24", 1280, 720, 24},
    {"YUY2", 1920, 1080, 16}, {"RGB24", 1920, 1080, 24}, {"YUY2", 3840, 2160, 16}, {"RGB24", 3840, 2160, 24},
};

Contestant Working(const FrameSet& frames, const FrameWork& work, Stores stores, const char* how) {
    return frames.MakeContestant(work.name + std::string(how), [&frames, work, stores](std::size_t i) {
        DoWork(work, frames.Format(), frames.Input(i), frames.Output(i), stores);
    });
}

void Print(const char* where, const FrameSet& frames, Flow flow, const std::vector<Contestant>& contestants,
           const std::vector<double>& wanted) {
    const std::vector<Result> results = TakeTurns(contestants, kRounds);
    for (std::size_t i = 0; i < results.size(); ++i) {
        PrintResult(where, frames, flow, results[i], wanted[i]);
    }
}

void Measure(const FrameFormat& format, Flow flow, Place place, Content content) {
    const FrameSet frames(format, content, flow, place);
    const bool streaming = StoresFor(format.Bytes()) == Stores::Streaming;
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
    Print(kWhere, frames, flow, contestants, wanted);
}

// How far past a cache line the input and the output begin; the first pair is what the others are compared with.
constexpr struct {
    std::size_t input, output;
} kPlaces[] = {{0, 0}, {16, 0}, {32, 0}, {33, 0}, {16, 16}, {0, 32}, {0, 48}, {48, 48}, {0, 1}, {1, 33}};

// One work at every place, with the first in memcpy's stead.
void MeasurePlaces(const FrameFormat& format, const FrameWork& work, Stores stores) {
    constexpr double kWanted = 1.05; // times what it takes at 0 and 0
    FrameFormat roomier = format;
    ++roomier.height;
    const FrameSet frames(roomier, work.content, Flow::Cold, Place::Aligned);
    std::vector<Contestant> contestants;
    for (const auto& place : kPlaces) {
        const std::string name = std::string(work.name) + (stores == Stores::Streaming ? ", streaming" : ", ordinary") +
                                 " stores, " + std::to_string(place.input) + " to " + std::to_string(place.output);
        contestants.push_back(frames.MakeContestant(name, [&, place](std::size_t i) {
            DoWork(work, format, frames.Input(i) + place.input, frames.Output(i) + place.output, stores);
        }));
    }
    Print("places, native", frames, Flow::Cold, contestants, std::vector<double>(contestants.size(), kWanted));
}

bool IsWanted(const std::string& text, const char* part) {
    return !part || text.find(part) != std::string::npos;
}

void MeasureAll(const FrameFormat& format, Place place, const char* wantedFlow) {
    for (const Flow flow : {Flow::Cold, Flow::Warm, Flow::Read, Flow::Chain}) {
        const bool wanted = wantedFlow ? std::strcmp(FlowName(flow), wantedFlow) == 0
                                       : flow != Flow::Read && (place == Place::Ordinary || flow == Flow::Cold);
        for (const Content content : {Content::Clean, Content::Busy, Content::Combed}) {
            if (wanted && (wantedFlow || flow == Flow::Cold || content == Content::Clean)) {
                Measure(format, flow, place, content);
            }
        }
    }
}

} // namespace

// bench_frames: frames with either way of storing, but for the flow that reads cold frames after. bench_frames FRAME
// [FLOW]: only the frames whose name in the table has that text in it; all works, in that flow. bench_frames places
// [FRAME [WORK]]: works at places in a cache line, with either way of storing.
int main(int argc, char** argv) {
    const auto argument = [&](int i) { return i < argc ? argv[i] : nullptr; };
    const bool places = argc > 1 && std::strcmp(argv[1], "places") == 0;
    for (const FrameFormat& format : kSizes) {
        for (const Place place : {Place::Ordinary, Place::Aligned}) {
            if (!places && IsWanted(FrameText(format, place), argument(1))) {
                MeasureAll(format, place, argument(2));
            }
        }
        for (const FrameWork& work : FrameWorks()) {
            if (places && IsWanted(format.Text(), argument(2)) && IsWanted(work.name, argument(3))) {
                MeasurePlaces(format, work, Stores::Ordinary);
                MeasurePlaces(format, work, Stores::Streaming);
            }
        }
    }
    return 0;
}
