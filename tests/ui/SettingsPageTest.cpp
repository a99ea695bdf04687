// The settings page, driven by window messages.
#include "tests/ui/PageHost.h"
#include "ui/pages/DeinterlaceProperties.h"
#include "ui/resources/ResourceIds.h"

#include "Product.h"

namespace {

class SettingsPage : public PageHost<CDeinterlaceProperties> {
protected:
    void AddToObject(LONG index, SEGMENT_OPERATION_MODE mode, LONG hours) {
        m_object.AddSegment(index);
        m_object.SetSegmentOperationMode(index, mode);
        m_object.SetSegmentStartTime(index, hours, 0, 0, 40);
        m_object.SetSegmentData(index, 100 + hours);
    }
    void SelectLine(int line) { Choose(IDC_SEGMENTS, LB_SETCURSEL, LBN_SELCHANGE, line); }
    void SetFormat(SEGMENT_TIME_FORMAT format) {
        Choose(IDC_TIME_FORMAT, CB_SETCURSEL, CBN_SELCHANGE, format == SEGMENT_TIME_FORMAT_TIME ? 0 : 1);
    }
    Texts Lines() {
        Texts lines(static_cast<std::size_t>(Send(IDC_SEGMENTS, LB_GETCOUNT)));
        for (std::size_t i = 0; i < lines.size(); ++i) {
            char text[256] = "";
            Send(IDC_SEGMENTS, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text));
            lines[i] = text;
        }
        return lines;
    }
    // What is said of a window that has the handle of a control of the dialog before.
    std::string DescribeAgain(int control) {
        const HWND window = Control(control);
        Describe(window);
        SetParent(window, nullptr);
        EXPECT_HR(S_OK, m_page->Deactivate());
        Activate();
        SetParent(window, Dialog());
        return Describe(window);
    }
    int Line() { return static_cast<int>(Send(IDC_SEGMENTS, LB_GETCURSEL)); }
};

TEST_F(SettingsPage, ApplyOrder) {
    for (LONG i = 0; i < 3; ++i) {
        AddToObject(i, MODE_DEINTERLACE_PATTERN, i + 1);
    }
    Open();
    SelectLine(1);
    Click(IDC_REMOVE_SEGMENT);
    Click(IDC_SEGMENT_PREAMBLE_IGNORE); // of the former third
    Click(IDC_OPERATION_DEINTERLACE);
    Type(IDC_SENSITIVITY, "8");
    Click(IDC_MERGE_FIELDS);
    Click(IDC_AUTO_DEINTERLACE);
    Click(IDC_GLOBAL_PREAMBLE_IGNORE);
    EXPECT_TRUE(m_object.calls.empty());
    EXPECT_HR(S_OK, m_page->Apply());
    EXPECT_EQ("put_Enabled -1, put_Even 0, put_MergeFields -1, put_StartWithEvenFrame 0, put_AutoDeinterlace -1, "
              "put_AutoDeinterlaceSensitivity 8, put_EnableGlobalPattern 0, SetGlobalPattern 0 1 1 0, "
              "put_SegmentsTimeFormat 1, RemoveSegment 0, RemoveSegment 0, RemoveSegment 0, "
              "AddSegment 0, SetSegmentOperationMode 0 2, SetSegmentPattern 0 0 1 1 -1, SetSegmentData 0 101, "
              "SetSegmentStartTime 0 1 0 0 40, AddSegment 1, SetSegmentOperationMode 1 1, "
              "SetSegmentPattern 1 0 1 1 0, SetSegmentData 1 103, SetSegmentStartTime 1 3 0 0 40, ",
              m_object.Calls());
    EXPECT_EQ("8.000", Text(IDC_SENSITIVITY));
    EXPECT_FALSE(Dirty());
}

