// What a clip holds beside its video: sound, text.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace host {

struct SideStream {
    std::string kind;                 // for the user: "audio"
    std::vector<std::uint8_t> header; // the contents of an AVI file's strh and strf chunks, where it is one
    std::vector<std::uint8_t> format;
};

// Takes a packet of a side stream, counted from 0, in the order of the input.
using SidePackets = std::function<void(std::size_t stream, std::uint32_t id, std::span<const std::uint8_t> bytes)>;

} // namespace host
