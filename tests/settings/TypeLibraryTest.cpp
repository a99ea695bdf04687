// The type library that the DLL carries, as clients in other languages see it.
#include "tests/support/ComChecks.h"

#include <cctype>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>
#include <oleauto.h>

#include "NMFVDeinterlace.h"
#include "Product.h"

namespace {

// Clients have compiled in slot, dispatch identifier, kind and parameters. One letter a parameter: b automation
// boolean, l long, h hyper, d double, e enumeration; upper case for out-parameters. A property has one row, with its
// value's letter; its put follows its get.
struct MemberRow {
    int slot;
    int id;
    const wchar_t* name;
    char kind; // g get, p get and put, m method
    const char* parameters;
};

constexpr MemberRow kMembers[] = {
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

std::wstring Text(BSTR text) {
    std::wstring copy(text ? text : L"");
    SysFreeString(text);
    return copy;
}

std::wstring HelpOf(ITypeInfo* info, MEMBERID member) {
    BSTR help = nullptr;
    info->GetDocumentation(member, nullptr, &help, nullptr, nullptr);
    return Text(help);
}

char LetterOf(ITypeInfo* info, const TYPEDESC& type) {
    switch (type.vt) {
    case VT_BOOL:
        return 'b';
    case VT_I4:
        return 'l';
    case VT_I8:
        return 'h';
    case VT_R8:
        return 'd';
    case VT_USERDEFINED: {
        CComRef<ITypeInfo> referred;
        TYPEATTR* attributes = nullptr;
        info->GetRefTypeInfo(type.hreftype, referred.Put());
        referred->GetTypeAttr(&attributes);
        const TYPEKIND kind = attributes->typekind;
        referred->ReleaseTypeAttr(attributes);
        return kind == TKIND_ENUM || kind == TKIND_ALIAS ? 'e' : '?';
    }
    default:
        return '?';
    }
}

std::string ParametersOf(ITypeInfo* info, const FUNCDESC& function) {
    std::string letters;
    for (SHORT i = 0; i < function.cParams; ++i) {
        const ELEMDESC& parameter = function.lprgelemdescParam[i];
        const bool out = parameter.tdesc.vt == VT_PTR;
        EXPECT_EQ(out, (parameter.paramdesc.wParamFlags & PARAMFLAG_FOUT) != 0);
        const char letter = LetterOf(info, out ? *parameter.tdesc.lptdesc : parameter.tdesc);
        letters += static_cast<char>(out ? std::toupper(letter) : letter);
    }
    return letters;
}

class TypeLibrary : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_HR(S_OK, LoadTypeLibEx(L"NMFVDeitrx.dll", REGKIND_NONE, m_library.Put()));
        ASSERT_HR(S_OK, m_library->GetTypeInfoOfGuid(IID_INMFVDeinterlace, m_interface.Put()));
    }

    CComRef<ITypeLib> m_library;
    CComRef<ITypeInfo> m_interface;
};

TEST_F(TypeLibrary, IsTheLibrary) {
    TLIBATTR* attributes = nullptr;
    ASSERT_HR(S_OK, m_library->GetLibAttr(&attributes));
    EXPECT_TRUE(attributes->guid == LIBID_NMFVDeinterlaceLib);
    EXPECT_EQ(1, attributes->wMajorVerNum);
    EXPECT_EQ(0, attributes->wMinorVerNum);
    EXPECT_EQ(0u, attributes->lcid); // any caller's locale loads it
    m_library->ReleaseTLibAttr(attributes);
    BSTR name = nullptr, help = nullptr;
    ASSERT_HR(S_OK, m_library->GetDocumentation(-1, &name, &help, nullptr, nullptr));
    EXPECT_EQ(L"NMFVDeinterlaceLib", Text(name));
    EXPECT_EQ(L"" NMFV_DISPLAY_NAME " Library", Text(help)); // which the IDL types itself
}

