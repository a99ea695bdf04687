// register, unregister and verify with the real registry and real copies of the DLL.
#include "tests/host/ToolRun.h"
#include "tests/support/ModuleCopies.h"
#include "tests/support/RegistryListing.h"

namespace host {
namespace {

constexpr char kTransform[] = "CLSID\\{E2B7ED97-38C5-11D5-91F6-00104BDB8FF9}";
constexpr char kServer[] = "CLSID\\{E2B7ED97-38C5-11D5-91F6-00104BDB8FF9}\\InprocServer32";
constexpr char kAboutPage[] = "CLSID\\{E2B7ED95-38C5-11D5-91F6-00104BDB8FF9}";
constexpr char kVideoEffects[] = "MediaFoundation\\Transforms\\Categories\\12e17c21-532c-4a6e-8a1c-40825a736397\\"
                                 "e2b7ed97-38c5-11d5-91f6-00104bdb8ff9";
constexpr char kLibrary[] = "TypeLib\\{E2B7ED96-38C5-11D5-91F6-00104BDB8FF9}";
constexpr char kLibraryVersion[] = "TypeLib\\{E2B7ED96-38C5-11D5-91F6-00104BDB8FF9}\\1.0";
constexpr char kLibraryPath[] = "TypeLib\\{E2B7ED96-38C5-11D5-91F6-00104BDB8FF9}\\1.0\\0\\win64";

class RegistrationVerbs : public ToolTest {
protected:
    void SetUp() override { ASSERT_EQ(Run("verify").code, 6u) << "a registered transform would be lost by this test"; }

    void TearDown() override {
        RegDeleteTreeA(HKEY_CLASSES_ROOT, kTransform); // then nobody's registration is in the way
        EXPECT_EQ(Run("unregister").code, 0u);
        EXPECT_NE(Run("verify").errors.find("is not registered"), std::string::npos);
    }

    void Expect(const std::vector<std::string>& line, unsigned long code, const std::string& said) const {
        const ToolResult result = RunTool(m_folder, line);
        EXPECT_EQ(result.code, code) << line[0] << ": " << result.errors;
        EXPECT_NE((result.Text() + result.errors).find(said), std::string::npos)
            << line[0] << " does not say \"" << said << "\": " << result.Text() << result.errors;
    }

    ModuleCopies m_copies;
};

void SetText(const char* key, const char* value, const char* text) {
    RegSetKeyValueA(HKEY_CLASSES_ROOT, key, value, REG_SZ, text, static_cast<DWORD>(std::string(text).size() + 1));
}

TEST_F(RegistrationVerbs, VerifyNamesWhatIsBrokenAndRegisterMendsIt) {
    struct Case {
        const char* key; // deleted, or its value set to `text`
        const char* value;
        const char* text;
        const char* named;
    };
    constexpr Case kCases[] = {
        {kTransform, nullptr, nullptr, "WRONG  key of the transform"},
        {kAboutPage, nullptr, nullptr, "WRONG  key of the about page"},
        {kServer, "ThreadingModel", "Apartment", "not \"Both\""},
        {kServer, "", "C:\\gone\\NMFVDeitrx.dll", "WRONG  file"},
        {kVideoEffects, nullptr, nullptr, "WRONG  video effects"},
        {kLibrary, nullptr, nullptr, "WRONG  automation"},
        {kLibraryPath, "", "C:\\gone\\NMFVDeitrx.dll", "WRONG  type library's key"},
    };
    Expect({"register"}, 0, "Registered ");
    Expect({"verify"}, 0, "is in order");
    for (const Case& c : kCases) {
        if (c.text) {
            SetText(c.key, c.value, c.text);
        } else {
            ASSERT_EQ(RegDeleteTreeA(HKEY_CLASSES_ROOT, c.key), ERROR_SUCCESS) << c.key;
        }
        Expect({"verify", "--quiet"}, 6, c.named);
        Expect({"verify", "--quiet"}, 6, "To fix it: nmfvdeint register");
        Expect({"register"}, 0, "Registered ");
        Expect({"verify", "--quiet"}, 0, "");
    }
    Expect({"unregister"}, 0, "Unregistered ");
    Expect({"unregister"}, 0, "Nothing was changed");
}

// Registration gives way to it, as it would to a newer copy.
TEST_F(RegistrationVerbs, AForeignFileInTheClassKeyIsNamed) {
    Expect({"register"}, 0, "Registered ");
    SetText(kServer, "", "C:\\windows\\system32\\kernel32.dll");
    Expect({"verify"}, 6, "WRONG  entry points");
    Expect({"register"}, 6, "kernel32.dll: is registered and has a higher version");
}

TEST_F(RegistrationVerbs, CopiesRespectEachOther) {
    const std::string older = m_copies.Add("older", 0x00000009, 0x00050000);
    const std::string newer = m_copies.Add("newer", 0x00010000, 0x00000001);
    Expect({"register", "--dll", older}, 0, older + ", version 0.9.5.0");
    Expect({"verify"}, 6, "WRONG  version");
    Expect({"register", "--dll", newer}, 0, "in place of " + older);
    Expect({"verify"}, 0, newer);
    Expect({"register"}, 0, "a newer copy is registered already, " + newer + ", version 1.0.0.1");
    Expect({"unregister"}, 0, "another copy is registered, " + newer);
    Expect({"verify"}, 0, newer);
    std::filesystem::remove(newer);
    Expect({"unregister"}, 0, "Unregistered ");
}

// Neither may leave a box that waits for somebody.
TEST_F(RegistrationVerbs, NothingIsShownWhenTheTypeLibraryFails) {
    Expect({"register", "--dll", m_copies.AddWithoutTypeLibrary("bare")}, 6, "no usable type library");
    Expect({"verify"}, 6, "is not registered");
    // Below a key that goes with the session nothing lasting can be made, so only the registration itself fails.
    MakeClassesKey(kLibraryVersion, REG_OPTION_VOLATILE);
    Expect({"register"}, 6, "NMFVDeitrx.dll says: Failed to register type library: ");
    RegDeleteTreeA(HKEY_CLASSES_ROOT, kLibrary);
}

TEST_F(RegistrationVerbs, OtherFilesAreRefused) {
    Write("text.dll", {'n', 'o'});
    Expect({"register", "--dll", "absent.dll"}, 4, "absent.dll: cannot be loaded");
    Expect({"register", "--dll", "text.dll"}, 4, "text.dll: cannot be loaded");
    Expect({"unregister", "--dll", "C:\\windows\\system32\\kernel32.dll"}, 4, "does not hold the transform");
}

} // namespace
} // namespace host
