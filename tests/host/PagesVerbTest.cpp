// The pages verb with somebody at the sheet. Needs a desktop.
#include "tests/host/ToolRun.h"
#include "tests/support/OtherWindows.h"
#include "tests/support/SavedSettings.h"
#include "ui/resources/ResourceIds.h"

#include <algorithm>
#include <functional>
#include <thread>

namespace host {
namespace {

class PagesVerb : public ToolTest {
protected:
    void SetUp() override {
        const Bytes clip = MakeY4m(32, 24, 1, {0});
        ASSERT_EQ(Run("- - --save --sensitivity 3.5 --pattern 0,1,1,off --use-pattern off", {clip}).code, 0u);
        m_saved = ReadSavedSettings();
        ASSERT_FALSE(m_saved.empty());
    }

    // Runs the program while `act` is at its sheet; a sheet that is left open is cancelled.
    ToolResult RunWith(const std::string& line, const std::function<void(HWND sheet)>& act) const {
        std::thread person([&] {
            const HWND sheet = AwaitSheet();
            EXPECT_NE(sheet, nullptr) << line;
            if (sheet) {
                act(sheet);
                PressButton(sheet, PSBTN_CANCEL);
            }
        });
        const ToolResult result = Run(line);
        person.join();
        EXPECT_EQ(result.code, 0u) << line << ": " << result.errors;
        return result;
    }

