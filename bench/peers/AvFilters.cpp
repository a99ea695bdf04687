#include "bench/peers/AvFilters.h"

#include <cstdio>
#include <cstdlib>

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/log.h>
#include <libavutil/pixfmt.h>
}

std::unique_ptr<AvFilter> AvFilter::Make(const std::string& description, const FrameFormat& format) {
    av_log_set_level(AV_LOG_QUIET);
    std::unique_ptr<AvFilter> filter(new AvFilter);
    return filter->Open(description, format) ? std::move(filter) : nullptr;
}

AvFilter::~AvFilter() {
    avfilter_graph_free(&m_graph);
}

bool AvFilter::Open(const std::string& description, const FrameFormat& format) {
    m_graph = avfilter_graph_alloc();
    m_graph->nb_threads = 1;
    char source[160];
    std::snprintf(source, sizeof source, "video_size=%dx%d:pix_fmt=%d:time_base=1/25:pixel_aspect=1/1", format.width,
                  format.height, AV_PIX_FMT_YUV422P);
    if (avfilter_graph_create_filter(&m_source, avfilter_get_by_name("buffer"), "in", source, nullptr, m_graph) < 0 ||
        avfilter_graph_create_filter(&m_sink, avfilter_get_by_name("buffersink"), "out", nullptr, nullptr, m_graph) <
            0) {
        return false;
    }
    const auto end = [](const char* name, AVFilterContext* context) {
        AVFilterInOut* point = avfilter_inout_alloc();
        *point = {av_strdup(name), context, 0, nullptr};
        return point;
    };
    AVFilterInOut* outputs = end("in", m_source);
    AVFilterInOut* inputs = end("out", m_sink);
    const bool parsed = avfilter_graph_parse_ptr(m_graph, description.c_str(), &inputs, &outputs, nullptr) >= 0;
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    return parsed && avfilter_graph_config(m_graph, nullptr) >= 0;
}

// The three planes lie one behind the other in the frame's bytes, which stay the set's.
AVFrame* AvFilter::Wrap(const FrameSet& frames, std::size_t index) {
    const FrameFormat& format = frames.Format();
    AVFrame* frame = av_frame_alloc();
    frame->format = AV_PIX_FMT_YUV422P;
    frame->width = format.width;
    frame->height = format.height;
    frame->interlaced_frame = 1;
    frame->top_field_first = 1;
    frame->pts = m_time++;
    std::uint8_t* bytes = frames.Input(index);
    const std::size_t luma = static_cast<std::size_t>(format.width) * static_cast<std::size_t>(format.height);
    const int widths[] = {format.width, format.width / 2, format.width / 2};
    for (int plane = 0; plane < 3; ++plane) {
        frame->data[plane] = bytes + (plane == 0 ? 0 : plane == 1 ? luma : luma / 2 * 3);
        frame->linesize[plane] = widths[plane];
    }
    const auto keep = [](void*, std::uint8_t*) {};
    frame->buf[0] = av_buffer_create(bytes, format.Bytes(), keep, nullptr, AV_BUFFER_FLAG_READONLY);
    return frame;
}

void AvFilter::Run(const FrameSet& frames, std::size_t index) {
    AVFrame* frame = Wrap(frames, index);
    if (av_buffersrc_add_frame(m_source, frame) < 0) {
        std::fputs("bench_peers: a filter refused a frame\n", stderr);
        std::exit(1);
    }
    while (av_buffersink_get_frame(m_sink, frame) >= 0) {
        av_frame_unref(frame);
    }
    av_frame_free(&frame);
}

std::string AvFilterVersion() {
    const unsigned version = avfilter_version();
    return std::to_string(AV_VERSION_MAJOR(version)) + "." + std::to_string(AV_VERSION_MINOR(version)) + "." +
           std::to_string(AV_VERSION_MICRO(version));
}
