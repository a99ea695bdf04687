// Where help comes from, and F1 on a sheet.
#include "tests/support/ComChecks.h"
#include "tests/support/Files.h"
#include "tests/support/Module.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/ui/SheetWindow.h"
#include "tests/ui/ShellLog.h"
#include "ui/help/Help.h"
#include "ui/help/HelpHook.h"

#include "NMFVDeinterlaceKeys.h"
#include "Product.h"

#include <utility>

namespace {

constexpr char kName[] = NMFV_DISPLAY_NAME;
const Texts kNoHelp = {NMFV_DISPLAY_NAME ": Can't find help file."};
constexpr char kAddress[] = "https://help.example.com/v23/multimedia/transforms/NerinMFVideoDeinterlaceTransform.html";

class HelpTopics : public testing::Test {
protected:
    void SetUp() override {
        m_log.executeResult = 32; // refused, the largest of the shell's errors
        std::ofstream(m_folder + "\\NxTransforms.chm") << "help";
    }

    void SetHelpPath(const std::string& list, DWORD type = REG_SZ) {
        RegSetKeyValueA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Nerin Systems\\DShow\\Help", "Path", type, list.data(),
                        static_cast<DWORD>(list.size())); // without its terminator
    }

    PrivateRegistry m_machine{HKEY_LOCAL_MACHINE};
    PrivateRegistry m_classes{HKEY_CLASSES_ROOT};
    ShellLog m_log;
    TempFolder m_files;
    std::string m_folder = m_files.Path().string();
};

TEST_F(HelpTopics, SiteComesFirst) {
    EXPECT_EQ(-3, ShowHelpTopic(kName, 1)); // neither site nor help path
    SetHelpPath("abcd", REG_DWORD);
    EXPECT_EQ(-3, ShowHelpTopic(kName, 1));
    EXPECT_EQ(-3, ShowHelpTopic(nullptr, 1));
    EXPECT_TRUE(m_log.boxes.empty());
    ShowPageHelp(nullptr, kName);
    EXPECT_EQ(kNoHelp, m_log.boxes);
    SetHelpPath(m_folder);
    m_log.opened.clear();
    EXPECT_EQ(-2, ShowHelpTopic(std::string(261, 'x').c_str(), 1)); // too long a name
    EXPECT_TRUE(m_log.opened.empty());
    EXPECT_EQ(-1, ShowHelpTopic(std::string(260, 'x').c_str(), 1));
    m_log.executeResult = 33;
    m_log.opened.clear();
    EXPECT_EQ(0, ShowHelpTopic(kName, 1));
    EXPECT_EQ(Texts{kAddress}, m_log.opened);
    EXPECT_TRUE(m_log.shown.empty());
    EXPECT_EQ(-2, OpenOnlineHelp(std::string(261, 'x').c_str(), false));
    EXPECT_EQ(0, OpenOnlineHelp(std::string(260, 'x').c_str(), false));
}

// Kept: a file that was found counts as shown, so the last rows say 0 without a control.
TEST_F(HelpTopics, ShowsTheTopicOfTheFirstFile) {
    const std::string longName(20'000, 'x');
    const struct {
        std::string list;
        DWORD type;
        bool loads;
        std::size_t shown;
    } rows[] = {
        {m_folder, REG_SZ, true, 1},
        {"C:\\missing;;" + longName + "; \"" + m_folder + "\\\";C:\\", REG_SZ, true, 2},
        {"%NMFV_FOLDER%", REG_EXPAND_SZ, true, 3},
        {m_folder, REG_SZ, false, 3},
    };
    SetEnvironmentVariableA("NMFV_FOLDER", m_folder.c_str());
    for (const auto& row : rows) {
        SetHelpPath(row.list, row.type);
        m_log.loads = row.loads;
        if (!row.loads) {
            g_HtmlHelp = {};
        }
        EXPECT_EQ(0, ShowHelpTopic(kName, 1));
        ASSERT_EQ(row.shown, m_log.shown.size());
        const std::string& topic = m_log.shown.back();
        EXPECT_TRUE(topic.starts_with(m_folder)) << topic;
        EXPECT_TRUE(topic.ends_with("\\NxTransforms.chm::/Filters/NerinMFVideoDeinterlaceTransform_UI.htm")) << topic;
    }
}

TEST_F(HelpTopics, FindsTheFileBesideTheModule) {
    const auto beside = ProgramFolder() / "NxTransforms.chm";
    SetHelpPath("C:\\missing");
    std::ofstream(beside) << "help";
    EXPECT_EQ(0, ShowHelpTopic(kName, 1));
    std::filesystem::remove(beside);
    EXPECT_EQ(1u, m_log.shown.size());
}

TEST_F(HelpTopics, NamesTheMissingFiles) {
    SetHelpPath("C:\\missing");
    EXPECT_EQ(-1, ShowHelpTopic(kName, 1));
    EXPECT_EQ(Texts{NMFV_DISPLAY_NAME ": The following help files were not found in the help path(s): \n\n"
                                      "- ...\\NxTransforms.chm\n- ...\\nxfilters.chm\n- ...\\nxfilters.chm\n"},
              m_log.boxes);
}

TEST_F(HelpTopics, ControlIsTriedOnce) {
    const struct {
        bool loads, finds;
        Texts loaded;
    } rows[] = {
        {false, true, {"C:\\hh.ocx", "hhctrl.ocx"}}, // where it is registered, then by name
        {true, false, {"C:\\hh.ocx"}},
        {true, true, {"C:\\hh.ocx"}},
    };
    const char path[] = "C:\\hh.ocx";
    RegSetKeyValueA(HKEY_CLASSES_ROOT, "CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32", nullptr, REG_SZ,
                    path, sizeof(path));
    for (const auto& row : rows) {
        g_HtmlHelp = {};
        m_log.loaded.clear();
        m_log.loads = row.loads;
        m_log.finds = row.finds;
        const bool works = row.loads && row.finds;
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(works, CallHtmlHelp(GetDesktopWindow(), "f", 0, 0) != nullptr);
            m_log.loads = m_log.finds = true; // too late
        }
        EXPECT_EQ(row.loaded, m_log.loaded);
    }
}

