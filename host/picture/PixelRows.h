// The loops over the pixels of a row, in one variant per instruction set.
#pragma once

#include <cstdint>

namespace host {

using Row = const std::uint8_t*;
using RowOut = std::uint8_t*;

// out[x] = (a[x] * ofA + b[x] * ofB + c[x] * ofC + offset) / 65536, rounded, from 0 to 255.
struct Weights {
    int ofA, ofB, ofC;
    int offset;
};

// What is written overlaps nothing that is read. `width` is in pixels, `pairs` in pairs of pixels; both are positive.
struct PixelRows {
    bool (*supported)();
    // One luma sample each pixel, one U and one V each pair: Y U Y V and U Y V Y.
    void (*packYuy2)(RowOut out, Row y, Row u, Row v, int pairs);
    void (*packUyvy)(RowOut out, Row y, Row u, Row v, int pairs);
    void (*unpackYuy2)(RowOut y, RowOut u, RowOut v, Row in, int pairs);
    void (*unpackUyvy)(RowOut y, RowOut u, RowOut v, Row in, int pairs);
    // a b c a b c, and back; takeApart4 drops every fourth byte.
    void (*interleave3)(RowOut out, Row a, Row b, Row c, int width);
    void (*takeApart3)(RowOut a, RowOut b, RowOut c, Row in, int width);
    void (*takeApart4)(RowOut a, RowOut b, RowOut c, Row in, int width);
    // a b a b to two rows of `pairs` samples.
    void (*takeApart2)(RowOut a, RowOut b, Row in, int pairs);
    // out[i] = (a[i] * shareOfA + b[i] * (8 - shareOfA) + 4) / 8
    void (*mix)(RowOut out, Row a, Row b, int shareOfA, int count);
    // out[i] = (sum of rows[k][i] * shares[k] + 8) / 16, from 0 to 255. The shares add up to 16.
    void (*sumFour)(RowOut out, const Row (&rows)[4], const int (&shares)[4], int count);
    // Half the samples to `width`: even ones are taken as they are, odd ones lie halfway between their neighbours.
    void (*widen)(RowOut out, Row in, int width);
    // `width` samples to (width + 1) / 2, each a 1-2-1 mean around the even sample.
    void (*narrow)(RowOut out, Row in, int width);
    void (*weigh)(RowOut out, Row a, Row b, Row c, const Weights& weights, int width);
    // The same without c.
    void (*weighTwo)(RowOut out, Row a, Row b, const Weights& weights, int width);
};

// For every x64 processor, and for those with AVX2.
extern const PixelRows kPlainPixelRows;
extern const PixelRows kAvx2PixelRows;

// The quickest that this processor can run.
const PixelRows& PixelRowsHere();

} // namespace host
