// Pages opened and closed many times leave no drawing objects. All else that they could leave is counted where every
// call fails once.
#include "tests/support/ComChecks.h"
#include "tests/support/Module.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/ui/SheetWindow.h"

#include "NMFVDeinterlaceKeys.h"

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

TEST(PageLeaks, ThreeHundredOpenings) {
    const CLSID* const pages[] = {&CLSID_NMFVDeinterlaceSettingsPage, &CLSID_NMFVDeinterlaceRoiPage,
                                  &CLSID_NMFVDeinterlaceAboutPage};
    const PrivateRegistry user(HKEY_CURRENT_USER);
    const Module module;
    CComRef<IMFTransform> transform;
    ASSERT_HR(S_OK, module.CreateTransform(transform));
    SheetWindow sheet;
    DWORD before = 0;
    for (int i = 0; i < 450; ++i) {
        before = i == 150 ? DrawingObjects() : before; // caches are full
        CComRef<IPropertyPage> page;
        IUnknown* object = transform.Get();
        constexpr RECT kRect{0, 0, 640, 700};
        ASSERT_HR(S_OK, module.Create(*pages[i % 3], page));
        ASSERT_HR(S_OK, page->SetObjects(1, &object));
        ASSERT_HR(S_OK, page->Activate(sheet.Get(), &kRect, FALSE));
        UpdateWindow(sheet.Page());
        ASSERT_HR(S_OK, page->Deactivate());
    }
    EXPECT_NEAR(before, DrawingObjects(), 50);
}

} // namespace
