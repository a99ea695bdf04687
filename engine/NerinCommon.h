// What the transforms of the family have in common.
#pragma once

#include <windows.h>
#include <strmif.h>

enum class FormatBlocks;

class CNerinCommon {
public:
    // The transform's display name. Kept: nothing in the module asks for it; the pages have their own.
    const wchar_t* DisplayName() const { return m_displayName; }

    // Which uncompressed formats a transform accepts. S_OK for the first accepted format that the type matches;
    // kTypeNotAccepted when there is none, kNoBitmapHeader when the type carries no bitmap header. A part of the class
    // by name only: mft/VideoFormatCheck.h has its terms, beside the types that it checks.
    static HRESULT CheckVideoFormat(const AM_MEDIA_TYPE& type, DWORD acceptedFormats, FormatBlocks blocks);

protected:
    // Both texts are kept by reference.
    CNerinCommon(const wchar_t* displayName, const char* settingsPath)
        : m_displayName(displayName)
        , m_settingsPath(settingsPath) {}

    // Below HKEY_CURRENT_USER.
    const char* SettingsPath() const { return m_settingsPath; }

private:
    const wchar_t* m_displayName;
    const char* m_settingsPath;
};
