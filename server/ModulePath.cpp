#include "server/ModulePath.h"

HRESULT GetModulePath(HMODULE module, char (&path)[MAX_PATH]) {
    const DWORD length = GetModuleFileNameA(module, path, MAX_PATH);
    path[length < MAX_PATH ? length : MAX_PATH - 1] = '\0';
    if (length == 0) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    return length < MAX_PATH ? S_OK : E_FAIL;
}
