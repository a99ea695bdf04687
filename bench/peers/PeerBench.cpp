// What others offer for the same job, each by turns with memcpy and with this engine, in one process on one thread.
#include "bench/EngineWork.h"
#include "bench/Table.h"
#include "bench/peers/AvFilters.h"
#include "bench/peers/GstElement.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr const char* kWhere = "peers, native";
constexpr int kRounds = 7;

constexpr FrameFormat kSizes[] = {{"4:2:2", 720, 480, 16}, {"4:2:2", 1920, 1080, 16}, {"4:2:2", 3840, 2160, 16}};

constexpr struct {
    const char* name;
    const char* description;
} kAvFilters[] = {
    {"libavfilter yadif", "yadif=mode=send_frame:deint=all"},
    {"libavfilter bwdif", "bwdif=mode=send_frame:deint=all"},
    {"libavfilter w3fdif", "w3fdif=mode=frame:deint=all"},
    {"libavfilter idet (detects only)", "idet"},
    {"libavfilter pp=lb", "pp=lb"},
    {"libavfilter pp=li", "pp=li"},
    {"libavfilter idet,yadif", "idet,yadif=mode=send_frame:deint=interlaced"},
};

constexpr struct {
    const char* name;
    const char* description;
} kGstElements[] = {
    {"GStreamer deinterlace linear", "deinterlace mode=interlaced fields=top method=linear"},
    {"GStreamer deinterlace vfir", "deinterlace mode=interlaced fields=top method=vfir"},
    {"GStreamer deinterlace greedyl", "deinterlace mode=interlaced fields=top method=greedyl"},
    {"GStreamer deinterlace yadif", "deinterlace mode=interlaced fields=top method=yadif"},
};

template <class Peer>
void AddPeer(const char* name, const char* description, const FrameSet& frames, std::vector<Contestant>& contestants) {
    const std::shared_ptr<Peer> peer = Peer::Make(description, frames.Format());
    if (!peer) {
        std::fprintf(stderr, "bench_peers: %s is not on this machine\n", name);
        return;
    }
    contestants.push_back(frames.MakeContestant(name, [peer, &frames](std::size_t i) { peer->Run(frames, i); }));
}

void Measure(const FrameFormat& format) {
    const FrameSet frames(format, Content::Clean, Flow::Cold, Place::Ordinary);
    const Stores stores = StoresFor(format.Bytes());
    std::vector<Contestant> contestants{frames.MakeCopying()};
    for (const FrameWork& work : FrameWorks().subspan(1, 3)) { // rebuild, merge and auto on clean frames
        contestants.push_back(
            frames.MakeContestant(std::string("this engine: ") + work.name, [&, stores](std::size_t i) {
                DoWork(work, format, frames.Input(i), frames.Output(i), stores);
            }));
    }
    for (const auto& filter : kAvFilters) {
        AddPeer<AvFilter>(filter.name, filter.description, frames, contestants);
    }
    for (const auto& element : kGstElements) {
        AddPeer<GstDeinterlacer>(element.name, element.description, frames, contestants);
    }
    for (const Result& result : TakeTurns(contestants, kRounds)) {
        PrintResult(kWhere, frames, Flow::Cold, result, 0);
    }
}

} // namespace

// bench_peers --versions: only says which libraries run.
int main(int argc, char** argv) {
    if (argc > 1 && std::strcmp(argv[1], "--versions") == 0) {
        std::printf("libavfilter %s, GStreamer ", AvFilterVersion().c_str());
        std::printf("%s\n", GstVersion().c_str());
        return 0;
    }
    for (const FrameFormat& format : kSizes) {
        Measure(format);
    }
    return 0;
}
