#pragma once

#include "host/picture/SideBySide.h"

#include <cstdint>
#include <string>
#include <windows.h>

namespace host {

// A window with a picture before and after, side by side, and a line of status. Belongs to the thread that made it,
// which must fetch and dispatch messages.
class CLiveWindow {
public:
    // Throws HostError with ExitCode::Display.
    CLiveWindow(const std::wstring& title, const PictureShape& shape);
    CLiveWindow(const CLiveWindow&) = delete;
    CLiveWindow& operator=(const CLiveWindow&) = delete;
    ~CLiveWindow();

    // Paints at once. Both pictures are RGB24, bottom row first, rows padded to four bytes; they must stay where they
    // are, as the window paints them again when it is uncovered.
    void Show(const std::uint8_t* before, const std::uint8_t* after, const std::wstring& status);
    void ShowStatus(const std::wstring& status);
    // False once the user has closed it.
    bool IsOpen() const { return m_window != nullptr; }

private:
    static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void SizeToPictures();
    int LineHeight() const;
    void Paint();
    void PaintText(HDC dc, const Box& box, const std::wstring& text) const;
    void PaintPicture(HDC dc, const Box& box, const std::uint8_t* pixels) const;

    PictureShape m_shape;
    HFONT m_font = nullptr;
    HWND m_window = nullptr;
    const std::uint8_t* m_pictures[2] = {};
    std::wstring m_status;
};

} // namespace host
