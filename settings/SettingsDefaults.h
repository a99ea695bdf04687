// The default values of all settings.
#pragma once

#include <mfobjects.h>

// How many items a store is expected to hold.
inline constexpr UINT32 kSettingsStoreItems = 24;

// Empties the store and writes the defaults of an API level (NMVDeinterlace_APILEVEL). E_INVALIDARG for another level,
// with the store untouched; else the first failing store call's result, with the store partly filled.
HRESULT ResetSettings(IMFAttributes* store, LONG apiLevel);
