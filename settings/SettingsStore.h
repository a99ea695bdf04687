// Single reads and writes of the settings store.
#pragma once

#include <mfobjects.h>

// The setting's value; 0 when there is no store, or the key is absent or of another type.
UINT32 ReadSetting(IMFAttributes* store, REFGUID key);

// The same for a double setting; 0.0 when unreadable.
double ReadDoubleSetting(IMFAttributes* store, REFGUID key);

// Writes a setting. A failure of the store is not reported: setters of the control interface never fail for it.
void WriteSetting(IMFAttributes* store, REFGUID key, UINT32 value);
