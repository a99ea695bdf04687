#include "diag/TraceFile.h"

#include "diag/Trace.h"
#include "diag/TracePaths.h"

#include <cwchar>

#include <windows.h>

namespace {

constexpr std::int32_t kPatience = 1000;

class File {
public:
    explicit File(HANDLE handle)
        : m_handle(handle) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (IsOpen()) {
            CloseHandle(m_handle);
        }
    }

    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }

    bool IsEmpty() const {
        LARGE_INTEGER size = {};
        return GetFileSizeEx(m_handle, &size) && size.QuadPart == 0;
    }

    void ToEnd() const { SetFilePointerEx(m_handle, {}, nullptr, FILE_END); }

    // Best effort, as all of tracing.
    void Write(const void* bytes, std::int32_t count) const {
        DWORD written = 0;
        WriteFile(m_handle, bytes, static_cast<DWORD>(count), &written, nullptr);
    }

private:
    HANDLE m_handle;
};

HANDLE Open(const wchar_t* path) {
    return CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

// True when the file at `path` is to be tried inside a folder of that name from now on.
bool FallBackToFolder(const wchar_t* path, std::atomic<std::uint32_t>& folderFallback) {
    DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        CreateDirectoryW(path, nullptr);
        attributes = GetFileAttributesW(path);
    }
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        return false;
    }
    // Two threads may get here at a time; the path grows once.
    if (std::wcscmp(path, TracePath) == 0 && !MovePathInside(TracePath, kTracePathSize)) {
        return false;
    }
    folderFallback = 0;
    return true;
}

bool IsLocked(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

HANDLE OpenWithPatience(std::atomic<std::uint32_t>& folderFallback) {
    const TraceStopwatch waiting;
    for (;;) {
        wchar_t path[kTracePathSize] = {};
        std::wcsncpy(path, TracePath, kTracePathSize - 1);
        const HANDLE file = Open(path);
        const DWORD error = GetLastError();
        // Kept: with the fallback made, a file in use is not waited for. Test: TraceLog.FolderInThePlaceOfTheFile.
        if (file != INVALID_HANDLE_VALUE || folderFallback == 0) {
            return file;
        }
        if (error == ERROR_ACCESS_DENIED && FallBackToFolder(path, folderFallback)) {
            continue;
        }
        if (waiting.Elapsed() >= kPatience || !IsLocked(error)) {
            return INVALID_HANDLE_VALUE;
        }
        Sleep(1);
    }
}

} // namespace

void AppendToTraceFile(std::atomic<std::uint32_t>& folderFallback, const char* bytes, std::int32_t count) {
    const File file(OpenWithPatience(folderFallback));
    if (!file.IsOpen()) {
        return;
    }
    if (file.IsEmpty()) {
        file.Write("\xEF\xBB\xBF", 3);
    }
    file.ToEnd();
    file.Write(bytes, count);
}
