// Everything that the command line can say.
#pragma once

#include "host/command/OptionTable.h"
#include "host/formats/FrameSink.h"
#include "host/formats/InputKind.h"
#include "host/picture/PixelFormat.h"
#include "host/formats/RawStream.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

enum class LineSampling { Auto, Interlaced, Progressive };
enum class Mode { Off, All, Auto };
enum class SheetKind { Platform, Own };

// In picture coordinates: from the top left corner, right and bottom not included.
struct Area {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool operator==(const Area&) const = default;
};

struct Pattern {
    int preamble = 0;
    int untouched = 0;
    int deinterlaced = 0;
    bool deinterlacePreamble = false;
};

enum class SegmentMode { None, All, Pattern };

// A segment begins at a frame or at a time.
struct Segment {
    std::optional<std::int64_t> frame;
    int hours = 0;
    int minutes = 0;
    int seconds = 0;
    int milliseconds = 0;
    SegmentMode mode = SegmentMode::None;
    std::optional<Pattern> pattern;
};

struct Still {
    std::uint64_t frame = 0;
    std::string path;
};

struct Options {
    // what to do
    bool help = false;
    bool version = false;
    bool quiet = false;
    // input and output
    std::optional<InputKind> from;
    std::optional<OutputKind> to;
    bool to420 = false;
    std::optional<RawFormat> raw;
    std::optional<Pixels> feed;
    LineSampling lines = LineSampling::Auto;
    bool keepCutOff = false;
    bool force = false;
    bool noSide = false;
    std::string outDir;
    std::vector<Still> stills;
    bool csv = false;
    bool json = false;
    std::string plot;
    std::string live; // the clip that plays beside the pages
    // the transform
    std::string dll;
    bool registered = false;
    bool saved = false;
    bool save = false;
    bool noSave = false;
    std::optional<SheetKind> sheet;
    // its settings; what is empty stays as the defaults (or, with `saved`, the saved settings) have it
    std::optional<Mode> mode;
    std::optional<bool> merge;
    std::optional<bool> even;
    bool evenAndOdd = false;
    std::optional<bool> keepTop; // the picture's field, which is even or odd by the frame's layout and region
    std::optional<double> sensitivity;
    std::optional<Area> region;
    std::optional<Area> protectedArea;
    std::optional<bool> resize;
    std::optional<bool> startWithEvenFrame;
    std::optional<Pattern> pattern;
    std::optional<bool> usePattern;
    std::optional<bool> segmentsAsTimes;
    std::vector<Segment> segments;
    // names of the options as they were given
    std::vector<std::string_view> given;
};

// The table of all options.
std::span<const OptionRow> AllOptions();

} // namespace host
