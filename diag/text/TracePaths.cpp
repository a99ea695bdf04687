#include "diag/text/TracePaths.h"

#include <algorithm>
#include <atomic>
#include <cwchar>

namespace {

const wchar_t* NameOf(const wchar_t* path) {
    const wchar_t* name = path;
    for (const wchar_t* at = path; *at; ++at) {
        if (*at == L'\\' || *at == L'/' || *at == L':') {
            name = at + 1;
        }
    }
    return name;
}

} // namespace

bool MakeSectionName(std::uint32_t processId, const wchar_t* path, wchar_t* name, std::size_t size) {
    const int length =
        std::swprintf(name, size, L"%08X.%d.%ls", static_cast<unsigned>(processId), kTraceLayoutVersion, path);
    if (length < 0 || static_cast<std::size_t>(length) >= size) {
        return false;
    }
    std::replace(name, name + length, L'\\', L'/');
    return true;
}

bool MovePathInside(wchar_t* path, std::size_t size) {
    const std::size_t length = std::wcslen(path);
    const wchar_t* const name = NameOf(path);
    const std::size_t nameLength = std::wcslen(name);
    if (nameLength == 0 || length + 1 + nameLength >= size) {
        return false;
    }
    std::wmemcpy(path + length + 1, name, nameLength);
    path[length + 1 + nameLength] = 0;
    // The separator comes last: until then the old path ends where it did.
    std::atomic_ref<wchar_t>(path[length]).store(L'\\', std::memory_order_release);
    return true;
}
