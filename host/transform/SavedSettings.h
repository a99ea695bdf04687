// The user's saved settings of the transform while this program's property pages are open: a page may save them.
#pragma once

#include <mfobjects.h>
#include <optional>
#include <string>
#include <vector>
#include <windows.h>
#include <wrl/client.h>

namespace host {

// The registry value as it stands; without one, `exists` is false and the rest empty.
struct SavedValue {
    bool exists = false;
    DWORD type = 0;
    std::vector<BYTE> bytes;

    bool operator==(const SavedValue&) const = default;
};

// Tells what the transform with this store saves from what other programs save, and in the end puts back what the
// transform overwrote; what another program has saved meanwhile stays. Best effort: what cannot be read is left alone.
class CSavedSettings {
public:
    explicit CSavedSettings(Microsoft::WRL::ComPtr<IMFAttributes> store);
    CSavedSettings(const CSavedSettings&) = delete;
    CSavedSettings& operator=(const CSavedSettings&) = delete;
    ~CSavedSettings();

    // To be called between a save of the transform and the next change in its store: only then the two are equal.
    void Look() noexcept;
    // From now on the transform's settings are the user's.
    void Keep() { m_keep = true; }

private:
    void PutBack() noexcept;

    Microsoft::WRL::ComPtr<IMFAttributes> m_store;
    std::vector<std::wstring> m_missingKeys; // deepest last
    std::optional<SavedValue> m_others;      // what was there, or was saved by another program since
    std::optional<SavedValue> m_own;         // what the transform saved
    bool m_keep = false;
};

} // namespace host
