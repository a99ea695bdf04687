// screens FOLDER CLIP: pictures of the property pages, of their sheet and of the live window, as PNG files in FOLDER.
// CLIP is played. For the program's documentation; nmfvdeint.exe and the DLL lie beside this program.
#include "host/HostError.h"
#include "host/files/Png.h"
#include "tests/support/OtherWindows.h"

#include <cstdio>
#include <cstring>
#include <objbase.h>

namespace {

constexpr const char* kPages[] = {"settings", "roi", "about"};
constexpr DWORD kSettle = 1500; // until everything is painted
constexpr wchar_t kLiveClass[] = L"NMFVDeinterlaceLive";

void Save(const std::string& path, const RECT& area) {
    host::Image image(area.right - area.left, area.bottom - area.top);
    const std::vector<std::uint32_t> pixels = CaptureScreen(area);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        std::memcpy(&image.pixels[3 * i], &pixels[i], 3);
    }
    host::WritePng(*host::OpenOutput(path, true), image);
    std::printf("%s: %d x %d\n", path.c_str(), image.width, image.height);
}

RECT AreaOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area;
}

// The sheet in front, each of its pages by itself, then the first page in its sheet.
void SavePages(HWND sheet, const std::string& folder) {
    SetWindowPos(sheet, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE);
    for (int page = 2; page >= 0; --page) {
        SelectPage(sheet, page);
        Sleep(kSettle);
        const auto window = reinterpret_cast<HWND>(SendMessageW(sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
        Save(folder + "/" + kPages[page] + ".png", AreaOf(window));
    }
    Save(folder + "/sheet.png", AreaOf(sheet));
}

// The live window on a paused frame after each of these keys.
struct LivePicture {
    const char* name;
    std::vector<int> keys;
};
const LivePicture kLivePictures[] = {
    {"live", {VK_SPACE, VK_HOME, VK_NEXT, 'O', VK_LEFT, VK_LEFT, VK_LEFT, VK_LEFT, VK_LEFT, VK_LEFT, 'R'}},
    {"live-keys", {VK_F1}},
    {"live-split", {VK_ESCAPE, 'R', 'L', 'S', '2'}},
};

void SaveLive(HWND live, const std::string& folder) {
    SetWindowPos(live, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE);
    for (const LivePicture& picture : kLivePictures) {
        for (const int key : picture.keys) {
            SendMessageW(live, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
        }
        Sleep(kSettle);
        Save(folder + "/" + picture.name + ".png", AreaOf(live));
    }
}

// Starts nmfvdeint from this program's folder; null when that fails.
HANDLE Start(const std::wstring& arguments) {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, ARRAYSIZE(path));
    const std::wstring folder(path, std::wcsrchr(path, L'\\') + 1);
    std::wstring line = L"\"" + folder + L"nmfvdeint.exe\" " + arguments;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process)) {
        return nullptr;
    }
    CloseHandle(process.hThread);
    return process.hProcess;
}

bool Run(const std::string& folder, const std::string& clip) {
    const HANDLE program =
        Start(L"pages --no-save --feed rgb24 --live \"" + std::wstring(clip.begin(), clip.end()) + L"\"");
    const HWND sheet = AwaitSheet();
    const HWND live = AwaitWindow(kLiveClass, L"");
    const bool shown = sheet && live;
    if (shown) {
        SavePages(sheet, folder);
        SaveLive(live, folder);
        PressButton(sheet, PSBTN_CANCEL);
    }
    const bool ended = program && WaitForSingleObject(program, 30000) == WAIT_OBJECT_0;
    if (program && !ended) {
        TerminateProcess(program, 1);
    }
    return shown && ended;
}

} // namespace

int main(int count, char** arguments) try {
    SetProcessDPIAware(); // windows are measured in the screen's own pixels
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (count == 3 && Run(arguments[1], arguments[2])) {
        return 0;
    }
    std::fputs("screens: the windows did not come, or did not go\n", stderr);
    return 1;
} catch (const host::HostError& error) {
    std::fprintf(stderr, "screens: %s\n", error.what());
    return 1;
}