TEST_F(HelpTopics, PageInformation) {
    const std::pair<std::string, std::size_t> rows[] = {{kName, 32},
                                                        {"", 0},
                                                        {std::string(261, ' '), 0},
                                                        {std::string(260, 'x'), 0},
                                                        {std::string(259, 'x') + " ", 259}};
    for (const auto& [name, length] : rows) {
        PROPPAGEINFO info = {};
        SetPageHelpInfo(&info, name.c_str());
        EXPECT_EQ(length, info.pszHelpFile ? wcslen(info.pszHelpFile) : 0) << name;
        EXPECT_EQ(length ? 1u : 0u, info.dwHelpContext) << name;
        CoTaskMemFree(info.pszHelpFile);
    }
}

constexpr LONG_PTR kUserData = 0x1234567; // no pointer: a hook that follows it ends the program

// A sheet with one page, to be hooked.
class HelpHook : public HelpTopics {
protected:
    HelpHook() { SetUserData(kUserData); }

    HRESULT Install(const char* name = kName) { return InstallHelpHook(m_page, name, 1); }
    LONG_PTR UserData() const { return GetWindowLongPtrW(m_sheet, GWLP_USERDATA); }
    void SetUserData(LONG_PTR value) { SetWindowLongPtrW(m_sheet, GWLP_USERDATA, value); }
    bool IsOriginal() const {
        return GetWindowLongPtrW(m_sheet, GWLP_WNDPROC) == m_procedure && UserData() == kUserData;
    }

    SheetWindow m_window;
    const HWND m_sheet = m_window.Get();
    const HWND m_page = CreateWindowExA(0, "STATIC", "", WS_CHILD, 0, 0, 9, 9, m_sheet, nullptr, nullptr, nullptr);
    const LONG_PTR m_procedure = GetWindowLongPtrW(m_sheet, GWLP_WNDPROC);
};

TEST_F(HelpHook, HookAnswersF1AndGoes) {
    EXPECT_HR(E_INVALIDARG, InstallHelpHook(m_sheet, kName, 1));
    RemoveHelpHook(m_page); // nothing to remove
    EXPECT_TRUE(IsOriginal());
    EXPECT_HR(S_OK, Install());
    const LONG_PTR record = UserData();
    EXPECT_HR(S_OK, Install("Another"));
    EXPECT_EQ(record, UserData());
    EXPECT_TRUE(IsWindowUnicode(m_sheet));

    EXPECT_EQ(TRUE, SendMessageW(m_sheet, WM_HELP, 0, 0));
    EXPECT_EQ(Texts{kAddress}, m_log.opened);
    EXPECT_EQ(kNoHelp, m_log.boxes);
    SetWindowTextW(m_sheet, L"\u0416"); // other messages reach the m_sheet, in its own character set
    wchar_t text[8];
    GetWindowTextW(m_sheet, text, 8);
    EXPECT_STREQ(L"\u0416", text);

    RemoveHelpHook(m_page);
    EXPECT_TRUE(IsOriginal());
    RemoveHelpHook(m_page);
    EXPECT_TRUE(IsOriginal());
}

