#include "host/formats/AviChunks.h"

#include "host/picture/PixelFormat.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace host {

namespace {

constexpr std::uint32_t kEntered[] = {FourCc('A', 'V', 'I', ' '), FourCc('A', 'V', 'I', 'X'),
                                      FourCc('h', 'd', 'r', 'l'), FourCc('s', 't', 'r', 'l'),
                                      FourCc('m', 'o', 'v', 'i'), FourCc('r', 'e', 'c', ' ')};

std::uint32_t Little32(const std::uint8_t* p) {
    return p[0] | std::uint32_t{p[1]} << 8 | std::uint32_t{p[2]} << 16 | std::uint32_t{p[3]} << 24;
}

// The first N bytes of a chunk, the rest skipped.
template <std::size_t N>
std::array<std::uint8_t, N> ReadFront(CInputStream& input, const AviChunk& chunk) {
    std::array<std::uint8_t, N> front{};
    const std::size_t wanted = std::min<std::size_t>(N, chunk.bytes);
    const std::size_t got = input.Read(front.data(), wanted);
    SkipChunk(input, chunk, got);
    return front;
}

} // namespace

std::optional<AviChunk> NextChunk(CInputStream& input) {
    AviChunk chunk;
    chunk.offset = input.Position();
    std::uint8_t header[8];
    if (input.Read(header, sizeof header) != sizeof header) {
        return std::nullopt;
    }
    chunk.id = Little32(header);
    chunk.bytes = Little32(header + 4);
    if (chunk.id != FourCc('R', 'I', 'F', 'F') && chunk.id != FourCc('L', 'I', 'S', 'T')) {
        return chunk;
    }
    const auto type = input.Peek(4);
    if (type.size() == 4 &&
        std::find(std::begin(kEntered), std::end(kEntered), Little32(type.data())) != std::end(kEntered)) {
        chunk.type = Little32(type.data());
        input.Skip(4);
    }
    return chunk;
}

AviMainHeader ReadMainHeader(CInputStream& input, const AviChunk& chunk) {
    const auto bytes = ReadFront<40>(input, chunk);
    return {Little32(&bytes[32]), Little32(&bytes[36])};
}

AviStreamHeader ReadStreamHeader(CInputStream& input, const AviChunk& chunk) {
    const auto bytes = ReadFront<36>(input, chunk);
    return {Little32(&bytes[0]), Little32(&bytes[20]), Little32(&bytes[24]), Little32(&bytes[32])};
}

AviBitmapHeader ReadBitmapHeader(CInputStream& input, const AviChunk& chunk) {
    const auto bytes = ReadFront<40>(input, chunk);
    return {static_cast<std::int32_t>(Little32(&bytes[4])), static_cast<std::int32_t>(Little32(&bytes[8])),
            static_cast<std::uint16_t>(bytes[14] | bytes[15] << 8), Little32(&bytes[16])};
}

bool SkipChunk(CInputStream& input, const AviChunk& chunk, std::uint64_t taken) {
    const std::uint64_t contents = chunk.bytes - taken;
    const bool whole = input.Skip(contents) == contents;
    input.Skip(chunk.bytes & 1); // the last pad byte of a file may be missing
    return whole;
}

bool IsFourCcText(std::uint32_t code) {
    char text[4];
    std::memcpy(text, &code, sizeof text);
    return std::all_of(std::begin(text), std::end(text), [](char c) { return c >= ' ' && c < 127; });
}

std::string FourCcText(std::uint32_t code) {
    char text[16];
    if (IsFourCcText(code)) {
        std::memcpy(text + 1, &code, 4);
        text[0] = text[5] = '\'';
        return std::string(text, 6);
    }
    std::snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(code));
    return text;
}

} // namespace host
