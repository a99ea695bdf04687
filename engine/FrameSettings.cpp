#include "engine/FrameSettings.h"

#include "settings/SettingsStore.h"

#include "NMFVDeinterlaceKeys.h"

namespace {

std::int32_t Edge(IMFAttributes* store, REFGUID key) {
    return static_cast<std::int32_t>(ReadSetting(store, key));
}

// Edges are any 32-bit numbers: sums and differences wrap.
std::int32_t Sum(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t Difference(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

} // namespace

RegionFlags ReadRegionFlags8(IMFAttributes* store) {
    RegionFlags flags;
    flags.region = ReadSetting(store, NMFV_DEINTERLACE_ENABLE_ROI) != 0;
    flags.merge = ReadSetting(store, NMFV_DEINTERLACE_MERGE_FIELDS) != 0;
    flags.even = ReadSetting(store, NMFV_DEINTERLACE_EVEN) != 0;
    return flags;
}

RegionFlags ReadRegionFlagsN(IMFAttributes* store) {
    RegionFlags flags;
    flags.even = ReadSetting(store, NMFV_DEINTERLACE_EVEN) != 0;
    flags.region = ReadSetting(store, NMFV_DEINTERLACE_ENABLE_ROI) != 0;
    flags.merge = ReadSetting(store, NMFV_DEINTERLACE_MERGE_FIELDS) != 0;
    return flags;
}

Region ReadRegion(IMFAttributes* store) {
    Region region;
    region.left = Edge(store, NMFV_DEINTERLACE_ROI_LEFT);
    region.top = Edge(store, NMFV_DEINTERLACE_ROI_TOP);
    region.right = Edge(store, NMFV_DEINTERLACE_ROI_RIGHT);
    region.bottom = Edge(store, NMFV_DEINTERLACE_ROI_BOTTOM);
    return region;
}

ProtectedArea ReadProtectedArea(IMFAttributes* store, const FrameShape& shape) {
    const std::int32_t left = Edge(store, NMFV_DEINTERLACE_PROTECTED_LEFT);
    const std::int32_t width = Difference(left, Edge(store, NMFV_DEINTERLACE_PROTECTED_LEFT));
    const std::int32_t bottom = Edge(store, NMFV_DEINTERLACE_PROTECTED_BOTTOM);
    const std::int32_t top = Edge(store, NMFV_DEINTERLACE_PROTECTED_TOP);
    const std::int32_t height = Difference(bottom, top);
    const std::int32_t row = shape.topDown ? top : Difference(Difference(shape.height, top), height);
    return {{left, row, Sum(left, width), Sum(row, height)}, top};
}
