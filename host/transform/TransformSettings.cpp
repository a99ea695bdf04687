#include "host/transform/TransformSettings.h"

#include "host/HostError.h"
#include "host/console/Text.h"

#include <algorithm>

namespace host {

namespace {

using PutFlag = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(VARIANT_BOOL);

struct FlagSetting {
    std::optional<bool> Options::*option;
    PutFlag put;
    const char* name;
};

constexpr FlagSetting kFlags[] = {
    {&Options::merge, &INMFVDeinterlace::put_MergeFields, "--method"},
    {&Options::even, &INMFVDeinterlace::put_Even, "--even"},
    {&Options::resize, &INMFVDeinterlace::put_Resize, "--resize"},
    {&Options::startWithEvenFrame, &INMFVDeinterlace::put_StartWithEvenFrame, "--start-with-even-frame"},
    {&Options::usePattern, &INMFVDeinterlace::put_EnableGlobalPattern, "--use-pattern"},
};

VARIANT_BOOL Flag(bool value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

void Must(HRESULT result, const char* option) {
    Check(result, ExitCode::Transform, std::string("the transform refuses ") + option);
}

void ApplyMode(INMFVDeinterlace& control, Mode mode) {
    Must(control.put_Enabled(Flag(mode != Mode::Off)), "--mode");
    if (mode != Mode::Off) {
        Must(control.put_AutoDeinterlace(Flag(mode == Mode::Auto)), "--mode");
    }
}

// Picture coordinates as the transform counts them: from the last row in memory. That is the picture's top row where
// frames are bottom-up; for the others the rectangle is turned over. Done twice, it is as before.
Area Turned(const Area& area, const SettingsFrame& frame) {
    return frame.bottomUp ? area : Area{area.left, frame.height - area.bottom, area.right, frame.height - area.top};
}

Area ForTransform(const Area& area, const SettingsFrame& frame, const char* option) {
    if (area.right > frame.width || area.bottom > frame.height) {
        throw HostError(ExitCode::Usage, std::string(option) + " leaves the picture, which is " +
                                             std::to_string(frame.width) + "x" + std::to_string(frame.height) + ".");
    }
    return Turned(area, frame);
}

Area ReadEdges(INMFVDeinterlace& control) {
    long left = 0;
    long top = 0;
    long right = 0;
    long bottom = 0;
    Must(control.get_ROILeft(&left), "to tell its region");
    Must(control.get_ROITop(&top), "to tell its region");
    Must(control.get_ROIRight(&right), "to tell its region");
    Must(control.get_ROIBottom(&bottom), "to tell its region");
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right), static_cast<int>(bottom)};
}

// The edges are clamped against each other as they are put, the top and bottom against the values from before. Put from
// the widest inwards, twice where the old value counts, every rectangle arrives as it is.
void PutEdges(INMFVDeinterlace& control, const Area& area) {
    const HRESULT results[] = {
        control.put_ROILeft(0),
        control.put_ROIRight(area.right),
        control.put_ROILeft(area.left),
        control.put_ROITop(0),
        control.put_ROITop(0),
        control.put_ROIBottom(area.bottom),
        control.put_ROIBottom(area.bottom),
        control.put_ROITop(area.top),
    };
    for (const HRESULT result : results) {
        Must(result, "--roi");
    }
    if (ReadEdges(control) != area) {
        throw HostError(ExitCode::Transform, "the transform did not take the rectangle of --roi over its saved one; "
                                             "leave --saved away.");
    }
}

// The picture's rows that the region of interest has, or all of them. Edges as they were turned over for the transform.
Area ReadArea(INMFVDeinterlace& control, const SettingsFrame& frame) {
    const Area whole{0, 0, frame.width, frame.height};
    VARIANT_BOOL enabled = VARIANT_FALSE;
    Must(control.get_EnableROI(&enabled), "to tell its region");
    if (!enabled) {
        return whole;
    }
    Area edges = ReadEdges(control);
    edges.right = std::min(edges.right, frame.width);
    edges.bottom = std::min(edges.bottom, frame.height);
    return Turned(edges, frame);
}

// The transform counts rows from the area's first in memory.
void ApplyKeep(INMFVDeinterlace& control, bool top, const SettingsFrame& frame) {
    const Area area = ReadArea(control, frame);
    const int first = frame.bottomUp ? area.bottom - 1 : area.top;
    Must(control.put_Even(Flag((first % 2 == 0) == top)), "--keep");
}

void ApplyProtectedArea(INMFVDeinterlace& control, const Area& area) {
    Must(control.SetProtectedAreaParams(area.left, area.right, area.top, area.bottom), "--protect");
    Must(control.put_EnableProtectedArea(VARIANT_TRUE), "--protect");
}

void ApplyPattern(INMFVDeinterlace& control, const Pattern& pattern) {
    Must(control.SetGlobalPattern(pattern.preamble, pattern.untouched, pattern.deinterlaced,
                                  Flag(pattern.deinterlacePreamble)),
         "--pattern");
    Must(control.put_EnableGlobalPattern(VARIANT_TRUE), "--pattern");
}

void AppendSegment(INMFVDeinterlace& control, const Segment& segment) {
    constexpr SEGMENT_OPERATION_MODE kModes[] = {MODE_NO_DEINTERLACE, MODE_DEINTERLACE_ALL, MODE_DEINTERLACE_PATTERN};
    long index = 0;
    Must(control.get_SegmentsCount(&index), "--segment");
    Must(control.AddSegment(index), "--segment");
    if (segment.frame) {
        Must(control.SetSegmentStartFrame(index, *segment.frame), "--segment");
    } else {
        Must(control.SetSegmentStartTime(index, segment.hours, segment.minutes, segment.seconds, segment.milliseconds),
             "--segment");
    }
    Must(control.put_SegmentsTimeFormat(segment.frame ? SEGMENT_TIME_FORMAT_FRAME : SEGMENT_TIME_FORMAT_TIME),
         "--segment");
    Must(control.SetSegmentOperationMode(index, kModes[static_cast<int>(segment.mode)]), "--segment");
    if (const auto& pattern = segment.pattern) {
        Must(control.SetSegmentPattern(index, pattern->preamble, pattern->untouched, pattern->deinterlaced,
                                       Flag(pattern->deinterlacePreamble)),
             "--segment");
    }
}

} // namespace