TEST_F(SettingsPage, SegmentsAreEdited) {
    Open();
    EXPECT_EQ(Texts{""}, Lines());
    EXPECT_EQ(-1, Line());
    for (const bool added : {false, true}) { // nothing selected: at the end, as the global pattern is by now
        Click(added ? IDC_ADD_SEGMENT : IDC_GLOBAL_PREAMBLE_IGNORE);
        EXPECT_EQ(BST_CHECKED, Send(IDC_SEGMENT_PREAMBLE_IGNORE, BM_GETCHECK)) << added;
    }
    EXPECT_EQ((Texts{" 0 : 0 : 0 . 0 ( P<0:1:1>)", ""}), Lines());
    Type(IDC_START_MINUTES, "2");
    Type(IDC_SEGMENT_PREAMBLE, "7");
    SelectLine(1);
    Click(IDC_ADD_SEGMENT); // on the empty line: like the one before
    Click(IDC_OPERATION_NO_DEINTERLACE);
    EXPECT_EQ((Texts{" 0 : 2 : 0 . 0 ( P<7:1:1>)", " 0 : 2 : 0 . 0 ( N )", ""}), Lines());
    EXPECT_EQ(1, Line());
    EXPECT_FALSE(IsEnabled(IDC_SEGMENT_DOWN));
    Click(IDC_SEGMENT_UP);
    EXPECT_EQ((Texts{" 0 : 2 : 0 . 0 ( N )", " 0 : 2 : 0 . 0 ( P<7:1:1>)", ""}), Lines());
    EXPECT_EQ(0, Line());
    EXPECT_FALSE(IsEnabled(IDC_SEGMENT_UP));
    EXPECT_TRUE(IsWindowEnabled(GetFocus())); // the keyboard isn't lost with the button
    SetFormat(SEGMENT_TIME_FORMAT_FRAME);
    EXPECT_EQ((Texts{" 3600  ( N )", " 3600 ( P<7:1:1>)", ""}), Lines());
    EXPECT_EQ("3600", Text(IDC_START_MILLISECONDS));
    Click(IDC_SEGMENT_DOWN);
    EXPECT_EQ(1, Line());
    Click(IDC_REMOVE_SEGMENT);
    EXPECT_EQ((Texts{" 3600 ( P<7:1:1>)", ""}), Lines());
    EXPECT_EQ(1, Line());
    EXPECT_HR(S_OK, m_page->Apply());
    EXPECT_EQ("SetSegmentStartFrame 0 3600", m_object.calls.back());
}

// Kept: the dialog's own label ends in a blank and stands until the format changes.
TEST_F(SettingsPage, LabelNamesTheFormat) {
    Open();
    const auto label = [this] { return Text(IDC_SEGMENT_START_LABEL); };
    EXPECT_EQ("Segment Start Time (HH:MM:SS.mS): ", label());
    SetFormat(SEGMENT_TIME_FORMAT_FRAME);
    EXPECT_EQ("Segment Start Frame (SF):", label());
    EXPECT_HR(S_OK, m_page->Deactivate());
    Activate();
    EXPECT_EQ("Segment Start Frame (SF):", label());
    SetFormat(SEGMENT_TIME_FORMAT_TIME);
    EXPECT_EQ("Segment Start Time (HH:MM:SS.mS):", label());
}

TEST_F(SettingsPage, StartPointsAreClamped) {
    AddToObject(0, MODE_NO_DEINTERLACE, 1);
    Open();
    SelectLine(0);
    constexpr struct {
        SEGMENT_TIME_FORMAT format;
        int control;
        const char *typed, *shown, *line;
    } kCases[] = {
        {SEGMENT_TIME_FORMAT_TIME, IDC_START_HOURS, "1000", "999", " 999 : 0 : 0 . 40 ( N )"},
        {SEGMENT_TIME_FORMAT_TIME, IDC_START_MINUTES, "75", "59", " 999 : 59 : 0 . 40 ( N )"},
        {SEGMENT_TIME_FORMAT_TIME, IDC_START_SECONDS, "99999999999", "59", " 999 : 59 : 59 . 40 ( N )"},
        {SEGMENT_TIME_FORMAT_TIME, IDC_START_MILLISECONDS, "1000", "999", " 999 : 59 : 59 . 999 ( N )"},
        {SEGMENT_TIME_FORMAT_TIME, IDC_START_MILLISECONDS, "5", "5", " 999 : 59 : 59 . 5 ( N )"},
        {SEGMENT_TIME_FORMAT_TIME, IDC_START_HOURS, "", "", " 0 : 59 : 59 . 5 ( N )"},
        {SEGMENT_TIME_FORMAT_FRAME, IDC_START_MILLISECONDS, "200000000", "107999999", " 107999999  ( N )"},
        {SEGMENT_TIME_FORMAT_FRAME, IDC_START_MILLISECONDS, "-1", "-1", " -1  ( N )"},
        {SEGMENT_TIME_FORMAT_FRAME, IDC_START_MILLISECONDS, "99999999999999999999", "99999999999999999999",
         " 9223372036854775807  ( N )"},
    };
    for (const auto& c : kCases) {
        SetFormat(c.format);
        Type(c.control, c.typed);
        EXPECT_EQ(c.shown, Text(c.control));
        EXPECT_EQ(c.line, Lines()[0]);
    }
}

