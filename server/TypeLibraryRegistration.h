// The registration of a type library that lies in a module's resources.
#pragma once

#include <windows.h>

// Loads the type library of the file and registers it, without a help folder. A failure is traced, returned, and shown
// to the user in a message box when `showErrors` is set; the call then lasts until the box is closed.
HRESULT N_RegisterTypeLibrary(const wchar_t* path, bool showErrors);