void ApplySettings(INMFVDeinterlace& control, const Options& options, const SettingsFrame& frame) {
    if (!options.saved) {
        Must(control.ResetToDefaultsEx(NMVDeinterlace_APILEVEL_2), "to go back to its defaults");
    }
    if (options.mode) {
        ApplyMode(control, *options.mode);
    }
    if (options.sensitivity) {
        Must(control.put_AutoDeinterlaceSensitivity(*options.sensitivity), "--sensitivity");
    }
    if (options.region) {
        PutEdges(control, ForTransform(*options.region, frame, "--roi"));
        Must(control.put_EnableROI(VARIANT_TRUE), "--roi");
    }
    if (options.protectedArea) {
        ApplyProtectedArea(control, ForTransform(*options.protectedArea, frame, "--protect"));
    }
    if (options.keepTop) {
        ApplyKeep(control, *options.keepTop, frame);
    }
    if (options.pattern) {
        ApplyPattern(control, *options.pattern);
    }
    for (const FlagSetting& flag : kFlags) {
        if (const auto& value = options.*flag.option) {
            Must((control.*flag.put)(Flag(*value)), flag.name);
        }
    }
    for (const Segment& segment : options.segments) {
        AppendSegment(control, segment);
    }
    if (options.segmentsAsTimes) {
        Must(control.put_SegmentsTimeFormat(*options.segmentsAsTimes ? SEGMENT_TIME_FORMAT_TIME
                                                                     : SEGMENT_TIME_FORMAT_FRAME),
             "--segments-as");
    }
}

Area ReadRegion(INMFVDeinterlace& control, const SettingsFrame& frame) {
    return Turned(ReadEdges(control), frame);
}

void PutRegion(INMFVDeinterlace& control, const Area& area, const SettingsFrame& frame) {
    PutEdges(control, Turned(area, frame));
}

ActiveSettings ReadActiveSettings(INMFVDeinterlace& control, const SettingsFrame& frame) {
    VARIANT_BOOL enabled = VARIANT_FALSE;
    VARIANT_BOOL automatic = VARIANT_FALSE;
    ActiveSettings active;
    Must(control.get_Enabled(&enabled), "to tell its mode");
    Must(control.get_AutoDeinterlace(&automatic), "to tell its mode");
    Must(control.get_AutoDeinterlaceSensitivity(&active.sensitivity), "to tell its sensitivity");
    active.area = ReadArea(control, frame);
    active.mode = !enabled ? Mode::Off : automatic ? Mode::Auto : Mode::All;
    return active;
}

} // namespace host
