// What the C++ run-time allocates for itself in every module that it is linked into.
#pragma once

#include "base/ProcessEnd.h"

#include <cstddef> // for the library's name

#if defined(__GLIBCXX__)
namespace __gnu_cxx {
void __freeres(); // part of the library, but of no header of it
}
#endif

// One static object per module gives it back when the module is unloaded. libstdc++ reserves 73 kB for exceptions that
// are thrown when there is no memory, and keeps them until told; other run-times reserve nothing.
class CRuntimeMemory {
public:
    CRuntimeMemory() = default;
    CRuntimeMemory(const CRuntimeMemory&) = delete;
    CRuntimeMemory& operator=(const CRuntimeMemory&) = delete;
    ~CRuntimeMemory() {
#if defined(__GLIBCXX__)
        if (!ProcessIsEnding()) {
            __gnu_cxx::__freeres();
        }
#endif
    }
};
