// The formats that the transform takes.
#pragma once

#include <span>

#include <windows.h>

struct InputSubtype {
    const GUID* subtype;
    WORD bitsPerPixel;
};

extern const GUID kSubtypeIyu2; // packed 4:4:4, three bytes a pixel

// In the order in which they are offered.
std::span<const InputSubtype> InputSubtypes();

// The row of a subtype, or null.
const InputSubtype* FindInputSubtype(REFGUID subtype);
