// The page contract that all pages share.
#include "tests/support/ComChecks.h"
#include "tests/ui/SheetWindow.h"
#include "ui/pages/PageObject.h"
#include "ui/resources/ResourceIds.h"

#include <cstring>
#include <string>

namespace {

constexpr RECT kRect = {3, 4, 103, 204};

std::string g_hooks; // one letter a hook, in the order of calls

template <UINT DialogId>
class LetterPage : public CBasePropertyPage {
public:
    LetterPage()
        : CBasePropertyPage(IDS_TITLE_ROI, DialogId) {}

    HRESULT ConnectObject(IUnknown*) override { return g_hooks += 'c', S_OK; }
    HRESULT DisconnectObject() override { return g_hooks += 'x', S_FALSE; }
    HRESULT ActivatePage() override { return g_hooks += 'a', E_FAIL; }
    HRESULT DeactivatePage() override {
        const bool entered = GetWindowLongPtrA(m_hDialog, GWL_EXSTYLE) & WS_EX_CONTROLPARENT;
        return g_hooks += entered ? '!' : 'd', S_OK;
    }
    HRESULT ApplyChanges() override { return g_hooks += 'p', applyResult; }

    HRESULT Change(HRESULT result) {
        applyResult = result;
        MarkDirty();
        return IsPageDirty();
    }

    HRESULT applyResult = S_OK;
};

using Page = CPageObject<LetterPage<IDD_ROI>>;

class BasePage : public testing::Test {
protected:
    void SetUp() override { g_hooks.clear(); }

    HRESULT SetObjects(ULONG count, IUnknown* object) { return m_page->SetObjects(count, &object); }
    HRESULT Activate() { return m_page->Activate(m_sheet.Get(), &kRect, FALSE); }

    SheetWindow m_sheet;
    NotingSite m_site;
    Page* m_page = new Page;
};

// A page's whole life, with every call that is out of order at each stage.
TEST_F(BasePage, EveryCallInEveryState) {
    const struct {
        const char* name;
        HRESULT expected, result;
    } rows[] = {
        {"activate without objects", E_UNEXPECTED, Activate()},
        {"deactivate", E_UNEXPECTED, m_page->Deactivate()},
        {"show", E_UNEXPECTED, m_page->Show(SW_SHOW)},
        {"move", E_UNEXPECTED, m_page->Move(&kRect)},
        {"apply", E_UNEXPECTED, m_page->Apply()},
        {"clean", S_FALSE, m_page->IsPageDirty()},
        {"help", E_NOTIMPL, m_page->Help(nullptr)},
        {"accelerator", E_NOTIMPL, m_page->TranslateAccelerator(nullptr)},
        {"no site twice", E_UNEXPECTED, m_page->SetPageSite(nullptr)},
        {"site", S_OK, m_page->SetPageSite(&m_site)},
        {"second site", E_UNEXPECTED, m_page->SetPageSite(&m_site)},
        {"two objects", E_UNEXPECTED, SetObjects(2, m_page)},
        {"no array", E_POINTER, m_page->SetObjects(1, nullptr)},
        {"null object", E_POINTER, SetObjects(1, nullptr)},
        {"apply with a site only", E_UNEXPECTED, m_page->Apply()},
        {"object", S_OK, SetObjects(1, m_page)},
        {"apply on a clean page", S_OK, m_page->Apply()},
        {"activate nowhere", E_POINTER, m_page->Activate(m_sheet.Get(), nullptr, FALSE)},
        {"activate", S_OK, Activate()},
        {"activate twice", E_UNEXPECTED, Activate()},
        {"hide", S_OK, m_page->Show(SW_HIDE)},
        {"show normal", S_OK, m_page->Show(SW_SHOWNORMAL)},
        {"show without activating", E_INVALIDARG, m_page->Show(SW_SHOWNOACTIVATE)},
        {"move to nowhere", E_POINTER, m_page->Move(nullptr)},
        {"dirty", S_OK, m_page->Change(E_FAIL)},
        {"apply fails", E_FAIL, m_page->Apply()},
        {"still dirty", S_OK, m_page->IsPageDirty()},
        {"dirty once more", S_OK, m_page->Change(S_FALSE)},
        {"apply", S_FALSE, m_page->Apply()},
        {"clean again", S_FALSE, m_page->IsPageDirty()},
        {"deactivate", S_OK, m_page->Deactivate()},
        {"deactivate twice", E_UNEXPECTED, m_page->Deactivate()},
        {"no objects", S_FALSE, SetObjects(0, nullptr)},
        {"activate after that", E_UNEXPECTED, Activate()},
        {"no site", S_OK, m_page->SetPageSite(nullptr)},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Hr{row.expected}, Hr{row.result}) << row.name;
    }
    EXPECT_EQ("cappdx", g_hooks);
    EXPECT_EQ((std::vector<DWORD>{PROPPAGESTATUS_DIRTY, PROPPAGESTATUS_DIRTY}), m_site.statuses);
    EXPECT_EQ(0u, m_site.references);
    EXPECT_EQ(0u, m_page->Release());
}

