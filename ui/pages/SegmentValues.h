// The controls below the list of segments: one segment's start, operation and pattern.
#pragma once

#include "ui/rules/PageSettings.h"

#include <windows.h>

// Works on the settings page's copy of the settings and its `updating` flag.
class CSegmentValues {
public:
    CSegmentValues(const PageSettings* settings, bool* updating);

    // Null before a dialog goes.
    void Attach(HWND dialog) { m_dialog = dialog; }

    void Fill(const PageSegment& segment);

    // Takes a click or a change by hand over into `segment`. False when the notification is of other controls.
    bool OnCommand(int control, int code, PageSegment* segment);

private:
    bool OnEdit(int control, PageSegment* segment);
    bool OnButton(int control, PageSegment* segment);
    void FillStart(const PageSegment& segment);
    void ReadStart(PageSegment* segment);
    SegmentTime ReadStartTime();
    std::int64_t ReadStartFrame();

    const PageSettings* const m_settings;
    bool* const m_updating;
    HWND m_dialog = nullptr;
};
