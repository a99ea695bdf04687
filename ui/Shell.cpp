#include "ui/Shell.h"

ShellCalls g_Shell = {&ShellExecuteA, &MessageBoxA, &LoadLibraryExA, &GetProcAddress};

bool OpenAddress(const char* address) {
    constexpr INT_PTR kLastError = 32; // the shell's results up to this one are errors
    const HINSTANCE result = g_Shell.execute(nullptr, "open", address, nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > kLastError;
}
