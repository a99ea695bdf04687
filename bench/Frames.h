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
    Combed // a third of the picture, in blocks all over it, has steps around the one that counts as large
};

// Rows that repeat from top to bottom.
class Picture {
public:
    Picture(const FrameFormat& format, Content content);

    void Fill(std::uint8_t* frame) const;

private:
    std::size_t m_stride;
    std::int32_t m_height;
    std::vector<std::uint8_t> m_rows;
};

// How frames come and go.
enum class Flow {
    Cold, // many frames: none is in the cache when its turn comes
    Warm, // one and the same pair of frames
    Read, // as Cold, and the output is read afterwards
    Chain // one of six input frames is filled before, one of six output frames is read afterwards
};

const char* FlowName(Flow flow);

// Where frames lie.
enum class Place {
    Ordinary, // 16 bytes past a cache line, as pipelines hand them out
    Aligned   // at a multiple of 4096
};

// Takes `bytes` bytes for one frame.
using FrameMemory = std::function<std::shared_ptr<std::uint8_t>(std::size_t bytes)>;

FrameMemory MemoryAt(Place place);

// How the table names frames.
std::string FrameText(const FrameFormat& format, Place place);

// Input and output frames, as many of each as the flow wants, taken by turns: an input frame, its output frame.
class FrameSet {
public:
    FrameSet(const FrameFormat& format, Content content, Flow flow, Place place);
    FrameSet(const FrameFormat& format, Content content, Flow flow, Place place, const FrameMemory& memory);

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

    // As the table names the frames.
    std::string Text() const { return FrameText(m_format, m_place); }

private:
    FrameFormat m_format;
    Picture m_picture;
    Flow m_flow;
    Place m_place;
    int m_framesPerTurn;
    std::vector<std::shared_ptr<std::uint8_t>> m_inputs, m_outputs;
};
