// The dialogs and hover texts in the module's resources: what is on them, and that everything fits at every size.
#include "tests/ui/SheetWindow.h"
#include "ui/pages/HoverText.h"
#include "ui/resources/ResourceIds.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include <commctrl.h>

namespace {

constexpr struct {
    int dialog, width, height, points;
} kDialogs[] = {{105, 295, 342, 8}, {106, 295, 342, 8}, {5240, 177, 99, 10}};

INT_PTR CALLBACK AnswerNothing(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

// A dialog with its font in another size, which has the effect of another screen resolution.
HWND MakeDialog(int dialog, HWND parent, int percent = 100) {
    const HRSRC resource = FindResourceA(nullptr, MAKEINTRESOURCEA(dialog), reinterpret_cast<LPCSTR>(RT_DIALOG));
    const auto* bytes = static_cast<const char*>(LockResource(LoadResource(nullptr, resource)));
    std::vector<WORD> copy(SizeofResource(nullptr, resource) / sizeof(WORD) + 1);
    std::memcpy(copy.data(), bytes, SizeofResource(nullptr, resource));
    constexpr std::size_t kPoints = 16; // behind the fixed part and three empty texts: menu, class, title
    copy[kPoints] = static_cast<WORD>(copy[kPoints] * percent / 100);
    return CreateDialogIndirectParamA(GetModuleHandleA(nullptr), reinterpret_cast<const DLGTEMPLATE*>(copy.data()),
                                      parent, &AnswerNothing, 0);
}

std::string ClassOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof(name));
    return name;
}

bool HasId(HWND control) {
    const int id = GetDlgCtrlID(control);
    return id != -1 && id != 0xFFFF;
}

