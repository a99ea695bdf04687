#include "diag/TraceFile.h"

#include "base/Handles.h"
#include "diag/Trace.h"
#include "diag/text/TracePaths.h"

#include <cwchar>

#include <windows.h>

namespace {

constexpr std::int32_t kPatience = 1000;

bool IsEmpty(const CFileHandle& file) {
    LARGE_INTEGER size = {};
    return GetFileSizeEx(file.Get(), &size) && size.QuadPart == 0;
}

// Best effort, as all of tracing.
void Write(const CFileHandle& file, const void* bytes, std::int32_t count) {
    DWORD written = 0;
    WriteFile(file.Get(), bytes, static_cast<DWORD>(count), &written, nullptr);
}

CFileHandle Open(const wchar_t* path) {
    return CFileHandle(CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
}

// True when the file goes into a folder named `path` from now on.
bool FallBackToFolder(const wchar_t* path, std::atomic<std::uint32_t>& folderFallback) {
    DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        CreateDirectoryW(path, nullptr);
        attributes = GetFileAttributesW(path);
    }
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        return false;
    }
    // Two threads may get here at the same time; the path is extended once.
    if (std::wcscmp(path, TracePath) == 0 && !MovePathInside(TracePath, kTracePathSize)) {
        return false;
    }
    folderFallback = 0;
    return true;
}

bool IsLocked(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

CFileHandle OpenWithPatience(std::atomic<std::uint32_t>& folderFallback) {
    const TraceStopwatch waiting;
    for (;;) {
        wchar_t path[kTracePathSize] = {};
        std::wcsncpy(path, TracePath, kTracePathSize - 1);
        CFileHandle file = Open(path);
        const DWORD error = GetLastError();
        // Kept: in the fallback folder a locked file is not waited for. Test: TraceLog.FolderInThePlaceOfTheFile.
        if (file || folderFallback == 0) {
            return file;
        }
        if (error == ERROR_ACCESS_DENIED && FallBackToFolder(path, folderFallback)) {
            continue;
        }
        if (waiting.Elapsed() >= kPatience || !IsLocked(error)) {
            return file;
        }
        Sleep(1);
    }
}

} // namespace

void AppendToTraceFile(std::atomic<std::uint32_t>& folderFallback, const char* bytes, std::int32_t count) {
    const CFileHandle file = OpenWithPatience(folderFallback);
    if (!file) {
        return;
    }
    if (IsEmpty(file)) {
        Write(file, "\xEF\xBB\xBF", 3);
    }
    SetFilePointerEx(file.Get(), {}, nullptr, FILE_END);
    Write(file, bytes, count);
}
