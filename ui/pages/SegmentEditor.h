// The segments on the settings page: the list, its time format, its buttons, and the selected segment's values below.
#pragma once

#include "ui/pages/SegmentListBox.h"
#include "ui/pages/SegmentValues.h"
#include "ui/rules/PageSettings.h"

// Part of the settings page. Works on its copy of the settings and its `updating` flag.
class CSegmentEditor {
public:
    CSegmentEditor(PageSettings* settings, bool* updating);

    // The dialog was made. / It is about to go: the list is emptied, its selection kept for the next dialog.
    void Attach(HWND dialog);
    void Detach();

    // Shows the list anew, and the selected line's values.
    void Fill();

    // Shows the selected segment's values, or those that a segment added here would have.
    void FillSelection();

    // Null when no segment is selected.
    PageSegment* Selected() const { return m_settings->segments.Find(m_selected); }

    // A click or a change by hand; `changed` tells whether the settings have changed. False when the notification isn't
    // one of the editor's.
    bool OnCommand(int control, int code, bool* changed);

private:
    struct Command;
    static const Command kCommands[];

    bool OnTimeFormat(int control);
    bool OnSelected(int control);
    bool OnAdd(int control);
    bool OnRemove(int control);
    bool OnMove(int control);

    void FillTimeFormat();
    void Select(int index);
    void ShowChanged(const PageSegment& segment);
    // What "Add Segment" adds: like the selected segment, else like the last one, else by the global pattern.
    PageSegment NewSegment() const;

    PageSettings* const m_settings;
    bool* const m_updating;
    HWND m_dialog = nullptr;
    HWND m_timeFormat = nullptr;
    bool m_labelledAsTime = true; // the label of the start edits names times; as in the dialog's resource
    CSegmentListBox m_list;
    CSegmentValues m_values;
    int m_selected = -1; // line of the list
};
