#include "engine/DeinterlaceFilter.h"

#include "diag/Trace.h"
#include "engine/DeinterlaceLines.h"
#include "engine/InterlaceDetector.h"
#include "settings/SettingsBlob.h"
#include "settings/SettingsStore.h"

#include "NMFVDeinterlaceKeys.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr wchar_t kDisplayName[] = L"Nerin MF Video Deinterlace Transform";
constexpr UINT32 kColorTableEntries = 256;

// Input and output may be one and the same frame.
void CopyFrame(const FrameShape& shape, const BYTE* input, BYTE* output) {
    std::memmove(output, input, static_cast<std::size_t>(shape.Bytes()));
}

} // namespace

CDeinterlaceFilter::CDeinterlaceFilter()
    : CNerinCommon(kDisplayName, kSettingsKey) {
    Trace("\nCDeinterlaceFilter::CDeinterlaceFilter");
}

CDeinterlaceFilter::~CDeinterlaceFilter() {
    Trace("\nCDeinterlaceFilter::~CDeinterlaceFilter");
}

UINT32 CDeinterlaceFilter::Setting(REFGUID key) const {
    return ReadSetting(Store(), key);
}

FrameShape CDeinterlaceFilter::Shape() const {
    return {m_lWidth, m_lHeight, m_lBitCount, m_lStride, m_bTopDown != 0};
}

HRESULT CDeinterlaceFilter::Transform(const BYTE* input, BYTE* output) {
    Trace("CDeinterlaceFilter::Transform");
    const FrameShape shape = Shape();
    if (!shape.IsProcessable()) {
        return E_UNEXPECTED;
    }
    const bool saved = Setting(NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA) && SaveFrame(shape, input);
    const HRESULT hr =
        m_lBitCount == 8 ? DeinterlaceBits8(shape, input, output) : DeinterlaceBitsN(shape, input, output);
    if (FAILED(hr)) {
        Trace("CDeinterlaceFilter::N_Deinterlace Failed");
    }
    // Asked again: a client that switched the protected area off meanwhile gets this frame without it.
    if (saved && Setting(NMFV_DEINTERLACE_ENABLE_PROTECTED_AREA)) {
        RestoreProtected(shape, output);
    }
    return hr;
}

// False when there is no buffer for this frame: before the stream has started, after its end, or when the format has
// grown since. The frame then goes without save and restore.
bool CDeinterlaceFilter::SaveFrame(const FrameShape& shape, const BYTE* input) {
    if (!m_pSavedFrame.Holds(shape.Bytes())) {
        return false;
    }
    CopyFrame(shape, input, m_pSavedFrame.Data());
    return true;
}

void CDeinterlaceFilter::RestoreProtected(const FrameShape& shape, BYTE* output) {
    ProtectedArea area = ReadProtectedArea(Store(), shape);
    RestoreProtectedArea(output, m_pSavedFrame.Data(), shape, m_bPacked422 != 0, area.top, area.rectangle);
}

HRESULT CDeinterlaceFilter::DeinterlaceBits8(const FrameShape& shape, const BYTE* input, BYTE* output) {
    if (PassesThrough(input)) {
        CopyFrame(shape, input, output);
        return S_OK;
    }
    DeinterlaceArea(shape, input, output, ReadRegionFlags8(Store()));
    return S_OK;
}

HRESULT CDeinterlaceFilter::DeinterlaceBitsN(const FrameShape& shape, const BYTE* input, BYTE* output) {
    if (PassesThrough(input)) {
        CopyFrame(shape, input, output);
        return S_OK;
    }
    DeinterlaceArea(shape, input, output, ReadRegionFlagsN(Store()));
    return S_OK;
}

bool CDeinterlaceFilter::PassesThrough(const BYTE* input) {
    if (!Setting(NMFV_DEINTERLACE_ENABLED)) {
        return true;
    }
    return Setting(NMFV_DEINTERLACE_AUTO_DEINTERLACE) && !ShouldDeinterlace(input);
}

bool CDeinterlaceFilter::ShouldDeinterlace(const BYTE* frame) {
    const double sensitivity = ReadDoubleSetting(Store(), NMFV_DEINTERLACE_AUTO_SENSITIVITY);
    const bool interlaced =
        IsFrameInterlaced(frame, m_lWidth, m_lHeight, m_lBitCount, m_pColorTable.get(), sensitivity) == 1;
    return AdvanceHold(interlaced, m_lAutoHoldFrames, m_lAutoHoldCounter);
}

