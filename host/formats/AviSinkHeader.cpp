#include "host/formats/AviSinkHeader.h"

#include "host/formats/AviChunks.h"

#include <cmath>

namespace host {

namespace {

constexpr std::uint32_t kHasIndex = 0x10;
constexpr std::uint32_t kList = FourCc('L', 'I', 'S', 'T');
constexpr std::uint32_t kVideoChunk = FourCc('0', '0', 'd', 'b');

void PutPartList(CBytes& header, std::uint32_t id, const std::vector<AviPartIndex>& parts) {
    const std::size_t list = header.Open(FourCc('i', 'n', 'd', 'x'));
    header.U16(4).U16(0).U32(static_cast<std::uint32_t>(parts.size())).U32(id).Zeros(12);
    for (const AviPartIndex& part : parts) {
        header.U64(part.offset).U32(part.bytes).U32(part.length);
    }
    header.Zeros((kMaxAviParts - parts.size()) * 16);
    header.Close(list);
}

// The picture's aspect ratio in 16 bits a side; 0 where it is not known or does not fit.
std::uint32_t PictureAspect(const SinkFormat& format) {
    if (!format.aspect) {
        return 0;
    }
    const auto ratio = ReducedRatio(std::uint64_t{format.aspect->numerator} * static_cast<unsigned>(format.width),
                                    std::uint64_t{format.aspect->denominator} * static_cast<unsigned>(format.height));
    return !ratio || ratio->numerator > UINT16_MAX || ratio->denominator > UINT16_MAX
               ? 0
               : ratio->numerator << 16 | ratio->denominator;
}

// Room for two fields is always there. Which of them comes first is told by their first lines. No field at all would be
// no valid header: readers divide by their number.
void PutVideoProperties(CBytes& header, const SinkFormat& format, Scan scan) {
    const std::uint32_t fields = MayBeInterlaced(scan) ? 2 : 1;
    const auto width = static_cast<std::uint32_t>(format.width);
    const auto height = static_cast<std::uint32_t>(format.height);
    const std::size_t properties = header.Open(FourCc('v', 'p', 'r', 'p'));
    header.U32(0).U32(0).U32(static_cast<std::uint32_t>(std::llround(format.rate.Value()))).U32(width).U32(height);
    header.U32(PictureAspect(format)).U32(width).U32(height).U32(fields);
    const std::uint32_t startLines[] = {scan == Scan::BottomFirst ? 1u : 0u, scan == Scan::TopFirst ? 1u : 0u};
    for (const std::uint32_t line : startLines) {
        const std::uint32_t rows = fields == 2 ? (height + 1 - line) / 2 : height;
        header.U32(rows).U32(width).U32(rows).U32(width).U32(0).U32(0).U32(0).U32(line);
    }
    header.Close(properties);
}

void PutVideo(CBytes& header, const SinkFormat& format, const AviCounts& counts) {
    const PixelTraits& traits = TraitsOf(format.pixels);
    const auto frameBytes = static_cast<std::uint32_t>(FrameSize(format.pixels, format.width, format.height));
    const std::size_t list = header.Open(kList);
    header.U32(FourCc('s', 't', 'r', 'l'));
    const std::size_t stream = header.Open(FourCc('s', 't', 'r', 'h'));
    header.U32(FourCc('v', 'i', 'd', 's')).U32(traits.fourcc).U32(0).U32(0).U32(0);
    header.U32(format.rate.denominator).U32(format.rate.numerator).U32(0).U32(counts.frames).U32(frameBytes);
    header.U32(UINT32_MAX).U32(0).U16(0).U16(0);
    header.U16(static_cast<std::uint32_t>(format.width)).U16(static_cast<std::uint32_t>(format.height));
    header.Close(stream);
    const std::size_t bitmap = header.Open(FourCc('s', 't', 'r', 'f'));
    header.U32(40).U32(static_cast<std::uint32_t>(format.width)).U32(static_cast<std::uint32_t>(format.height));
    header.U16(1).U16(static_cast<std::uint32_t>(traits.bits)).U32(traits.fourcc).U32(frameBytes).Zeros(16);
    header.Close(bitmap);
    PutVideoProperties(header, format, counts.scan);
    PutPartList(header, kVideoChunk, counts.indexes[0]);
    header.Close(list);
}

void PutChunk(CBytes& header, std::uint32_t id, std::span<const std::uint8_t> contents) {
    const std::size_t chunk = header.Open(id);
    header.Bytes(contents);
    header.Close(chunk);
    header.Zeros(contents.size() & 1);
}

void PutSide(CBytes& header, const SideStream& side, std::size_t number, const std::vector<AviPartIndex>& parts) {
    const std::size_t list = header.Open(kList);
    header.U32(FourCc('s', 't', 'r', 'l'));
    PutChunk(header, FourCc('s', 't', 'r', 'h'), side.header);
    PutChunk(header, FourCc('s', 't', 'r', 'f'), side.format);
    PutPartList(header, AviChunkId(number, kVideoChunk), parts);
    header.Close(list);
}

} // namespace

std::uint32_t AviChunkId(std::size_t stream, std::uint32_t kind) {
    const auto number = static_cast<std::uint32_t>(stream);
    return (number / 10 + '0') | (number % 10 + '0') << 8 | (kind & 0xFFFF0000);
}

CBytes AviHeaderBytes(const SinkFormat& format, const AviCounts& counts) {
    const auto frameBytes = static_cast<std::uint32_t>(FrameSize(format.pixels, format.width, format.height));
    const double bytesPerSecond = frameBytes * format.rate.Value();
    CBytes header;
    header.U32(FourCc('R', 'I', 'F', 'F')).U32(counts.firstPartBytes).U32(FourCc('A', 'V', 'I', ' '));
    const std::size_t headerList = header.Open(kList);
    header.U32(FourCc('h', 'd', 'r', 'l'));
    const std::size_t main = header.Open(FourCc('a', 'v', 'i', 'h'));
    header.U32(static_cast<std::uint32_t>(std::llround(1e6 / format.rate.Value())))
        .U32(bytesPerSecond < UINT32_MAX ? static_cast<std::uint32_t>(bytesPerSecond) : UINT32_MAX)
        .U32(0)
        .U32(kHasIndex)
        .U32(counts.firstPartFrames)
        .U32(0)
        .U32(static_cast<std::uint32_t>(1 + format.side.size()))
        .U32(frameBytes)
        .U32(static_cast<std::uint32_t>(format.width))
        .U32(static_cast<std::uint32_t>(format.height))
        .Zeros(16);
    header.Close(main);
    PutVideo(header, format, counts);
    for (std::size_t i = 0; i < format.side.size(); ++i) {
        PutSide(header, format.side[i], i + 1, counts.indexes[i + 1]);
    }
    const std::size_t extended = header.Open(kList);
    header.U32(FourCc('o', 'd', 'm', 'l'));
    const std::size_t total = header.Open(FourCc('d', 'm', 'l', 'h'));
    header.U32(counts.frames).Zeros(244);
    header.Close(total);
    header.Close(extended);
    header.Close(headerList);
    header.U32(kList).U32(counts.firstMoviBytes).U32(FourCc('m', 'o', 'v', 'i'));
    return header;
}

} // namespace host
