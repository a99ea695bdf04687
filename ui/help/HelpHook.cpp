#include "ui/help/HelpHook.h"

#include "diag/Trace.h"
#include "ui/help/Help.h"
#include "ui/resources/ModuleInstance.h"
#include "ui/rules/BoundedText.h"

#include <cstring>
#include <new>

namespace {

// Where the record is found. The sheet's user data is the host's to write at any time: what stands there may be any
// number, which must not be followed as a pointer.
constexpr char kRecordProperty[] = "NerinHelpHookRecord";

HelpHookRecord* FindRecord(HWND sheet) {
    auto* const record = static_cast<HelpHookRecord*>(GetPropA(sheet, kRecordProperty));
    return record && record->tag == kHelpHookTag ? record : nullptr;
}

bool StandsInUserData(HWND sheet, const HelpHookRecord* record) {
    return GetWindowLongPtrA(sheet, GWLP_USERDATA) == reinterpret_cast<LONG_PTR>(record);
}

// Puts the record into the user data, unless it stands there already.
void TakeUserData(HWND sheet, HelpHookRecord* record) {
    if (!StandsInUserData(sheet, record)) {
        record->previousUserData = SetWindowLongPtrA(sheet, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    }
}

// Gives the host's own user data back, unless the host has already overwritten it. True when it was given back.
bool ReturnUserData(HWND sheet, const HelpHookRecord* record) {
    const bool taken = StandsInUserData(sheet, record);
    if (taken) {
        SetWindowLongPtrA(sheet, GWLP_USERDATA, record->previousUserData);
    }
    return taken;
}

// While this lives, the sheet's user data is the host's own, because the host's procedure runs. What it leaves there is
// kept for the next time. A value that the host wrote over the record stays, also for readers outside the procedure.
class CHostUserData {
public:
    CHostUserData(HWND sheet, HelpHookRecord* record)
        : m_sheet(sheet)
        , m_record(ReturnUserData(sheet, record) ? record : nullptr) {}
    CHostUserData(const CHostUserData&) = delete;
    CHostUserData& operator=(const CHostUserData&) = delete;
    ~CHostUserData() {
        if (m_record && FindRecord(m_sheet) == m_record) { // it may have gone meanwhile, with its page
            TakeUserData(m_sheet, m_record);
        }
    }

private:
    const HWND m_sheet;
    HelpHookRecord* const m_record; // null when the host's own value stood there before
};

WNDPROC ProcedureOf(HWND window) {
    return reinterpret_cast<WNDPROC>(IsWindowUnicode(window) ? GetWindowLongPtrW(window, GWLP_WNDPROC)
                                                             : GetWindowLongPtrA(window, GWLP_WNDPROC));
}

// In the window's own character set: the other one would turn a Unicode sheet into an 8-bit one.
WNDPROC ExchangeProcedure(HWND window, WNDPROC procedure) {
    const auto value = reinterpret_cast<LONG_PTR>(procedure);
    return reinterpret_cast<WNDPROC>(IsWindowUnicode(window) ? SetWindowLongPtrW(window, GWLP_WNDPROC, value)
                                                             : SetWindowLongPtrA(window, GWLP_WNDPROC, value));
}

LRESULT CallPrevious(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return IsWindowUnicode(window) ? CallWindowProcW(procedure, window, message, wParam, lParam)
                                   : CallWindowProcA(procedure, window, message, wParam, lParam);
}

LRESULT CallDefault(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return IsWindowUnicode(window) ? DefWindowProcW(window, message, wParam, lParam)
                                   : DefWindowProcA(window, message, wParam, lParam);
}

void Forget(HWND sheet, HelpHookRecord* record) {
    ReturnUserData(sheet, record);
    RemovePropA(sheet, kRecordProperty);
    delete record;
}

// The record may go while help is shown: its page can be deactivated behind a message box.
void ShowHelpOf(HWND sheet, const HelpHookRecord& record) {
    const HelpHookRecord copy = record;
    ShowPageHelp(sheet, copy.topicName, copy.topicNumber);
}

LRESULT CALLBACK HookProcedure(HWND sheet, UINT message, WPARAM wParam, LPARAM lParam) {
    HelpHookRecord* const record = FindRecord(sheet);
    if (!record) {
        return CallDefault(sheet, message, wParam, lParam); // somebody kept our address for too long
    }
    if (message == WM_HELP && record->page) {
        ShowHelpOf(sheet, *record);
        return TRUE;
    }
    const WNDPROC previous = record->previousProcedure;
    if (message == WM_NCDESTROY) { // a sheet that goes before its page
        Forget(sheet, record);
        return CallPrevious(previous, sheet, message, wParam, lParam);
    }
    const CHostUserData lent(sheet, record);
    return CallPrevious(previous, sheet, message, wParam, lParam);
}

// Also when the record was taken away: in front of itself, our procedure would call itself forever.
bool IsHooked(HWND sheet, const HelpHookRecord* record) {
    return record ? record->page != nullptr : ProcedureOf(sheet) == &HookProcedure;
}

// For good: nothing tells when nobody can call our procedure any more.
void KeepModuleLoaded() {
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCSTR>(ModuleInstance()), &module);
}

// A record for a sheet that has none, with our procedure in front of the sheet's.
HelpHookRecord* Hook(HWND sheet) {
    auto* const record = new (std::nothrow) HelpHookRecord{};
    if (!record || !SetPropA(sheet, kRecordProperty, record)) {
        delete record;
        return nullptr;
    }
    record->tag = kHelpHookTag;
    record->previousProcedure = ExchangeProcedure(sheet, &HookProcedure);
    if (!record->previousProcedure) { // the sheet keeps its own
        RemovePropA(sheet, kRecordProperty);
        delete record;
        return nullptr;
    }
    return record;
}

} // namespace

HRESULT InstallHelpHook(HWND page, const char* topicName, UINT32 topicNumber) {
    const HWND sheet = GetParent(page);
    if (!sheet || !topicName) {
        return E_INVALIDARG;
    }
    HelpHookRecord* record = FindRecord(sheet);
    if (IsHooked(sheet, record)) {
        return S_OK;
    }
    record = record ? record : Hook(sheet);
    if (!record) {
        return E_OUTOFMEMORY;
    }
    CopyText(record->topicName, {topicName, strnlen(topicName, kLongestTopicName)});
    record->page = page;
    record->topicNumber = topicNumber;
    TakeUserData(sheet, record);
    return S_OK;
}

void RemoveHelpHook(HWND page) {
    const HWND sheet = GetParent(page);
    HelpHookRecord* const record = sheet ? FindRecord(sheet) : nullptr;
    if (!record) {
        return;
    }
    if (ProcedureOf(sheet) == &HookProcedure) {
        ExchangeProcedure(sheet, record->previousProcedure);
        Forget(sheet, record);
        return;
    }
    // Kept: whoever replaced the procedure calls ours, so it stays, passes messages on, and the module isn't unloaded.
    // Test: NobodyCallsAModuleThatIsGone.
    Trace("\nRemoveHelpHook: another procedure stands before ours, the module stays loaded");
    record->page = nullptr;
    ReturnUserData(sheet, record);
    KeepModuleLoaded();
}
