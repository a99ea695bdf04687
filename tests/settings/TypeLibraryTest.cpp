// The type library that the DLL carries, as clients in other languages see it.
#include "tests/support/ComChecks.h"
#include "tests/support/Members.h"

#include <cwchar>
#include <iterator>
#include <string>

#include <windows.h>
#include <oleauto.h>

#include "NMFVDeinterlace.h"

namespace {

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
        if (FAILED(info->GetRefTypeInfo(type.hreftype, referred.Put())) || FAILED(referred->GetTypeAttr(&attributes))) {
            return '?';
        }
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
    EXPECT_EQ(L"Nerin MF Video Deinterlace Transform Library", Text(help));
}

TEST_F(TypeLibrary, InterfaceIsDispatchableButNotDual) {
    TYPEATTR* attributes = nullptr;
    ASSERT_HR(S_OK, m_interface->GetTypeAttr(&attributes));
    EXPECT_EQ(TKIND_INTERFACE, attributes->typekind);
    EXPECT_TRUE(attributes->wTypeFlags & TYPEFLAG_FDISPATCHABLE);
    EXPECT_FALSE(attributes->wTypeFlags & TYPEFLAG_FDUAL);
    EXPECT_EQ(static_cast<int>(std::size(kMembers)), attributes->cFuncs);
    m_interface->ReleaseTypeAttr(attributes);
    EXPECT_EQ(L"INMFVDeinterlace interface", HelpOf(m_interface.Get(), MEMBERID_NIL));
}

TEST_F(TypeLibrary, MembersStandInTheirSlots) {
    for (UINT i = 0; i < std::size(kMembers); ++i) {
        const MemberRow& row = kMembers[i];
        SCOPED_TRACE(testing::Message() << "slot " << row.slot);
        FUNCDESC* function = nullptr;
        ASSERT_HR(S_OK, m_interface->GetFuncDesc(i, &function));
        EXPECT_EQ(row.slot * static_cast<int>(sizeof(void*)), function->oVft);
        EXPECT_EQ(row.id, function->memid);
        EXPECT_EQ(row.kind == 'g'   ? INVOKE_PROPERTYGET
                  : row.kind == 'p' ? INVOKE_PROPERTYPUT
                                    : INVOKE_FUNC,
                  function->invkind);
        EXPECT_EQ(row.parameters, ParametersOf(m_interface.Get(), *function));
        BSTR name = nullptr;
        m_interface->GetDocumentation(function->memid, &name, nullptr, nullptr, nullptr);
        EXPECT_EQ(row.name, Text(name));
        std::wstring help = (row.kind == 'm' ? L"method " : L"property ") + std::wstring(row.name);
        help += row.id == 47   ? L", read Transform settings from registry"
                : row.id == 48 ? L", write Transform settings to registry"
                               : L"";
        EXPECT_EQ(help, HelpOf(m_interface.Get(), function->memid));
        m_interface->ReleaseFuncDesc(function);
    }
}

TEST_F(TypeLibrary, EnumerationsAndClass) {
    struct Constant {
        const wchar_t* name;
        LONG value;
    };
    const struct {
        const wchar_t* name;
        std::vector<Constant> constants;
    } kEnumerations[] = {
        {L"SEGMENT_OPERATION_MODE",
         {{L"MODE_NO_DEINTERLACE", 0}, {L"MODE_DEINTERLACE_ALL", 1}, {L"MODE_DEINTERLACE_PATTERN", 2}}},
        {L"SEGMENT_TIME_FORMAT", {{L"SEGMENT_TIME_FORMAT_FRAME", 0}, {L"SEGMENT_TIME_FORMAT_TIME", 1}}},
        {L"_NMVDeinterlace_APILEVEL", {{L"NMVDeinterlace_APILEVEL_1", 0}, {L"NMVDeinterlace_APILEVEL_2", 1}}},
    };
    for (const auto& enumeration : kEnumerations) {
        CComRef<ITypeInfo> info;
        MEMBERID member = 0;
        USHORT found = 1;
        std::wstring name = enumeration.name;
        ASSERT_HR(S_OK, m_library->FindName(name.data(), 0, info.Put(), &member, &found));
        ASSERT_EQ(1, found) << testing::PrintToString(name);
        for (UINT i = 0; i < enumeration.constants.size(); ++i) {
            VARDESC* constant = nullptr;
            ASSERT_HR(S_OK, info->GetVarDesc(i, &constant));
            EXPECT_EQ(enumeration.constants[i].value, constant->lpvarValue->lVal);
            BSTR text = nullptr;
            info->GetDocumentation(constant->memid, &text, nullptr, nullptr, nullptr);
            EXPECT_EQ(enumeration.constants[i].name, Text(text));
            info->ReleaseVarDesc(constant);
        }
    }
    CComRef<ITypeInfo> coclass;
    ASSERT_HR(S_OK, m_library->GetTypeInfoOfGuid(CLSID_NMFVDeinterlace, coclass.Put()));
    EXPECT_EQ(L"Nerin MF Video Deinterlace Transform", HelpOf(coclass.Get(), MEMBERID_NIL));
}

} // namespace
