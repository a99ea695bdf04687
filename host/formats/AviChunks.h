// The chunk structure of RIFF files, read from front to back.
#pragma once

#include "host/formats/ByteStream.h"
#include "host/formats/Scan.h"
#include "host/picture/Rational.h"

#include <span>
#include <string>

namespace host {

struct AviChunk {
    std::uint32_t id = 0;
    std::uint32_t bytes = 0;  // of its contents, not counting the pad byte
    std::uint32_t type = 0;   // of a RIFF or LIST chunk whose contents follow as chunks
    std::uint64_t offset = 0; // of its header in the file
};

// The next chunk header; the lists that hold frames and stream headers are entered, all other lists are plain chunks.
// Nothing at the end of the input or when it ends inside the header, which is then taken.
std::optional<AviChunk> NextChunk(CInputStream& input);

// A chunk's contents up to `most` bytes; the rest, pad byte and all, is taken off the input too. Parsing takes what is
// missing for 0.
std::vector<std::uint8_t> ReadChunk(CInputStream& input, const AviChunk& chunk, std::size_t most);

// What the main header chunk (avih), a stream header (strh), a bitmap header (strf) and the video properties (vprp)
// say, as far as it matters here.
struct AviMainHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};
struct AviStreamHeader {
    std::uint32_t type = 0;
    std::uint32_t scale = 0;
    std::uint32_t rate = 0;
    std::uint32_t length = 0;
    std::uint32_t sampleBytes = 0; // 0 where packets differ in size
};
struct AviBitmapHeader {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint16_t bits = 0;
    std::uint32_t compression = 0;
};
struct AviVideoProperties {
    std::optional<Rational> aspect; // of one pixel
    Scan scan = Scan::Unknown;
};

using AviBytes = std::span<const std::uint8_t>;
AviMainHeader ParseMainHeader(AviBytes bytes);
AviStreamHeader ParseStreamHeader(AviBytes bytes);
AviBitmapHeader ParseBitmapHeader(AviBytes bytes);
AviVideoProperties ParseVideoProperties(AviBytes bytes);

// Takes the rest of a chunk's contents, of which `taken` bytes are read, and its pad byte off the input; false when
// that ends inside the contents.
bool SkipChunk(CInputStream& input, const AviChunk& chunk, std::uint64_t taken = 0);

// The stream that a chunk "NNxx" belongs to; -1 for other chunks.
int AviStreamOf(std::uint32_t id);

// Whether the code is four printable characters, as those of chunks are.
bool IsFourCcText(std::uint32_t code);

// "'H264'" or "0x00000001" for messages.
std::string FourCcText(std::uint32_t code);

} // namespace host
