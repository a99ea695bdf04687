// The loops of PixelRows.h, written so that compilers turn them into vectors: a file that includes this gets them for
// the processor that it is compiled for. They call nothing that other files share.
#pragma once

#include "host/picture/PixelRows.h"

#define HOST_ALONE __restrict // nothing else points to these bytes

namespace host {
namespace {

using Byte = std::uint8_t;

// std::clamp belongs to everybody.
inline Byte InByte(int value) {
    value = value < 0 ? 0 : value;
    return static_cast<Byte>(value > 255 ? 255 : value);
}

// LumaOffset 0 packs Y U Y V, 1 packs U Y V Y.
template <int LumaOffset>
void Pack422(Byte* HOST_ALONE out, const Byte* HOST_ALONE y, const Byte* HOST_ALONE u, const Byte* HOST_ALONE v,
             int pairs) {
    for (int i = 0; i < pairs; ++i) {
        out[4 * i + LumaOffset] = y[2 * i];
        out[4 * i + 1 - LumaOffset] = u[i];
        out[4 * i + 2 + LumaOffset] = y[2 * i + 1];
        out[4 * i + 3 - LumaOffset] = v[i];
    }
}

template <int LumaOffset>
void Unpack422(Byte* HOST_ALONE y, Byte* HOST_ALONE u, Byte* HOST_ALONE v, const Byte* HOST_ALONE in, int pairs) {
    for (int i = 0; i < pairs; ++i) {
        y[2 * i] = in[4 * i + LumaOffset];
        u[i] = in[4 * i + 1 - LumaOffset];
        y[2 * i + 1] = in[4 * i + 2 + LumaOffset];
        v[i] = in[4 * i + 3 - LumaOffset];
    }
}

void Interleave3(Byte* HOST_ALONE out, const Byte* HOST_ALONE a, const Byte* HOST_ALONE b, const Byte* HOST_ALONE c,
                 int width) {
    for (int x = 0; x < width; ++x) {
        out[3 * x] = a[x];
        out[3 * x + 1] = b[x];
        out[3 * x + 2] = c[x];
    }
}

template <int Step>
void TakeApart(Byte* HOST_ALONE a, Byte* HOST_ALONE b, Byte* HOST_ALONE c, const Byte* HOST_ALONE in, int width) {
    for (int x = 0; x < width; ++x) {
        a[x] = in[Step * x];
        b[x] = in[Step * x + 1];
        c[x] = in[Step * x + 2];
    }
}

void TakeApart2(Byte* HOST_ALONE a, Byte* HOST_ALONE b, const Byte* HOST_ALONE in, int pairs) {
    for (int i = 0; i < pairs; ++i) {
        a[i] = in[2 * i];
        b[i] = in[2 * i + 1];
    }
}

void Mix(Byte* HOST_ALONE out, const Byte* a, const Byte* b, int shareOfA, int count) {
    const auto ofA = static_cast<std::uint16_t>(shareOfA);
    const auto ofB = static_cast<std::uint16_t>(8 - shareOfA);
    for (int i = 0; i < count; ++i) {
        out[i] = static_cast<Byte>((a[i] * ofA + b[i] * ofB + 4) >> 3);
    }
}

void SumFour(Byte* HOST_ALONE out, const Row (&rows)[4], const int (&shares)[4], int count) {
    const Byte* const a = rows[0];
    const Byte* const b = rows[1];
    const Byte* const c = rows[2];
    const Byte* const d = rows[3];
    const int ofA = shares[0], ofB = shares[1], ofC = shares[2], ofD = shares[3];
    for (int i = 0; i < count; ++i) {
        out[i] = InByte((a[i] * ofA + b[i] * ofB + c[i] * ofC + d[i] * ofD + 8) >> 4);
    }
}

void Widen(Byte* HOST_ALONE out, const Byte* HOST_ALONE in, int width) {
    const int last = (width + 1) / 2 - 1;
    for (int i = 0; i < last; ++i) {
        out[2 * i] = in[i];
        out[2 * i + 1] = static_cast<Byte>((in[i] + in[i + 1] + 1) >> 1);
    }
    out[2 * last] = in[last];
    if (width % 2 == 0) {
        out[width - 1] = in[last];
    }
}

void Narrow(Byte* HOST_ALONE out, const Byte* HOST_ALONE in, int width) {
    const int pairs = width / 2;
    out[0] = static_cast<Byte>((3 * in[0] + in[width > 1 ? 1 : 0] + 2) >> 2);
    for (int i = 1; i < pairs; ++i) {
        out[i] = static_cast<Byte>((in[2 * i - 1] + 2 * in[2 * i] + in[2 * i + 1] + 2) >> 2);
    }
    if (width % 2 != 0 && width > 1) {
        out[pairs] = static_cast<Byte>((in[width - 2] + 3 * in[width - 1] + 2) >> 2);
    }
}

void Weigh(Byte* HOST_ALONE out, const Byte* HOST_ALONE a, const Byte* HOST_ALONE b, const Byte* HOST_ALONE c,
           const Weights& weights, int width) {
    const Weights w = weights;
    for (int x = 0; x < width; ++x) {
        out[x] = InByte((a[x] * w.ofA + b[x] * w.ofB + c[x] * w.ofC + w.offset + 32768) >> 16);
    }
}

void WeighTwo(Byte* HOST_ALONE out, const Byte* HOST_ALONE a, const Byte* HOST_ALONE b, const Weights& weights,
              int width) {
    const Weights w = weights;
    for (int x = 0; x < width; ++x) {
        out[x] = InByte((a[x] * w.ofA + b[x] * w.ofB + w.offset + 32768) >> 16);
    }
}

constexpr PixelRows TableOf(bool (*supported)()) {
    return {supported,    &Pack422<0>,   &Pack422<1>,   &Unpack422<0>, &Unpack422<1>,
            &Interleave3, &TakeApart<3>, &TakeApart<4>, &TakeApart2,   &Mix,
            &SumFour,     &Widen,        &Narrow,       &Weigh,        &WeighTwo};
}

} // namespace
} // namespace host