TEST_F(TypeLibrary, InterfaceIsDispatchableButNotDual) {
    TYPEATTR* attributes = nullptr;
    ASSERT_HR(S_OK, m_interface->GetTypeAttr(&attributes));
    EXPECT_EQ(TKIND_INTERFACE, attributes->typekind);
    EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FDISPATCHABLE);
    EXPECT_FALSE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
    EXPECT_EQ(63, attributes->cFuncs);
    m_interface->ReleaseTypeAttr(attributes);
    EXPECT_EQ(L"INMFVDeinterlace interface", HelpOf(m_interface.Get(), MEMBERID_NIL));
}

TEST_F(TypeLibrary, MembersStandInTheirSlots) {
    const auto expect = [this](const MemberRow& row, int slot, INVOKEKIND kind, const std::string& parameters) {
        SCOPED_TRACE(testing::Message() << "slot " << slot);
        FUNCDESC* function = nullptr;
        ASSERT_HR(S_OK, m_interface->GetFuncDesc(static_cast<UINT>(slot - kMembers[0].slot), &function));
        EXPECT_EQ(slot * static_cast<int>(sizeof(void*)), function->oVft);
        EXPECT_EQ(row.id, function->memid);
        EXPECT_EQ(kind, function->invkind);
        EXPECT_EQ(parameters, ParametersOf(m_interface.Get(), *function));
        m_interface->ReleaseFuncDesc(function);
    };
    for (const MemberRow& row : kMembers) {
        expect(row, row.slot, row.kind == 'm' ? INVOKE_FUNC : INVOKE_PROPERTYGET, row.parameters);
        if (row.kind == 'p') {
            expect(row, row.slot + 1, INVOKE_PROPERTYPUT, {static_cast<char>(std::tolower(row.parameters[0]))});
        }
        BSTR name = nullptr;
        m_interface->GetDocumentation(row.id, &name, nullptr, nullptr, nullptr);
        EXPECT_EQ(row.name, Text(name));
        std::wstring help = (row.kind == 'm' ? L"method " : L"property ") + std::wstring(row.name);
        help += row.id == 47   ? L", read Transform settings from registry"
                : row.id == 48 ? L", write Transform settings to registry"
                               : L"";
        EXPECT_EQ(help, HelpOf(m_interface.Get(), row.id));
    }
}

TEST_F(TypeLibrary, EnumerationsAndClass) {
    // Names of the constants 0, 1 ..
    const std::pair<std::wstring, std::vector<std::wstring>> kEnumerations[] = {
        {L"SEGMENT_OPERATION_MODE", {L"MODE_NO_DEINTERLACE", L"MODE_DEINTERLACE_ALL", L"MODE_DEINTERLACE_PATTERN"}},
        {L"SEGMENT_TIME_FORMAT", {L"SEGMENT_TIME_FORMAT_FRAME", L"SEGMENT_TIME_FORMAT_TIME"}},
        {L"_NMVDeinterlace_APILEVEL", {L"NMVDeinterlace_APILEVEL_1", L"NMVDeinterlace_APILEVEL_2"}},
    };
    for (auto [name, constants] : kEnumerations) {
        CComRef<ITypeInfo> info;
        MEMBERID member = 0;
        USHORT found = 1;
        ASSERT_HR(S_OK, m_library->FindName(name.data(), 0, info.Put(), &member, &found));
        ASSERT_EQ(1, found) << testing::PrintToString(name);
        for (UINT i = 0; i < constants.size(); ++i) {
            VARDESC* constant = nullptr;
            ASSERT_HR(S_OK, info->GetVarDesc(i, &constant));
            EXPECT_EQ(static_cast<LONG>(i), constant->lpvarValue->lVal);
            BSTR text = nullptr;
            info->GetDocumentation(constant->memid, &text, nullptr, nullptr, nullptr);
            EXPECT_EQ(constants[i], Text(text));
            info->ReleaseVarDesc(constant);
        }
    }
    CComRef<ITypeInfo> coclass;
    ASSERT_HR(S_OK, m_library->GetTypeInfoOfGuid(CLSID_NMFVDeinterlace, coclass.Put()));
    EXPECT_EQ(L"" NMFV_DISPLAY_NAME, HelpOf(coclass.Get(), MEMBERID_NIL));
}

} // namespace
