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

std::uint32_t At(AviBytes bytes, std::size_t offset) {
    std::uint8_t word[4] = {};
    if (offset < bytes.size()) {
        std::memcpy(word, bytes.data() + offset, std::min(sizeof word, bytes.size() - offset));
    }
    return Little32(word);
}

// The fields' first lines tell their order where they are neighbours; lines of a television signal don't.
Scan FieldOrder(std::uint32_t firstLine, std::uint32_t secondLine) {
    return secondLine == firstLine + 1   ? Scan::TopFirst
           : firstLine == secondLine + 1 ? Scan::BottomFirst
                                         : Scan::Interlaced;
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

std::vector<std::uint8_t> ReadChunk(CInputStream& input, const AviChunk& chunk, std::size_t most) {
    std::vector<std::uint8_t> bytes(std::min<std::size_t>(most, chunk.bytes));
    bytes.resize(input.Read(bytes.data(), bytes.size()));
    SkipChunk(input, chunk, bytes.size());
    return bytes;
}

AviMainHeader ParseMainHeader(AviBytes bytes) {
    return {At(bytes, 32), At(bytes, 36)};
}

AviStreamHeader ParseStreamHeader(AviBytes bytes) {
    return {At(bytes, 0), At(bytes, 20), At(bytes, 24), At(bytes, 32), At(bytes, 44)};
}

AviBitmapHeader ParseBitmapHeader(AviBytes bytes) {
    return {static_cast<std::int32_t>(At(bytes, 4)), static_cast<std::int32_t>(At(bytes, 8)),
            static_cast<std::uint16_t>(At(bytes, 14)), At(bytes, 16)};
}

// The aspect ratio is the whole picture's; with its size it gives the pixel's. One field is what many programs write of
// every clip, so it says nothing of its lines.
AviVideoProperties ParseVideoProperties(AviBytes bytes) {
    constexpr std::size_t kFields = 36;
    constexpr std::size_t kFieldBytes = 32;
    constexpr std::size_t kStartLine = 28;
    const std::uint64_t across = std::uint64_t{At(bytes, 20) >> 16} * At(bytes, 28);
    const std::uint64_t down = std::uint64_t{At(bytes, 20) & 0xFFFF} * At(bytes, 24);
    AviVideoProperties properties;
    properties.aspect = ReducedRatio(across, down);
    const std::uint32_t fields = At(bytes, 32);
    if (fields == 2) {
        properties.scan = FieldOrder(At(bytes, kFields + kStartLine), At(bytes, kFields + kFieldBytes + kStartLine));
    }
    return properties;
}

bool SkipChunk(CInputStream& input, const AviChunk& chunk, std::uint64_t taken) {
    const std::uint64_t contents = chunk.bytes - taken;
    const bool whole = input.Skip(contents) == contents;
    input.Skip(chunk.bytes & 1); // the last pad byte of a file may be missing
    return whole;
}

int AviStreamOf(std::uint32_t id) {
    const int tens = static_cast<int>(id & 0xFF) - '0';
    const int ones = static_cast<int>(id >> 8 & 0xFF) - '0';
    return tens < 0 || tens > 9 || ones < 0 || ones > 9 ? -1 : tens * 10 + ones;
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
