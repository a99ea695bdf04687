// Raw frames: one after the other as the transform lays them out, with padded rows, RGB24 bottom row first.
#pragma once

#include "host/formats/ByteStream.h"
#include "host/formats/FrameSource.h"

#include <memory>
#include <string_view>

namespace host {

struct RawFormat {
    int width = 0;
    int height = 0;
    Pixels pixels = Pixels::Yuy2;
    Rational rate;
};

// "WxH:FORMAT@FPS"; nothing when the text is not of that form or the width is odd for a format that shares chroma.
std::optional<RawFormat> ParseRawFormat(std::string_view text);

// The input must outlive the source.
std::unique_ptr<IFrameSource> OpenRaw(CInputStream& input, const RawFormat& format);

} // namespace host
