// What the registry and the platform know of the transform, whoever registered it.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>
#include <windows.h>

namespace host {

// The classes that a registration consists of, the transform's first: rows of RegisteredClasses.
enum ClassRow : std::size_t { kTransformRow, kSettingsPageRow, kRegionPageRow, kAboutPageRow };
struct RegisteredClass {
    const CLSID* id;
    const char* what; // for the user
    const wchar_t* name;
    const IID* shows; // the interface that its objects have
};
std::span<const RegisteredClass> RegisteredClasses();

enum CategoryRow : std::size_t { kOwnCategoryRow, kVideoEffectRow };
struct RegisteredCategory {
    const GUID* id;
    const char* what;
};
std::span<const RegisteredCategory> RegisteredCategories();

extern const GUID kTypeLibraryId;
extern const GUID kControlInterfaceId;
inline constexpr WORD kTypeLibraryMajor = 1;
inline constexpr WORD kTypeLibraryMinor = 0;

// Paths below HKEY_CLASSES_ROOT.
std::wstring ClassKey(const CLSID& id);
std::wstring ServerKey(const CLSID& id);
std::wstring TypeLibraryKey();     // of the library
std::wstring TypeLibraryPathKey(); // the one whose value is the library's path

// A text value below HKEY_CLASSES_ROOT; empty for one that is not there.
std::optional<std::wstring> ClassesText(const std::wstring& key, const wchar_t* value = nullptr);
bool ClassesKeyExists(const std::wstring& key);

// The file that serves the transform's class; empty when none is registered.
std::wstring RegisteredPath();
// Media Foundation must be started.
bool IsInCategory(const GUID& category);
// In words for the user, what there is of a registration, whoever's it is.
std::vector<std::string> RegisteredParts();

struct FileVersion {
    std::uint32_t high = 0;
    std::uint32_t low = 0;
    auto operator<=>(const FileVersion&) const = default;
};
// Empty when the file has none, or is not there.
std::optional<FileVersion> VersionOf(const std::wstring& path);
std::string VersionText(const std::optional<FileVersion>& version);

} // namespace host
