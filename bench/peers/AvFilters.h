// A deinterlacing filter of libavfilter, frame by frame.
#pragma once

#include "bench/Frames.h"

#include <memory>
#include <string>

struct AVFilterGraph;
struct AVFilterContext;
struct AVFrame;

// Frames are planar 4:2:2 of 8 bits, as many bytes as YUY2 has.
class AvFilter {
public:
    // `description` as on a command line. Null when this library doesn't have it.
    static std::unique_ptr<AvFilter> Make(const std::string& description, const FrameFormat& format);
    ~AvFilter();

    // Takes the frame at `index`, and lets go of whatever frames come out for it.
    void Run(const FrameSet& frames, std::size_t index);

private:
    AvFilter() = default;
    bool Open(const std::string& description, const FrameFormat& format);
    AVFrame* Wrap(const FrameSet& frames, std::size_t index);

    AVFilterGraph* m_graph = nullptr;
    AVFilterContext* m_source = nullptr;
    AVFilterContext* m_sink = nullptr;
    std::int64_t m_time = 0;
};

// The version of the library that runs.
std::string AvFilterVersion();
