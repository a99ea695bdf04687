#pragma once

#include "host/live/Gdi.h"
#include "host/live/LivePaint.h"

#include <cstdint>
#include <exception>
#include <string>
#include <windows.h>

namespace host {

// A window with a picture before and after, and what belongs to them. Its keys and the mouse change the model, which
// must outlive it. Belongs to the thread that made it, which must fetch and dispatch messages.
class CLiveWindow {
public:
    // Throws HostError with ExitCode::Display.
    CLiveWindow(const std::wstring& title, CLiveModel& model, const PictureShape& shape);
    CLiveWindow(const CLiveWindow&) = delete;
    CLiveWindow& operator=(const CLiveWindow&) = delete;
    ~CLiveWindow();

    CLiveModel& Model() { return m_model; }

    // Paint at once. Both pictures are RGB24, bottom row first, rows padded to four bytes; they must stay where they
    // are, as the window paints them again when it is uncovered.
    void Show(const std::uint8_t* before, const std::uint8_t* after, const LiveFrame& frame, double framesPerSecond);
    void ShowStatus(const std::wstring& status);

    // Whether the user has done something since this was last asked. Throws what went wrong in a message meanwhile.
    bool TakeInput();
    // False once the user has closed it.
    bool IsOpen() const { return m_window != nullptr; }

private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    bool Handle(UINT message, WPARAM wParam, LPARAM lParam);
    bool HandleMouse(UINT message, WPARAM wParam, LPARAM lParam);
    void Press(int x, int y, bool pan);
    void Measure();
    bool ShowCursor() const;
    void SizeToPictures();
    void Paint() const;
    void PaintNow();

    CLiveModel& m_model;
    LiveScene m_scene;
    CGdiObject m_font;
    int m_line = 8;
    HWND m_window = nullptr;
    bool m_input = false;
    std::exception_ptr m_failure;
};

} // namespace host
