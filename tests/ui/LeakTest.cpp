// Pages opened and closed many times leave nothing behind.
#include "server/ClassFactory.h"
#include "tests/support/Heap.h"
#include "tests/support/Transform.h"
#include "tests/ui/SheetWindow.h"
#include "tests/ui/ShellLog.h"

namespace {

// Windows counts for us; Wine says 0, but finds an object by the lower half of its handle.
DWORD DrawingObjects() {
    if (const DWORD known = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) {
        return known;
    }
    DWORD count = 0;
    for (ULONG_PTR index = 1; index <= 0xFFFF; ++index) {
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(index)) != 0;
    }
    return count;
}

// The module's own thread's, children included.
DWORD Windows() {
    DWORD count = 0;
    EnumChildWindows(
        GetDesktopWindow(),
        [](HWND window, LPARAM sum) -> BOOL {
            *reinterpret_cast<DWORD*>(sum) += GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

const CLSID* const kPages[] = {&CLSID_NMFVDeinterlaceSettingsPage, &CLSID_NMFVDeinterlaceRoiPage,
                               &CLSID_NMFVDeinterlaceAboutPage};

class PageLeaks : public TransformTest {
protected:
    void OpenOnce(const CLSID& clsid) {
        CComRef<IClassFactory> factory;
        ASSERT_HR(S_OK, GetClassObject(clsid, IID_IClassFactory, factory.PutVoid()));
        CComRef<IPropertyPage> page;
        ASSERT_HR(S_OK, factory->CreateInstance(nullptr, IID_IPropertyPage, page.PutVoid()));
        page->SetPageSite(&m_site);
        PROPPAGEINFO info;
        ASSERT_HR(S_OK, page->GetPageInfo(&info));
        CoTaskMemFree(info.pszTitle);
        CoTaskMemFree(info.pszHelpFile);
        IUnknown* object = Control();
        const RECT rect = {0, 0, info.size.cx, info.size.cy};
        ASSERT_HR(S_OK, page->SetObjects(1, &object));
        ASSERT_HR(S_OK, page->Activate(m_sheet.Get(), &rect, FALSE));
        UpdateWindow(m_sheet.Page());
        ASSERT_HR(S_OK, page->Deactivate());
        page->SetObjects(0, nullptr);
        page->SetPageSite(nullptr);
    }

    ShellLog m_log;
    SheetWindow m_sheet;
    NotingSite m_site;
};

TEST_F(PageLeaks, FiveHundredOpenings) {
    for (int i = 0; i < 150; ++i) {
        OpenOnce(*kPages[i % 3]); // caches fill
    }
    const ULONG references = ReferencesOf(Control());
    const DWORD windows = Windows(), drawing = DrawingObjects();
    const std::int64_t bytes = BusyBytes();
    for (int i = 0; i < 500 && !HasFatalFailure(); ++i) {
        OpenOnce(*kPages[i % 3]);
    }
    EXPECT_EQ(windows, Windows());
    EXPECT_NEAR(drawing, DrawingObjects(), 50);
    EXPECT_GT(32 * 1024, BusyBytes() - bytes); // the heap's own growth, less than any record of ours times 166
    EXPECT_EQ(references, ReferencesOf(Control()));
    EXPECT_EQ(nullptr, m_sheet.Page());
    EXPECT_EQ(0u, m_site.references);
}

} // namespace
