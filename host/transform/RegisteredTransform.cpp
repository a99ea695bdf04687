#include <initguid.h>

#include "host/transform/RegisteredTransform.h"

#include "base/Handles.h"

#include "Product.h"

#include <NMFVDeinterlace.h>
#include <NMFVDeinterlaceKeys.h>
#include <mfapi.h>
#include <mftransform.h>
#include <ocidl.h>

namespace host {

namespace {

const RegisteredClass kClasses[] = {
    {&CLSID_NMFVDeinterlace, "the transform", L"" NMFV_DISPLAY_NAME, &IID_IMFTransform},
    {&CLSID_NMFVDeinterlaceSettingsPage, "the settings page", L"" NMFV_DISPLAY_NAME " Properties", &IID_IPropertyPage},
    {&CLSID_NMFVDeinterlaceRoiPage, "the region page", L"" NMFV_DISPLAY_NAME " ROI Properties", &IID_IPropertyPage},
    {&CLSID_NMFVDeinterlaceAboutPage, "the about page", L"" NMFV_DISPLAY_NAME " About", &IID_IPropertyPage},
};

const RegisteredCategory kCategories[] = {
    {&NMFV_TRANSFORM_CATEGORY, "the product's own category"},
    {&MFT_CATEGORY_VIDEO_EFFECT, "video effects"},
};

std::wstring GuidText(const GUID& id) {
    wchar_t text[64] = L"";
    StringFromGUID2(id, text, ARRAYSIZE(text));
    return text;
}

} // namespace

const GUID kTypeLibraryId = LIBID_NMFVDeinterlaceLib;
const GUID kControlInterfaceId = IID_INMFVDeinterlace;

std::span<const RegisteredClass> RegisteredClasses() {
    return kClasses;
}

std::span<const RegisteredCategory> RegisteredCategories() {
    return kCategories;
}

std::wstring ClassKey(const CLSID& id) {
    return L"CLSID\\" + GuidText(id);
}

std::wstring ServerKey(const CLSID& id) {
    return ClassKey(id) + L"\\InprocServer32";
}

std::wstring TypeLibraryKey() {
    return L"TypeLib\\" + GuidText(kTypeLibraryId);
}

std::wstring TypeLibraryPathKey() {
    return TypeLibraryKey() + L"\\1.0\\0\\win64";
}

std::optional<std::wstring> ClassesText(const std::wstring& key, const wchar_t* value) {
    wchar_t text[32768];
    DWORD bytes = sizeof text;
    if (RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), value, RRF_RT_REG_SZ, nullptr, text, &bytes) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return std::wstring(text);
}

bool ClassesKeyExists(const std::wstring& path) {
    CRegKey key;
    return RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

std::wstring RegisteredPath() {
    return ClassesText(ServerKey(CLSID_NMFVDeinterlace)).value_or(L"");
}

bool IsInCategory(const GUID& category) {
    CLSID* ids = nullptr;
    UINT32 count = 0;
    if (FAILED(MFTEnum(category, 0, nullptr, nullptr, nullptr, &ids, &count))) {
        return false;
    }
    bool found = false;
    for (UINT32 i = 0; i < count; ++i) {
        found = found || IsEqualCLSID(ids[i], CLSID_NMFVDeinterlace);
    }
    CoTaskMemFree(ids);
    return found;
}

std::vector<std::string> RegisteredParts() {
    std::vector<std::string> parts;
    for (const RegisteredClass& row : kClasses) {
        if (ClassesKeyExists(ClassKey(*row.id))) {
            parts.push_back("the class of " + std::string(row.what));
        }
    }
    for (const RegisteredCategory& row : kCategories) {
        if (IsInCategory(*row.id)) {
            parts.push_back("the entry under " + std::string(row.what));
        }
    }
    if (ClassesKeyExists(TypeLibraryKey())) {
        parts.emplace_back("the type library");
    }
    return parts;
}

std::optional<FileVersion> VersionOf(const std::wstring& path) {
    std::vector<BYTE> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    void* fixed = nullptr;
    UINT bytes = 0;
    if (block.empty() || !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", &fixed, &bytes) || bytes < sizeof(VS_FIXEDFILEINFO)) {
        return std::nullopt;
    }
    const auto& info = *static_cast<const VS_FIXEDFILEINFO*>(fixed);
    return FileVersion{info.dwFileVersionMS, info.dwFileVersionLS};
}

std::string VersionText(const std::optional<FileVersion>& version) {
    if (!version) {
        return "without a version";
    }
    std::string text = "version ";
    for (const std::uint32_t pair : {version->high, version->low}) {
        text += std::to_string(pair >> 16) + "." + std::to_string(pair & 0xFFFF) + ".";
    }
    text.pop_back();
    return text;
}

} // namespace host