TEST_F(SettingsPage, EnablingFollowsTheBoxes) {
    AddToObject(0, MODE_DEINTERLACE_PATTERN, 0);
    Open();
    SelectLine(0);
    // Which box is clicked, and then the state of: automatic, sensitivity, even lines, merge, even frame, global box,
    // its counts, the pattern operation, the segment's counts.
    constexpr struct {
        int box;
        const char* states;
    } kCases[] = {
        {0, "+-++-+-++"},
        {IDC_AUTO_DEINTERLACE, "++++-+-++"},
        {IDC_MERGE_FIELDS, "++-+-+-++"},
        {IDC_GLOBAL_PATTERN, "++-+-++++"},
        {IDC_ENABLE_DEINTERLACE, "--------+"},
        {IDC_ENABLE_DEINTERLACE, "++-+-++++"},
        {IDC_OPERATION_DEINTERLACE, "++-+-+++-"},
    };
    constexpr int kControls[] = {IDC_AUTO_DEINTERLACE, IDC_SENSITIVITY,           IDC_START_WITH_EVEN_LINES,
                                 IDC_MERGE_FIELDS,     IDC_START_WITH_EVEN_FRAME, IDC_GLOBAL_PATTERN,
                                 IDC_GLOBAL_PREAMBLE,  IDC_OPERATION_PATTERN,     IDC_SEGMENT_DEINTERLACE};
    for (const auto& c : kCases) {
        if (c.box) {
            Click(c.box);
        }
        std::string states;
        for (const int control : kControls) {
            states += IsEnabled(control) ? '+' : '-';
        }
        EXPECT_EQ(c.states, states) << "after " << c.box;
    }
    SelectLine(1);
    EXPECT_FALSE(IsEnabled(IDC_OPERATION_PATTERN) || IsEnabled(IDC_START_HOURS));
}

TEST_F(SettingsPage, WrongSensitivitiesAreRefused) {
    Open();
    Click(IDC_AUTO_DEINTERLACE); // else the edit is disabled
    for (const char* const text : {"8.0001", "1e-3", ""}) {
        Type(IDC_SENSITIVITY, text);
        m_log.boxes.clear();
        EXPECT_HR(E_FAIL, m_page->Apply());
        EXPECT_EQ(Texts{NMFV_DISPLAY_NAME ": The value you have entered is invalid. Please enter a value between 0.001 "
                                          "and 8.0"},
                  m_log.boxes);
        EXPECT_TRUE(Dirty());
        EXPECT_EQ(Control(IDC_SENSITIVITY), GetFocus());
    }
    EXPECT_TRUE(m_object.calls.empty());
    EXPECT_HR(S_OK, m_page->SetObjects(0, nullptr));
    EXPECT_FALSE(Dirty());
}

TEST_F(SettingsPage, GlobalCountsAreNotReadBack) {
    m_object.SetGlobalPattern(3, 4, 5, VARIANT_TRUE);
    Open();
    EXPECT_EQ("3", Text(IDC_GLOBAL_PREAMBLE));
    Type(IDC_GLOBAL_PREAMBLE, "9");
    EXPECT_FALSE(Dirty());
    Click(IDC_GLOBAL_PATTERN);
    EXPECT_HR(S_OK, m_page->Apply());
    EXPECT_EQ("SetGlobalPattern 3 4 5 -1", m_object.calls[7]);
}

TEST_F(SettingsPage, ShowFillsAgain) {
    Open();
    for (const int command : {SW_HIDE, SW_MINIMIZE, SW_SHOWNOACTIVATE, SW_SHOW, 77}) {
        Type(IDC_GLOBAL_PREAMBLE, "9");
        EXPECT_HR(S_OK, m_page->Show(static_cast<UINT>(command)));
        const bool fills = command != SW_HIDE && command != SW_MINIMIZE;
        EXPECT_EQ(fills ? "0" : "9", Text(IDC_GLOBAL_PREAMBLE)) << command;
    }
    EXPECT_HR(S_OK, m_page->Deactivate());
    EXPECT_HR(S_OK, m_page->Show(SW_SHOW));
}

