#include "diag/RangeCheck.h"

#include <cstdlib>

#ifdef _WIN32

#include <windows.h>

void FailRangeCheck() {
    RaiseFailFastException(nullptr, nullptr, 0);
    std::abort();
}

#else

void FailRangeCheck() {
    std::abort();
}

#endif
