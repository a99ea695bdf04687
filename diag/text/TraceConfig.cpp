// What a build traces, and where to.
#include "diag/Trace.h"

#ifndef NMFV_TRACE_FLAGS
#define NMFV_TRACE_FLAGS 0x00000010
#endif

std::uint32_t TraceFlags{NMFV_TRACE_FLAGS};

wchar_t TracePath[kTracePathSize] = L"c:\\NerinTrace.txt";
