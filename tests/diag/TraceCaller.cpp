// What a caller of Trace compiles to; CheckTraceCost.cmake reads the object.
#include "diag/Trace.h"

extern "C" void TracingCaller(int first, int second) {
    Trace("\nTracingCaller: %d, %d", first, second);
}
