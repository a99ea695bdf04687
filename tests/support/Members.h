// The members of the control interface as clients have compiled them in: slot, dispatch identifier, name, kind and
// parameters. One letter a parameter: b automation boolean, l long, h hyper, d double, e enumeration; upper case for
// out-parameters. A property has one row, with its value's letter; its put follows its get.
#pragma once

struct MemberRow {
    int slot;
    int id;
    const wchar_t* name;
    char kind; // g get, p get and put, m method
    const char* parameters;
};

inline constexpr MemberRow kMembers[] = {
    {7, 1, L"Enabled", 'p', "B"},
    {9, 2, L"Even", 'p', "B"},
    {11, 3, L"Resize", 'p', "B"},
    {13, 6, L"InWidth", 'g', "L"},
    {14, 7, L"InHeight", 'g', "L"},
    {15, 8, L"OutWidth", 'g', "L"},
    {16, 9, L"OutHeight", 'g', "L"},
    {17, 10, L"InBits", 'g', "L"},
    {18, 11, L"OutBits", 'g', "L"},
    {19, 13, L"StartWithEvenFrame", 'p', "B"},
    {21, 14, L"EnableROI", 'p', "B"},
    {23, 15, L"ROILeft", 'p', "L"},
    {25, 16, L"ROITop", 'p', "L"},
    {27, 17, L"ROIRight", 'p', "L"},
    {29, 18, L"ROIBottom", 'p', "L"},
    {31, 19, L"EnableGlobalPattern", 'p', "B"},
    {33, 20, L"SetGlobalPattern", 'm', "lllb"},
    {34, 21, L"GetGlobalPattern", 'm', "LLLB"},
    {35, 22, L"AddSegment", 'm', "l"},
    {36, 23, L"RemoveSegment", 'm', "l"},
    {37, 24, L"SetSegmentData", 'm', "ll"},
    {38, 25, L"GetSegmentData", 'm', "lL"},
    {39, 26, L"SegmentsCount", 'g', "L"},
    {40, 27, L"SegmentsTimeFormat", 'p', "E"},
    {42, 28, L"GetSegmentStartTime", 'm', "lLLLL"},
    {43, 29, L"SetSegmentStartTime", 'm', "lllll"},
    {44, 30, L"GetSegmentStartFrame", 'm', "lH"},
    {45, 31, L"SetSegmentStartFrame", 'm', "lh"},
    {46, 32, L"GetSegmentOperationMode", 'm', "lE"},
    {47, 33, L"SetSegmentOperationMode", 'm', "le"},
    {48, 34, L"GetSegmentPattern", 'm', "lLLLB"},
    {49, 35, L"SetSegmentPattern", 'm', "llllb"},
    {50, 36, L"FrameRate", 'p', "D"},
    {52, 37, L"EnableProtectedArea", 'p', "B"},
    {54, 38, L"SetProtectedAreaParams", 'm', "llll"},
    {55, 39, L"GetProtectedAreaParams", 'm', "LLLL"},
    {56, 40, L"DeinterlaceSettingsImportState", 'p', "B"},
    {58, 41, L"ROISettingsImportState", 'p', "B"},
    {60, 42, L"AutoDeinterlace", 'p', "B"},
    {62, 43, L"ResetToDefaults", 'm', ""},
    {63, 44, L"MergeFields", 'p', "B"},
    {65, 45, L"ResetToDefaultsEx", 'm', "l"},
    {66, 46, L"AutoDeinterlaceSensitivity", 'p', "D"},
    {68, 47, L"LoadAttributes", 'm', ""},
    {69, 48, L"SaveAttributes", 'm', ""},
};
