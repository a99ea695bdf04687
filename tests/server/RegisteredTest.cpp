// The registered module as the system's programs find it. Uses the real registry, and leaves it as it was.
#include "tests/support/ComChecks.h"
#include "tests/support/ModuleCopies.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RegistryListing.h"

#include "NMFVDeinterlace.h"
#include "NMFVDeinterlaceKeys.h"

#include <algorithm>
#include <cctype>

#include <mfapi.h>
#include <mftransform.h>
#include <oleauto.h>

namespace {

// What all identifiers of the module begin with.
constexpr char kFamily[] = "e2b7e";
constexpr char kTransformClass[] = "CLSID\\{E2B7ED97-38C5-11D5-91F6-00104BDB8FF9}";

DWORD Regsvr32(const std::string& arguments) {
    std::string command = "regsvr32.exe /s " + arguments;
    STARTUPINFOA startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        return MAXDWORD;
    }
    const CHandle thread(process.hThread), server(process.hProcess);
    DWORD code = MAXDWORD;
    WaitForSingleObject(process.hProcess, 60000);
    GetExitCodeProcess(process.hProcess, &code);
    return code;
}

// The entries of the module's own: the platform writes others whenever it likes.
std::set<std::string> ListClasses() {
    std::set<std::string> listing;
    for (const char* root : {"CLSID", "TypeLib", "Interface", "MediaFoundation"}) {
        ListRegistry(HKEY_CLASSES_ROOT, root, listing);
    }
    std::erase_if(listing, [](std::string entry) {
        std::transform(entry.begin(), entry.end(), entry.begin(), [](unsigned char c) { return std::tolower(c); });
        return entry.find(kFamily) == entry.npos;
    });
    return listing;
}

bool Enumerates(const GUID& category, MFT_REGISTER_TYPE_INFO* input) {
    CLSID* found = nullptr;
    UINT32 count = 0;
    EXPECT_HR(S_OK, MFTEnum(category, 0, input, nullptr, nullptr, &found, &count));
    const bool present = std::find(found, found + count, CLSID_NMFVDeinterlace) != found + count;
    CoTaskMemFree(found);
    return present;
}

class Registered : public testing::Test {
protected:
    void SetUp() override {
        CRegKey key;
        if (RegOpenKeyExA(HKEY_CLASSES_ROOT, "CLSID", 0, KEY_ALL_ACCESS, key.Put()) != ERROR_SUCCESS) {
            GTEST_SKIP() << "registration needs elevated rights";
        }
        ASSERT_EQ("-", ClassesText(kTransformClass)) << "another copy is registered";
        ASSERT_TRUE(m_user.Active());
        m_before = ListClasses();
        ASSERT_HR(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED));
        m_ready = true;
    }

    void TearDown() override {
        if (m_ready) {
            CoUninitialize();
            EXPECT_EQ(0u, Regsvr32("/u \"" + m_path + "\""));
            EXPECT_EQ(m_before, ListClasses());
        }
    }

    ModuleCopies m_copies;
    std::string m_path = m_copies.Add("a folder", 0x00010000, 0);
    PrivateRegistry m_user{HKEY_CURRENT_USER};
    std::set<std::string> m_before;
    bool m_ready = false;
};

TEST_F(Registered, IsFoundByClassCategoryAndLibrary) {
    ASSERT_EQ(0u, Regsvr32("\"" + m_path + "\""));
    CComRef<IMFTransform> transform;
    EXPECT_HR(S_OK, CoCreateInstance(CLSID_NMFVDeinterlace, nullptr, CLSCTX_INPROC_SERVER, IID_IMFTransform,
                                     transform.PutVoid()));
    MFT_REGISTER_TYPE_INFO input{MFMediaType_Video, MFVideoFormat_YUY2};
    for (const GUID* category : {&NMFV_TRANSFORM_CATEGORY, &MFT_CATEGORY_VIDEO_EFFECT}) {
        EXPECT_TRUE(Enumerates(*category, nullptr));
        EXPECT_FALSE(Enumerates(*category, &input)); // no media types are registered
    }
    constexpr LCID kLocales[] = {0, 0x0409, 0x0407, 0x0411, LOCALE_USER_DEFAULT};
    for (const LCID locale : kLocales) {
        CComRef<ITypeLib> library;
        EXPECT_HR(S_OK, LoadRegTypeLib(LIBID_NMFVDeinterlaceLib, 1, 0, locale, library.Put())) << locale;
    }
}

TEST_F(Registered, FailureReachesTheInstaller) {
    EXPECT_EQ(3u, Regsvr32("\"" + m_copies.Folder() + "\\missing.dll\""));
    MakeClassesKey(kTransformClass, REG_OPTION_VOLATILE);
    EXPECT_EQ(5u, Regsvr32("\"" + m_path + "\""));
    EXPECT_EQ(0u, Regsvr32("/u \"" + m_path + "\""));
}

} // namespace
