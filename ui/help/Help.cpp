#include "ui/help/Help.h"

#include "base/Handles.h"
#include "diag/Trace.h"
#include "ui/help/HtmlHelp.h"
#include "ui/help/Shell.h"
#include "ui/resources/ModuleInstance.h"
#include "ui/resources/PublishedNames.h"
#include "ui/rules/BoundedText.h"
#include "ui/rules/HelpTopic.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace {

using Text = std::unique_ptr<char[]>;

constexpr char kHelpKey[] = "SOFTWARE\\Nerin Systems\\DShow\\Help";
constexpr char kHelpPathValue[] = "Path";

bool IsTooLong(const char* name) {
    return strnlen(name, kLongestTopicName + 1) > kLongestTopicName;
}

// The registered folders, of any length; null when there are none or no memory for them.
Text ReadHelpPath() {
    CRegKey key;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, kHelpKey, 0, KEY_READ, key.Put()) != ERROR_SUCCESS) {
        return nullptr;
    }
    DWORD size = 0;
    LSTATUS status = RegGetValueA(key.Get(), nullptr, kHelpPathValue, RRF_RT_REG_SZ, nullptr, nullptr, &size);
    // Another program may write a longer value between two calls.
    for (int attempt = 0; attempt < 3 && (status == ERROR_SUCCESS || status == ERROR_MORE_DATA); ++attempt) {
        const DWORD room = size + 1;
        Text text(new (std::nothrow) char[room]);
        if (!text) {
            return nullptr;
        }
        size = room;
        status = RegGetValueA(key.Get(), nullptr, kHelpPathValue, RRF_RT_REG_SZ, nullptr, text.get(), &size);
        if (status == ERROR_SUCCESS) {
            return text;
        }
    }
    return nullptr;
}

bool IsFile(const char* path) {
    const DWORD attributes = GetFileAttributesA(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Writes the path of `file` in `folder` when it exists; a path that is too long for the platform doesn't.
bool FindInFolder(std::string_view folder, std::string_view file, char (&path)[MAX_PATH]) {
    return WritePath(folder, file, path) && IsFile(path);
}

bool FindBesideModule(std::string_view file, char (&path)[MAX_PATH]) {
    char module[MAX_PATH];
    const DWORD length = GetModuleFileNameA(ModuleInstance(), module, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        return false;
    }
    const std::string_view full(module, length);
    return FindInFolder(full.substr(0, full.find_last_of("\\/") + 1), file, path);
}

// The registered folders in their order, then the module's own.
bool FindHelpFile(const char* folders, std::string_view file, char (&path)[MAX_PATH]) {
    CHelpFolders walk(folders);
    for (std::string_view folder; walk.Next(&folder);) {
        if (FindInFolder(folder, file, path)) {
            return true;
        }
    }
    return FindBesideModule(file, path);
}

// Kept: the filters' file is named twice, whatever was looked for. Test: NamesTheMissingFiles.
void TellMissing(const char* name, bool transform) {
    char text[256];
    std::snprintf(text, sizeof(text),
                  "The following help files were not found in the help path(s): \n\n- ...\\%s\n- ...\\%s\n- "
                  "...\\nxfilters.chm\n",
                  HelpFileOf(transform), HelpFileOf(!transform));
    g_Shell.messageBox(nullptr, text, name, MB_OK | MB_ICONWARNING);
}

int TryToShow(const char* name, unsigned number) {
    const bool transform = name && !IsTooLong(name) && IsTransformTopic(name);
    if (const int online = OpenOnlineHelp(name, transform); online != kHelpNotFound) {
        return online;
    }
    const Text folders = ReadHelpPath();
    if (!folders) {
        return kHelpNoNameOrPath;
    }
    char file[MAX_PATH], topic[MAX_PATH + kLongestTopicName + 32];
    if (!FindHelpFile(folders.get(), HelpFileOf(transform), file)) {
        TellMissing(name, transform);
        return kHelpNotFound;
    }
    if (!WriteTopicPath(file, name, number, topic)) {
        return kHelpNameTooLong;
    }
    // Kept: a help file that was found counts as shown, whatever the control says. Test: ShowsTheTopicOfTheFirstFile.
    (void)CallHtmlHelp(GetDesktopWindow(), topic, kDisplayTopic, 0);
    return kHelpShown;
}

} // namespace

int OpenOnlineHelp(const char* name, bool transform) {
    constexpr std::size_t kShortestAddress = 4;
    if (!name || !*name) {
        return kHelpNoNameOrPath;
    }
    if (IsTooLong(name)) {
        return kHelpNameTooLong;
    }
    char address[1024];
    if (!WriteOnlineAddress(NMFV_HELP_SITE, name, transform, address) || std::strlen(address) < kShortestAddress) {
        return kHelpNotFound;
    }
    return OpenAddress(address) ? kHelpShown : kHelpNotFound;
}

int ShowHelpTopic(const char* name, unsigned number) {
    const int result = TryToShow(name, number);
    if (result < 0) {
        Trace("\nShowHelpTopic: no help for \"%s\" (%d)", name ? name : "", result);
    }
    return result;
}

void ShowPageHelp(HWND owner, const char* name, unsigned number) {
    if (ShowHelpTopic(name, number) < 0) {
        g_Shell.messageBox(owner, "Can't find help file.", name, MB_OK | MB_ICONWARNING);
    }
}

void SetPageHelpInfo(PROPPAGEINFO* info, const char* name) {
    constexpr int kFileLength = 260; // with the terminator
    info->pszHelpFile = nullptr;
    info->dwHelpContext = 0;
    char file[kFileLength];
    if (!name || !*name || IsTooLong(name) || !WriteTopicFileName(name, file)) {
        return;
    }
    info->pszHelpFile = static_cast<LPOLESTR>(CoTaskMemAlloc(kFileLength * sizeof(wchar_t)));
    if (!info->pszHelpFile) {
        return;
    }
    if (!MultiByteToWideChar(CP_ACP, 0, file, -1, info->pszHelpFile, kFileLength)) {
        info->pszHelpFile[0] = L'\0';
    }
    info->dwHelpContext = kUserInterfaceTopic;
}
