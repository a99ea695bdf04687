// The loops over pixels for every x64 processor, and the choice.
#include "host/picture/PixelRowLoops.h"

namespace host {

const PixelRows kPlainPixelRows = TableOf([] { return true; });

const PixelRows& PixelRowsHere() {
    static const PixelRows& here = kAvx2PixelRows.supported() ? kAvx2PixelRows : kPlainPixelRows;
    return here;
}

} // namespace host
