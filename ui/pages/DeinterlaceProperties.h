// The page "Deinterlace Settings": everything but the two rectangles of the ROI page.
#pragma once

#include "ui/pages/SegmentEditor.h"
#include "ui/pages/TransformPage.h"
#include "ui/rules/PageSettings.h"

// Writes the whole of its copy when the sheet applies. An invalid sensitivity is refused with a message box, and
// applying gives E_FAIL; without memory for the segments, E_OUTOFMEMORY.
class CDeinterlaceProperties : public CTransformPage {
public:
    CDeinterlaceProperties();

    // Kept: S_OK whatever the command, and all but SW_HIDE and SW_MINIMIZE fill the controls again, even those that
    // show nothing. Test: ShowFillsAgain.
    STDMETHODIMP Show(UINT command) override;

private:
    HRESULT Read(bool import) override;
    void Fill() override;
    Outcome OnCommand(int control, int code) override;
    HRESULT Write() override;
    void AttachControls(HWND dialog) override;
    void DetachControls() override;

    void FillSensitivity();
    void FillGlobalPattern();
    bool OnBox(int control);
    void OnSensitivity();
    void OnGlobalPreamble(int control);
    HRESULT RefuseSensitivity();

    PageSettings m_settings;
    CSegmentEditor m_segments;
};
