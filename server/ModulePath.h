// Where the module lies.
#pragma once

#include <windows.h>

// The module's full path in the ANSI code page. E_FAIL when it doesn't fit, the last error when there is none; `path`
// is then cut or empty, but ends in a zero.
HRESULT GetModulePath(HMODULE module, char (&path)[MAX_PATH]);
