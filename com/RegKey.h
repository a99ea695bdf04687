// An owner for an open registry key.
#pragma once

#include "com/Scoped.h"

#include <windows.h>

using CRegKey = CScoped<HKEY, &RegCloseKey>;
