#include "engine/pixels/GrayPalette.h"

#include <cstdlib>

std::uint32_t PaletteLength(std::uint32_t bitCount, std::uint32_t colorsUsed) {
    if (bitCount > 8) {
        return 0;
    }
    return colorsUsed ? colorsUsed : 1u << bitCount;
}

bool IsGrayPalette(const ColorEntry* palette, std::uint32_t length) {
    if (!palette || length == 0) {
        return false;
    }
    for (std::uint32_t i = 0; i < length; ++i) {
        const ColorEntry& entry = palette[i];
        if (entry.blue != entry.green || entry.green != entry.red) {
            return false;
        }
        if (length > 1 && std::llabs(entry.blue - std::int64_t{i} * 255 / (length - 1)) > 2) {
            return false;
        }
    }
    return true;
}
