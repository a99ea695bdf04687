#include "ui/pages/SegmentListBox.h"

#include "ui/rules/SegmentText.h"

#include <algorithm>
#include <cstring>

namespace {

// In pixels, with some space at the end.
int WidthOfLine(HWND listBox, const char* text) {
    const HDC dc = GetDC(listBox);
    const auto font = reinterpret_cast<HFONT>(SendMessageA(listBox, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font ? font : GetStockObject(SYSTEM_FONT));
    SIZE size = {};
    GetTextExtentPoint32A(dc, text, static_cast<int>(std::strlen(text)), &size);
    SelectObject(dc, before);
    ReleaseDC(listBox, dc);
    return size.cx + GetSystemMetrics(SM_CXVSCROLL);
}

} // namespace

void CSegmentListBox::Empty() {
    SendMessageA(m_window, LB_RESETCONTENT, 0, 0);
    SendMessageA(m_window, LB_SETHORIZONTALEXTENT, 0, 0);
    m_count = 0;
}

void CSegmentListBox::Fill(const PageSegmentList& segments, bool asTime) {
    SetRedraw(false);
    Empty();
    for (const PageSegment* segment = segments.First(); segment; segment = segment->next) {
        Insert(*segment, asTime);
    }
    SendMessageA(m_window, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(""));
    SetRedraw(true);
}

void CSegmentListBox::Insert(const PageSegment& segment, bool asTime) {
    char text[kSegmentTextSize];
    FormatSegment(segment, asTime, text);
    SendMessageA(m_window, LB_INSERTSTRING, static_cast<WPARAM>(segment.index), reinterpret_cast<LPARAM>(text));
    ++m_count;
    ReachWidth(WidthOfLine(m_window, text));
}

void CSegmentListBox::Remove(int index) {
    SendMessageA(m_window, LB_DELETESTRING, static_cast<WPARAM>(index), 0);
    --m_count;
}

void CSegmentListBox::Replace(const PageSegment& segment, bool asTime) {
    SetRedraw(false);
    Remove(segment.index);
    Insert(segment, asTime);
    SetRedraw(true);
}

void CSegmentListBox::Select(int index) {
    SendMessageA(m_window, LB_SETCURSEL, static_cast<WPARAM>(std::min(index, m_count)), 0);
}

int CSegmentListBox::Selection() const {
    return static_cast<int>(SendMessageA(m_window, LB_GETCURSEL, 0, 0));
}

// Long lines can be scrolled into view.
void CSegmentListBox::ReachWidth(int width) {
    if (width > SendMessageA(m_window, LB_GETHORIZONTALEXTENT, 0, 0)) {
        SendMessageA(m_window, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width), 0);
    }
}

void CSegmentListBox::SetRedraw(bool redraw) {
    SendMessageA(m_window, WM_SETREDRAW, redraw, 0);
    if (redraw) {
        InvalidateRect(m_window, nullptr, TRUE);
    }
}
