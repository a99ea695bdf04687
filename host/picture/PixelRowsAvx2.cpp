// The loops over pixels as compiled for AVX2 (CMakeLists.txt has the options), which is several times as quick:
// bytes of every third place and products of 32 bits need what older instructions lack.
#include "host/picture/PixelRowLoops.h"

#include "engine/kernels/CpuFeatures.h"

namespace host {

constinit const PixelRows kAvx2PixelRows = TableOf(&HasAvx2);

} // namespace host
