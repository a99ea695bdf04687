// The frames that benchmarks work on, and the order in which they come.
#pragma once

#include "bench/Turns.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct FrameFormat {
    const char* name;
    std::int32_t width, height, bits;

    std::int32_t Stride() const { return width * bits / 8; }
    std::size_t Bytes() const { return static_cast<std::size_t>(Stride()) * static_cast<std::size_t>(height); }
    std::string Text() const { return std::string(name) + " " + std::to_string(width) + "x" + std::to_string(height); }
};

// What a frame shows.
enum class Content {
    Clean, // no vertical steps
    Busy,  // large steps between every second pair of rows, and no position combed
    Combed // large steps between all rows
};

void FillFrame(const FrameFormat& format, Content content, std::uint8_t* frame);

// How frames come and go.
enum class Flow {
    Cold, // many frames: none is in the cache when its turn comes
    Warm, // one and the same pair of frames
    Read, // as Cold, and the output is read afterwards
    Chain // one of six input frames is filled before, one of six output frames is read afterwards
};

const char* FlowName(Flow flow);

// Input and output frames at addresses that are multiples of 4096, as many of each as the flow wants.
class FrameSet {
public:
    FrameSet(const FrameFormat& format, Content content, Flow flow);

    // The work on one frame, by its index.
    using Work = std::function<void(std::size_t index)>;

    // Whose turn is some milliseconds of work on one frame after the other. The set must outlive it.
    Contestant MakeContestant(std::string name, Work work) const;

    // The one that all others are compared with: memcpy of each frame.
    Contestant MakeCopying() const;

    // The frames of a turn from `first` on.
    void Run(const Work& work, int first) const;

    // Frames in one turn.
    int FramesPerTurn() const { return m_framesPerTurn; }

    std::size_t Count() const { return m_inputs.size(); }
    std::uint8_t* Input(std::size_t index) const { return m_inputs[index].get(); }
    std::uint8_t* Output(std::size_t index) const { return m_outputs[index].get(); }
    const FrameFormat& Format() const { return m_format; }

private:
    struct Free {
        void operator()(std::uint8_t* bytes) const;
    };
    using Frame = std::unique_ptr<std::uint8_t, Free>;

    Frame MakeFrame() const;

    FrameFormat m_format;
    Content m_content;
    Flow m_flow;
    int m_framesPerTurn;
    std::vector<Frame> m_inputs, m_outputs;
};
