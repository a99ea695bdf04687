// The module that this code is linked into, whose resources the pages use.
#pragma once

#include <windows.h>

extern "C" IMAGE_DOS_HEADER __ImageBase; // the linker's name for the first byte of the image

inline HINSTANCE ModuleInstance() {
    return reinterpret_cast<HINSTANCE>(&__ImageBase);
}
