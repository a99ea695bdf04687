#include "ui/help/HtmlHelp.h"

#include "diag/Trace.h"
#include "ui/help/Shell.h"

namespace {

constexpr char kServerKey[] = "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";
constexpr char kServerFile[] = "hhctrl.ocx";
constexpr WORD kEntryOrdinal = 14;

// Where the control is registered; the buffer is terminated. False when it is not, or when its path is too long.
template <DWORD Size>
bool ReadRegisteredPath(char (&path)[Size]) {
    DWORD size = Size;
    return RegGetValueA(HKEY_CLASSES_ROOT, kServerKey, nullptr, RRF_RT_REG_SZ, nullptr, path, &size) == ERROR_SUCCESS;
}

HMODULE LoadControl() {
    char path[MAX_PATH];
    if (ReadRegisteredPath(path)) {
        if (const HMODULE library = g_Shell.loadLibrary(path, nullptr, 0)) {
            return library;
        }
    }
    // By its bare name from the system's folder only, not from wherever the host happens to run.
    return g_Shell.loadLibrary(kServerFile, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

void Bind(HtmlHelpBinding& binding) {
    binding.library = LoadControl();
    if (binding.library) {
        const FARPROC entry = g_Shell.getProcAddress(binding.library, MAKEINTRESOURCEA(kEntryOrdinal));
        binding.entry = reinterpret_cast<HtmlHelpFn>(reinterpret_cast<void*>(entry));
    }
    binding.failed = !binding.entry;
    if (binding.failed) {
        Trace("\nCallHtmlHelp: %s", binding.library ? "the control has no entry 14" : "the control cannot be loaded");
    }
}

} // namespace

HtmlHelpBinding g_HtmlHelp;

HWND CallHtmlHelp(HWND window, const char* file, UINT command, DWORD_PTR data) {
    if (!g_HtmlHelp.entry && !g_HtmlHelp.failed) {
        Bind(g_HtmlHelp);
    }
    return g_HtmlHelp.entry ? g_HtmlHelp.entry(window, file, command, data) : nullptr;
}