    // The same with this clip in the live window, which lies on top. Nothing is saved.
    void RunLive(const Bytes& clip, const std::function<void(HWND sheet, HWND live)>& act) const {
        Write("clip.y4m", clip);
        RunWith("pages --no-save --live clip.y4m", [&](HWND sheet) {
            const HWND live = AwaitWindow(L"NMFVDeinterlaceLive", L"clip.y4m");
            ASSERT_NE(live, nullptr);
            SetWindowPos(live, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
            act(sheet, live);
        });
        EXPECT_EQ(ReadSavedSettings(), m_saved);
    }

    const UsersSettings m_users;
    std::vector<BYTE> m_saved;
};

void Click(HWND sheet, int control) {
    const HWND window = FindControl(sheet, control);
    EXPECT_NE(window, nullptr) << control;
    SendMessageW(window, BM_CLICK, 0, 0);
}

void Apply(HWND sheet) {
    SendMessageW(sheet, PSM_APPLY, 0, 0);
}

TEST_F(PagesVerb, WhatIsAppliedIsSavedUnlessToldOtherwise) {
    struct Case {
        const char* line;
        int page;
        int control; // clicked
        int button;
        bool saved;
        const char* said;
    };
    constexpr Case kCases[] = {
        {"pages", 0, IDC_MERGE_FIELDS, PSBTN_OK, true, "are saved"},
        {"pages", 0, IDC_MERGE_FIELDS, PSBTN_CANCEL, false, "Nothing was changed"},
        {"pages", 0, 0, PSBTN_OK, false, "Nothing was changed"},
        {"pages", 0, IDC_ADD_SEGMENT, PSBTN_OK, false, "Only segments were changed"},
        {"pages --no-save", 0, IDC_MERGE_FIELDS, PSBTN_OK, false, "is gone"},
        {"pages", 1, IDC_ENABLE_ROI, PSBTN_APPLYNOW, true, "are saved"},
        {"pages --no-save", 1, IDC_ENABLE_ROI, PSBTN_APPLYNOW, false, "is gone"}, // the page itself saves
        {"pages --sheet own", 0, IDC_MERGE_FIELDS, PSBTN_OK, true, "are saved"},
        {"pages --sheet platform", 0, IDC_MERGE_FIELDS, PSBTN_CANCEL, false, "Nothing was changed"},
        {"pages --sheet platform", 1, IDC_ENABLE_ROI, PSBTN_CANCEL, false, "Nothing was changed"},
    };
    for (const Case& c : kCases) {
        WriteSavedSettings(REG_BINARY, m_saved);
        const ToolResult result = RunWith(c.line, [&c](HWND sheet) {
            SelectPage(sheet, c.page);
            if (c.control != 0) {
                Click(sheet, c.control);
            }
            PressButton(sheet, c.button);
        });
        const std::string what = std::string(c.line) + " page " + std::to_string(c.page) + ": " + result.errors;
        EXPECT_NE(result.errors.find(c.said), std::string::npos) << what;
        EXPECT_EQ(ReadSavedSettings() != m_saved, c.saved) << what;
    }
}

HWND FocusOf(HWND sheet) {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(sheet, nullptr), &info);
    return info.hwndFocus;
}

// Also behind the box in which it refuses a value.
TEST_F(PagesVerb, APageStaysVisibleAndKeepsTheFocusWhenItIsApplied) {
    RunWith("pages --no-save --sheet own", [](HWND sheet) {
        const HWND merge = FindControl(sheet, IDC_MERGE_FIELDS);
        SendMessageW(sheet, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(merge), TRUE);
        Click(sheet, IDC_MERGE_FIELDS);
        Apply(sheet);
        Sleep(500);
        EXPECT_EQ(FocusOf(sheet), merge);
        SendMessageW(FindControl(sheet, IDC_SENSITIVITY), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"9"));
        PressButton(sheet, PSBTN_APPLYNOW);
        HWND box = sheet;
        for (int i = 0; i < 100 && box == sheet; ++i) {
            Sleep(50);
            box = GetLastActivePopup(sheet);
        }
        EXPECT_NE(box, sheet);
        EXPECT_NE(FindControl(sheet, IDC_MERGE_FIELDS), nullptr) << "blank behind the box";
        PostMessageW(box, WM_COMMAND, IDOK, 0);
    });
}

// The region page saves when it is applied. That is undone, but never what another program saves.
TEST_F(PagesVerb, WithoutSavingOnlyTheOwnSaveIsUndone) {
    const std::vector<BYTE> others(9000, 7);
    for (const bool othersSave : {false, true}) {
        WriteSavedSettings(REG_BINARY, m_saved);
        RunWith("pages --no-save", [&](HWND sheet) {
            for (const auto& [page, control] : {std::pair(1, IDC_ENABLE_ROI), std::pair(0, IDC_MERGE_FIELDS)}) {
                SelectPage(sheet, page);
                Click(sheet, control);
                PressButton(sheet, PSBTN_APPLYNOW);
                Sleep(1000); // a person's pace
                EXPECT_NE(ReadSavedSettings(), m_saved) << "page " << page;
            }
            if (othersSave) {
                WriteSavedSettings(REG_BINARY, others);
            }
        });
        EXPECT_EQ(ReadSavedSettings(), othersSave ? others : m_saved);
    }
}

// How far the rows of one picture of the live window are apart. The clip's are, as it is all combs.
int RowContrast(HWND live, bool after) {
    RECT client{};
    GetClientRect(live, &client);
    POINT at{client.right * (after ? 3 : 1) / 4, client.bottom * 2 / 5};
    ClientToScreen(live, &at);
    const HDC screen = GetDC(nullptr);
    int least = 255, most = 0;
    for (int i = 0; i < client.bottom / 5; ++i) {
        const int blue = GetBValue(GetPixel(screen, at.x, at.y + i));
        least = std::min(least, blue);
        most = std::max(most, blue);
    }
    ReleaseDC(nullptr, screen);
    return most - least;
}

bool AwaitContrast(HWND live, bool after, bool high) {
    for (int i = 0; i < 100; ++i) {
        if ((RowContrast(live, after) > 100) == high) {
            return true;
        }
        Sleep(100);
    }
    return false;
}

TEST_F(PagesVerb, AChangeShowsInThePicturesThatPlay) {
    RunLive(MakeY4m(320, 240, 5, {0, 1, 2, 3, 4}), [](HWND sheet, HWND live) {
        EXPECT_TRUE(AwaitContrast(live, false, true)) << "before";
        EXPECT_TRUE(AwaitContrast(live, true, false)) << "after";
        for (const bool combed : {true, false}) {
            Click(sheet, IDC_ENABLE_DEINTERLACE);
            Apply(sheet);
            EXPECT_TRUE(AwaitContrast(live, true, combed)) << "after, once more combed: " << combed;
        }
        SendMessageW(live, WM_CLOSE, 0, 0); // the sheet stays
        EXPECT_TRUE(IsWindow(sheet));
    });
}

// Of these frames, five a second, the first is combed: 25 are deinterlaced, in whatever order they are seen. Not all
// are kept: the way back from the end to the beginning reads the clip again.
TEST_F(PagesVerb, APausedClipIsSteppedThroughAsItRuns) {
    RunLive(MakeY4m(16, 144, 1100, {0}, "5:1"), [](HWND, HWND live) {
        struct Case {
            int key;
            int times;
            bool deinterlaced;
        };
        constexpr Case kCases[] = {
            {VK_SPACE, 1, true}, {VK_HOME, 1, true},   {VK_NEXT, 5, false}, // frame 25
            {VK_LEFT, 1, true},  {VK_RIGHT, 1, false}, {VK_PRIOR, 2, true}, {VK_END, 1, false}, {VK_HOME, 1, true},
        };
        EXPECT_TRUE(AwaitContrast(live, true, false)) << "the first frame";
        for (const Case& c : kCases) {
            for (int i = 0; i < c.times; ++i) {
                SendMessageW(live, WM_KEYDOWN, static_cast<WPARAM>(c.key), 0);
            }
            EXPECT_TRUE(AwaitContrast(live, true, !c.deinterlaced)) << "key " << c.key;
        }
    });
}

std::wstring TextsOf(HWND sheet, const std::vector<int>& controls) {
    std::wstring texts;
    for (const int control : controls) {
        wchar_t text[16] = L"";
        SendMessageW(FindControl(sheet, control), WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text));
        texts += text + std::wstring(L" ");
    }
    return texts;
}

