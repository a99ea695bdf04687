// From an accepted input type to the numbers of the stream.
#pragma once

#include "settings/StreamFormat.h"

#include <mfidl.h>

// The stream format and what the transform alone needs beside it.
struct TransformFormat {
    UINT32 SampleBytes = 0; // stride x signed height: the size of a stream's samples
    // The first eight bytes of the subtype; the FOURCC is in the low half. Kept: read by nothing. Test: NegativeHeight.
    UINT64 SubtypeCode = 0;
};

// Fills both in from the type and stops at the first failure: what was filled in by then stays, the rest keeps its
// earlier values (a type without a frame rate, for one, leaves the time per frame alone).
HRESULT ReadStreamFormat(IMFMediaType* type, StreamFormat& stream, TransformFormat& transform);
