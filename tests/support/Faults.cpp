#include "tests/support/Faults.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace {

struct Site {
    std::string name;
    bool always = false; // fails each time, uncounted
};

std::deque<Site> g_sites; // they stay where they are
const Site* g_failed = nullptr;
DWORD g_thread = 0;
int g_calls = 0, g_failing = 0, g_held = 0;

// Whether a call fails. Leaves the last error alone otherwise.
int Decide(const Site* site) {
    if (site->always) {
        return 1;
    }
    if (g_thread != GetCurrentThreadId() || ++g_calls != g_failing) {
        return 0;
    }
    g_failed = site;
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return 1;
}

// A function that asks Decide, and then either goes on to `target` with all that it was called with, or returns
// `result`.
void* MakeThunk(const Site* site, void* target, std::uint64_t result) {
    static auto* const arena =
        static_cast<std::uint8_t*>(VirtualAlloc(nullptr, 1 << 20, MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE));
    static std::size_t used = 0;
    std::vector<std::uint8_t> code;
    const auto add = [&](std::initializer_list<std::uint8_t> bytes) {
        code.insert(code.end(), bytes.begin(), bytes.end());
    };
    const auto addNumber = [&](std::uint64_t number) {
        for (int i = 0; i < 8; ++i) {
            code.push_back(static_cast<std::uint8_t>(number >> 8 * i));
        }
    };
    // rcx, rdx, r8 and r9 to the places that the caller keeps for them, xmm0 to xmm3 to the stack
    add({0x48, 0x89, 0x4C, 0x24, 0x08, 0x48, 0x89, 0x54, 0x24, 0x10, 0x4C, 0x89, 0x44, 0x24, 0x18,
         0x4C, 0x89, 0x4C, 0x24, 0x20, 0x48, 0x83, 0xEC, 0x68, 0x0F, 0x11, 0x44, 0x24, 0x20, 0x0F,
         0x11, 0x4C, 0x24, 0x30, 0x0F, 0x11, 0x54, 0x24, 0x40, 0x0F, 0x11, 0x5C, 0x24, 0x50});
    add({0x48, 0xB9}); // mov rcx, site
    addNumber(reinterpret_cast<std::uintptr_t>(site));
    add({0x48, 0xB8}); // mov rax, Decide
    addNumber(reinterpret_cast<std::uintptr_t>(&Decide));
    add({0xFF, 0xD0}); // call rax
    add({0x0F, 0x10, 0x44, 0x24, 0x20, 0x0F, 0x10, 0x4C, 0x24, 0x30, 0x0F, 0x10, 0x54, 0x24, 0x40,
         0x0F, 0x10, 0x5C, 0x24, 0x50, 0x48, 0x83, 0xC4, 0x68, 0x48, 0x8B, 0x4C, 0x24, 0x08, 0x48,
         0x8B, 0x54, 0x24, 0x10, 0x4C, 0x8B, 0x44, 0x24, 0x18, 0x4C, 0x8B, 0x4C, 0x24, 0x20});
    add({0x85, 0xC0, 0x75, 0x0C, 0x48, 0xB8}); // unless it fails: mov rax, target
    addNumber(reinterpret_cast<std::uintptr_t>(target));
    add({0xFF, 0xE0, 0x48, 0xB8}); // jmp rax; else mov rax, result
    addNumber(result);
    add({0xC3}); // ret
    std::uint8_t* const thunk = arena + used;
    std::copy(code.begin(), code.end(), thunk);
    used += code.size();
    return thunk;
}

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::ranges::find(names, name) != names.end();
}

// What gives back, passes on or cannot fail is left alone, and so are the run-time's own calls.
bool CanFail(std::string_view library, std::string_view name) {
    if (library == "KERNEL32.dll") {
        return IsOneOf(name, {"CompareStringOrdinal", "CreateFileW", "GetModuleFileNameA", "GetModuleHandleExA",
                              "GetModuleHandleW", "GetProcAddress", "HeapAlloc", "LoadLibraryExA", "LoadLibraryW",
                              "MultiByteToWideChar", "VirtualQuery", "WideCharToMultiByte", "WriteFile"});
    }
    return library != "msvcrt.dll" && library != "ucrtbase.dll" &&
           !IsOneOf(name,
                    {"CallWindowProcA", "CallWindowProcW", "CoTaskMemFree",     "DefWindowProcA",   "DefWindowProcW",
                     "DestroyWindow",   "EnableWindow",    "GetCapture",        "GetDesktopWindow", "GetFocus",
                     "GetParent",       "GetPropA",        "GetSystemMetrics",  "GetWindow",        "GetWindowLongPtrA",
                     "IsWindowUnicode", "IsWindowVisible", "GetWindowLongPtrW", "ReleaseCapture",   "ReleaseDC",
                     "RemovePropA",     "SelectObject",    "SendMessageA",      "ShowWindow",       "SysFreeString"});
}

