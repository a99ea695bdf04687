#include "server/ClassTable.h"

#include "mft/MFTDeinterlace.h"

namespace {

const ClassEntry g_ClassTable[] = {
    {&CLSID_NMFVDeinterlace, &CMFTDeinterlace::CreateInstance},
};

} // namespace

std::span<const ClassEntry> ClassTable() {
    return g_ClassTable;
}
