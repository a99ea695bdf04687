// The settings page's list of segments: one line a segment and an empty last line, at which segments are added.
#pragma once

#include "ui/rules/SegmentRecords.h"

#include <windows.h>

class CSegmentListBox {
public:
    void Attach(HWND listBox) { m_window = listBox; }

    // No lines at all.
    void Empty();

    // Writes all lines again.
    void Fill(const PageSegmentList& segments, bool asTime);

    // A line for a segment that was added, removed or changed.
    void Insert(const PageSegment& segment, bool asTime);
    void Remove(int index);
    void Replace(const PageSegment& segment, bool asTime);

    // Lines beyond the last one select the last one; -1 selects none.
    void Select(int index);
    int Selection() const;

    // Lines that are segments.
    int Count() const { return m_count; }

private:
    void ReachWidth(int width);
    void SetRedraw(bool redraw);

    HWND m_window = nullptr;
    int m_count = 0;
};
