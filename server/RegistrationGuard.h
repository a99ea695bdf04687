// Whether a copy of the module may touch the registration that is there.
#pragma once

#include <windows.h>
#include <guiddef.h>

// False only when another copy of the module is registered, exists, and has a higher file version: an older copy must
// not take a newer one's place.
bool ShouldRegister(HMODULE module, REFCLSID clsid);

// False only when another copy is registered and exists: it keeps its registration when this one goes.
bool ShouldUnregister(HMODULE module, REFCLSID clsid);
