#include "mft/InputSubtypes.h"

#include <mfapi.h>

const GUID kSubtypeIyu2 = {0x32555949, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};

namespace {

const InputSubtype kInputSubtypes[] = {
    {&MFVideoFormat_RGB24, 24},
    {&MFVideoFormat_YUY2, 16},
    {&MFVideoFormat_UYVY, 16},
    {&kSubtypeIyu2, 24},
};

} // namespace

std::span<const InputSubtype> InputSubtypes() {
    return kInputSubtypes;
}

const InputSubtype* FindInputSubtype(REFGUID subtype) {
    for (const InputSubtype& row : kInputSubtypes) {
        if (subtype == *row.subtype) {
            return &row;
        }
    }
    return nullptr;
}