std::uint64_t FailureOf(std::string_view library) {
    if (library == "ADVAPI32.dll") {
        return ERROR_OUTOFMEMORY;
    }
    const bool result = IsOneOf(library, {"MFPlat.DLL", "OLEAUT32.dll"});
    return result ? static_cast<std::uint32_t>(kInjected) : 0;
}

// The C run-time's allocations and registry keys, whose number is kept.
const Site g_memory{"memory"}, g_key{"RegOpenKeyExA or RegCreateKeyExA"};
void* Allocate(std::size_t bytes) {
    void* const block = Decide(&g_memory) ? nullptr : std::malloc(bytes);
    g_held += block != nullptr;
    return block;
}
void* AllocateZeros(std::size_t count, std::size_t bytes) {
    void* const block = Decide(&g_memory) ? nullptr : std::calloc(count, bytes);
    g_held += block != nullptr;
    return block;
}
void GiveBack(void* block) {
    g_held -= block != nullptr;
    std::free(block);
}
template <auto Open, typename... Arguments>
LSTATUS WINAPI OpenKey(Arguments... arguments) {
    const LSTATUS status = Decide(&g_key) ? ERROR_OUTOFMEMORY : Open(arguments...);
    g_held += status == ERROR_SUCCESS;
    return status;
}
LSTATUS WINAPI CloseKey(HKEY key) {
    --g_held;
    return RegCloseKey(key);
}

template <typename Function>
void* Address(Function* function) {
    return reinterpret_cast<void*>(function);
}

void* ReplacementFor(std::string_view library, std::string_view name, void* real) {
    const struct {
        std::string_view name;
        void* function;
    } counted[] = {{"malloc", Address(&Allocate)},
                   {"calloc", Address(&AllocateZeros)},
                   {"free", Address(&GiveBack)},
                   {"RegOpenKeyExA", Address<decltype(RegOpenKeyExA)>(&OpenKey<&RegOpenKeyExA>)},
                   {"RegCreateKeyExA", Address<decltype(RegCreateKeyExA)>(&OpenKey<&RegCreateKeyExA>)},
                   {"RegCloseKey", Address(&CloseKey)}};
    for (const auto& row : counted) {
        if (row.name == name) {
            return row.function;
        }
    }
    if (!CanFail(library, name)) {
        return real;
    }
    const Site& site = g_sites.emplace_back(Site{std::string(name), IsOneOf(name, {"MessageBoxA", "ShellExecuteA"})});
    return MakeThunk(&site, real, FailureOf(library));
}

struct Patched {
    void** place;
    void* before;
};
std::vector<Patched> g_patched;

void Patch(void** place, void* function) {
    DWORD old = 0;
    VirtualProtect(place, sizeof(void*), PAGE_READWRITE, &old);
    *place = function;
    VirtualProtect(place, sizeof(void*), old, &old);
}

template <typename T>
T* At(HMODULE module, DWORD offset) {
    return reinterpret_cast<T*>(reinterpret_cast<std::uint8_t*>(module) + offset);
}

} // namespace

Faults::Faults(HMODULE module) {
    const DWORD start = static_cast<DWORD>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew);
    const auto* const headers = At<IMAGE_NT_HEADERS64>(module, start);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(module, imports); library->Name; ++library) {
        const char* const libraryName = At<const char>(module, library->Name);
        const auto* names = At<const std::uint64_t>(module, library->OriginalFirstThunk);
        for (void** place = At<void*>(module, library->FirstThunk); *names; ++names, ++place) {
            if (*names & IMAGE_ORDINAL_FLAG64) {
                continue;
            }
            const char* const name = At<const char>(module, static_cast<DWORD>(*names) + 2);
            g_patched.push_back({place, *place});
            Patch(place, ReplacementFor(libraryName, name, *place));
        }
    }
}

Faults::~Faults() {
    for (const Patched& patched : g_patched) {
        Patch(patched.place, patched.before);
    }
    g_patched.clear();
}

void Faults::Watch(IUnknown* object, int methods) {
    static std::deque<std::vector<void*>> tables;
    auto**& table = *reinterpret_cast<void***>(object);
    tables.emplace_back(table, table + methods);
    for (int i = 3; i < methods; ++i) {
        const Site& site = g_sites.emplace_back(Site{"method " + std::to_string(i)});
        tables.back()[std::size_t(i)] = MakeThunk(&site, table[i], static_cast<std::uint32_t>(kInjected));
    }
    table = tables.back().data();
}

void Faults::Arm(int nth) {
    g_calls = 0;
    g_failing = nth;
    g_failed = nullptr;
    g_thread = GetCurrentThreadId();
}

bool Faults::Disarm() {
    g_thread = 0;
    return g_failed != nullptr;
}

std::string Faults::Failed() {
    return g_failed ? g_failed->name : "nothing";
}

int Faults::Held() {
    return g_held;
}