bool IsGroupBox(HWND control) {
    return ClassOf(control) == "Button" && (GetWindowLongPtrA(control, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

std::vector<HWND> Children(HWND dialog) {
    std::vector<HWND> all;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        all.push_back(child);
    }
    return all;
}

RECT Place(HWND control) {
    RECT rect;
    GetWindowRect(control, &rect);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

class Dialogs : public testing::Test {
protected:
    HWND m_host =
        CreateWindowExA(0, "STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 999, 999, nullptr, nullptr, nullptr, nullptr);
    void SetUp() override {
        const INITCOMMONCONTROLSEX wanted = {sizeof(wanted), ICC_UPDOWN_CLASS};
        InitCommonControlsEx(&wanted);
    }
    void TearDown() override { DestroyWindow(m_host); }
};

TEST_F(Dialogs, SpinsTurnTheEditOnTheirLeft) {
    const HWND dialog = MakeDialog(IDD_ROI, m_host);
    constexpr int kPairs[][2] = {{1081, 2085}, {1082, 1077}, {1083, 1078}, {1084, 1079},
                                 {2088, 2087}, {2092, 2091}, {2090, 2089}, {2094, 2093}};
    for (const auto& [spin, edit] : kPairs) {
        SendDlgItemMessageA(dialog, spin, UDM_SETRANGE, 0, MAKELPARAM(1600, 0));
        SendDlgItemMessageA(dialog, spin, UDM_SETPOS, 0, MAKELPARAM(1234, 0));
        EXPECT_EQ("1234", TextOf(GetDlgItem(dialog, edit))) << spin;
    }
    DestroyWindow(dialog);
}

// Every control that can be changed is described, labels are not.
TEST_F(Dialogs, HoverTexts) {
    for (const int id : {IDD_SETTINGS, IDD_ROI}) {
        const HWND dialog = MakeDialog(id, m_host), line = GetDlgItem(dialog, IDC_DESCRIPTION);
        CHoverText hover;
        for (HWND child : Children(dialog)) {
            hover.Follow(dialog, child);
            const std::string text = TextOf(line);
            EXPECT_EQ(HasId(child) && ClassOf(child) != "Static", !text.empty()) << GetDlgCtrlID(child);
            if (ClassOf(child) == UPDOWN_CLASSA) {
                hover.Follow(dialog, GetWindow(child, GW_HWNDPREV)); // the edit that it turns
                EXPECT_EQ(TextOf(line), text);
            }
        }
        DestroyWindow(dialog);
    }
}

// Kept: the published texts, slips included.
TEST_F(Dialogs, HoverTextsVerbatim) {
    for (const auto& [id, slip] : {std::pair(IDC_ENABLE_DEINTERLACE, "enable  deint"),
                                   {IDC_AUTO_DEINTERLACE, "needs deinterlaced"},
                                   {IDC_OPERATION_NO_DEINTERLACE, "Deintrelace"}}) {
        char text[512] = "";
        LoadStringA(nullptr, static_cast<UINT>(id), text, sizeof(text));
        EXPECT_NE(nullptr, std::strstr(text, slip)) << text;
    }
}

// What a control's text and what stands beside it take, measured in its own font.
SIZE Needed(HWND control, HDC dc) {
    const std::string text = TextOf(control), type = ClassOf(control);
    const bool plain = type == "Button" && !(GetWindowLongPtrA(control, GWL_STYLE) & BS_TYPEMASK);
    RECT rect = {}, unit = {0, 0, 4, 8};
    DrawTextA(dc, text.c_str(), -1, &rect, DT_CALCRECT | DT_SINGLELINE);
    MapDialogRect(GetParent(control), &unit);
    const int units = type == "Static" ? 0 : plain ? 6 : 12; // margins; the box or circle
    return {text.empty() ? 0 : rect.right + units * unit.right / 4, rect.bottom};
}

void ExpectApart(HWND one, HWND other) {
    RECT a = Place(one), b = Place(other), both;
    if (!IntersectRect(&both, &a, &b) || ClassOf(one) == UPDOWN_CLASSA || ClassOf(other) == UPDOWN_CLASSA) {
        return;
    }
    // A group may hold what is in its frame, and nothing may cut a frame.
    const RECT& inner = IsGroupBox(one) ? b : a;
    EXPECT_TRUE((IsGroupBox(one) || IsGroupBox(other)) && EqualRect(&both, &inner))
        << TextOf(one) << GetDlgCtrlID(one) << " and " << TextOf(other) << GetDlgCtrlID(other);
}

TEST_F(Dialogs, EverythingFitsAtEverySize) {
    for (const auto& row : kDialogs) {
        for (const int percent : {100, 125, 150, 200}) {
            SCOPED_TRACE(testing::Message() << "dialog " << row.dialog << " at " << percent << " %");
            const HWND dialog = MakeDialog(row.dialog, m_host, percent);
            RECT units = {0, 0, row.width, row.height}, client;
            MapDialogRect(dialog, &units);
            GetClientRect(dialog, &client);
            EXPECT_TRUE(EqualRect(&units, &client));
            EXPECT_FALSE(GetWindowLongPtrA(dialog, GWL_STYLE) & WS_VISIBLE);
            const auto font = reinterpret_cast<HFONT>(SendMessageA(dialog, WM_GETFONT, 0, 0));
            LOGFONTA drawn = {};
            GetObjectA(font, sizeof(drawn), &drawn);
            EXPECT_STREQ("MS Sans Serif", drawn.lfFaceName);
            EXPECT_EQ(-MulDiv(row.points * percent / 100, 96, 72), drawn.lfHeight);
            const HDC dc = GetDC(dialog);
            SelectObject(dc, font);
            const std::vector<HWND> all = Children(dialog);
            for (std::size_t i = 0; i < all.size(); ++i) {
                EXPECT_TRUE(!HasId(all[i]) || all[i] == GetDlgItem(dialog, GetDlgCtrlID(all[i]))) << "an id twice";
                RECT place = Place(all[i]), inside;
                IntersectRect(&inside, &place, &client);
                EXPECT_TRUE(EqualRect(&inside, &place)) << GetDlgCtrlID(all[i]);
                const SIZE needed = Needed(all[i], dc);
                EXPECT_LE(needed.cx, place.right - place.left) << TextOf(all[i]);
                EXPECT_LE(needed.cy, place.bottom - place.top) << TextOf(all[i]);
                for (std::size_t k = 0; k < i; ++k) {
                    ExpectApart(all[k], all[i]);
                }
            }
            if (const HWND line = GetDlgItem(dialog, IDC_DESCRIPTION)) {
                char longest[512];
                LoadStringA(nullptr, IDC_SENSITIVITY, longest, sizeof(longest));
                const RECT place = Place(line);
                RECT text = {0, 0, place.right - place.left, 0};
                DrawTextA(dc, longest, -1, &text, DT_CALCRECT | DT_WORDBREAK);
                EXPECT_LE(text.bottom, place.bottom - place.top);
            }
            ReleaseDC(dialog, dc);
            DestroyWindow(dialog);
        }
    }
}

} // namespace