// A host that counts in the sheet's user data; it answers WM_APP with the count, WM_APP + 1 from inside another call.
LRESULT CALLBACK CountingHost(HWND sheet, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_APP && message != WM_APP + 1) {
        return DefWindowProcW(sheet, message, wParam, lParam);
    }
    SetWindowLongPtrW(sheet, GWLP_USERDATA, GetWindowLongPtrW(sheet, GWLP_USERDATA) + 1);
    return message == WM_APP ? GetWindowLongPtrW(sheet, GWLP_USERDATA) : SendMessageW(sheet, WM_APP, 0, 0);
}

TEST_F(HelpHook, HostKeepsItsUserData) {
    SetWindowLongPtrW(m_sheet, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountingHost));
    EXPECT_HR(S_OK, Install());
    const LONG_PTR record = UserData();
    EXPECT_EQ(kUserData + 1, SendMessageW(m_sheet, WM_APP, 0, 0));
    EXPECT_EQ(kUserData + 3, SendMessageW(m_sheet, WM_APP + 1, 0, 0));
    EXPECT_EQ(record, UserData());
    SetUserData(5);
    const HANDLE property = RemovePropA(m_sheet, "NerinHelpHookRecord");
    for (int i = 0; i < 2; ++i) { // without its property, and with it
        EXPECT_HR(S_OK, Install());
        SetPropA(m_sheet, "NerinHelpHookRecord", property);
        EXPECT_EQ(6 + i, SendMessageW(m_sheet, WM_APP, 0, 0));
        EXPECT_EQ(6 + i, UserData());
    }
    EXPECT_EQ(TRUE, SendMessageW(m_sheet, WM_HELP, 0, 0));
    RemoveHelpHook(m_page);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(&CountingHost), GetWindowLongPtrW(m_sheet, GWLP_WNDPROC));
    EXPECT_EQ(7, UserData());
}

WNDPROC g_replaced; // by LaterProcedure
UINT g_lastMessage; // that it saw

LRESULT CALLBACK LaterProcedure(HWND sheet, UINT message, WPARAM wParam, LPARAM lParam) {
    g_lastMessage = message;
    return CallWindowProcA(g_replaced, sheet, message, wParam, lParam);
}

// With an 8-bit procedure in front of the sheet's and ours.
void ReplaceProcedure(HWND sheet) {
    g_replaced =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrA(sheet, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&LaterProcedure)));
}

void ExpectAnswers(HWND sheet, const char* text) {
    EXPECT_TRUE(SetWindowTextA(sheet, text));
    EXPECT_EQ(text, TextOf(sheet));
}

TEST_F(HelpHook, LaterProcedureStaysChained) {
    EXPECT_HR(S_OK, Install());
    ReplaceProcedure(m_sheet);
    for (const bool installed : {true, false, true}) {
        installed ? (void)Install() : RemoveHelpHook(m_page);
        EXPECT_EQ(installed, UserData() != kUserData);
        ExpectAnswers(m_sheet, installed ? "hooked" : "removed");
        m_log.boxes.clear();
        SendMessageA(m_sheet, WM_HELP, 0, 0);
        EXPECT_EQ(installed ? 1u : 0u, m_log.boxes.size());
        EXPECT_EQ(UINT{WM_HELP}, std::exchange(g_lastMessage, 0));
    }
    SetWindowLongPtrA(m_sheet, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(g_replaced));
    RemoveHelpHook(m_page);
    EXPECT_TRUE(IsOriginal());
}

// The module may be unloaded with its last page, but not while a procedure of the host's calls into it.
TEST_F(HelpHook, NobodyCallsAModuleThatIsGone) {
    NotingSite object;
    for (const bool replaced : {false, true}) {
        SheetWindow sheet;
        {
            const Module module;
            CComRef<IPropertyPage> page;
            ASSERT_HR(S_OK, module.Create(CLSID_NMFVDeinterlaceAboutPage, page));
            IUnknown* any = &object;
            ASSERT_HR(S_OK, page->SetObjects(1, &any));
            constexpr RECT kRect = {0, 0, 99, 99};
            ASSERT_HR(S_OK, page->Activate(sheet.Get(), &kRect, FALSE));
            SetWindowLongPtrW(sheet.Get(), GWLP_USERDATA, kUserData);
            if (replaced) {
                ReplaceProcedure(sheet.Get());
            }
        }
        EXPECT_EQ(replaced, GetModuleHandleA("NMFVDeitrx.dll") != nullptr);
        ExpectAnswers(sheet.Get(), "still here");
    }
}

TEST_F(HelpHook, SheetMayGoFirst) {
    EXPECT_HR(S_OK, Install(std::string(1000, 'x').c_str()));
    m_window.Destroy();
    RemoveHelpHook(m_page);
    EXPECT_TRUE(m_log.boxes.empty());
}

} // namespace
