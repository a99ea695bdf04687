#include "host/live/LiveWindow.h"

#include "host/HostError.h"
#include "host/live/LiveKeys.h"

#include <algorithm>
#include <utility>
#include <windowsx.h>

namespace host {

namespace {

constexpr wchar_t kClass[] = L"NMFVDeinterlaceLive";

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

int LineHeight(HWND window, HGDIOBJ font) {
    TEXTMETRICW metrics{};
    const HDC dc = GetDC(window);
    {
        const CSelected selected(dc, font);
        GetTextMetricsW(dc, &metrics);
    }
    ReleaseDC(window, dc);
    return std::max<int>(metrics.tmHeight, 8);
}

LPCTSTR CursorOf(LiveHold hold, unsigned grip) {
    if (hold == LiveHold::Divider || (hold == LiveHold::Region && (grip == kGripLeft || grip == kGripRight))) {
        return IDC_SIZEWE;
    }
    if (hold != LiveHold::Region) {
        return IDC_ARROW;
    }
    if (grip == kGripWhole) {
        return IDC_SIZEALL;
    }
    if (grip == kGripTop || grip == kGripBottom) {
        return IDC_SIZENS;
    }
    const bool falling = grip == (kGripLeft | kGripTop) || grip == (kGripRight | kGripBottom);
    return falling ? IDC_SIZENWSE : IDC_SIZENESW;
}

} // namespace

CLiveWindow::CLiveWindow(const std::wstring& title, CLiveModel& model, const PictureShape& shape)
    : m_model(model)
    , m_font(MakeFont()) {
    m_scene.shape = shape;
    RegisterWindowClass(&OnMessage);
    m_window = CreateWindowExW(0, kClass, title.c_str(), WS_OVERLAPPEDWINDOW, CW_USEDEFAULT, CW_USEDEFAULT, 0, 0,
                               nullptr, nullptr, GetModuleHandleW(nullptr), this);
    if (!m_window) {
        throw HostError(ExitCode::Display, "the window for the clip cannot be made.");
    }
    m_line = LineHeight(m_window, m_font.Get());
    SizeToPictures();
    // The sheet has the keyboard until this window is clicked.
    ShowWindow(m_window, SW_SHOWNOACTIVATE);
}

CLiveWindow::~CLiveWindow() {
    if (m_window) {
        DestroyWindow(m_window);
    }
}

// In the work area's lower right corner, as the sheet is mostly elsewhere; as large as the clip or as two thirds of the
// area.
void CLiveWindow::SizeToPictures() {
    RECT work{0, 0, 1024, 768};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const Box area = AreaFor(m_scene.shape, m_line, (work.right - work.left) * 2 / 3, (work.bottom - work.top) * 2 / 3);
    RECT frame{0, 0, area.width, area.height};
    AdjustWindowRect(&frame, WS_OVERLAPPEDWINDOW, FALSE);
    const int width = frame.right - frame.left;
    const int height = frame.bottom - frame.top;
    SetWindowPos(m_window, nullptr, work.right - width, work.bottom - height, width, height,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    Measure();
}

void CLiveWindow::Measure() {
    RECT client{};
    GetClientRect(m_window, &client);
    m_model.SetSize(client.right, client.bottom, m_line);
}

void CLiveWindow::Show(const std::uint8_t* before, const std::uint8_t* after, const LiveFrame& frame,
                       double framesPerSecond) {
    m_scene.pictures[0] = before;
    m_scene.pictures[1] = after;
    m_scene.frame = frame;
    m_scene.status[0] = PlayText(frame, m_model.Playback(), framesPerSecond);
    m_scene.status[1] = FrameText(frame);
    PaintNow();
}

void CLiveWindow::ShowStatus(const std::wstring& status) {
    m_scene.status[0] = status;
    PaintNow();
}

void CLiveWindow::PaintNow() {
    if (m_window) {
        InvalidateRect(m_window, nullptr, FALSE);
        UpdateWindow(m_window);
    }
}

void CLiveWindow::Paint() const {
    const CBufferedPaint paint(m_window);
    const CSelected font(paint.Get(), m_font.Get());
    PaintLive(paint.Get(), paint.Area(), m_line, m_model, m_scene);
}

bool CLiveWindow::TakeInput() {
    if (m_failure) {
        std::rethrow_exception(std::exchange(m_failure, nullptr));
    }
    return std::exchange(m_input, false);
}

// True when the message needs nothing else.
bool CLiveWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT:
        Paint();
        return true;
    case WM_ERASEBKGND:
        return true;
    case WM_SIZE:
        Measure();
        return false;
    case WM_KEYDOWN:
        if (const auto command = CommandOfKey(wParam)) {
            m_model.Do(*command);
            m_input = true;
            return true;
        }
        return false;
    case WM_SETCURSOR:
        return LOWORD(lParam) == HTCLIENT && ShowCursor();
    default:
        return HandleMouse(message, wParam, lParam);
    }
}

bool CLiveWindow::HandleMouse(UINT message, WPARAM wParam, LPARAM lParam) {
    const int x = GET_X_LPARAM(lParam);
    const int y = GET_Y_LPARAM(lParam);
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        Press(x, y, message == WM_RBUTTONDOWN);
        return true;
    case WM_MOUSEMOVE:
        m_model.Move(x, y);
        m_input = m_input || m_model.IsPressed();
        return true;
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
        ReleaseCapture();
        return true;
    case WM_CAPTURECHANGED:
        m_model.Release();
        m_input = true;
        return true;
    case WM_MOUSEWHEEL: {
        const int way = -GET_WHEEL_DELTA_WPARAM(wParam) * 3 * m_line / WHEEL_DELTA;
        const bool across = (GET_KEYSTATE_WPARAM(wParam) & MK_SHIFT) != 0;
        m_model.Pan(across ? way : 0, across ? 0 : way);
        m_input = true;
        return true;
    }
    }
    return false;
}

void CLiveWindow::Press(int x, int y, bool pan) {
    SetFocus(m_window);
    SetCapture(m_window);
    m_model.Press(x, y, pan);
    m_input = true;
}

bool CLiveWindow::ShowCursor() const {
    POINT at{};
    GetCursorPos(&at);
    ScreenToClient(m_window, &at);
    SetCursor(LoadCursor(nullptr, CursorOf(m_model.HoldAt(at.x, at.y), m_model.GripAt(at.x, at.y))));
    return true;
}

// No exception passes through the platform's dispatching: it waits for TakeInput.
LRESULT CALLBACK CLiveWindow::OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        const auto* const creation = reinterpret_cast<const CREATESTRUCTW*>(lParam);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* const self = reinterpret_cast<CLiveWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self && message == WM_NCDESTROY) {
        self->m_window = nullptr;
    } else if (self && self->m_window) {
        try {
            if (self->Handle(message, wParam, lParam)) {
                return message == WM_ERASEBKGND || message == WM_SETCURSOR;
            }
        } catch (...) {
            self->m_failure = std::current_exception();
        }
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

} // namespace host
