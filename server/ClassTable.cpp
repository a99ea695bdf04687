#include "server/ClassTable.h"

#include "mft/MFTDeinterlace.h"
#include "ui/pages/AboutProperties.h"
#include "ui/pages/DeinterlaceProperties.h"
#include "ui/pages/DeinterlaceROIProperties.h"
#include "ui/pages/PageObject.h"

#include "NMFVDeinterlaceKeys.h"
#include "Product.h"

namespace {

const ClassEntry g_ClassTable[] = {
    {&CLSID_NMFVDeinterlace, NMFV_DISPLAY_NAME, &CreateUnaggregated<CMFTDeinterlace>},
    {&CLSID_NMFVDeinterlaceSettingsPage, NMFV_DISPLAY_NAME " Properties", &CreatePage<CDeinterlaceProperties>},
    {&CLSID_NMFVDeinterlaceRoiPage, NMFV_DISPLAY_NAME " ROI Properties", &CreatePage<CDeinterlaceROIProperties>},
    {&CLSID_NMFVDeinterlaceAboutPage, NMFV_DISPLAY_NAME " About", &CreatePage<CAboutProperties>},
};

} // namespace

std::span<const ClassEntry> ClassTable() {
    return g_ClassTable;
}
