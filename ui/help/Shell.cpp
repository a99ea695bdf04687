#include "ui/help/Shell.h"

#include "diag/Trace.h"

ShellCalls g_Shell = {&ShellExecuteA, &MessageBoxA, &LoadLibraryExA, &GetProcAddress};

bool OpenAddress(const char* address) {
    constexpr INT_PTR kLastError = 32; // the shell's results up to this one are errors
    const auto result =
        reinterpret_cast<INT_PTR>(g_Shell.execute(nullptr, "open", address, nullptr, nullptr, SW_SHOWNORMAL));
    if (result <= kLastError) {
        Trace("\nOpenAddress: the shell refused %s (%d)", address, static_cast<int>(result));
    }
    return result > kLastError;
}