TEST_F(SettingsPage, ImportsAreTaken) {
    Open();
    Click(IDC_ENABLE_DEINTERLACE);
    AddToObject(0, MODE_DEINTERLACE_ALL, 5);
    m_object.put_SegmentsTimeFormat(SEGMENT_TIME_FORMAT_FRAME);
    m_object.SetSegmentStartFrame(0, 250);
    for (const bool byApply : {false, true}) {
        m_object.put_DeinterlaceSettingsImportState(VARIANT_TRUE);
        m_object.put_Even(byApply ? VARIANT_TRUE : VARIANT_FALSE);
        m_object.calls.clear();
        m_site.statuses.clear();
        EXPECT_HR(S_OK, byApply ? m_page->Apply() : m_page->Show(SW_SHOW));
        EXPECT_EQ(std::vector<DWORD>{PROPPAGESTATUS_VALIDATE}, m_site.statuses);
        EXPECT_EQ("put_DeinterlaceSettingsImportState 0", m_object.calls[0]);
        EXPECT_EQ((Texts{" 250  ( D )", ""}), Lines());
        EXPECT_EQ(byApply ? BST_CHECKED : BST_UNCHECKED, Send(IDC_START_WITH_EVEN_LINES, BM_GETCHECK));
    }
    EXPECT_EQ("put_Even -1", m_object.calls[2]);
    SetFormat(SEGMENT_TIME_FORMAT_TIME);
    EXPECT_EQ(" 0 : 0 : 8 . 333 ( D )", Lines()[0]); // of frame 250 at 30 per second
}

TEST_F(SettingsPage, DescribesControlsAndHelps) {
    Open();
    const HCURSOR beam = LoadCursorA(nullptr, MAKEINTRESOURCEA(32513)),
                  arrow = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    SetCursor(beam);
    EXPECT_EQ("Merge the top and bottom fields into a single frame.", DescribeAgain(IDC_MERGE_FIELDS));
    EXPECT_EQ(beam, GetCursor()); // as the control has it
    EXPECT_EQ("", Describe(Dialog()));
    EXPECT_EQ(arrow, GetCursor());
    const HDC dc = GetDC(Dialog());
    for (const int control : {IDC_SENSITIVITY_LABEL, IDC_DESCRIPTION}) {
        SendMessageA(Dialog(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                     reinterpret_cast<LPARAM>(Control(control)));
        EXPECT_EQ(control == IDC_DESCRIPTION, GetTextColor(dc) == 0x00E60000);
    }
    ReleaseDC(Dialog(), dc);
    m_log.executeResult = 2; // no browser
    SendMessageA(Dialog(), WM_HELP, 0, 0);
    EXPECT_EQ(Texts{NMFV_DISPLAY_NAME ": Can't find help file."}, m_log.boxes);
}

TEST_F(SettingsPage, SelectionOutlivesDeactivation) {
    AddToObject(0, MODE_NO_DEINTERLACE, 1);
    AddToObject(1, MODE_NO_DEINTERLACE, 2);
    Open();
    SelectLine(1);
    Type(IDC_START_SECONDS, "9");
    DestroyWindow(Dialog()); // by the host
    m_site.statuses.clear();
    Activate(); // fills twice: once itself, once by showing
    EXPECT_EQ(std::vector<DWORD>(2, PROPPAGESTATUS_DIRTY), m_site.statuses);
    EXPECT_EQ(1, Line());
    EXPECT_EQ("9", Text(IDC_START_SECONDS));
    EXPECT_HR(S_OK, m_page->Deactivate());
    m_object.calls.clear();
    EXPECT_HR(S_OK, m_page->Apply()); // all of it, without a dialog too
    EXPECT_EQ("SetSegmentStartTime 1 2 0 9 40", m_object.calls.back());

    EXPECT_HR(S_OK, m_page->SetObjects(0, nullptr));
    EXPECT_HR(E_UNEXPECTED, m_page->SetObjects(0, nullptr));
    IUnknown* stranger = &m_site;
    EXPECT_HR(E_NOINTERFACE, m_page->SetObjects(1, &stranger));
    m_object.RemoveSegment(0);
    Connect();
    Activate();
    EXPECT_EQ(1, Line()); // the empty one now
    EXPECT_EQ((Texts{" 2 : 0 : 9 . 40 ( N )", ""}), Lines());
}

} // namespace
