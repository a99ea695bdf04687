// The members of the control interface as clients have compiled them in: slot, dispatch identifier, name, kind and
// parameters. One letter a parameter: b automation boolean, l long, h hyper, d double, e enumeration; upper case for
// out-parameters; a get's single letter is its value's.
#pragma once

struct MemberRow {
    int slot;
    int id;
    const wchar_t* name;
    char kind; // g get, p put, m method
    const char* parameters;
};

inline constexpr MemberRow kMembers[] = {
    {7, 1, L"Enabled", 'g', "B"},
    {8, 1, L"Enabled", 'p', "b"},
    {9, 2, L"Even", 'g', "B"},
    {10, 2, L"Even", 'p', "b"},
    {11, 3, L"Resize", 'g', "B"},
    {12, 3, L"Resize", 'p', "b"},
    {13, 6, L"InWidth", 'g', "L"},
    {14, 7, L"InHeight", 'g', "L"},
    {15, 8, L"OutWidth", 'g', "L"},
    {16, 9, L"OutHeight", 'g', "L"},
    {17, 10, L"InBits", 'g', "L"},
    {18, 11, L"OutBits", 'g', "L"},
    {19, 13, L"StartWithEvenFrame", 'g', "B"},
    {20, 13, L"StartWithEvenFrame", 'p', "b"},
    {21, 14, L"EnableROI", 'g', "B"},
    {22, 14, L"EnableROI", 'p', "b"},
    {23, 15, L"ROILeft", 'g', "L"},
    {24, 15, L"ROILeft", 'p', "l"},
    {25, 16, L"ROITop", 'g', "L"},
    {26, 16, L"ROITop", 'p', "l"},
    {27, 17, L"ROIRight", 'g', "L"},
    {28, 17, L"ROIRight", 'p', "l"},
    {29, 18, L"ROIBottom", 'g', "L"},
    {30, 18, L"ROIBottom", 'p', "l"},
    {31, 19, L"EnableGlobalPattern", 'g', "B"},
    {32, 19, L"EnableGlobalPattern", 'p', "b"},
    {33, 20, L"SetGlobalPattern", 'm', "lllb"},
    {34, 21, L"GetGlobalPattern", 'm', "LLLB"},
    {35, 22, L"AddSegment", 'm', "l"},
    {36, 23, L"RemoveSegment", 'm', "l"},
    {37, 24, L"SetSegmentData", 'm', "ll"},
    {38, 25, L"GetSegmentData", 'm', "lL"},
    {39, 26, L"SegmentsCount", 'g', "L"},
    {40, 27, L"SegmentsTimeFormat", 'g', "E"},
    {41, 27, L"SegmentsTimeFormat", 'p', "e"},
    {42, 28, L"GetSegmentStartTime", 'm', "lLLLL"},
    {43, 29, L"SetSegmentStartTime", 'm', "lllll"},
    {44, 30, L"GetSegmentStartFrame", 'm', "lH"},
    {45, 31, L"SetSegmentStartFrame", 'm', "lh"},
    {46, 32, L"GetSegmentOperationMode", 'm', "lE"},
    {47, 33, L"SetSegmentOperationMode", 'm', "le"},
    {48, 34, L"GetSegmentPattern", 'm', "lLLLB"},
    {49, 35, L"SetSegmentPattern", 'm', "llllb"},
    {50, 36, L"FrameRate", 'g', "D"},
    {51, 36, L"FrameRate", 'p', "d"},
    {52, 37, L"EnableProtectedArea", 'g', "B"},
    {53, 37, L"EnableProtectedArea", 'p', "b"},
    {54, 38, L"SetProtectedAreaParams", 'm', "llll"},
    {55, 39, L"GetProtectedAreaParams", 'm', "LLLL"},
    {56, 40, L"DeinterlaceSettingsImportState", 'g', "B"},
    {57, 40, L"DeinterlaceSettingsImportState", 'p', "b"},
    {58, 41, L"ROISettingsImportState", 'g', "B"},
    {59, 41, L"ROISettingsImportState", 'p', "b"},
    {60, 42, L"AutoDeinterlace", 'g', "B"},
    {61, 42, L"AutoDeinterlace", 'p', "b"},
    {62, 43, L"ResetToDefaults", 'm', ""},
    {63, 44, L"MergeFields", 'g', "B"},
    {64, 44, L"MergeFields", 'p', "b"},
    {65, 45, L"ResetToDefaultsEx", 'm', "l"},
    {66, 46, L"AutoDeinterlaceSensitivity", 'g', "D"},
    {67, 46, L"AutoDeinterlaceSensitivity", 'p', "d"},
    {68, 47, L"LoadAttributes", 'm', ""},
    {69, 48, L"SaveAttributes", 'm', ""},
};
