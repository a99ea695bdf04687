// The module's own registration: classes, transform categories and type library.
#pragma once

#include <windows.h>

// Registers the module unless a newer copy of it is registered elsewhere; S_OK then too, with nothing changed. Else the
// first failure of the class keys or the categories, after which no more of them are written; what was written before
// stays. The type library is registered in any case, its failure shown in a message box and not returned. Needs the
// right to write HKEY_CLASSES_ROOT.
HRESULT RegisterServer(HMODULE module);

// Removes whatever of it is there, unless another copy is registered. Always S_OK.
HRESULT UnregisterServer(HMODULE module);
