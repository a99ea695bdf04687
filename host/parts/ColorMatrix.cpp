#include "host/parts/ColorMatrix.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

int Fixed(double value) {
    return static_cast<int>(std::lround(value * 65536));
}

std::uint8_t Byte(int fixed) {
    return static_cast<std::uint8_t>(std::clamp((fixed + 32768) >> 16, 0, 255));
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

void CColorMatrix::ToBgr(std::uint8_t* bgr, const std::uint8_t* y, const std::uint8_t* u, const std::uint8_t* v,
                         int width) const {
    for (int x = 0; x < width; ++x) {
        const int luma = (y[x] - m_base) * m_lumaToRgb;
        const int du = u[x] - 128;
        const int dv = v[x] - 128;
        bgr[3 * x] = Byte(luma + du * m_blueU);
        bgr[3 * x + 1] = Byte(luma + du * m_greenU + dv * m_greenV);
        bgr[3 * x + 2] = Byte(luma + dv * m_redV);
    }
}

void CColorMatrix::FromBgr(std::uint8_t* y, std::uint8_t* u, std::uint8_t* v, const std::uint8_t* bgr, int step,
                           int width) const {
    for (int x = 0; x < width; ++x, bgr += step) {
        const int b = bgr[0];
        const int g = bgr[1];
        const int r = bgr[2];
        y[x] = Byte(r * m_lumaR + g * m_lumaG + b * m_lumaB + m_base * 65536);
        u[x] = Byte(r * m_uR + g * m_uG + b * m_uB + 128 * 65536);
        v[x] = Byte(r * m_vR + g * m_vG + b * m_vB + 128 * 65536);
    }
}

} // namespace host
