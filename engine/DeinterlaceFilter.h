// The frame driver: one input frame's pixels to one output frame's pixels, as the settings say at that moment.
#pragma once

#include "engine/FrameBuffer.h"
#include "engine/FrameSettings.h"
#include "engine/NerinCommon.h"
#include "engine/detector/AutoHold.h"
#include "engine/pixels/FramePlan.h"
#include "engine/pixels/GrayPalette.h"
#include "engine/pixels/Stores.h"
#include "settings/DeinterlaceControl.h"

class CombSearch;

// Frames are device-independent bitmaps of m_lBufferSize bytes with rows of m_lStride bytes. The engine takes no lock:
// the transform that it is part of calls Transform, StartStreaming and EndStreaming one at a time.
class CDeinterlaceFilter : public CDeinterlaceControl, public CNerinCommon {
protected:
    CDeinterlaceFilter();
    ~CDeinterlaceFilter();

    // Writes the output frame. Both pointers lead to m_lBufferSize bytes; the frames may be the same. E_UNEXPECTED,
    // with nothing touched, when the stream format describes no frame that can be; else S_OK.
    HRESULT Transform(const BYTE* input, BYTE* output);

    // Sizes the hold, limits the stored region of interest to the frame and takes the frame buffers. E_UNEXPECTED for a
    // frame without width or height; E_OUTOFMEMORY.
    HRESULT StartStreaming();

    // Ends the hold, notes the global pattern and gives the frame buffers back.
    void EndStreaming();

    // The frame that the stream format describes.
    FrameShape Shape() const;

    // Decides for one input frame, and moves the hold on: what Transform does in automatic mode, without the output.
    bool ShouldDeinterlace(const BYTE* frame);

private:
    // The global pattern at the end of the last stream. Kept: taken, and read by nothing.
    struct PatternSnapshot {
        INT16 enableGlobalPattern = 0;
        UINT32 preambleFrames = 0;
        UINT32 noDeinterlaceFrames = 0;
        UINT32 deinterlaceFrames = 0;
        INT16 deintPreamble = 0;
    };

    UINT32 Setting(REFGUID key) const;
    void LimitRegion(REFGUID nearKey, REFGUID farKey, UINT32 frameSize);
    using FlagReader = RegionFlags (*)(IMFAttributes* store);
    HRESULT DeinterlaceBits8(const FramePair& frames);
    HRESULT DeinterlaceBitsN(const FramePair& frames);
    void DeinterlaceFrame(const FramePair& frames, FlagReader readFlags);
    void DeinterlaceAutomatically(const FramePair& frames, FlagReader readFlags, Stores stores);
    FramePlan ReadPlan(const FrameShape& shape, FlagReader readFlags) const;
    ProcessedArea SetupROI(const FrameShape& shape, bool region) const;
    CombSearch SearchFor(const BYTE* frame) const;
    bool SaveFrame(const FrameShape& shape, const BYTE* input);
    void RestoreProtected(const FrameShape& shape, BYTE* output);

    INT64 m_rtStreamTimePerFrame = 0; // 100 ns. Kept: taken when streaming starts, and read by nothing
    INT32 m_lAutoHoldCounter = 0;
    INT32 m_lAutoHoldFrames = HoldFrames(0); // so a client that never announces its stream gets the automatic mode too
    CFrameBuffer m_pSavedFrame;              // the untouched input, for the protected area
    CFrameBuffer m_pScratchFrame;            // Kept: allocated with the other, used by no frame path
    // Kept: nothing fills it, so no 8-bit frame counts as interlaced. Test: EightBitFramesHaveNoColours.
    const ColorEntry* m_pColorTable = nullptr;
    PatternSnapshot m_pattern;
};
