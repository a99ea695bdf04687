// The page "ROI Settings": the region of interest and the protected area.
#pragma once

#include "ui/pages/TransformPage.h"
#include "ui/rules/EdgeCheck.h"

// Each edge is checked against its neighbours as it is typed. Applying saves all settings of the object.
class CDeinterlaceROIProperties : public CTransformPage {
public:
    CDeinterlaceROIProperties();

private:
    // A rectangle of the page with its box.
    struct Area {
        int box;
        bool enabled = false;
        PageRectangle rectangle;
    };
    struct EdgeRow;
    static const EdgeRow kEdges[];

    HRESULT Read(bool import) override;
    void Fill() override;
    Outcome OnCommand(int control, int code) override;
    HRESULT Write() override;

    void ReadRegion();
    void ReadProtectedArea();
    void FillSpins();
    void EnableArea(const Area& area);
    Outcome OnBox(Area* area);
    Outcome OnEdge(const EdgeRow& row);

    Area m_region;
    Area m_protected;
};
