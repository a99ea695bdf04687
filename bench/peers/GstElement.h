// A deinterlacing element of GStreamer, frame by frame.
#pragma once

#include "bench/Frames.h"

#include <memory>
#include <string>

#include <gst/check/gstharness.h>

// Frames are YUY2.
class GstDeinterlacer {
public:
    // `description` as on a command line. Null when this machine doesn't have the element.
    static std::unique_ptr<GstDeinterlacer> Make(const std::string& description, const FrameFormat& format);
    ~GstDeinterlacer();

    // Takes the frame at `index`, and lets go of whatever frames come out for it.
    void Run(const FrameSet& frames, std::size_t index);

private:
    explicit GstDeinterlacer(GstHarness* harness)
        : m_harness(harness) {}

    GstHarness* m_harness;
    GstClockTime m_time = 0;
};

// The version of the library that runs.
std::string GstVersion();
