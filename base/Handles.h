// The owners of the platform's handles.
#pragma once

#include "base/Scoped.h"

#include <windows.h>

struct HandlePolicy {
    using Type = HANDLE;
    static Type Invalid() { return nullptr; }
    static void Close(Type handle) { CloseHandle(handle); }
};
using CHandle = CScoped<HandlePolicy>; // events, processes, threads, sections

struct FilePolicy : HandlePolicy {
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
};
using CFileHandle = CScoped<FilePolicy>; // files, pipes, snapshots

struct RegKeyPolicy {
    using Type = HKEY;
    static Type Invalid() { return nullptr; }
    static void Close(Type key) { RegCloseKey(key); }
};
using CRegKey = CScoped<RegKeyPolicy>;
