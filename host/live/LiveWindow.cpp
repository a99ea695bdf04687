#include "host/live/LiveWindow.h"

#include "host/HostError.h"

#include <algorithm>

namespace host {

namespace {

constexpr wchar_t kClass[] = L"NMFVDeinterlaceLive";
constexpr const wchar_t* kLabels[] = {L"before", L"after"};

HFONT MakeFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    const bool known = SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
    return known ? CreateFontIndirectW(&metrics.lfMessageFont) : nullptr;
}

void RegisterWindowClass(WNDPROC procedure) {
    WNDCLASSW description{};
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.lpfnWndProc = procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursor(nullptr, IDC_ARROW);
    description.lpszClassName = kClass;
    RegisterClassW(&description); // the second time it is there already
}

RECT RectOf(const Box& box) {
    return {box.x, box.y, box.x + box.width, box.y + box.height};
}

// A device context of a window, with the font that its texts have.
class CPaint {
public:
    CPaint(HWND window, HFONT font)
        : m_window(window)
        , m_dc(BeginPaint(window, &m_paint))
        , m_old(font ? SelectObject(m_dc, font) : nullptr) {}
    CPaint(const CPaint&) = delete;
    CPaint& operator=(const CPaint&) = delete;
    ~CPaint() {
        if (m_old) {
            SelectObject(m_dc, m_old);
        }
        EndPaint(m_window, &m_paint);
    }
    HDC Get() const { return m_dc; }

private:
    HWND m_window;
    PAINTSTRUCT m_paint{};
    HDC m_dc;
    HGDIOBJ m_old;
};

} // namespace

CLiveWindow::CLiveWindow(const std::wstring& title, const PictureShape& shape)
    : m_shape(shape)
    , m_font(MakeFont()) {
    RegisterWindowClass(&OnMessage);
    m_window = CreateWindowExW(0, kClass, title.c_str(), WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0,
                               nullptr, nullptr, GetModuleHandleW(nullptr), this);
    if (!m_window) {
        DeleteObject(m_font);
        throw HostError(ExitCode::Display, "the window for the clip cannot be made.");
    }
    SizeToPictures();
    // The sheet has the keyboard; this window only shows.
    ShowWindow(m_window, SW_SHOWNOACTIVATE);
}

CLiveWindow::~CLiveWindow() {
    if (m_window) {
        DestroyWindow(m_window);
    }
    DeleteObject(m_font);
}

// In the work area's lower right corner, as the sheet is mostly elsewhere; as large as the clip or as two thirds of the
// area.
void CLiveWindow::SizeToPictures() {
    RECT work{0, 0, 1024, 768};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const Box area = AreaFor(m_shape, LineHeight(), (work.right - work.left) * 2 / 3, (work.bottom - work.top) * 2 / 3);
    RECT frame{0, 0, area.width, area.height};
    AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, FALSE);
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    SetWindowPos(m_window, nullptr, work.right - width, work.bottom - height, width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

int CLiveWindow::LineHeight() const {
    TEXTMETRICW metrics{};
    const HDC dc = GetDC(m_window);
    const HGDIOBJ old = m_font ? SelectObject(dc, m_font) : nullptr;
    GetTextMetricsW(dc, &metrics);
    if (old) {
        SelectObject(dc, old);
    }
    ReleaseDC(m_window, dc);
    return std::max<int>(metrics.tmHeight, 8);
}

void CLiveWindow::Show(const std::uint8_t* before, const std::uint8_t* after, const std::wstring& status) {
    m_pictures[0] = before;
    m_pictures[1] = after;
    ShowStatus(status);
}

void CLiveWindow::ShowStatus(const std::wstring& status) {
    m_status = status;
    if (m_window) {
        InvalidateRect(m_window, nullptr, FALSE);
        UpdateWindow(m_window);
    }
}

// What is painted over with a picture or a text is not cleared first, so nothing flickers.
void CLiveWindow::Paint() {
    const CPaint paint(m_window, m_font);
    RECT client{};
    GetClientRect(m_window, &client);
    const SideBySide places = PlaceSideBySide(client.right, client.bottom, LineHeight(), m_shape);
    const HDC dc = paint.Get();
    const int saved = SaveDC(dc);
    SetBkColor(dc, GetSysColor(COLOR_BTNFACE));
    SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
    for (int i = 0; i < 2; ++i) {
        PaintText(dc, places.label[i], kLabels[i]);
        PaintPicture(dc, places.picture[i], m_pictures[i]);
    }
    PaintText(dc, places.status, m_status);
    FillRect(dc, &client, GetSysColorBrush(COLOR_BTNFACE));
    RestoreDC(dc, saved);
}

void CLiveWindow::PaintText(HDC dc, const Box& box, const std::wstring& text) const {
    const RECT area = RectOf(box);
    ExtTextOutW(dc, box.x, box.y, ETO_OPAQUE | ETO_CLIPPED, &area, text.c_str(), static_cast<UINT>(text.size()),
                nullptr);
    ExcludeClipRect(dc, area.left, area.top, area.right, area.bottom);
}

void CLiveWindow::PaintPicture(HDC dc, const Box& box, const std::uint8_t* pixels) const {
    if (!pixels || box.width <= 0 || box.height <= 0) {
        return;
    }
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = m_shape.width;
    format.bmiHeader.biHeight = m_shape.height;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 24;
    const bool smaller = box.width < m_shape.width || box.height < m_shape.height;
    SetStretchBltMode(dc, smaller ? HALFTONE : COLORONCOLOR); // rows left out would hide the combs, or show false ones
    SetBrushOrgEx(dc, 0, 0, nullptr);
    StretchDIBits(dc, box.x, box.y, box.width, box.height, 0, 0, m_shape.width, m_shape.height, pixels, &format,
                  DIB_RGB_COLORS, SRCCOPY);
    ExcludeClipRect(dc, box.x, box.y, box.x + box.width, box.y + box.height);
}

LRESULT CALLBACK CLiveWindow::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const self = reinterpret_cast<CLiveWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (self ? message : WM_NULL) {
    case WM_PAINT:
        self->Paint();
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_NCDESTROY:
        self->m_window = nullptr;
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace host
