// What the transforms of the family have in common.
#pragma once

#include "engine/VideoFormatCheck.h"

class CNerinCommon {
public:
    // The transform's display name. Kept: nothing in the module asks for it; the pages have their own.
    const wchar_t* DisplayName() const { return m_displayName; }

protected:
    // Both texts are kept by reference.
    CNerinCommon(const wchar_t* displayName, const char* settingsPath)
        : m_displayName(displayName)
        , m_settingsPath(settingsPath) {}

    // Below HKEY_CURRENT_USER.
    const char* SettingsPath() const { return m_settingsPath; }

    static HRESULT CheckVideoFormat(const AM_MEDIA_TYPE& type, DWORD acceptedFormats, FormatBlocks blocks) {
        return ::CheckVideoFormat(type, acceptedFormats, blocks);
    }

private:
    const wchar_t* m_displayName;
    const char* m_settingsPath;
};
