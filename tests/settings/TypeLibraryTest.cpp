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

// The members in the order of their slots, as clients have compiled them in: dispatch identifier, name, and a letter
// for the kind (g get, p get and then put, m method) before one for each parameter: b automation boolean, l long, h
// hyper, d double, e enumeration; upper case for out-parameters. A property's is that of its value.
constexpr struct {
    int id;
    const wchar_t* name;
    const char* signature;
} kMembers[] = {{1, L"Enabled", "pB"},
                {2, L"Even", "pB"},
                {3, L"Resize", "pB"},
                {6, L"InWidth", "gL"},
                {7, L"InHeight", "gL"},
                {8, L"OutWidth", "gL"},
                {9, L"OutHeight", "gL"},
                {10, L"InBits", "gL"},
                {11, L"OutBits", "gL"},
                {13, L"StartWithEvenFrame", "pB"},
                {14, L"EnableROI", "pB"},
                {15, L"ROILeft", "pL"},
                {16, L"ROITop", "pL"},
                {17, L"ROIRight", "pL"},
                {18, L"ROIBottom", "pL"},
                {19, L"EnableGlobalPattern", "pB"},
                {20, L"SetGlobalPattern", "mlllb"},
                {21, L"GetGlobalPattern", "mLLLB"},
                {22, L"AddSegment", "ml"},
                {23, L"RemoveSegment", "ml"},
                {24, L"SetSegmentData", "mll"},
                {25, L"GetSegmentData", "mlL"},
                {26, L"SegmentsCount", "gL"},
                {27, L"SegmentsTimeFormat", "pE"},
                {28, L"GetSegmentStartTime", "mlLLLL"},
                {29, L"SetSegmentStartTime", "mlllll"},
                {30, L"GetSegmentStartFrame", "mlH"},
                {31, L"SetSegmentStartFrame", "mlh"},
                {32, L"GetSegmentOperationMode", "mlE"},
                {33, L"SetSegmentOperationMode", "mle"},
                {34, L"GetSegmentPattern", "mlLLLB"},
                {35, L"SetSegmentPattern", "mllllb"},
                {36, L"FrameRate", "pD"},
                {37, L"EnableProtectedArea", "pB"},
                {38, L"SetProtectedAreaParams", "mllll"},
                {39, L"GetProtectedAreaParams", "mLLLL"},
                {40, L"DeinterlaceSettingsImportState", "pB"},
                {41, L"ROISettingsImportState", "pB"},
                {42, L"AutoDeinterlace", "pB"},
                {43, L"ResetToDefaults", "m"},
                {44, L"MergeFields", "pB"},
                {45, L"ResetToDefaultsEx", "ml"},
                {46, L"AutoDeinterlaceSensitivity", "pD"},
                {47, L"LoadAttributes", "m"},
                {48, L"SaveAttributes", "m"}};

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
    UINT index = 0;
    const auto expect = [&](int id, INVOKEKIND kind, const std::string& parameters) {
        SCOPED_TRACE(index);
        FUNCDESC* function = nullptr;
        ASSERT_HR(S_OK, m_interface->GetFuncDesc(index, &function));
        EXPECT_EQ((index + 7) * sizeof(void*), static_cast<std::size_t>(function->oVft)); // after those of IDispatch
        EXPECT_EQ(id, function->memid);
        EXPECT_EQ(kind, function->invkind);
        EXPECT_EQ(parameters, ParametersOf(m_interface.Get(), *function));
        m_interface->ReleaseFuncDesc(function);
        ++index;
    };
    for (const auto& row : kMembers) {
        const bool method = row.signature[0] == 'm';
        expect(row.id, method ? INVOKE_FUNC : INVOKE_PROPERTYGET, row.signature + 1);
        if (row.signature[0] == 'p') {
            expect(row.id, INVOKE_PROPERTYPUT, {static_cast<char>(std::tolower(row.signature[1]))});
        }
        BSTR name = nullptr;
        m_interface->GetDocumentation(row.id, &name, nullptr, nullptr, nullptr);
        EXPECT_EQ(row.name, Text(name));
        std::wstring help = (method ? L"method " : L"property ") + std::wstring(row.name);
        help += row.id == 47   ? L", read Transform settings from registry"
                : row.id == 48 ? L", write Transform settings to registry"
                               : L"";
        EXPECT_EQ(help, HelpOf(m_interface.Get(), row.id));
    }
    EXPECT_EQ(63u, index);
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
