#include "bench/peers/GstElement.h"

std::unique_ptr<GstDeinterlacer> GstDeinterlacer::Make(const std::string& description, const FrameFormat& format) {
    gst_init(nullptr, nullptr);
    GstElementFactory* factory = gst_element_factory_find(description.substr(0, description.find(' ')).c_str());
    if (!factory) {
        return nullptr;
    }
    gst_object_unref(factory);
    GstHarness* harness = gst_harness_new_parse(description.c_str());
    const std::string caps = "video/x-raw,format=YUY2,interlace-mode=interleaved,field-order=top-field-first,"
                             "framerate=25/1,width=" +
                             std::to_string(format.width) + ",height=" + std::to_string(format.height);
    gst_harness_set_src_caps_str(harness, caps.c_str());
    return std::unique_ptr<GstDeinterlacer>(new GstDeinterlacer(harness));
}

GstDeinterlacer::~GstDeinterlacer() {
    gst_harness_teardown(m_harness);
}

void GstDeinterlacer::Run(const FrameSet& frames, std::size_t index) {
    const std::size_t bytes = frames.Format().Bytes();
    GstBuffer* buffer =
        gst_buffer_new_wrapped_full(GST_MEMORY_FLAG_READONLY, frames.Input(index), bytes, 0, bytes, nullptr, nullptr);
    GST_BUFFER_PTS(buffer) = m_time;
    GST_BUFFER_DURATION(buffer) = GST_SECOND / 25;
    m_time += GST_SECOND / 25;
    gst_harness_push(m_harness, buffer);
    while (GstBuffer* out = gst_harness_try_pull(m_harness)) {
        gst_buffer_unref(out);
    }
}

std::string GstVersion() {
    guint major = 0, minor = 0, micro = 0, nano = 0;
    gst_version(&major, &minor, &micro, &nano);
    return std::to_string(major) + "." + std::to_string(minor) + "." + std::to_string(micro);
}
