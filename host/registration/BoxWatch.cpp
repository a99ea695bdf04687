#include "host/registration/BoxWatch.h"

#include "host/console/Text.h"

#include <algorithm>
#include <chrono>
#include <cwchar>

namespace host {

namespace {

constexpr auto kInterval = std::chrono::milliseconds(50);

std::wstring ClassOf(HWND window) {
    wchar_t name[32] = L"";
    GetClassNameW(window, name, ARRAYSIZE(name));
    return name;
}

// Of a box's parts the text is the one that is longest; the icon's is empty.
BOOL CALLBACK TakeLongest(HWND part, LPARAM longest) {
    wchar_t text[1024] = L"";
    auto& kept = *reinterpret_cast<std::wstring*>(longest);
    if (ClassOf(part) == L"Static" && GetWindowTextW(part, text, ARRAYSIZE(text)) != 0 &&
        std::wcslen(text) > kept.size()) {
        kept = text;
    }
    return TRUE;
}

} // namespace

CBoxWatch::CBoxWatch()
    : m_thread([this] { Run(); }) {}

CBoxWatch::~CBoxWatch() {
    (void)Stop();
}

std::vector<std::string> CBoxWatch::Stop() {
    if (m_thread.joinable()) {
        {
            const std::lock_guard hold(m_lock);
            m_stop = true;
        }
        m_wake.notify_one();
        m_thread.join();
    }
    return m_texts;
}

// The watched thread hangs in the box, so looking again and again from another one is what is left.
void CBoxWatch::Run() {
    std::unique_lock hold(m_lock);
    while (!m_wake.wait_for(hold, kInterval, [this] { return m_stop; })) {
        EnumThreadWindows(m_watched, &OnWindow, reinterpret_cast<LPARAM>(this));
    }
}

BOOL CALLBACK CBoxWatch::OnWindow(HWND window, LPARAM watch) {
    auto& self = *reinterpret_cast<CBoxWatch*>(watch);
    // A box is shown when it has its text; one that is still being built has none.
    if (ClassOf(window) != L"#32770" || !IsWindowVisible(window)) {
        return TRUE;
    }
    if (std::find(self.m_seen.begin(), self.m_seen.end(), window) == self.m_seen.end()) {
        std::wstring text;
        EnumChildWindows(window, &TakeLongest, reinterpret_cast<LPARAM>(&text));
        self.m_seen.push_back(window);
        self.m_texts.push_back(ToUtf8(text));
    }
    // A box that does not hear it yet is told again at the next look.
    PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
    return TRUE;
}

} // namespace host
