// The about page: its labels and its link.
#include "tests/ui/PageHost.h"
#include "ui/pages/AboutProperties.h"
#include "ui/resources/ResourceIds.h"

namespace {

class AboutPage : public PageHost<CAboutProperties> {
protected:
    void SetUp() override {
        PageHost::SetUp();
        Open();
        m_link = Control(IDC_ABOUT_LINK);
    }

    // As the system sends it for a window under the cursor, which hands it to its parent.
    void Mouse(HWND window, UINT message) {
        SendMessageA(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window), MAKELPARAM(HTCLIENT, message));
    }
    HCURSOR LinkClassCursor() { return reinterpret_cast<HCURSOR>(GetClassLongPtrA(m_link, GCLP_HCURSOR)); }

    HWND m_link = nullptr;
};

TEST_F(AboutPage, FillsItsLabels) {
    EXPECT_EQ("Nerin Multimedia Component", Text(IDC_ABOUT_COMPONENT));
    const std::string notice = Text(IDC_ABOUT_NOTICE);
    EXPECT_NE(std::string::npos, notice.find("2023")) << notice;
    EXPECT_EQ(std::string::npos, notice.find('%')) << notice;
    EXPECT_NE(0, Send(IDC_ABOUT_ICON, STM_GETICON));

    const HDC dc = GetDC(m_link);
    EXPECT_EQ(
        reinterpret_cast<LRESULT>(GetSysColorBrush(COLOR_BTNFACE)),
        SendMessageA(Dialog(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(m_link)));
    EXPECT_EQ(0x00E60000u, GetTextColor(dc));
    EXPECT_EQ(TRANSPARENT, GetBkMode(dc));
    ReleaseDC(m_link, dc);

    const RECT wide{0, 0, 500, 300};
    EXPECT_HR(S_OK, m_page->Move(&wide));
    RECT link{};
    GetWindowRect(m_link, &link);
    MapWindowPoints(nullptr, Dialog(), reinterpret_cast<POINT*>(&link), 2);
    EXPECT_NEAR(250, (link.left + link.right) / 2, 2);

    SendMessageA(Dialog(), WM_HELP, 0, 0); // answered once, though the sheet is hooked as well
    EXPECT_EQ(1u, m_log.opened.size());
    EXPECT_HR(S_OK, m_page->Help(nullptr));
    EXPECT_EQ(2u, m_log.opened.size());
}

// d and u: the left button down and up on the link; D and U: elsewhere on the page; m and M: moves; c and C: up on the
// link and outside the page, as one that has the mouse sees it.
TEST_F(AboutPage, OpensTheLinkWhenClickedOnIt) {
    const struct {
        const char* events;
        std::size_t opened;
    } rows[] = {{"mdu", 1}, {"du", 1},   {"mdMmu", 1}, {"dU", 0}, {"dUu", 0}, {"Du", 0},
                {"u", 0},   {"dudu", 2}, {"duu", 1},   {"dc", 1}, {"dCu", 0}, {"dDc", 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.events);
        m_log.opened.clear();
        for (const char* event = row.events; *event; ++event) {
            if (*event == 'c' || *event == 'C') {
                POINT at = {1, 1};
                MapWindowPoints(m_link, Dialog(), &at, 1);
                SendMessageA(GetCapture(), WM_LBUTTONUP, 0, *event == 'c' ? MAKELPARAM(at.x, at.y) : -1);
                continue;
            }
            const char kind = static_cast<char>(*event | 0x20);
            const UINT message = kind == 'd' ? WM_LBUTTONDOWN : kind == 'u' ? WM_LBUTTONUP : WM_MOUSEMOVE;
            Mouse(kind == *event ? m_link : Dialog(), message);
        }
        EXPECT_EQ(Texts(row.opened, "https://www.example.com/"), m_log.opened);
    }
}

TEST_F(AboutPage, HandOverTheLinkOnly) {
    const HCURSOR hand = LoadCursorA(nullptr, MAKEINTRESOURCEA(32649));
    const HCURSOR before = LinkClassCursor();
    ASSERT_NE(hand, before);
    ASSERT_NE(nullptr, before);
    for (int round = 0; round < 2; ++round) {
        Mouse(m_link, WM_MOUSEMOVE);
        Mouse(m_link, WM_MOUSEMOVE);
        EXPECT_EQ(hand, GetCursor());
        EXPECT_EQ(nullptr, LinkClassCursor());
        Mouse(Dialog(), WM_MOUSEMOVE);
        EXPECT_NE(hand, GetCursor());
        EXPECT_EQ(before, LinkClassCursor());
    }
    for (const bool byHost : {false, true}) { // under the hand: labels of other windows have the class's cursor again
        Mouse(Control(IDC_ABOUT_LINK), WM_MOUSEMOVE);
        byHost ? (void)DestroyWindow(Dialog()) : (void)m_page->Deactivate();
        const HWND label = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        EXPECT_EQ(reinterpret_cast<ULONG_PTR>(before), GetClassLongPtrA(label, GCLP_HCURSOR));
        DestroyWindow(label);
        Activate();
    }
}

} // namespace
