#include "engine/DeinterlaceFilter.h"

#include "diag/Trace.h"
#include "engine/detector/AutomaticFrame.h"
#include "engine/detector/InterlaceDetector.h"
#include "settings/SettingsBlob.h"
#include "settings/SettingsStore.h"

#include "NMFVDeinterlaceKeys.h"
#include "Product.h"

#include <cstring>

namespace {

constexpr wchar_t kDisplayName[] = L"" NMFV_DISPLAY_NAME;
constexpr FramePlan kPassThrough{};

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
    const FramePair frames{shape, input, output};
    const HRESULT hr = m_lBitCount == 8 ? DeinterlaceBits8(frames) : DeinterlaceBitsN(frames);
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
    std::memcpy(m_pSavedFrame.Data(), input, static_cast<std::size_t>(shape.Bytes()));
    return true;
}

void CDeinterlaceFilter::RestoreProtected(const FrameShape& shape, BYTE* output) {
    ProtectedArea area = ReadProtectedArea(Store(), shape);
    RestoreProtectedArea(output, m_pSavedFrame.Data(), shape, m_bPacked422 != 0, area.top, area.rectangle);
}

HRESULT CDeinterlaceFilter::DeinterlaceBits8(const FramePair& frames) {
    DeinterlaceFrame(frames, ReadRegionFlags8);
    return S_OK;
}

HRESULT CDeinterlaceFilter::DeinterlaceBitsN(const FramePair& frames) {
    DeinterlaceFrame(frames, ReadRegionFlagsN);
    return S_OK;
}

void CDeinterlaceFilter::DeinterlaceFrame(const FramePair& frames, FlagReader readFlags) {
    const Stores stores = StoresFor(static_cast<std::size_t>(frames.shape.Bytes()));
    if (!Setting(NMFV_DEINTERLACE_ENABLED)) {
        WriteFrame(frames, kPassThrough, stores);
    } else if (Setting(NMFV_DEINTERLACE_AUTO_DEINTERLACE)) {
        DeinterlaceAutomatically(frames, readFlags, stores);
    } else {
        WriteFrame(frames, ReadPlan(frames.shape, readFlags), stores);
    }
}

void CDeinterlaceFilter::DeinterlaceAutomatically(const FramePair& frames, FlagReader readFlags, Stores stores) {
    const auto readPlan = [&] { return ReadPlan(frames.shape, readFlags); };
    WriteAutomaticFrame(frames, SearchFor(frames.input), readPlan, stores, m_lAutoHoldFrames, m_lAutoHoldCounter);
}

bool CDeinterlaceFilter::ShouldDeinterlace(const BYTE* frame) {
    return AdvanceHold(SearchFor(frame).Settle(), m_lAutoHoldFrames, m_lAutoHoldCounter);
}

CombSearch CDeinterlaceFilter::SearchFor(const BYTE* frame) const {
    const double sensitivity = ReadDoubleSetting(Store(), NMFV_DEINTERLACE_AUTO_SENSITIVITY);
    const FrameComber comber(m_lWidth, m_lBitCount, m_pColorTable);
    return {frame, Shape(), comber, InterlaceThreshold(m_lWidth, m_lHeight, sensitivity)};
}

FramePlan CDeinterlaceFilter::ReadPlan(const FrameShape& shape, FlagReader readFlags) const {
    const RegionFlags flags = readFlags(Store());
    FramePlan plan;
    plan.area = SetupROI(shape, flags.region);
    plan.region = flags.region;
    // The indices of a colour palette are no levels: they must not be averaged.
    plan.interpolate = shape.bits != 8 || m_bGrayPalette;
    plan.merge = flags.merge;
    plan.keepOdd = !flags.even;
    return plan;
}

ProcessedArea CDeinterlaceFilter::SetupROI(const FrameShape& shape, bool region) const {
    return region ? PlaceRegion(shape, ReadRegion(Store())) : WholeFrame(shape);
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
