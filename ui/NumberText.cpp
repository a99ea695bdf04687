#include "ui/NumberText.h"

#include <algorithm>
#include <cstdlib>

std::int64_t FrameOfText(const char* text) {
    return std::strtoll(text, nullptr, 10);
}

std::uint32_t UnsignedOfText(const char* text) {
    const std::int64_t number = FrameOfText(text);
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(number, 0, UINT32_MAX));
}