// The dialog lies where it was put, can be entered by the keyboard while it is active, and goes with its page.
TEST_F(BasePage, DialogOfTheSheet) {
    m_page->SetPageSite(&m_site);
    SetObjects(1, m_page);
    ASSERT_HR(S_OK, Activate());
    const HWND dialog = m_sheet.Page();
    RECT rect;
    GetWindowRect(dialog, &rect);
    MapWindowPoints(nullptr, m_sheet.Get(), reinterpret_cast<POINT*>(&rect), 2);
    EXPECT_TRUE(EqualRect(&kRect, &rect));
    EXPECT_TRUE(IsWindowVisible(dialog));
    SetWindowLongPtrA(dialog, GWL_EXSTYLE, 0);
    EXPECT_TRUE(GetWindowLongPtrA(dialog, GWL_EXSTYLE) & WS_EX_CONTROLPARENT);
    const LONG objects = MediaFoundationSamples::g_ObjectCount;
    EXPECT_EQ(0u, m_page->Release());
    EXPECT_EQ("cad", g_hooks);
    EXPECT_FALSE(IsWindow(dialog));
    EXPECT_EQ(0u, m_site.references);
    EXPECT_EQ(objects - 1, MediaFoundationSamples::g_ObjectCount);
}

TEST_F(BasePage, DialogMayGoFirst) {
    SetObjects(1, m_page);
    for (const bool withSheet : {false, true}) {
        ASSERT_HR(S_OK, Activate());
        withSheet ? m_sheet.Destroy() : (void)DestroyWindow(m_sheet.Page());
        EXPECT_HR(E_UNEXPECTED, m_page->Show(SW_SHOW));
        EXPECT_HR(E_UNEXPECTED, m_page->Move(&kRect));
        EXPECT_HR(E_UNEXPECTED, m_page->Deactivate());
    }
    EXPECT_EQ("ca!a!", g_hooks);
    EXPECT_EQ(0u, m_page->Release());
}

template <typename Any>
void ExpectInfo(const wchar_t* title, SIZE size) {
    CComRef<IPropertyPage> page;
    ASSERT_HR(S_OK, CreatePage<Any>(nullptr, IID_IPropertyPage, page.PutVoid()));
    EXPECT_HR(E_POINTER, page->GetPageInfo(nullptr));
    PROPPAGEINFO info;
    std::memset(&info, 0xCD, sizeof(info));
    ASSERT_HR(S_OK, page->GetPageInfo(&info));
    EXPECT_EQ(48u, info.cb);
    EXPECT_EQ(std::wstring(title), info.pszTitle);
    EXPECT_EQ(size.cx, info.size.cx);
    EXPECT_EQ(size.cy, info.size.cy);
    EXPECT_EQ(nullptr, info.pszDocString);
    EXPECT_EQ(nullptr, info.pszHelpFile);
    EXPECT_EQ(0u, info.dwHelpContext);
    CoTaskMemFree(info.pszTitle);
}

TEST_F(BasePage, Information) {
    m_page->SetPageSite(&m_site);
    SetObjects(1, m_page);
    ASSERT_HR(S_OK, Activate());
    RECT size = {0, 0, 295, 342};
    MapDialogRect(m_sheet.Page(), &size);
    ExpectInfo<LetterPage<IDD_ROI>>(L"ROI Settings", {size.right, size.bottom});
    ExpectInfo<LetterPage<9999>>(L"ROI Settings", {340, 150}); // a dialog that doesn't exist
    EXPECT_EQ(0u, m_page->Release());

    LPOLESTR copy = nullptr;
    EXPECT_HR(E_INVALIDARG, CopyPageTitle(std::wstring(50000, L'x').c_str(), &copy));
    EXPECT_EQ(nullptr, copy);
    EXPECT_HR(S_OK, CopyPageTitle(std::wstring(49999, L'x').c_str(), &copy));
    EXPECT_EQ(49999u, wcslen(copy));
    CoTaskMemFree(copy);
}

} // namespace
