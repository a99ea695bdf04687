// The dialogs and hover texts in the module's resources: what is on them, and that everything fits at every size.
#include "ui/HoverText.h"
#include "ui/ResourceIds.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include <windows.h>
#include <commctrl.h>

namespace {

struct ControlRow {
    int dialog, id;
    const char* type; // window class, with the button's type where it has one
    const char* caption;
    const char* hover; // null: none
};

// Kept: typing slips of the hover texts, blanks at the ends of captions.
const ControlRow kControls[] = {
    {105, 1075, "Button check", "Enable Deinterlace", "Check to enable  deinterlacing."},
    {105, 1196, "Button check", "Auto Deinterlace", "Automatically determine whether the video needs deinterlaced."},
    {105, 2096, "Static", "Sensitivity:", nullptr},
    {105, 2095, "Edit", "",
     "Adjust the sensitivity of the Auto Detection algorithm. Allowed values: between 0.001 and 8.0. Values lower than "
     "1.0 increase the chance a frame will be considered interlace and will deinterlace a frame even when the "
     "interlace effect is on a small portion of an image. 1.0 is the default."},
    {105, 1090, "Button check", "Start with even frame", "Start with even frame."},
    {105, 1197, "Button check", "Merge fields", "Merge the top and bottom fields into a single frame."},
    {105, 1087, "Button check", "Start with even lines", "Start with even lines."},
    {105, 1186, "Button check", "Enable ", "Enable / Disable global pattern."},
    {105, 1139, "Edit number", "",
     "Preamble frames; a group of frames at the beginning of the stream (global pattern)."},
    {105, 1184, "Button radio group", "Deinterlace", "Deinterlace preamble frames."},
    {105, 1185, "Button radio", "No Deinterlace ", "Ignore preamble frames."},
    {105, 1102, "Edit number", "", "Frames to ignore in the global pattern; no deinterlacing."},
    {105, 1142, "Edit number", "", "Frames to deinterlace in the global pattern."},
    {105, 1166, "ComboBox", "", "Segments time format."},
    {105, 1172, "ListBox", "", "Segments, select a segment to change its parameters."},
    {105, 1173, "Button", "Add Segment", "Add new segment."},
    {105, 1174, "Button", "Remove Segment", "Remove selected segment."},
    {105, 1175, "Button", "Up", "Move segment up."},
    {105, 1176, "Button", "Down", "Move segment down."},
    {105, 1191, "Static", "Segment Start Time (HH:MM:SS.mS): ", nullptr},
    {105, 1187, "Edit number", "", "Segment start time: Hours."},
    {105, 1188, "Edit number", "", "Segment start time: Minutes."},
    {105, 1189, "Edit number", "", "Segment start time: Seconds."},
    {105, 1190, "Edit number", "",
     "Segment start: Milli Seconds part or Frame number, depending on the selected time format."},
    {105, 1181, "Button radio group", "No Deinterlace", "No Deintrelace; all frames in the segment will be ignored."},
    {105, 1182, "Button radio", "Deinterlace", "Deinterlace all frames in the segment."},
    {105, 1183, "Button radio", "Deinterlace Pattern ", "Deinterlace with pattern."},
    {105, 1137, "Edit number", "", "Segment preamble frames; a group of frames at the beginning of the segment."},
    {105, 1179, "Button radio group", "Deinterlace", "Deinterlace preamble frames."},
    {105, 1180, "Button radio", "No Deinterlace ", "Ignore preamble frames."},
    {105, 1138, "Edit number", "", "Frames to ignore in the segment pattern; no deinterlacing."},
    {105, 1140, "Edit number", "", "Frames to deinterlace in the segment pattern."},
    {105, 1013, "Static", "", nullptr},
    {106, 1080, "Button check", "E&nable ROI", "Enable / Disable Region Of Interest."},
    {106, 2085, "Edit number", "", "ROI Left."},
    {106, 1077, "Edit number", "", "ROI Top."},
    {106, 1078, "Edit number", "", "ROI Right."},
    {106, 1079, "Edit number", "", "ROI Bottom."},
    {106, 1081, "msctls_updown32", "", nullptr},
    {106, 1082, "msctls_updown32", "", nullptr},
    {106, 1083, "msctls_updown32", "", nullptr},
    {106, 1084, "msctls_updown32", "", nullptr},
    {106, 2086, "Button check", "E&nable Protected Area",
     "Enable protected area settings. The protected area defined by its 4 boundaries is an area that will be excluded "
     "from deinterlacing."},
    {106, 2087, "Edit number", "", "The left boundary of the protected area."},
    {106, 2088, "msctls_updown32", "", "The left boundary of the protected area."},
    {106, 2091, "Edit number", "", "The top boundary of the protected area."},
    {106, 2092, "msctls_updown32", "", "The top boundary of the protected area."},
    {106, 2089, "Edit number", "", "The right boundary of the protected area."},
    {106, 2090, "msctls_updown32", "", "The right boundary of the protected area."},
    {106, 2093, "Edit number", "", "The bottom boundary of the protected area."},
    {106, 2094, "msctls_updown32", "", "The bottom boundary of the protected area."},
    {106, 1013, "Static", "", nullptr},
    {5240, 5242, "Static", "www.example.com", nullptr},
    {5240, 5243, "Static", "", nullptr},
    {5240, 5244, "Static", "", nullptr},
    {5240, 5245, "Static", "Nerin Systems, %d", nullptr},
};

constexpr struct {
    int dialog, width, height, points;
} kDialogs[] = {{105, 295, 342, 8}, {106, 295, 342, 8}, {5240, 177, 99, 10}};

INT_PTR CALLBACK AnswerNothing(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

// A dialog with its font in another size, which is what another resolution of the screen comes to.
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

std::string TextOf(HWND window) {
    char text[512] = "";
    GetWindowTextA(window, text, sizeof(text));
    return text;
}

std::string TypeOf(HWND control) {
    std::string type = ClassOf(control);
    const LONG_PTR style = GetWindowLongPtrA(control, GWL_STYLE);
    if (type == "Button") {
        const LONG_PTR kind = style & BS_TYPEMASK;
        type += kind == BS_AUTOCHECKBOX ? " check" : kind == BS_AUTORADIOBUTTON ? " radio" : "";
        type += kind == BS_AUTORADIOBUTTON && (style & WS_GROUP) ? " group" : "";
    }
    return type + (type == "Edit" && (style & ES_NUMBER) ? " number" : "");
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

TEST_F(Dialogs, HoldTheirControls) {
    for (const auto& row : kDialogs) {
        const HWND dialog = MakeDialog(row.dialog, m_host);
        ASSERT_NE(nullptr, dialog) << row.dialog;
        RECT units = {0, 0, row.width, row.height}, client;
        MapDialogRect(dialog, &units);
        GetClientRect(dialog, &client);
        EXPECT_TRUE(EqualRect(&units, &client)) << row.dialog;
        LOGFONTA font = {};
        GetObjectA(reinterpret_cast<HFONT>(SendMessageA(dialog, WM_GETFONT, 0, 0)), sizeof(font), &font);
        EXPECT_STREQ("MS Sans Serif", font.lfFaceName);
        EXPECT_EQ(-MulDiv(row.points, 96, 72), font.lfHeight);
        EXPECT_FALSE(GetWindowLongPtrA(dialog, GWL_STYLE) & WS_VISIBLE);

        std::multiset<int> expected, found;
        for (const ControlRow& control : kControls) {
            if (control.dialog != row.dialog) {
                continue;
            }
            expected.insert(control.id);
            EXPECT_EQ(control.type, TypeOf(GetDlgItem(dialog, control.id))) << control.id;
            if (control.id != IDC_ABOUT_ICON) { // its text is the icon's number
                EXPECT_EQ(control.caption, TextOf(GetDlgItem(dialog, control.id))) << control.id;
            }
        }
        for (HWND child : Children(dialog)) {
            if (const int id = GetDlgCtrlID(child); id != 0xFFFF && id != -1) {
                found.insert(id);
            }
        }
        EXPECT_EQ(expected, found) << row.dialog;
        DestroyWindow(dialog);
    }
}

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

// Over each control in turn, as the mouse would go.
TEST_F(Dialogs, HoverTexts) {
    CHoverText hover;
    HWND dialog = nullptr;
    for (const ControlRow& row : kControls) {
        if (row.dialog != IDD_ABOUT) {
            if (!dialog || row.id == IDC_ENABLE_ROI) {
                DestroyWindow(dialog);
                dialog = MakeDialog(row.dialog, m_host);
            }
            hover.Follow(dialog, GetDlgItem(dialog, row.id));
            EXPECT_EQ(row.hover ? row.hover : "", TextOf(GetDlgItem(dialog, IDC_DESCRIPTION))) << row.id;
        }
    }
    const HWND foreign = CreateWindowExA(0, "STATIC", "", WS_CHILD, 0, 0, 1, 1, m_host,
                                         reinterpret_cast<HMENU>(IDC_ENABLE_ROI), nullptr, nullptr);
    SetDlgItemTextA(dialog, IDC_DESCRIPTION, "old");
    hover.Follow(dialog, foreign); // the sheet's controls have ids of their own
    EXPECT_EQ("", TextOf(GetDlgItem(dialog, IDC_DESCRIPTION)));
    hover.Follow(dialog, nullptr);
    DestroyWindow(dialog);
}

// What a control's text and what stands beside it take, measured in its own font.
SIZE Needed(HWND control, HDC dc) {
    const std::string text = TextOf(control), type = TypeOf(control);
    RECT rect = {}, unit = {0, 0, 4, 8};
    DrawTextA(dc, text.c_str(), -1, &rect, DT_CALCRECT | DT_SINGLELINE);
    MapDialogRect(GetParent(control), &unit);
    const int units = type == "Static" ? 0 : type == "Button" ? 6 : 12; // margins; the box or circle
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
            RECT client;
            GetClientRect(dialog, &client);
            const HDC dc = GetDC(dialog);
            SelectObject(dc, reinterpret_cast<HFONT>(SendMessageA(dialog, WM_GETFONT, 0, 0)));
            const std::vector<HWND> all = Children(dialog);
            for (std::size_t i = 0; i < all.size(); ++i) {
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
            const RECT line = row.dialog == IDD_ABOUT ? client : Place(GetDlgItem(dialog, IDC_DESCRIPTION));
            for (const ControlRow& control : kControls) {
                RECT text = {0, 0, line.right - line.left, 0};
                DrawTextA(dc, control.hover ? control.hover : "", -1, &text, DT_CALCRECT | DT_WORDBREAK);
                EXPECT_LE(text.bottom, line.bottom - line.top) << control.id;
            }
            ReleaseDC(dialog, dc);
            DestroyWindow(dialog);
        }
    }
}

} // namespace
