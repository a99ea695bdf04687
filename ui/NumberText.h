// Numbers as people type them.
#pragma once

#include <cstdint>

// Blanks, then digits; stops at the first other character. 0 for a text that is no number or negative; the largest
// number for one that is too long.
std::uint32_t UnsignedOfText(const char* text);

// Blanks, a sign, digits; stops at the first other character. The nearest number there is for one that is too long.
std::int64_t FrameOfText(const char* text);
