#include "host/picture/ColorMatrix.h"

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

// One loop per component: short loops over plain rows are what compilers turn into vectors.
void CColorMatrix::ToRgb(std::uint8_t* const (&bgr)[3], const std::uint8_t* y, const std::uint8_t* u,
                         const std::uint8_t* v, int width) const {
    const int luma = m_lumaToRgb;
    const int base = m_base;
    const auto component = [=](std::uint8_t* out, int fromU, int fromV) {
        for (int x = 0; x < width; ++x) {
            out[x] = Byte((y[x] - base) * luma + (u[x] - 128) * fromU + (v[x] - 128) * fromV);
        }
    };
    component(bgr[0], m_blueU, 0);
    component(bgr[1], m_greenU, m_greenV);
    component(bgr[2], 0, m_redV);
}

void CColorMatrix::FromRgb(std::uint8_t* y, std::uint8_t* u, std::uint8_t* v, const std::uint8_t* const (&bgr)[3],
                           int width) const {
    const std::uint8_t* const blue = bgr[0];
    const std::uint8_t* const green = bgr[1];
    const std::uint8_t* const red = bgr[2];
    const auto component = [=](std::uint8_t* out, int fromR, int fromG, int fromB, int offset) {
        for (int x = 0; x < width; ++x) {
            out[x] = Byte(red[x] * fromR + green[x] * fromG + blue[x] * fromB + offset);
        }
    };
    component(y, m_lumaR, m_lumaG, m_lumaB, m_base * 65536);
    component(u, m_uR, m_uG, m_uB, 128 * 65536);
    component(v, m_vR, m_vG, m_vB, 128 * 65536);
}

} // namespace host