void CDeinterlaceFilter::DeinterlaceArea(const FrameShape& shape, const BYTE* input, BYTE* output,
                                         const RegionFlags& flags) {
    const ProcessedArea area = SetupROI(shape, input, output, flags);
    // The indices of a colour palette are no levels: they must not be averaged.
    const bool interpolationAllowed = shape.bits != 8 || m_bGrayPalette;
    DeinterlaceLines(input + area.offset, output + area.offset, flags.even ? 0 : 1, interpolationAllowed, flags.merge,
                     area.width, area.rows, shape.bits, shape.stride, flags.region);
}

// What lies outside the region passes through unchanged.
ProcessedArea CDeinterlaceFilter::SetupROI(const FrameShape& shape, const BYTE* input, BYTE* output,
                                           const RegionFlags& flags) {
    if (!flags.region) {
        return WholeFrame(shape);
    }
    CopyFrame(shape, input, output);
    return PlaceRegion(shape, ReadRegion(Store()));
}

HRESULT CDeinterlaceFilter::StartStreaming() {
    m_lAutoHoldCounter = 0;
    m_lAutoHoldFrames = HoldFrames(m_rtAvgTimePerFrame);
    m_rtStreamTimePerFrame = m_rtAvgTimePerFrame;
    if (m_lWidth < 1 || m_lHeight < 1) {
        return E_UNEXPECTED;
    }
    if (Setting(NMFV_DEINTERLACE_ROI_RIGHT) > static_cast<UINT32>(m_lWidth)) {
        LimitRegion(NMFV_DEINTERLACE_ROI_LEFT, NMFV_DEINTERLACE_ROI_RIGHT, static_cast<UINT32>(m_lWidth));
        Trace("\nCDeinterlaceFilter::StartStreaming: Reset m_lCropLeft=%d, m_lCropRight=%d",
              Setting(NMFV_DEINTERLACE_ROI_LEFT), Setting(NMFV_DEINTERLACE_ROI_RIGHT));
    }
    if (Setting(NMFV_DEINTERLACE_ROI_BOTTOM) > static_cast<UINT32>(m_lHeight)) {
        LimitRegion(NMFV_DEINTERLACE_ROI_TOP, NMFV_DEINTERLACE_ROI_BOTTOM, static_cast<UINT32>(m_lHeight));
    }
    if (!m_pScratchFrame.Allocate(m_lBufferSize) || !m_pSavedFrame.Allocate(m_lBufferSize)) {
        return E_OUTOFMEMORY;
    }
    m_pSavedFrame.Clear();
    return S_OK;
}

// Sets the far edge to the frame's and, where the near one doesn't lie before it, that one to a single pixel or row.
void CDeinterlaceFilter::LimitRegion(REFGUID nearKey, REFGUID farKey, UINT32 frameSize) {
    WriteSetting(Store(), farKey, frameSize);
    const UINT32 farEdge = Setting(farKey);
    if (Setting(nearKey) >= farEdge) {
        WriteSetting(Store(), nearKey, farEdge - 1);
    }
}

void CDeinterlaceFilter::EndStreaming() {
    m_lAutoHoldCounter = 0;
    m_pattern.enableGlobalPattern = static_cast<INT16>(Setting(NMFV_DEINTERLACE_ENABLE_GLOBAL_PATTERN));
    m_pattern.preambleFrames = Setting(NMFV_DEINTERLACE_PATTERN_PREAMBLE_FRAMES);
    m_pattern.noDeinterlaceFrames = Setting(NMFV_DEINTERLACE_PATTERN_NO_DEINTERLACE_FRAMES);
    m_pattern.deinterlaceFrames = Setting(NMFV_DEINTERLACE_PATTERN_DEINTERLACE_FRAMES);
    m_pattern.deintPreamble = static_cast<INT16>(Setting(NMFV_DEINTERLACE_PATTERN_DEINT_PREAMBLE));
    m_pScratchFrame.Release();
    m_pSavedFrame.Release();
}

HRESULT CDeinterlaceFilter::SetColorTable(const ColorEntry* entries, UINT32 count) {
    m_pColorTable.reset();
    if (!entries) {
        return S_OK;
    }
    m_pColorTable.reset(new (std::nothrow) ColorEntry[kColorTableEntries]());
    if (!m_pColorTable) {
        return E_OUTOFMEMORY;
    }
    std::copy_n(entries, std::min(count, kColorTableEntries), m_pColorTable.get());
    return S_OK;
}
