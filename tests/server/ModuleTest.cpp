// The shipped file: what it exports, imports and carries, and when it may go.
#include <initguid.h>

#include "tests/support/ComChecks.h"
#include "tests/support/Heap.h"
#include "tests/support/Module.h"
#include "tests/support/PrivateRegistry.h"

#include "NMFVDeinterlaceKeys.h"

#include <algorithm>
#include <string>
#include <vector>

#include <mfapi.h>
#include <ocidl.h>

namespace {

class ShippedModule : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(nullptr, m_module.Handle()); }

    // What lies there in the loaded image.
    template <typename Type>
    const Type* At(DWORD address) const {
        return reinterpret_cast<const Type*>(reinterpret_cast<const BYTE*>(m_module.Handle()) + address);
    }
    template <typename Entry>
    const Entry* Directory(int index) const {
        const auto* nt = At<IMAGE_NT_HEADERS64>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
        return At<Entry>(nt->OptionalHeader.DataDirectory[index].VirtualAddress);
    }
    std::string TextAt(DWORD address) const { return At<char>(address); }

    PrivateRegistry m_user{HKEY_CURRENT_USER};
    Module m_module;
};

TEST_F(ShippedModule, ExportsItsEntryPointsOnly) {
    const auto* exports = Directory<IMAGE_EXPORT_DIRECTORY>(IMAGE_DIRECTORY_ENTRY_EXPORT);
    std::vector<std::string> names;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i) {
        names.push_back(TextAt(At<DWORD>(exports->AddressOfNames)[i]));
    }
    const char* const kNames[] = {"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"};
    EXPECT_TRUE(std::ranges::equal(kNames, names)) << testing::PrintToString(names);
}

// Nothing that a bare Windows lacks: no compiler's run-time, no helper library.
TEST_F(ShippedModule, ImportsSystemLibrariesOnly) {
    const std::vector<std::string> system = {"advapi32.dll", "comctl32.dll", "gdi32.dll",  "kernel32.dll",
                                             "mfplat.dll",   "msvcrt.dll",   "ole32.dll",  "oleaut32.dll",
                                             "shell32.dll",  "ucrtbase.dll", "user32.dll", "version.dll"};
    int imports = 0;
    const auto* entry = Directory<IMAGE_IMPORT_DESCRIPTOR>(IMAGE_DIRECTORY_ENTRY_IMPORT);
    for (; entry->Name; ++entry, ++imports) {
        std::string name = TextAt(entry->Name);
        CharLowerA(name.data());
        const bool known = std::find(system.begin(), system.end(), name) != system.end();
        EXPECT_TRUE(known || name.starts_with("api-ms-win-")) << name;
    }
    EXPECT_GT(imports, 2);
}

TEST_F(ShippedModule, MayGoOnceNothingIsHeld) {
    EXPECT_HR(S_OK, m_module.CanUnloadNow());
    CComRef<IClassFactory> factory;
    ASSERT_HR(S_OK, m_module.GetClassObject(CLSID_NMFVDeinterlace, IID_IClassFactory, factory.PutVoid()));
    EXPECT_HR(S_OK, m_module.CanUnloadNow());
    factory->LockServer(TRUE);
    EXPECT_HR(S_FALSE, m_module.CanUnloadNow());
    factory->LockServer(FALSE);
    EXPECT_HR(S_OK, m_module.CanUnloadNow());
    CComRef<IMFTransform> transform;
    EXPECT_HR(S_OK, m_module.CreateTransform(transform));
    EXPECT_HR(S_FALSE, m_module.CanUnloadNow());
    transform.Reset();
    EXPECT_HR(S_OK, m_module.CanUnloadNow());
}

// Titles are the DLL's own resources, and a page that lives keeps the DLL.
TEST_F(ShippedModule, MakesItsPages) {
    const struct {
        const CLSID& page;
        const wchar_t* title;
    } rows[] = {{CLSID_NMFVDeinterlaceSettingsPage, L"Deinterlace Settings"},
                {CLSID_NMFVDeinterlaceRoiPage, L"ROI Settings"},
                {CLSID_NMFVDeinterlaceAboutPage, L"About"}};
    for (const auto& row : rows) {
        CComRef<IPropertyPage> page;
        ASSERT_HR(S_OK, m_module.Create(row.page, page));
        EXPECT_HR(S_FALSE, m_module.CanUnloadNow());
        PROPPAGEINFO info = {};
        ASSERT_HR(S_OK, page->GetPageInfo(&info));
        EXPECT_EQ(std::wstring(row.title), info.pszTitle);
        EXPECT_EQ(std::wstring(L"NerinMFVideoDeinterlaceTransform"), info.pszHelpFile);
        CoTaskMemFree(info.pszTitle);
        CoTaskMemFree(info.pszHelpFile);
        page.Reset();
        EXPECT_HR(S_OK, m_module.CanUnloadNow());
    }
}

// A host may load the module anew for each of its jobs.
TEST(UnloadedModule, LeavesItsSettingsOnly) {
    const PrivateRegistry user(HKEY_CURRENT_USER);
    for (const wchar_t* slow : {L"comctl32.dll", L"shell32.dll"}) { // stay, or they come and go with the module
        ASSERT_NE(nullptr, LoadLibraryW(slow));
    }
    std::int64_t before = 0;
    for (UINT32 round = 1; round <= 150; ++round) {
        {
            const Module module;
            CComRef<IMFTransform> transform;
            ASSERT_HR(S_OK, module.CreateTransform(transform));
            CComRef<IMFAttributes> store;
            ASSERT_HR(S_OK, transform->GetAttributes(store.Put()));
            UINT32 saved = 0;
            store->GetUINT32(NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES, &saved);
            ASSERT_EQ(round, saved);
            store->SetUINT32(NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES, round + 1);
        }
        ASSERT_EQ(nullptr, GetModuleHandleW(L"NMFVDeitrx.dll"));
        if (round == 50) { // the system keeps something from the first times
            before = BusyBytes();
        }
    }
    EXPECT_GT(100 * 256, BusyBytes() - before); // the heap's own growth
}

} // namespace
