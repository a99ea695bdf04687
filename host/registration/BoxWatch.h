#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>
#include <windows.h>

namespace host {

// Keeps an unattended run going: a message box that the calling thread shows while this lives is closed at once, and
// its text kept. Nobody need be there to see it, nor a desktop.
class CBoxWatch {
public:
    CBoxWatch();
    CBoxWatch(const CBoxWatch&) = delete;
    CBoxWatch& operator=(const CBoxWatch&) = delete;
    ~CBoxWatch();

    // Ends the watch. The texts in UTF-8, oldest first; an empty text for a box without one.
    std::vector<std::string> Stop();

private:
    static BOOL CALLBACK OnWindow(HWND window, LPARAM watch);
    void Run();

    DWORD m_watched = GetCurrentThreadId();
    std::mutex m_lock;
    std::condition_variable m_wake;
    bool m_stop = false;
    std::vector<HWND> m_seen;
    std::vector<std::string> m_texts;
    std::thread m_thread;
};

} // namespace host
