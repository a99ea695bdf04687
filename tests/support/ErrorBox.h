// Waits for the message box titled "Error", of whichever process, reads its text and closes it.
#pragma once

#include <string>
#include <thread>

#include <windows.h>

class ErrorBox {
public:
    ErrorBox() = default;
    ErrorBox(const ErrorBox&) = delete;
    ErrorBox& operator=(const ErrorBox&) = delete;
    ~ErrorBox() { Text(); }

    // What the box said; empty when none came within ten seconds.
    std::string Text() {
        if (m_watcher.joinable()) {
            m_watcher.join();
        }
        return m_text;
    }

private:
    void Watch() {
        for (int i = 0; i < 200; ++i, Sleep(50)) {
            const HWND box = FindWindowA("#32770", "Error");
            if (box && IsWindowVisible(box)) {
                ReadText(box);
                PostMessageA(box, WM_COMMAND, IDOK, 0);
                return;
            }
        }
    }

    // One static control holds the icon, the other the text.
    void ReadText(HWND box) {
        for (HWND label = nullptr; (label = FindWindowExA(box, label, "Static", nullptr)) != nullptr;) {
            char text[2048] = "";
            SendMessageA(label, WM_GETTEXT, sizeof(text), reinterpret_cast<LPARAM>(text));
            m_text += text;
        }
    }

    std::string m_text;
    std::thread m_watcher{[this] { Watch(); }};
};
