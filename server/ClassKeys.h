// The keys below HKEY_CLASSES_ROOT\CLSID that make a class known to COM.
#pragma once

#include <windows.h>
#include <guiddef.h>

inline constexpr char kServerSubkey[] = "InprocServer32";

// "CLSID\{identifier}", and "\subkey" behind it where one is given. E_FAIL when the buffer is too small.
HRESULT FormatClassKey(REFCLSID clsid, const char* subkey, char (&path)[MAX_PATH]);

// Writes the class key with its name, then its server subkey with the module's path and the threading model; what is
// there is overwritten. The first failure is returned, with what was written before it left in place: registry errors
// as HRESULTs of the Win32 facility, a path of 260 characters or more as E_FAIL.
HRESULT RegisterClassKey(HMODULE module, REFCLSID clsid, const char* name);

// Deletes the class key with all below it. A key that isn't there, or may not be deleted, is passed over.
void DeleteClassKey(REFCLSID clsid);
