// The page "Deinterlace Settings": everything but the two rectangles of the ROI page.
#pragma once

#include "com/ComRef.h"
#include "ui/pages/BasePropertyPage.h"
#include "ui/pages/HoverText.h"
#include "ui/pages/SegmentListBox.h"
#include "ui/pages/SettingsTransfer.h"
#include "ui/resources/PublishedNames.h"
#include "ui/rules/PageSettings.h"

// Edits a copy of the settings and writes the whole of it to the object when the sheet applies. Knows the object as
// INMFVDeinterlace only. User-interface thread only.
class CDeinterlaceProperties : public CBasePropertyPage {
public:
    CDeinterlaceProperties();

    // Kept: S_OK whatever the command, and all but SW_HIDE and SW_MINIMIZE fill the controls again, those that show
    // nothing included. Test: ShowFillsAgain.
    STDMETHODIMP Show(UINT command) override;
    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    STDMETHODIMP Help(LPCOLESTR helpFolder) override;

    // E_NOINTERFACE without INMFVDeinterlace, E_OUTOFMEMORY when the segments find no room; not connected then.
    HRESULT ConnectObject(IUnknown* object) override;
    // E_UNEXPECTED when not connected.
    HRESULT DisconnectObject() override;
    HRESULT ActivatePage() override;
    HRESULT DeactivatePage() override;
    // S_FALSE when not connected, E_FAIL for a sensitivity that is none, after a message box.
    HRESULT ApplyChanges() override;
    INT_PTR PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct Command;
    static const Command kCommands[];

    // Object to copy
    HRESULT TakeImport(bool* taken);

    // Copy to controls
    void FillControls();
    void FillBoxes();
    void FillSensitivity();
    void FillGlobalPattern();
    void FillTimeFormat();
    void FillSegments();
    void FillSelection();
    void FillStart(const PageSegment& segment);
    void EnableControls();

    // Controls to copy
    bool OnCommand(int control, int code);
    void OnBox(int control);
    void OnSensitivity(int control);
    void OnGlobalPreamble(int control);
    void OnTimeFormat(int control);
    void OnSegmentSelected(int control);
    void OnStart(int control);
    void OnSegmentPattern(int control);
    void OnSegmentPreamble(int control);
    void OnOperation(int control);
    void OnAddSegment(int control);
    void OnRemoveSegment(int control);
    void OnMoveSegment(int control);
    StartTime ReadStartTime();
    std::int64_t ReadStartFrame();
    void SelectSegment(int index);
    void ReplaceSegment();
    void Changed();

    PageSegment* Selected() const { return m_settings.segments.Find(m_selected); }
    // What "Add Segment" adds: like the selected segment, else like the last one, else by the global pattern.
    PageSegment NewSegment() const;
    HRESULT RefuseSensitivity();

    // Other messages
    void OnInitDialog(HWND dialog);

    CComRef<INMFVDeinterlace> m_control;
    PageSettings m_settings;
    HWND m_timeFormat = nullptr;
    bool m_labelledAsTime = true; // the label of the start edits names times; as in the dialog's resource
    CSegmentListBox m_list;
    int m_selected = -1;     // line of the list, kept over deactivation
    bool m_updating = false; // the page changes controls itself; notifications don't count
    bool m_applied = true;   // no change is pending
    bool m_ready = false;    // the controls are filled
    CHoverText m_hover;
    char m_displayName[260] = NMFV_DISPLAY_NAME; // caption of message boxes, name of the help topic
};
