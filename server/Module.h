// The module itself.
#pragma once

#include <windows.h>

// The handle of this DLL, set when it is loaded.
extern HINSTANCE g_hModule;
