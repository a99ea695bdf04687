// The user's saved settings of the transform, which every transform object overwrites when it is destroyed.
#pragma once

#include <string>
#include <vector>
#include <windows.h>

namespace host {

// Remembers the saved settings as they are now, also when there are none.
class CSavedSettings {
public:
    CSavedSettings();

    // Makes them so again, and takes away the registry keys that were not there. Call it when the transform object is
    // gone. Best effort: a failure leaves the transform's own settings saved, as any other client would.
    void PutBack() const;

private:
    bool m_hadValue = false;
    DWORD m_type = 0;
    std::vector<BYTE> m_value;
    std::vector<std::wstring> m_missingKeys; // deepest last
};

} // namespace host
