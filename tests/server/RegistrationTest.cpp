// What registering writes, and what a step that fails leaves, in a registry of the test's own.
#include "diag/Trace.h"
#include "server/ClassKeys.h"
#include "server/TypeLibraryRegistration.h"
#include "tests/support/ComChecks.h"
#include "tests/support/DebuggerTexts.h"
#include "tests/support/Module.h"
#include "tests/support/ModuleCopies.h"
#include "tests/support/OtherWindows.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RegistryListing.h"

#include "Product.h"

#include <thread>

#include <sddl.h>

namespace {

constexpr char kTransformKey[] = "MediaFoundation\\Transforms\\e2b7ed97-38c5-11d5-91f6-00104bdb8ff9";
constexpr char kTypeLibKey[] = "TypeLib\\{E2B7ED96-38C5-11D5-91F6-00104BDB8FF9}\\1.0\\0\\win64";
constexpr struct {
    const char* key;
    const char* name;
} kClasses[] = {
    {"CLSID\\{E2B7ED97-38C5-11D5-91F6-00104BDB8FF9}", NMFV_DISPLAY_NAME},
    {"CLSID\\{E2B7ED91-38C5-11D5-91F6-00104BDB8FF9}", NMFV_DISPLAY_NAME " Properties"},
    {"CLSID\\{E2B7ED92-38C5-11D5-91F6-00104BDB8FF9}", NMFV_DISPLAY_NAME " ROI Properties"},
    {"CLSID\\{E2B7ED95-38C5-11D5-91F6-00104BDB8FF9}", NMFV_DISPLAY_NAME " About"},
};

// Waits for the message box titled "Error", of whichever process, reads its text and closes it.
class ErrorBox {
public:
    ~ErrorBox() { Text(); }

    // What the box said; empty when none came in time.
    std::string Text() {
        if (m_watcher.joinable()) {
            m_watcher.join();
        }
        return m_text;
    }

private:
    void Watch() {
        const HWND box = AwaitWindow(L"#32770", L"Error");
        // One static control holds the icon, the other the text.
        for (HWND label = nullptr; box && (label = FindWindowExA(box, label, "Static", nullptr)) != nullptr;) {
            char text[2048] = "";
            SendMessageA(label, WM_GETTEXT, sizeof(text), reinterpret_cast<LPARAM>(text));
            m_text += text;
        }
        PostMessageA(box, WM_COMMAND, IDOK, 0);
    }

    std::string m_text;
    std::thread m_watcher{[this] { Watch(); }};
};

class Registration : public testing::Test {
protected:
    void SetUp() override { ASSERT_NE(nullptr, m_module.Handle()); }

    // The first `classes` of the table are registered, the others have no server.
    void ExpectClasses(std::size_t classes) {
        for (std::size_t i = 0; i < std::size(kClasses); ++i) {
            const std::string server = std::string(kClasses[i].key) + "\\InprocServer32";
            EXPECT_EQ(i < classes ? m_path : "-", ClassesText(server)) << i;
            EXPECT_EQ(i < classes ? "Both" : "-", ClassesText(server, "ThreadingModel")) << i;
            if (i < classes) {
                EXPECT_EQ(kClasses[i].name, ClassesText(kClasses[i].key));
            }
        }
    }

    ModuleCopies m_copies;
    std::string m_path = m_copies.Add("own", 0x00010000, 0);
    Module m_module{m_path};
    PrivateRegistry m_classes{HKEY_CLASSES_ROOT};
};

TEST_F(Registration, WritesEverythingAndWritesItAnew) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_HR(S_OK, m_module.Register());
        ExpectClasses(4);
        EXPECT_EQ(NMFV_DISPLAY_NAME, ClassesText(kTransformKey));
        EXPECT_EQ("-", ClassesText(kTransformKey, "InputTypes"));
        EXPECT_EQ(m_path, ClassesText(kTypeLibKey));
        for (const LCID locale : {LCID{0}, LCID{0x0409}, LCID{0x0411}, LCID{LOCALE_USER_DEFAULT}}) {
            CComRef<ITypeLib> library;
            EXPECT_HR(S_OK, LoadRegTypeLib(LIBID_NMFVDeinterlaceLib, 1, 0, locale, library.Put())) << locale;
        }
        RegSetValueA(HKEY_CLASSES_ROOT, kClasses[3].key, REG_SZ, "spoiled", 0);
        RegDeleteTreeA(HKEY_CLASSES_ROOT, kClasses[1].key);
        RegDeleteTreeA(HKEY_CLASSES_ROOT, "MediaFoundation");
        RegDeleteTreeA(HKEY_CLASSES_ROOT, "TypeLib");
    }
}

TEST_F(Registration, NothingIsLeftOfIt) {
    std::set<std::string> left;
    EXPECT_HR(S_OK, m_module.Register());
    EXPECT_HR(S_OK, m_module.Unregister());
    for (const char* root : {"CLSID", "TypeLib", "Interface", "MediaFoundation"}) {
        ListRegistry(HKEY_CLASSES_ROOT, root, left);
    }
    for (const std::string& entry : left) { // what identifiers of the module begin with
        EXPECT_EQ(entry.npos, std::min(entry.find("e2b7e"), entry.find("E2B7E"))) << entry;
    }
}

