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

// The members in the order of their slots, as clients have compiled them in: dispatch identifier, name, a property's
// value or a method's parameters, and = for a property's put, which follows its get. One letter each: b automation
// boolean, l long, h hyper, d double, e enumeration; upper case for out-parameters.
constexpr char kMembers[] =
    "1 Enabled:B=, 2 Even:B=, 3 Resize:B=, 6 InWidth:L, 7 InHeight:L, 8 OutWidth:L, 9 OutHeight:L, 10 InBits:L, "
    "11 OutBits:L, 13 StartWithEvenFrame:B=, 14 EnableROI:B=, 15 ROILeft:L=, 16 ROITop:L=, 17 ROIRight:L=, "
    "18 ROIBottom:L=, 19 EnableGlobalPattern:B=, 20 SetGlobalPattern(lllb), 21 GetGlobalPattern(LLLB), "
    "22 AddSegment(l), 23 RemoveSegment(l), 24 SetSegmentData(ll), 25 GetSegmentData(lL), 26 SegmentsCount:L, "
    "27 SegmentsTimeFormat:E=, 28 GetSegmentStartTime(lLLLL), 29 SetSegmentStartTime(lllll), "
    "30 GetSegmentStartFrame(lH), 31 SetSegmentStartFrame(lh), 32 GetSegmentOperationMode(lE), "
    "33 SetSegmentOperationMode(le), 34 GetSegmentPattern(lLLLB), 35 SetSegmentPattern(llllb), 36 FrameRate:D=, "
    "37 EnableProtectedArea:B=, 38 SetProtectedAreaParams(llll), 39 GetProtectedAreaParams(LLLL), "
    "40 DeinterlaceSettingsImportState:B=, 41 ROISettingsImportState:B=, 42 AutoDeinterlace:B=, "
    "43 ResetToDefaults(), 44 MergeFields:B=, 45 ResetToDefaultsEx(l), 46 AutoDeinterlaceSensitivity:D=, "
    "47 LoadAttributes(), 48 SaveAttributes(), ";

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
    std::string members, value;
    MEMBERID property = 0;
    for (UINT index = 0; index < 63; ++index) {
        FUNCDESC* function = nullptr;
        ASSERT_HR(S_OK, m_interface->GetFuncDesc(index, &function));
        EXPECT_EQ((index + 7) * sizeof(void*), static_cast<std::size_t>(function->oVft)); // after those of IDispatch
        const MEMBERID id = function->memid;
        const INVOKEKIND kind = function->invkind;
        const std::string parameters = ParametersOf(m_interface.Get(), *function);
        m_interface->ReleaseFuncDesc(function);
        if (kind == INVOKE_PROPERTYPUT) {
            EXPECT_EQ(property, id);
            EXPECT_EQ(std::tolower(value[0]), parameters[0]);
            members.insert(members.size() - 2, "=");
            continue;
        }
        BSTR text = nullptr;
        m_interface->GetDocumentation(id, &text, nullptr, nullptr, nullptr);
        const std::wstring name = Text(text);
        property = id;
        value = parameters;
        members += std::to_string(id) + " " + std::string(name.begin(), name.end());
        members += (kind == INVOKE_FUNC ? "(" + parameters + ")" : ":" + parameters) + ", ";
        EXPECT_EQ((kind == INVOKE_FUNC ? L"method " : L"property ") + name +
                      (id == 47   ? L", read Transform settings from registry"
                       : id == 48 ? L", write Transform settings to registry"
                                  : L""),
                  HelpOf(m_interface.Get(), id));
    }
    EXPECT_EQ(kMembers, members);
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
