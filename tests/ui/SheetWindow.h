// A window that holds pages, and the site that they tell their changes.
#pragma once

#include "com/ComRef.h"

#include <string>
#include <vector>

#include <ocidl.h>
#include <windows.h>

inline std::string TextOf(HWND window) {
    char text[512] = "";
    GetWindowTextA(window, text, sizeof(text));
    return text;
}

// Windows counts for us; Wine says 0, but finds an object by the lower half of its handle.
inline DWORD DrawingObjects() {
    if (const DWORD known = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) {
        return known;
    }
    DWORD count = 0;
    for (ULONG_PTR index = 1; index <= 0xFFFF; ++index) {
        count += GetObjectType(reinterpret_cast<HGDIOBJ>(index)) != 0;
    }
    return count;
}

class SheetWindow {
public:
    SheetWindow()
        : m_window(CreateWindowExW(0, L"STATIC", L"sheet", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 700, 800, nullptr,
                                   nullptr, nullptr, nullptr)) {}
    SheetWindow(const SheetWindow&) = delete;
    SheetWindow& operator=(const SheetWindow&) = delete;
    ~SheetWindow() { Destroy(); }

    HWND Get() const { return m_window; }
    HWND Page() const { return GetWindow(m_window, GW_CHILD); }
    void Destroy() {
        if (m_window) {
            DestroyWindow(m_window);
            m_window = nullptr;
        }
    }

private:
    HWND m_window;
};

// Lives longer than the pages that hold it.
class NotingSite final : public IPropertyPageSite {
public:
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
    STDMETHODIMP_(ULONG) Release() override { return --references; }
    STDMETHODIMP OnStatusChange(DWORD status) override { return statuses.push_back(status), S_OK; }
    STDMETHODIMP GetLocaleID(LCID*) override { return E_NOTIMPL; }
    STDMETHODIMP GetPageContainer(IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP TranslateAccelerator(MSG*) override { return E_NOTIMPL; }

    std::vector<DWORD> statuses;
    ULONG references = 0;
};
