// The page "ROI Settings": the region of interest and the protected area.
#pragma once

#include "com/ComRef.h"
#include "ui/pages/BasePropertyPage.h"
#include "ui/pages/HoverText.h"
#include "ui/resources/PublishedNames.h"
#include "ui/rules/EdgeCheck.h"

#include "NMFVDeinterlace.h"

// Edits a copy of the two rectangles; each edge is checked against its neighbours as it is typed. Knows the object as
// INMFVDeinterlace only. User-interface thread only.
class CDeinterlaceROIProperties : public CBasePropertyPage {
public:
    CDeinterlaceROIProperties();

    STDMETHODIMP GetPageInfo(PROPPAGEINFO* info) override;
    STDMETHODIMP Help(LPCOLESTR helpFolder) override;

    // E_NOINTERFACE without INMFVDeinterlace.
    HRESULT ConnectObject(IUnknown* object) override;
    // E_UNEXPECTED when not connected.
    HRESULT DisconnectObject() override;
    HRESULT ActivatePage() override;
    HRESULT DeactivatePage() override;
    // S_FALSE when not connected. Saves all settings of the object.
    HRESULT ApplyChanges() override;
    INT_PTR PageMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    // A rectangle of the page with its box.
    struct Area {
        int box;
        LONG enabled = VARIANT_FALSE; // -1 or 0
        PageRectangle rectangle;
    };
    struct EdgeRow;
    static const EdgeRow kEdges[];

    void ReadRegion();
    void ReadProtectedArea();
    bool TakeImport();

    void FillArea(const Area& area);
    void FillSpins();
    void EnableArea(const Area& area);

    bool OnCommand(int control, int code);
    void OnBox(Area* area);
    void OnEdge(const EdgeRow& row);
    void Changed();

    CComRef<INMFVDeinterlace> m_control;
    Area m_region;
    Area m_protected;
    bool m_applied = true;   // no change is pending
    bool m_updating = false; // the page rewrites an edit itself; the notification doesn't count
    bool m_ready = false;    // the controls are filled
    CHoverText m_hover;
    char m_displayName[260] = NMFV_DISPLAY_NAME; // caption of message boxes, name of the help topic
};