TEST_F(Registration, AFailureSkipsAllButTheTypeLibrary) {
    constexpr struct {
        const char* obstacle;
        std::size_t classes;
    } kCases[] = {{kClasses[0].key, 0}, {kClasses[2].key, 2}, {"MediaFoundation", 4}};
    MakeClassesKey("CLSID", REG_OPTION_NON_VOLATILE);
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.obstacle);
        MakeClassesKey(row.obstacle, REG_OPTION_VOLATILE); // which refuses subkeys that aren't
        EXPECT_HR(HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE), m_module.Register());
        ExpectClasses(row.classes);
        EXPECT_EQ("-", ClassesText(kTransformKey));
        EXPECT_EQ(m_path, ClassesText(kTypeLibKey));
        EXPECT_HR(S_OK, m_module.Unregister());
        RegDeleteTreeA(HKEY_CLASSES_ROOT, row.obstacle);
    }
}

TEST_F(Registration, TooLongAPathLeavesNamesOnly) {
    const std::string path = m_copies.Add(std::string(120, 'x') + "\\" + std::string(120, 'y'), 0x00010000, 0);
    const Module module(path);
    ASSERT_LT(260u, path.size());
    ASSERT_NE(nullptr, module.Handle());
    EXPECT_HR(E_FAIL, RegisterClassKey(module.Handle(), CLSID_NMFVDeinterlace, "a name"));
    EXPECT_EQ("a name", ClassesText(kClasses[0].key));
    std::set<std::string> written;
    ListRegistry(HKEY_CLASSES_ROOT, kClasses[0].key, written);
    EXPECT_EQ(3u, written.size()) << "the key, its name and an empty key of the server";
}

void Protect(HKEY key, const char* rights) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorA(rights, SDDL_REVISION_1, &descriptor, nullptr);
    EXPECT_EQ(0, RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor));
    LocalFree(descriptor);
}

TEST_F(Registration, MissingRightsAreTold) {
    const std::string server = std::string(kClasses[0].key) + "\\InprocServer32";
    const std::string newer = m_copies.Add("newer", 0x00020000, 0);
    CRegKey key;
    RegSetValueA(HKEY_CLASSES_ROOT, server.c_str(), REG_SZ, newer.c_str(), 0);
    RegOpenKeyExA(HKEY_CLASSES_ROOT, server.c_str(), 0, KEY_ALL_ACCESS, key.Put());
    EXPECT_HR(S_OK, m_module.Register());
    Protect(key.Get(), "D:(A;;KR;;;WD)");
    EXPECT_HR(E_ACCESSDENIED, m_module.Register());
    EXPECT_EQ(newer, ClassesText(server));
    EXPECT_EQ("-", ClassesText(kClasses[1].key));
    Protect(key.Get(), "D:(A;;KA;;;WD)");
}

TEST_F(Registration, TypeLibraryFailureIsShownOnly) {
    const std::string path = m_copies.AddWithoutTypeLibrary("bare");
    ErrorBox box;
    EXPECT_HR(S_OK, Module(path).Register());
    EXPECT_EQ("Failed  to register type library: " + path, box.Text()); // codes have no names while tracing is off
    EXPECT_EQ(path, ClassesText("CLSID\\{E2B7ED95-38C5-11D5-91F6-00104BDB8FF9}\\InprocServer32"));
}

TEST_F(Registration, WithoutARegistryNothingIsWritten) {
    m_classes.Delete();
    ErrorBox box;
    EXPECT_HR(HRESULT_FROM_WIN32(ERROR_KEY_DELETED), m_module.Register());
    EXPECT_EQ("Failed to register type library: " + m_path, box.Text());
    EXPECT_HR(S_OK, m_module.Unregister());
}

TEST_F(Registration, TypeLibraryFailuresAreTraced) {
    const std::uint32_t flags = TraceFlags;
    const DebuggerTexts traced;
    TraceFlags = kTraceMaster | kTraceDebugger;
    EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, N_RegisterTypeLibrary(L"C:\\missing.dll", false));
    EXPECT_NE(std::string::npos, traced.All().find("\nN_RegisterTypeLibrary: LoadTypeLib failed 0x80029c4a"))
        << traced.All();
    {
        ErrorBox box;
        EXPECT_EQ(TYPE_E_CANTLOADLIBRARY, N_RegisterTypeLibrary(L"C:\\missing.dll", true));
        EXPECT_EQ("Failed 0x80029C4A to register type library: C:\\missing.dll", box.Text());
    }
    m_classes.Delete();
    EXPECT_TRUE(FAILED(N_RegisterTypeLibrary(std::wstring(m_path.begin(), m_path.end()).c_str(), false)));
    EXPECT_NE(std::string::npos, traced.All().find("\nN_RegisterTypeLibrary: RegisterTypeLib failed 0x"))
        << traced.All();
    TraceFlags = flags;
}

} // namespace
