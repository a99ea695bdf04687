// The owners of what windows are painted with.
#pragma once

#include "base/Scoped.h"

#include <windows.h>

namespace host {

struct GdiObjectPolicy {
    using Type = HGDIOBJ;
    static Type Invalid() { return nullptr; }
    static void Close(Type object) { DeleteObject(object); }
};
using CGdiObject = CScoped<GdiObjectPolicy>; // brushes, pens, fonts, bitmaps

// An object in a device context, which has its old one back in the end. A null object changes nothing.
class CSelected {
public:
    CSelected(HDC dc, HGDIOBJ object)
        : m_dc(dc)
        , m_old(object ? SelectObject(dc, object) : nullptr) {}
    CSelected(const CSelected&) = delete;
    CSelected& operator=(const CSelected&) = delete;
    ~CSelected() {
        if (m_old) {
            SelectObject(m_dc, m_old);
        }
    }

private:
    HDC m_dc;
    HGDIOBJ m_old;
};

// What is painted of a window appears at once, when the object goes.
class CBufferedPaint {
public:
    explicit CBufferedPaint(HWND window)
        : m_window(window)
        , m_screen(BeginPaint(window, &m_paint))
        , m_dc(CreateCompatibleDC(m_screen)) {
        GetClientRect(window, &m_area);
        m_bitmap = CGdiObject(CreateCompatibleBitmap(m_screen, m_area.right, m_area.bottom));
        m_old = SelectObject(m_dc, m_bitmap.Get());
    }
    CBufferedPaint(const CBufferedPaint&) = delete;
    CBufferedPaint& operator=(const CBufferedPaint&) = delete;
    ~CBufferedPaint() {
        BitBlt(m_screen, 0, 0, m_area.right, m_area.bottom, m_dc, 0, 0, SRCCOPY);
        SelectObject(m_dc, m_old);
        DeleteDC(m_dc);
        EndPaint(m_window, &m_paint);
    }

    HDC Get() const { return m_dc; }
    const RECT& Area() const { return m_area; }

private:
    HWND m_window;
    PAINTSTRUCT m_paint{};
    HDC m_screen;
    HDC m_dc;
    RECT m_area{};
    CGdiObject m_bitmap;
    HGDIOBJ m_old;
};

} // namespace host