// The middle half, moved by 40 pixels to the left and 20 up. The transform counts rows of YUV frames from below.
TEST_F(PagesVerb, ADraggedRegionIsTheTransforms) {
    RunLive(MakeY4m(320, 240, 5, {0, 1, 2, 3, 4}), [](HWND sheet, HWND live) {
        SelectPage(sheet, 1);
        RECT client{};
        GetClientRect(live, &client);
        const POINT middle{client.right / 4, client.bottom * 2 / 5};
        SendMessageW(live, WM_KEYDOWN, 'R', 0);
        SendMessageW(live, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(middle.x, middle.y));
        SendMessageW(live, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(middle.x - 40, middle.y - 20));
        SendMessageW(live, WM_LBUTTONUP, 0, MAKELPARAM(middle.x - 40, middle.y - 20));
        const std::wstring wanted = L"40 80 200 200 ";
        std::wstring edges;
        for (int i = 0; i < 100 && edges != wanted; ++i) {
            Sleep(100); // the page looks several times a second
            edges = TextsOf(sheet, {IDC_ROI_LEFT, IDC_ROI_TOP, IDC_ROI_RIGHT, IDC_ROI_BOTTOM});
        }
        EXPECT_EQ(edges, wanted);
    });
}

TEST_F(PagesVerb, AClipThatCannotBePlayedShowsNoSheet) {
    Write("none.y4m", FromText("YUV4MPEG2 W32 H24 F25:1 C422\n"));
    struct Case {
        const char* line;
        unsigned long code;
        const char* said;
    };
    constexpr Case kCases[] = {{"pages --live none.y4m", 2, "has no frames"},
                               {"pages --live absent.y4m", 2, "cannot be opened"},
                               {"pages --live -", 1, "a pipe cannot be played again"}};
    for (const Case& c : kCases) {
        const ToolResult result = Run(c.line);
        EXPECT_EQ(result.code, c.code) << c.line;
        EXPECT_NE(result.errors.find(c.said), std::string::npos) << c.line << ": " << result.errors;
    }
}

} // namespace
} // namespace host
