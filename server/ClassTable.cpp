#include "server/ClassTable.h"

#include "mft/MFTDeinterlace.h"
#include "ui/pages/AboutProperties.h"
#include "ui/pages/DeinterlaceProperties.h"
#include "ui/pages/DeinterlaceROIProperties.h"
#include "ui/pages/PageObject.h"

#include "NMFVDeinterlaceKeys.h"

namespace {

const ClassEntry g_ClassTable[] = {
    {&CLSID_NMFVDeinterlace, "Nerin MF Video Deinterlace Transform", &CreateUnaggregated<CMFTDeinterlace>},
    {&CLSID_NMFVDeinterlaceSettingsPage, "Nerin MF Video Deinterlace Transform Properties",
     &CreatePage<CDeinterlaceProperties>},
    {&CLSID_NMFVDeinterlaceRoiPage, "Nerin MF Video Deinterlace Transform ROI Properties",
     &CreatePage<CDeinterlaceROIProperties>},
    {&CLSID_NMFVDeinterlaceAboutPage, "Nerin MF Video Deinterlace Transform About", &CreatePage<CAboutProperties>},
};

} // namespace

std::span<const ClassEntry> ClassTable() {
    return g_ClassTable;
}
