// The numbers that the accepted input type gives to the engine.
#pragma once

#include <cstdint>

struct StreamFormat {
    std::int32_t m_lWidth = 1600;  // pixels
    std::int32_t m_lHeight = 1600; // rows; signed, as the type gave it
    std::int32_t m_lBitCount = 0;  // per pixel
    std::int32_t m_lStride = 0;    // bytes per row
    std::int32_t m_lBufferSize = 0;
    std::int32_t m_bGrayPalette = 1;
    std::int16_t m_bTopDown = 0; // Kept: nothing sets it, so all frames count as bottom-up
    std::int32_t m_bPacked422 = 0;
    std::int64_t m_rtAvgTimePerFrame = 0; // 100 ns
    double m_dFrameRate = 30.0;           // frames per second
};
