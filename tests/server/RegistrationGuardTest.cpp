// Which copy of the module may take another one's registration, or take it away.
#include "tests/support/ComChecks.h"
#include "tests/support/Module.h"
#include "tests/support/ModuleCopies.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RegistryListing.h"

namespace {

constexpr char kServerKey[] = "CLSID\\{E2B7ED97-38C5-11D5-91F6-00104BDB8FF9}\\InprocServer32";
constexpr std::uint32_t kOwnMs = 0x00020003, kOwnLs = 0x80000005;

// What is registered before this copy is.
enum class Other { Nothing, Missing, SameInCapitals, Copy, Text };

struct GuardCase {
    const char* name;
    Other other;
    std::uint32_t ms, ls; // of the registered copy
    DWORD type;           // of the registry value
    bool terminated;      // the value's text
    bool registers, unregisters;
};

constexpr GuardCase kCases[] = {
    {"nothing", Other::Nothing, 0, 0, REG_SZ, true, true, true},
    {"missing file", Other::Missing, 0, 0, REG_SZ, true, true, true},
    {"own path in capitals", Other::SameInCapitals, 0, 0, REG_SZ, true, true, true},
    {"older", Other::Copy, kOwnMs, kOwnLs - 1, REG_SZ, true, true, false},
    {"equal", Other::Copy, kOwnMs, kOwnLs, REG_SZ, true, true, false},
    {"newer", Other::Copy, kOwnMs, kOwnLs + 1, REG_SZ, true, false, false},
    {"older, high low half", Other::Copy, kOwnMs - 1, 0xFFFFFFFF, REG_SZ, true, true, false},
    {"newer, unsigned", Other::Copy, 0xFFFF0000, 0, REG_SZ, true, false, false},
    {"without version", Other::Text, 0, 0, REG_SZ, true, true, false},
    {"newer, text without end", Other::Copy, kOwnMs + 1, 0, REG_SZ, false, false, false},
    {"newer, expandable text", Other::Copy, kOwnMs + 1, 0, REG_EXPAND_SZ, true, false, false},
    {"newer, but no text", Other::Copy, kOwnMs + 1, 0, REG_BINARY, true, true, true},
};

std::string RegisteredPath(const GuardCase& row, ModuleCopies& copies, std::string own) {
    switch (row.other) {
    case Other::Missing:
        return copies.Folder() + "\\missing\\NMFVDeitrx.dll";
    case Other::SameInCapitals:
        CharUpperA(own.data());
        return own;
    case Other::Text:
        return copies.AddText("other");
    default:
        return copies.Add("other", row.ms, row.ls);
    }
}

TEST(RegistrationGuard, OnlyNewerAndForeignCopiesAreLeftAlone) {
    ModuleCopies copies;
    const std::string own = copies.Add("own", kOwnMs, kOwnLs);
    const Module module(own);
    ASSERT_NE(nullptr, module.Handle());
    for (const GuardCase& row : kCases) {
        SCOPED_TRACE(row.name);
        const std::string other = RegisteredPath(row, copies, own);
        for (const bool registering : {true, false}) {
            const PrivateRegistry classes(HKEY_CLASSES_ROOT);
            if (row.other != Other::Nothing) {
                RegSetKeyValueA(HKEY_CLASSES_ROOT, kServerKey, nullptr, row.type, other.c_str(),
                                static_cast<DWORD>(other.size() + (row.terminated ? 1 : 0)));
            }
            std::set<std::string> before, after;
            ListRegistry(HKEY_CLASSES_ROOT, "CLSID", before);
            EXPECT_HR(S_OK, registering ? module.Register() : module.Unregister());
            ListRegistry(HKEY_CLASSES_ROOT, "CLSID", after);
            if (registering && row.registers) {
                EXPECT_EQ(own, ClassesText(kServerKey));
            } else if (!registering && row.unregisters) {
                EXPECT_EQ("-", ClassesText(kServerKey));
            } else {
                EXPECT_EQ(before, after);
            }
        }
    }
}

} // namespace
