// Frames in: what every kind of input offers.
#pragma once

#include "host/formats/ByteStream.h"
#include "host/formats/Scan.h"
#include "host/formats/SideStream.h"
#include "host/picture/ColorMatrix.h"
#include "host/picture/Frame.h"
#include "host/picture/PixelFormat.h"
#include "host/picture/Rational.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

struct ClipInfo {
    Layout layout = Layout::Yuy2;
    int width = 0;
    int height = 0;
    std::optional<Rational> rate;
    std::optional<Rational> aspect; // of one pixel
    Scan scan = Scan::Unknown;
    bool fullRange = false;              // luma 0 to 255 instead of 16 to 235
    std::optional<bool> bt709;           // the matrix between luma and colours, where it is told
    int sampleBits = 8;                  // of the input; frames have 8
    std::string chroma420;               // the tag of a Y4M header whose frames are 4:2:0
    std::optional<std::uint64_t> frames; // when it is known beforehand
    std::string comments;                // of a Y4M header: " XNAME=VALUE" each
    std::vector<SideStream> sideStreams;

    // The matrix that holds: what players assume where nothing is told depends on the height.
    bool UsesBt709() const { return bt709.value_or(IsHighDefinition(height)); }
};

// Not thread-safe; one thread reads. Throws HostError with ExitCode::Input.
class IFrameSource {
public:
    virtual ~IFrameSource() = default;
    virtual const ClipInfo& Info() const = 0;
    // Goes to the next frame; false at the regular end.
    virtual bool Next() = 0;
    // The current frame; valid until the next call of Next.
    virtual FrameView Frame() const = 0;
    // True when the current frame's chroma lines belong to fields.
    virtual bool FieldChroma() const = 0;
    // What is said of the current frame's lines; never Mixed.
    virtual Scan FrameScan() const { return Info().scan; }
    // Who gets the packets of the side streams that Next passes; without it they are dropped.
    virtual void SetSidePackets(SidePackets) {}
    // True once the times of frames have left the clip's constant rate.
    virtual bool IsIrregular() const { return false; }
};

// The openers of files read their headers at once. The input must outlive the source.
// The first video stream of an uncompressed AVI file (RGB24, RGB32, YUY2, UYVY or IYU2), read from front to back, so
// that a pipe works too. Throws UnknownFormatError for other video.
std::unique_ptr<IFrameSource> OpenAvi(CInputStream& input);
// A Y4M stream of 4:2:0, 4:2:2, 4:4:4 or mono.
std::unique_ptr<IFrameSource> OpenY4m(CInputStream& input);

// The format that fits a layout without loss or as nearly as there is, and takes the width.
Pixels NaturalFeed(Layout layout, int width);

// The layout of a format's frames.
Layout LayoutOf(Pixels pixels);

// The packed frame of a format over `bytes`, seen from its top row whatever the order in memory.
FrameView PackedFrame(Pixels pixels, int width, int height, const std::uint8_t* bytes);
FrameTarget PackedFrame(Pixels pixels, int width, int height, std::uint8_t* bytes);

} // namespace host
