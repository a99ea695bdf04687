// The settings store as one value of the user's registry.
#pragma once

#include <mfobjects.h>

inline constexpr char kSettingsKey[] = "SOFTWARE\\Nerin Systems\\MF\\Transforms\\Deinterlace";
inline constexpr char kSettingsValue[] = "Attributes";

// Replaces the store's items with the saved ones below HKEY_CURRENT_USER\path. A missing, foreign or unreadable value
// leaves the store as it is and gives S_OK; only a value that the platform refuses to parse gives that failure.
HRESULT LoadSettingsBlob(IMFAttributes* store, const char* path);

// Writes the whole store to that value, as it is at one moment; the key is created when missing. Registry errors are
// returned as HRESULTs of the Win32 facility, with nothing written.
HRESULT SaveSettingsBlob(IMFAttributes* store, const char* path);
