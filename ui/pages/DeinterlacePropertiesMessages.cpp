// Dialog messages of the settings page, and which handler a notification has.
#include "ui/pages/DeinterlaceProperties.h"

#include "ui/pages/PageMessages.h"
#include "ui/resources/ResourceIds.h"

struct CDeinterlaceProperties::Command {
    int control;
    int code;
    void (CDeinterlaceProperties::*handler)(int control);
};

// Kept: the edits of the global pattern's counts have no row. What is typed there is never read back, and apply writes
// the counts that the object had. Test: GlobalCountsAreNotReadBack.
const CDeinterlaceProperties::Command CDeinterlaceProperties::kCommands[] = {
    {IDC_ENABLE_DEINTERLACE, BN_CLICKED, &CDeinterlaceProperties::OnBox},
    {IDC_START_WITH_EVEN_LINES, BN_CLICKED, &CDeinterlaceProperties::OnBox},
    {IDC_MERGE_FIELDS, BN_CLICKED, &CDeinterlaceProperties::OnBox},
    {IDC_START_WITH_EVEN_FRAME, BN_CLICKED, &CDeinterlaceProperties::OnBox},
    {IDC_GLOBAL_PATTERN, BN_CLICKED, &CDeinterlaceProperties::OnBox},
    {IDC_AUTO_DEINTERLACE, BN_CLICKED, &CDeinterlaceProperties::OnBox},
    {IDC_SENSITIVITY, EN_CHANGE, &CDeinterlaceProperties::OnSensitivity},
    {IDC_GLOBAL_PREAMBLE_DEINTERLACE, BN_CLICKED, &CDeinterlaceProperties::OnGlobalPreamble},
    {IDC_GLOBAL_PREAMBLE_IGNORE, BN_CLICKED, &CDeinterlaceProperties::OnGlobalPreamble},
    {IDC_TIME_FORMAT, CBN_SELCHANGE, &CDeinterlaceProperties::OnTimeFormat},
    {IDC_SEGMENTS, LBN_SELCHANGE, &CDeinterlaceProperties::OnSegmentSelected},
    {IDC_ADD_SEGMENT, BN_CLICKED, &CDeinterlaceProperties::OnAddSegment},
    {IDC_REMOVE_SEGMENT, BN_CLICKED, &CDeinterlaceProperties::OnRemoveSegment},
    {IDC_SEGMENT_UP, BN_CLICKED, &CDeinterlaceProperties::OnMoveSegment},
    {IDC_SEGMENT_DOWN, BN_CLICKED, &CDeinterlaceProperties::OnMoveSegment},
    {IDC_START_HOURS, EN_CHANGE, &CDeinterlaceProperties::OnStart},
    {IDC_START_MINUTES, EN_CHANGE, &CDeinterlaceProperties::OnStart},
    {IDC_START_SECONDS, EN_CHANGE, &CDeinterlaceProperties::OnStart},
    {IDC_START_MILLISECONDS, EN_CHANGE, &CDeinterlaceProperties::OnStart},
    {IDC_OPERATION_NO_DEINTERLACE, BN_CLICKED, &CDeinterlaceProperties::OnOperation},
    {IDC_OPERATION_DEINTERLACE, BN_CLICKED, &CDeinterlaceProperties::OnOperation},
    {IDC_OPERATION_PATTERN, BN_CLICKED, &CDeinterlaceProperties::OnOperation},
    {IDC_SEGMENT_PREAMBLE, EN_CHANGE, &CDeinterlaceProperties::OnSegmentPattern},
    {IDC_SEGMENT_NO_DEINTERLACE, EN_CHANGE, &CDeinterlaceProperties::OnSegmentPattern},
    {IDC_SEGMENT_DEINTERLACE, EN_CHANGE, &CDeinterlaceProperties::OnSegmentPattern},
    {IDC_SEGMENT_PREAMBLE_DEINTERLACE, BN_CLICKED, &CDeinterlaceProperties::OnSegmentPreamble},
    {IDC_SEGMENT_PREAMBLE_IGNORE, BN_CLICKED, &CDeinterlaceProperties::OnSegmentPreamble},
};

INT_PTR CDeinterlaceProperties::PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    INT_PTR result = 0;
    if (AnswerPageMessage(window, message, wParam, lParam, m_displayName, &m_hover, &result)) {
        return result;
    }
    if (message == WM_INITDIALOG) {
        OnInitDialog(window);
    }
    if (message == WM_COMMAND && m_ready && OnCommand(LOWORD(wParam), HIWORD(wParam))) {
        return TRUE;
    }
    return CBasePropertyPage::PageMessage(window, message, wParam, lParam);
}

void CDeinterlaceProperties::OnInitDialog(HWND dialog) {
    m_list.Attach(GetDlgItem(dialog, IDC_SEGMENTS));
    m_timeFormat = GetDlgItem(dialog, IDC_TIME_FORMAT);
    SendMessageA(m_timeFormat, CB_INSERTSTRING, 0, reinterpret_cast<LPARAM>("TIME FORMAT"));
    SendMessageA(m_timeFormat, CB_INSERTSTRING, 1, reinterpret_cast<LPARAM>("FRAME FORMAT"));
    SendMessageA(m_timeFormat, CB_SETCURSEL, m_settings.asTime ? 0 : 1, 0);
    m_labelledAsTime = true;
    SendDlgItemMessageA(dialog, IDC_SENSITIVITY, EM_LIMITTEXT, kSensitivityTextLength, 0);
}

// True when the notification has a handler, also when it is the page's own doing and doesn't count.
bool CDeinterlaceProperties::OnCommand(int control, int code) {
    for (const Command& command : kCommands) {
        if (command.control == control && command.code == code) {
            if (!m_updating) {
                (this->*command.handler)(control);
            }
            return true;
        }
    }
    return false;
}
