#include "settings/SettingsDefaults.h"

#include "NMFVDeinterlace.h"
#include "NMFVDeinterlaceKeys.h"

namespace {

// In the order of writing.
constexpr struct {
    const GUID* key;
    UINT32 level1;
    UINT32 level2;
} kDefaults[] = {
    {&NMFV_DEINTERLACE_ENABLED, 1, 1},
    {&NMFV_DEINTERLACE_EVEN, 0, 0},
    {&NMFV_DEINTERLACE_RESIZE, 0, 0},
    {&NMFV_DEINTERLACE_MERGE_FIELDS, 0, 1},
    {&NMFV_DEINTERLACE_RESERVED, 0, 0}, // Kept: read by nothing. Test: ResetLeaves23Items
    {&NMFV_DEINTERLACE_START_WITH_EVEN_FRAME, 0, 0},
    {&NMFV_DEINTERLACE_ENABLE_ROI, 0, 0},
    {&NMFV_DEINTERLACE_ROI_LEFT, 0, 0},
    {&NMFV_DEINTERLACE_ROI_RIGHT, 1, 1},
    {&NMFV_DEINTERLACE_ROI_TOP, 0, 0},
    {&NMFV_DEINTERLACE_ROI_BOTTOM, 1, 1},
    {&NMFV_DEINTERLACE_ENABLE_GLOBAL_PATTERN, 0, 0},
    // Kept: written twice, and the pattern's preamble frames never, so that a reset store holds 23 items and reads 0
    // for that key. Test: ResetLeaves23Items.
    {&NMFV_DEINTERLACE_PATTERN_DEINT_PREAMBLE, 1, 1},
    {&NMFV_DEINTERLACE_PATTERN_NO_DEINTERLACE_FRAMES, 1, 1},
    {&NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES, 1, 1},
    {&NMFV_DEINTERLACE_PATTERN_DEINT_PREAMBLE, 1, 1},
    {&NMFV_DEINTERLACE_SEGMENTS_TIME_FORMAT, SEGMENT_TIME_FORMAT_TIME, SEGMENT_TIME_FORMAT_TIME},
    {&NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA, 0, 0},
    {&NMFV_DEINTERLACE_PROTECTED_LEFT, 0, 0},
    {&NMFV_DEINTERLACE_PROTECTED_RIGHT, 1, 1},
    {&NMFV_DEINTERLACE_PROTECTED_TOP, 0, 0},
    {&NMFV_DEINTERLACE_PROTECTED_BOTTOM, 1, 1},
    {&NMFV_DEINTERLACE_AUTO_DEINTERLACE, 0, 1},
};

constexpr double kDefaultSensitivity = 1.0;

} // namespace

HRESULT ResetSettings(IMFAttributes* store, LONG apiLevel) {
    if (apiLevel != NMVDeinterlace_APILEVEL_1 && apiLevel != NMVDeinterlace_APILEVEL_2) {
        return E_INVALIDARG;
    }
    if (!store) {
        return E_UNEXPECTED;
    }
    if (const HRESULT hr = store->DeleteAllItems(); FAILED(hr)) {
        return hr;
    }
    for (const auto& row : kDefaults) {
        const UINT32 value = apiLevel >= NMVDeinterlace_APILEVEL_2 ? row.level2 : row.level1;
        if (const HRESULT hr = store->SetUINT32(*row.key, value); FAILED(hr)) {
            return hr;
        }
    }
    const HRESULT hr = store->SetDouble(NMFV_DEINTERLACE_AUTO_SENSITIVITY, kDefaultSensitivity);
    return FAILED(hr) ? hr : S_OK;
}
