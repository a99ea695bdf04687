#include "ui/pages/SettingsTransfer.h"

#include "ui/pages/ObjectFlags.h"

namespace {

using Object = INMFVDeinterlace;

struct FlagRow {
    bool PageSettings::*field;
    FlagGetter get;
    FlagSetter put;
};

// In the order of writing.
constexpr FlagRow kFlags[] = {
    {&PageSettings::enabled, &Object::get_Enabled, &Object::put_Enabled},
    {&PageSettings::evenLines, &Object::get_Even, &Object::put_Even},
    {&PageSettings::mergeFields, &Object::get_MergeFields, &Object::put_MergeFields},
    {&PageSettings::startWithEvenFrame, &Object::get_StartWithEvenFrame, &Object::put_StartWithEvenFrame},
    {&PageSettings::automatic, &Object::get_AutoDeinterlace, &Object::put_AutoDeinterlace},
};

void ReadFlags(INMFVDeinterlace* control, PageSettings* settings) {
    for (const FlagRow& row : kFlags) {
        ReadFlag(control, row.get, &(settings->*row.field));
    }
    settings->reserved = false;
    ReadFlag(control, &Object::get_EnableGlobalPattern, &settings->globalPatternEnabled);
}

// `get` asks the object for a pattern.
template <typename Get>
void ReadPattern(Get get, FramePattern* pattern) {
    LONG preamble = 0;
    LONG ignore = 0;
    LONG deinterlace = 0;
    VARIANT_BOOL deintPreamble = VARIANT_FALSE;
    if (SUCCEEDED(get(&preamble, &ignore, &deinterlace, &deintPreamble))) {
        *pattern = {deintPreamble != VARIANT_FALSE, static_cast<std::uint32_t>(preamble),
                    static_cast<std::uint32_t>(ignore), static_cast<std::uint32_t>(deinterlace)};
    }
}

SEGMENT_TIME_FORMAT TimeFormat(const PageSettings& settings) {
    return settings.asTime ? SEGMENT_TIME_FORMAT_TIME : SEGMENT_TIME_FORMAT_FRAME;
}

void ReadNumbers(INMFVDeinterlace* control, PageSettings* settings) {
    control->get_AutoDeinterlaceSensitivity(&settings->sensitivity);
    FormatSensitivity(settings->sensitivity, settings->sensitivityText);
    SEGMENT_TIME_FORMAT format = TimeFormat(*settings);
    control->get_SegmentsTimeFormat(&format);
    settings->asTime = format == SEGMENT_TIME_FORMAT_TIME;
    double rate = 0;
    if (SUCCEEDED(control->get_FrameRate(&rate)) && rate > 0) {
        settings->frameRate = rate;
    }
}

void ReadStart(INMFVDeinterlace* control, LONG index, const PageSettings& settings, PageSegment* segment) {
    if (!settings.asTime) {
        hyper frame = 0;
        control->GetSegmentStartFrame(index, &frame);
        segment->startFrame = frame;
        segment->startTime = TimeOfStartFrame(frame, settings.frameRate);
        return;
    }
    LONG hours = 0;
    LONG minutes = 0;
    LONG seconds = 0;
    LONG milliSeconds = 0;
    control->GetSegmentStartTime(index, &hours, &minutes, &seconds, &milliSeconds);
    segment->startTime = {static_cast<std::uint32_t>(hours), static_cast<std::uint32_t>(minutes),
                          static_cast<std::uint32_t>(seconds), static_cast<std::uint32_t>(milliSeconds)};
    segment->startFrame = FrameOfStartTime(segment->startTime, settings.frameRate);
}

PageSegment ReadSegment(INMFVDeinterlace* control, LONG index, const PageSettings& settings) {
    PageSegment segment;
    ReadStart(control, index, settings, &segment);
    ReadPattern([&](auto*... values) { return control->GetSegmentPattern(index, values...); }, &segment.pattern);
    LONG data = 0;
    control->GetSegmentData(index, &data);
    segment.segmentData = static_cast<std::uint32_t>(data);
    SEGMENT_OPERATION_MODE operation = MODE_NO_DEINTERLACE;
    control->GetSegmentOperationMode(index, &operation);
    segment.operation = operation;
    return segment;
}

HRESULT ReadSegments(INMFVDeinterlace* control, PageSettings* settings) {
    LONG count = 0;
    control->get_SegmentsCount(&count);
    PageSegmentList segments;
    for (LONG i = 0; i < count; ++i) {
        if (!segments.Insert(i, ReadSegment(control, i, *settings))) {
            return E_OUTOFMEMORY;
        }
    }
    settings->segments.Swap(segments);
    return S_OK;
}

void WriteStart(INMFVDeinterlace* control, const PageSegment& segment, bool asTime) {
    if (!asTime) {
        control->SetSegmentStartFrame(segment.index, segment.startFrame);
        return;
    }
    const SegmentTime& time = segment.startTime;
    control->SetSegmentStartTime(segment.index, static_cast<LONG>(time.hours), static_cast<LONG>(time.minutes),
                                 static_cast<LONG>(time.seconds), static_cast<LONG>(time.milliSeconds));
}

void WriteSegment(INMFVDeinterlace* control, const PageSegment& segment, bool asTime) {
    const FramePattern& pattern = segment.pattern;
    control->AddSegment(segment.index);
    control->SetSegmentOperationMode(segment.index, static_cast<SEGMENT_OPERATION_MODE>(segment.operation));
    control->SetSegmentPattern(segment.index, static_cast<LONG>(pattern.preambleFrames),
                               static_cast<LONG>(pattern.ignoreFrames), static_cast<LONG>(pattern.deinterlaceFrames),
                               AutomationBool(pattern.deintPreamble));
    control->SetSegmentData(segment.index, static_cast<LONG>(segment.segmentData));
    WriteStart(control, segment, asTime);
}

void RemoveSegments(INMFVDeinterlace* control) {
    LONG count = 0;
    control->get_SegmentsCount(&count);
    for (LONG i = 0; i < count; ++i) {
        control->RemoveSegment(0);
    }
}

} // namespace

HRESULT ReadSettings(INMFVDeinterlace* control, PageSettings* settings) {
    ReadFlags(control, settings);
    ReadPattern([&](auto*... values) { return control->GetGlobalPattern(values...); }, &settings->globalPattern);
    ReadNumbers(control, settings);
    return ReadSegments(control, settings);
}

void WriteSettings(INMFVDeinterlace* control, const PageSettings& settings) {
    for (const FlagRow& row : kFlags) {
        (control->*row.put)(AutomationBool(settings.*row.field));
    }
    control->put_AutoDeinterlaceSensitivity(settings.sensitivity);
    control->put_EnableGlobalPattern(AutomationBool(settings.globalPatternEnabled));
    const FramePattern& pattern = settings.globalPattern;
    control->SetGlobalPattern(static_cast<LONG>(pattern.preambleFrames), static_cast<LONG>(pattern.ignoreFrames),
                              static_cast<LONG>(pattern.deinterlaceFrames), AutomationBool(pattern.deintPreamble));
    control->put_SegmentsTimeFormat(TimeFormat(settings));
    RemoveSegments(control);
    for (const PageSegment* segment = settings.segments.First(); segment; segment = segment->next) {
        WriteSegment(control, *segment, settings.asTime);
    }
}
