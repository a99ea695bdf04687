// The ROI page, driven by window messages.
#include "diag/Trace.h"
#include "tests/support/DebuggerTexts.h"
#include "tests/ui/PageHost.h"
#include "ui/pages/DeinterlaceROIProperties.h"
#include "ui/resources/ResourceIds.h"

#include <utility>

#include <commctrl.h>

namespace {

class RoiPage : public PageHost<CDeinterlaceROIProperties> {
protected:
    void SetUp() override {
        PageHost::SetUp();
        m_object.SetInputSize(640, 480);
        m_object.put_ROIRight(100);
        m_object.put_ROILeft(10);
        m_object.put_ROIBottom(200);
        m_object.put_ROITop(20);
    }
};

TEST_F(RoiPage, EditsAreChecked) {
    Open();
    constexpr struct {
        int edit;
        const char* typed;
        const char* shown;
        bool dirty;
    } kCases[] = {
        {IDC_ROI_RIGHT, "99", "99", false},    {IDC_ROI_RIGHT, "4000000000", "11", true},
        {IDC_ROI_BOTTOM, "480", "480", false}, {IDC_ROI_TOP, "9999", "479", true},
        {IDC_ROI_LEFT, "", "0", true},         {IDC_PROTECTED_BOTTOM, "5000", "480", true},
    };
    for (const auto& c : kCases) {
        Type(c.edit, c.typed);
        EXPECT_EQ(c.shown, Text(c.edit)) << c.edit << " typed " << c.typed;
        EXPECT_EQ(c.dirty, Dirty()) << c.edit << " typed " << c.typed;
        const auto length = static_cast<DWORD>(Text(c.edit).size());
        EXPECT_TRUE(!c.dirty || Send(c.edit, EM_GETSEL) == MAKELRESULT(length, length));
        EXPECT_HR(S_OK, m_page->Apply());
    }
}

TEST_F(RoiPage, ApplyWritesInOrderAndSaves) {
    m_object.SetProtectedAreaParams(30, 300, 40, 400);
    Open();
    EXPECT_FALSE(IsEnabled(IDC_ROI_TOP) || IsEnabled(IDC_PROTECTED_TOP_SPIN));
    Click(IDC_ENABLE_ROI);
    EXPECT_TRUE(IsEnabled(IDC_ROI_TOP) && !IsEnabled(IDC_PROTECTED_TOP_SPIN));
    Click(IDC_ENABLE_PROTECTED_AREA);
    EXPECT_TRUE(IsEnabled(IDC_PROTECTED_TOP_SPIN));
    Type(IDC_ROI_BOTTOM, "201");
    m_object.put_ROISettingsImportState(VARIANT_TRUE); // which applying leaves alone
    EXPECT_HR(S_OK, m_page->Apply());
    // The object reports its protected left edge as the right one.
    EXPECT_EQ("put_ROISettingsImportState -1, put_EnableROI -1, put_ROIRight 100, put_ROILeft 10, put_ROIBottom 201, "
              "put_ROITop 20, put_EnableProtectedArea -1, SetProtectedAreaParams 30 30 40 400, SaveAttributes, ",
              m_object.Calls());
}

TEST_F(RoiPage, ImportReadsTheRegionOnly) {
    Connect();
    m_object.put_ROITop(55);
    m_object.SetProtectedAreaParams(5, 300, 66, 400);
    m_object.put_ROISettingsImportState(VARIANT_TRUE);
    Activate();
    EXPECT_EQ("55", Text(IDC_ROI_TOP));
    EXPECT_EQ("0", Text(IDC_PROTECTED_TOP));
    EXPECT_EQ("put_ROISettingsImportState 0", m_object.calls.back());
    EXPECT_EQ(std::vector<DWORD>{PROPPAGESTATUS_VALIDATE}, m_site.statuses);
    Click(IDC_ENABLE_ROI);
    EXPECT_HR(S_OK, m_page->Deactivate());
    Activate();
    EXPECT_EQ((std::vector<DWORD>{PROPPAGESTATUS_VALIDATE, PROPPAGESTATUS_DIRTY, PROPPAGESTATUS_DIRTY}),
              m_site.statuses);
}

TEST_F(RoiPage, FailuresAreTraced) {
    const std::uint32_t flags = std::exchange(TraceFlags, kTraceMaster | kTraceDebugger);
    const DebuggerTexts traced;
    constexpr RECT kRect = {0, 0, 9, 9};
    EXPECT_HR(E_UNEXPECTED, m_page->Activate(m_sheet.Get(), &kRect, FALSE));
    IUnknown* stranger = &m_site;
    EXPECT_HR(E_NOINTERFACE, m_page->SetObjects(1, &stranger));
    EXPECT_HR(E_OUTOFMEMORY, m_page->Activate(reinterpret_cast<HWND>(1), &kRect, FALSE));
    Open();
    m_object.saveResult = E_ACCESSDENIED;
    Click(IDC_ENABLE_ROI);
    EXPECT_HR(S_OK, m_page->Apply());
    m_log.executeResult = 2;
    m_log.loads = false;
    EXPECT_HR(S_OK, m_page->Help(nullptr));
    EXPECT_EQ(nullptr, CallHtmlHelp(nullptr, "f", 0, 0));
    TraceFlags = flags;
    for (const char* const text :
         {"::Activate failed 0x8000ffff, dialog 106", "::ConnectObject failed 0x80004002", "dialog 106 cannot be made",
          "settings not saved 0x80070005", "the shell refused", "(-3)", "cannot be loaded"}) {
        EXPECT_NE(std::string::npos, traced.All().find(text)) << text << " is not in:" << traced.All();
    }
}

TEST_F(RoiPage, SpinsReachTheInputSize) {
    m_object.SetInputSize(0, 480);
    Open();
    EXPECT_EQ(MAKELRESULT(1600, 0), Send(IDC_ROI_RIGHT_SPIN, UDM_GETRANGE));
    EXPECT_EQ("200", Text(IDC_ROI_BOTTOM));
    Type(IDC_ROI_RIGHT, "50"); // which no spin limits
    EXPECT_EQ("0", Text(IDC_ROI_RIGHT));
    m_page->Deactivate();
    m_object.SetInputSize(640, -1);
    Activate();
    EXPECT_EQ(MAKELRESULT(640, 0), Send(IDC_ROI_RIGHT_SPIN, UDM_GETRANGE));
    EXPECT_EQ(MAKELRESULT(480, 0), Send(IDC_PROTECTED_TOP_SPIN, UDM_GETRANGE));
    Send(IDC_ROI_BOTTOM, WM_KEYDOWN, VK_UP); // the spin button listens
    EXPECT_EQ("201", Text(IDC_ROI_BOTTOM));
}

} // namespace
