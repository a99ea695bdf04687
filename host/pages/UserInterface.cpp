#include "host/pages/UserInterface.h"

#include "host/console/Text.h"
#include "host/transform/Platform.h"

#include <mfapi.h>
#include <ole2.h>

namespace host {

namespace {

// A service's window station takes windows that nobody ever sees.
bool IsStationVisible() {
    USEROBJECTFLAGS flags{};
    DWORD bytes = 0;
    return !GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, &bytes) ||
           (flags.dwFlags & WSF_VISIBLE) != 0;
}

// Where there is no display at all, not even a hidden window can be made.
bool CanMakeWindow() {
    const HWND window =
        CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
    return window && DestroyWindow(window);
}

} // namespace

CUserInterface::CUserInterface() {
    if (!IsStationVisible() || !CanMakeWindow()) {
        throw HostError(ExitCode::Display, "there is no desktop here to show windows on.");
    }
    Check(OleInitialize(nullptr), ExitCode::Transform, "OLE cannot be started");
    if (const HRESULT result = StartMediaFoundation(); FAILED(result)) {
        OleUninitialize();
        Check(result, ExitCode::Transform, "Media Foundation cannot be started");
    }
}

CUserInterface::~CUserInterface() {
    MFShutdown();
    OleUninitialize();
}

} // namespace host
