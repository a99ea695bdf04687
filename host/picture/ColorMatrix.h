// Between luma with colour differences and blue, green, red.
#pragma once

#include <cstdint>

namespace host {

// Coefficients in 1/65536, for BT.601 or BT.709 and for limited (16 to 235) or full range.
class CColorMatrix {
public:
    CColorMatrix(bool highDefinition, bool fullRange);

    // `width` samples of blue, green and red from luma and full-width chroma, and back. Rows do not overlap.
    void ToRgb(std::uint8_t* const (&bgr)[3], const std::uint8_t* y, const std::uint8_t* u, const std::uint8_t* v,
               int width) const;
    void FromRgb(std::uint8_t* y, std::uint8_t* u, std::uint8_t* v, const std::uint8_t* const (&bgr)[3],
                 int width) const;

private:
    int m_base; // luma of black
    int m_lumaToRgb, m_redV, m_greenU, m_greenV, m_blueU;
    int m_lumaR, m_lumaG, m_lumaB;
    int m_uR, m_uG, m_uB;
    int m_vR, m_vG, m_vB;
};

// What players assume where nothing is said: BT.709 from 720 rows on, else BT.601.
inline bool IsHighDefinition(int height) {
    return height >= 720;
}

} // namespace host
