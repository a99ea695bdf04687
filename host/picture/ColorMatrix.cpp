#include "host/picture/ColorMatrix.h"

#include "host/picture/PixelRows.h"

#include <cmath>

namespace host {

namespace {

int Fixed(double value) {
    return static_cast<int>(std::lround(value * 65536));
}

} // namespace

CColorMatrix::CColorMatrix(bool highDefinition, bool fullRange)
    : m_base(fullRange ? 0 : 16) {
    const double red = highDefinition ? 0.2126 : 0.299;
    const double blue = highDefinition ? 0.0722 : 0.114;
    const double green = 1 - red - blue;
    const double luma = fullRange ? 1 : 219.0 / 255;
    const double chroma = fullRange ? 1 : 224.0 / 255;

    m_lumaToRgb = Fixed(1 / luma);
    m_redV = Fixed(2 * (1 - red) / chroma);
    m_blueU = Fixed(2 * (1 - blue) / chroma);
    m_greenU = Fixed(-2 * (1 - blue) * blue / green / chroma);
    m_greenV = Fixed(-2 * (1 - red) * red / green / chroma);

    m_lumaR = Fixed(red * luma);
    m_lumaG = Fixed(green * luma);
    m_lumaB = Fixed(blue * luma);
    m_uR = Fixed(-red / (2 * (1 - blue)) * chroma);
    m_uG = Fixed(-green / (2 * (1 - blue)) * chroma);
    m_uB = -m_uR - m_uG; // greys stay exactly grey
    m_vG = Fixed(-green / (2 * (1 - red)) * chroma);
    m_vB = Fixed(-blue / (2 * (1 - red)) * chroma);
    m_vR = -m_vG - m_vB;
}

void CColorMatrix::ToRgb(std::uint8_t* const (&bgr)[3], const std::uint8_t* y, const std::uint8_t* u,
                         const std::uint8_t* v, int width) const {
    const PixelRows& rows = PixelRowsHere();
    const int luma = m_lumaToRgb;
    const int black = -m_base * luma;
    rows.weighTwo(bgr[0], y, u, {luma, m_blueU, 0, black - 128 * m_blueU}, width);
    rows.weigh(bgr[1], y, u, v, {luma, m_greenU, m_greenV, black - 128 * (m_greenU + m_greenV)}, width);
    rows.weighTwo(bgr[2], y, v, {luma, m_redV, 0, black - 128 * m_redV}, width);
}

void CColorMatrix::FromRgb(std::uint8_t* y, std::uint8_t* u, std::uint8_t* v, const std::uint8_t* const (&bgr)[3],
                           int width) const {
    const PixelRows& rows = PixelRowsHere();
    rows.weigh(y, bgr[0], bgr[1], bgr[2], {m_lumaB, m_lumaG, m_lumaR, m_base * 65536}, width);
    rows.weigh(u, bgr[0], bgr[1], bgr[2], {m_uB, m_uG, m_uR, 128 * 65536}, width);
    rows.weigh(v, bgr[0], bgr[1], bgr[2], {m_vB, m_vG, m_vR, 128 * 65536}, width);
}

} // namespace host
