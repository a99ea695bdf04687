#include "ui/pages/SegmentEditor.h"

#include "ui/pages/DialogControls.h"
#include "ui/pages/ScopedFlag.h"
#include "ui/resources/ResourceIds.h"

#include <algorithm>

namespace {

constexpr int kTimeLine = 0; // of the time format's list
constexpr int kFrameLine = 1;

} // namespace

// A handler returns whether the settings were changed.
struct CSegmentEditor::Command {
    int control;
    int code;
    bool (CSegmentEditor::*handler)(int control);
};

const CSegmentEditor::Command CSegmentEditor::kCommands[] = {
    {IDC_TIME_FORMAT, CBN_SELCHANGE, &CSegmentEditor::OnTimeFormat},
    {IDC_SEGMENTS, LBN_SELCHANGE, &CSegmentEditor::OnSelected},
    {IDC_ADD_SEGMENT, BN_CLICKED, &CSegmentEditor::OnAdd},
    {IDC_REMOVE_SEGMENT, BN_CLICKED, &CSegmentEditor::OnRemove},
    {IDC_SEGMENT_UP, BN_CLICKED, &CSegmentEditor::OnMove},
    {IDC_SEGMENT_DOWN, BN_CLICKED, &CSegmentEditor::OnMove},
};

CSegmentEditor::CSegmentEditor(PageSettings* settings, bool* updating)
    : m_settings(settings)
    , m_updating(updating)
    , m_values(settings, updating) {}

void CSegmentEditor::Attach(HWND dialog) {
    m_dialog = dialog;
    m_values.Attach(dialog);
    m_list.Attach(GetDlgItem(dialog, IDC_SEGMENTS));
    m_timeFormat = GetDlgItem(dialog, IDC_TIME_FORMAT);
    SendMessageA(m_timeFormat, CB_INSERTSTRING, kTimeLine, reinterpret_cast<LPARAM>("TIME FORMAT"));
    SendMessageA(m_timeFormat, CB_INSERTSTRING, kFrameLine, reinterpret_cast<LPARAM>("FRAME FORMAT"));
    m_labelledAsTime = true;
    FillTimeFormat();
}

void CSegmentEditor::Detach() {
    m_selected = m_list.Selection();
    m_list.Empty();
    m_list.Attach(nullptr);
    m_timeFormat = nullptr;
    m_values.Attach(nullptr);
    m_dialog = nullptr;
}

bool CSegmentEditor::OnCommand(int control, int code, bool* changed) {
    for (const Command& command : kCommands) {
        if (command.control == control && command.code == code) {
            *changed = (this->*command.handler)(control);
            return true;
        }
    }
    PageSegment* const segment = Selected();
    *changed = segment && m_values.OnCommand(control, code, segment);
    if (*changed) {
        ShowChanged(*segment);
    }
    return *changed;
}

void CSegmentEditor::Fill() {
    FillTimeFormat();
    m_list.Fill(m_settings->segments, m_settings->asTime);
    Select(m_selected);
}

// Kept: the label's text is written when its format changes only; until then the dialog's own stands, which ends in a
// blank. Test: LabelNamesTheFormat.
void CSegmentEditor::FillTimeFormat() {
    const bool asTime = m_settings->asTime;
    SendMessageA(m_timeFormat, CB_SETCURSEL, asTime ? kTimeLine : kFrameLine, 0);
    if (asTime != m_labelledAsTime) {
        SetDlgItemTextA(m_dialog, IDC_SEGMENT_START_LABEL,
                        asTime ? "Segment Start Time (HH:MM:SS.mS):" : "Segment Start Frame (SF):");
        m_labelledAsTime = asTime;
    }
}

// Lines beyond the empty last one count as that one; no line (-1) stays none.
void CSegmentEditor::Select(int index) {
    m_selected = std::min(index, m_list.Count());
    m_list.Select(m_selected);
    FillSelection();
}

bool CSegmentEditor::OnTimeFormat(int) {
    m_settings->asTime = SendMessageA(m_timeFormat, CB_GETCURSEL, 0, 0) == kTimeLine;
    Fill();
    return true;
}

bool CSegmentEditor::OnSelected(int) {
    m_selected = m_list.Selection();
    FillSelection();
    return false;
}

// With no line selected a segment is added at the end, as on the empty last line.
bool CSegmentEditor::OnAdd(int) {
    const int index = m_selected < 0 ? m_settings->segments.Count() : m_selected;
    if (!m_settings->segments.Insert(index, NewSegment())) {
        return false; // no memory
    }
    m_list.Insert(*m_settings->segments.Find(index), m_settings->asTime);
    Select(index);
    return true;
}

bool CSegmentEditor::OnRemove(int) {
    if (!m_settings->segments.Remove(m_selected)) {
        return false;
    }
    m_list.Remove(m_selected);
    Select(m_selected);
    return true;
}

bool CSegmentEditor::OnMove(int control) {
    const bool up = control == IDC_SEGMENT_UP;
    const int first = up ? m_selected - 1 : m_selected;
    if (!m_settings->segments.ExchangeWithNext(first)) {
        return false;
    }
    m_list.Replace(*m_settings->segments.Find(first), m_settings->asTime);
    m_list.Replace(*m_settings->segments.Find(first + 1), m_settings->asTime);
    Select(up ? first : first + 1);
    return true;
}

PageSegment CSegmentEditor::NewSegment() const {
    return m_settings->segments.Template(m_selected, m_settings->globalPattern, m_settings->defaultOperation);
}

void CSegmentEditor::FillSelection() {
    const ScopedFlag updating(*m_updating);
    m_values.Fill(NewSegment());
    EnableByRules(m_dialog, *m_settings, Selected());
}

// The edits stay as they are typed.
void CSegmentEditor::ShowChanged(const PageSegment& segment) {
    m_list.Replace(segment, m_settings->asTime);
    m_list.Select(m_selected);
    EnableByRules(m_dialog, *m_settings, &segment);
}
