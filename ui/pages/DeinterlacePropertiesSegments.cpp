// From the controls to the copy of the settings: the segments.
#include "ui/pages/DeinterlaceProperties.h"

#include "ui/pages/DeinterlaceControls.h"
#include "ui/pages/DialogControls.h"
#include "ui/pages/ScopedFlag.h"

#include <algorithm>

void CDeinterlaceProperties::OnSegmentSelected(int) {
    m_selected = m_list.Selection();
    FillSelection();
}

// Lines beyond the empty last one, and no line (-1), stay what they are: the last one, and none.
void CDeinterlaceProperties::SelectSegment(int index) {
    m_selected = std::min(index, m_list.Count());
    m_list.Select(m_selected);
    FillSelection();
}

// The selected segment was changed by an edit or a button of its own: its line follows, the edits stay.
void CDeinterlaceProperties::ReplaceSegment() {
    m_list.Replace(*Selected(), m_settings.asTime);
    m_list.Select(m_selected);
    EnableControls();
    Changed();
}

PageSegment CDeinterlaceProperties::NewSegment() const {
    return m_settings.segments.Template(m_selected, m_settings.globalPattern, m_settings.defaultOperation);
}

// With no line selected a segment is added at the end, as on the empty last line.
void CDeinterlaceProperties::OnAddSegment(int) {
    const int index = m_selected < 0 ? m_settings.segments.Count() : m_selected;
    if (!m_settings.segments.Insert(index, NewSegment())) {
        return; // no memory: nothing was changed
    }
    m_list.Insert(*m_settings.segments.Find(index), m_settings.asTime);
    SelectSegment(index);
    Changed();
}

void CDeinterlaceProperties::OnRemoveSegment(int) {
    if (!m_settings.segments.Remove(m_selected)) {
        return;
    }
    m_list.Remove(m_selected);
    SelectSegment(m_selected);
    Changed();
}

void CDeinterlaceProperties::OnMoveSegment(int control) {
    const bool up = control == IDC_SEGMENT_UP;
    const int first = up ? m_selected - 1 : m_selected;
    if (!m_settings.segments.ExchangeWithNext(first)) {
        return;
    }
    m_list.Replace(*m_settings.segments.Find(first), m_settings.asTime);
    m_list.Replace(*m_settings.segments.Find(first + 1), m_settings.asTime);
    SelectSegment(up ? first : first + 1);
    Changed();
}

void CDeinterlaceProperties::OnOperation(int control) {
    PageSegment* const segment = Selected();
    if (!segment) {
        return;
    }
    for (const OperationRow& row : kOperations) {
        if (row.control == control) {
            segment->operation = row.operation;
        }
    }
    ReplaceSegment();
}

void CDeinterlaceProperties::OnSegmentPreamble(int control) {
    if (PageSegment* const segment = Selected()) {
        segment->pattern.deintPreamble = control == IDC_SEGMENT_PREAMBLE_DEINTERLACE;
        ReplaceSegment();
    }
}

void CDeinterlaceProperties::OnSegmentPattern(int) {
    PageSegment* const segment = Selected();
    if (!segment) {
        return;
    }
    for (const PatternRow& row : kSegmentPattern) {
        segment->pattern.*row.field = ReadUnsigned(m_hDialog, row.control);
    }
    ReplaceSegment();
}

void CDeinterlaceProperties::OnStart(int) {
    PageSegment* const segment = Selected();
    if (!segment) {
        return;
    }
    if (m_settings.asTime) {
        segment->startTime = ReadStartTime();
        segment->startFrame = FrameOfStartTime(segment->startTime, m_settings.frameRate);
    } else {
        segment->startFrame = ReadStartFrame();
        segment->startTime = TimeOfStartFrame(segment->startFrame, m_settings.frameRate);
    }
    ReplaceSegment();
}

// What is too large is corrected in its edit too.
StartTime CDeinterlaceProperties::ReadStartTime() {
    StartTime typed;
    for (const StartRow& row : kStartEdits) {
        typed.*row.field = ReadUnsigned(m_hDialog, row.control);
    }
    const StartTime time = ClampStartTime(typed);
    const ScopedFlag updating(m_updating);
    for (const StartRow& row : kStartEdits) {
        if (typed.*row.field != time.*row.field) {
            ReplaceNumber(m_hDialog, row.control, time.*row.field);
        }
    }
    return time;
}

std::int64_t CDeinterlaceProperties::ReadStartFrame() {
    const std::int64_t typed = ReadFrame(m_hDialog, IDC_START_MILLISECONDS);
    const std::int64_t frame = ClampStartFrame(typed);
    if (frame != typed) {
        const ScopedFlag updating(m_updating);
        ReplaceNumber(m_hDialog, IDC_START_MILLISECONDS, frame);
    }
    return frame;
}
