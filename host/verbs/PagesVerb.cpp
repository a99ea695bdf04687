#include "host/verbs/Verbs.h"

#include "host/HostError.h"
#include "host/console/Console.h"
#include "host/pages/DialogTimer.h"
#include "host/console/Interrupt.h"
#include "host/live/LiveShow.h"
#include "host/pages/TransformPages.h"
#include "host/transform/SavedSettings.h"
#include "host/transform/StoreCopy.h"
#include "host/console/Text.h"
#include "host/transform/TransformClient.h"
#include "host/pages/UserInterface.h"

#include <algorithm>
#include <vector>

using Microsoft::WRL::ComPtr;

namespace host {

namespace {

// One segment as the control interface tells it.
struct SegmentCopy {
    hyper frame = 0;
    long time[4] = {};
    SEGMENT_OPERATION_MODE mode = MODE_NO_DEINTERLACE;
    long pattern[3] = {};
    VARIANT_BOOL preamble = VARIANT_FALSE;

    bool operator==(const SegmentCopy&) const = default;
};

// The segments are in no store.
std::vector<SegmentCopy> SegmentsOf(INMFVDeinterlace& control) {
    long count = 0;
    (void)control.get_SegmentsCount(&count);
    std::vector<SegmentCopy> segments(static_cast<std::size_t>(std::max(count, 0L)));
    for (long i = 0; i < count; ++i) {
        SegmentCopy& segment = segments[static_cast<std::size_t>(i)];
        (void)control.GetSegmentStartFrame(i, &segment.frame);
        (void)control.GetSegmentStartTime(i, &segment.time[0], &segment.time[1], &segment.time[2], &segment.time[3]);
        (void)control.GetSegmentOperationMode(i, &segment.mode);
        (void)control.GetSegmentPattern(i, &segment.pattern[0], &segment.pattern[1], &segment.pattern[2],
                                        &segment.preamble);
    }
    return segments;
}

void Report(const Options& options, const char* text) {
    if (!options.quiet) {
        Say(text);
    }
}

// Kept: the program's own sheet under Wine, so that settings can be applied there. Test:
// PagesVerb.WhatIsAppliedIsSavedUnlessToldOtherwise.
void ShowPages(CHeldTransform& transform, const Options& options) {
    const SheetKind usual = PropertyFrameApplies() ? SheetKind::Platform : SheetKind::Own;
    if (options.sheet.value_or(usual) == SheetKind::Platform) {
        ShowPropertyFrame(transform);
    } else {
        ShowPropertySheet(transform);
    }
}

// Shows the pages; saves when something was applied. An interrupted run saves nothing. The region page saves whenever
// it is applied: unless the settings are to be saved in the end, that is undone.
void EditSettings(CHeldTransform& transform, const Options& options) {
    const ComPtr<IMFAttributes> store = StoreOf(transform);
    const ComPtr<INMFVDeinterlace> control = ControlOf(transform);
    const CStoreCopy before(store);
    const std::vector<SegmentCopy> segments = SegmentsOf(*control.Get());
    CSavedSettings saved(store);
    {
        const CDialogTimer timer([&saved] { saved.Look(); });
        ShowPages(transform, options);
    }
    ThrowIfInterrupted();
    if (!before.Differs()) {
        Report(options, SegmentsOf(*control.Get()) == segments
                            ? "Nothing was changed; your saved settings are as they were.\n"
                            : "Only segments were changed, which are never saved; your saved settings are as they "
                              "were.\n");
    } else if (options.noSave) {
        Report(options, "What was applied is gone; your saved settings are as they were.\n");
    } else {
        Check(control->SaveAttributes(), ExitCode::Transform, "the settings cannot be saved");
        saved.Keep();
        Report(options, "Your settings are saved.\n");
    }
}

// The pages limit regions to the frame, and without one take no region at all.
void GiveFrame(CHeldTransform& transform) {
    const ComPtr<INMFVDeinterlace> control = ControlOf(transform);
    long right = 0;
    long bottom = 0;
    Check(control->get_ROIRight(&right), ExitCode::Transform, "the transform does not tell its region");
    Check(control->get_ROIBottom(&bottom), ExitCode::Transform, "the transform does not tell its region");
    StreamShape shape;
    shape.pixels = Pixels::Rgb24;
    shape.width = std::clamp<int>(right, 1920, kMaxSide);
    shape.height = std::clamp<int>(bottom, 1080, kMaxSide);
    Check(transform->SetInputType(0, MakeVideoType(shape).Get(), 0), ExitCode::Transform,
          "the transform takes no frames");
}

} // namespace

void RunPages(const Command& command) {
    const CUserInterface userInterface;
    if (command.options.live.empty()) {
        CHeldTransform transform(command.options);
        GiveFrame(transform);
        EditSettings(transform, command.options);
    } else {
        CLiveShow show(command);
        EditSettings(show.Transform(), command.options);
        show.Stop();
    }
}

} // namespace host
