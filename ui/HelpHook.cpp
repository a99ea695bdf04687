#include "ui/HelpHook.h"

#include "ui/BoundedText.h"
#include "ui/Help.h"

#include <cstring>
#include <new>

namespace {

// The sheet also carries the record as a property: its user data may be any number of its own, which must not be
// followed as a pointer.
constexpr char kRecordProperty[] = "NerinHelpHookRecord";

HelpHookRecord* FindRecord(HWND sheet) {
    auto* const record = static_cast<HelpHookRecord*>(GetPropA(sheet, kRecordProperty));
    const bool ours = record && reinterpret_cast<LONG_PTR>(record) == GetWindowLongPtrA(sheet, GWLP_USERDATA) &&
                      record->tag == kHelpHookTag;
    return ours ? record : nullptr;
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

void Unhook(HWND sheet, HelpHookRecord* record) {
    ExchangeProcedure(sheet, record->previousProcedure);
    SetWindowLongPtrA(sheet, GWLP_USERDATA, record->previousUserData);
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
        return CallDefault(sheet, message, wParam, lParam); // somebody who hooked later still calls us
    }
    if (message == WM_HELP) {
        ShowHelpOf(sheet, *record);
        return TRUE;
    }
    const WNDPROC previous = record->previousProcedure;
    if (message == WM_NCDESTROY) {
        Unhook(sheet, record); // a sheet that goes before its page
    }
    return CallPrevious(previous, sheet, message, wParam, lParam);
}

} // namespace

HRESULT InstallHelpHook(HWND page, const char* topicName, UINT32 topicNumber) {
    const HWND sheet = GetParent(page);
    if (!sheet || !topicName) {
        return E_INVALIDARG;
    }
    if (FindRecord(sheet)) {
        return S_OK;
    }
    auto* const record = new (std::nothrow) HelpHookRecord{};
    if (!record || !SetPropA(sheet, kRecordProperty, record)) {
        delete record;
        return E_OUTOFMEMORY;
    }
    record->tag = kHelpHookTag;
    CopyText(record->topicName, {topicName, strnlen(topicName, kLongestTopicName)});
    record->page = page;
    record->topicNumber = topicNumber;
    record->previousUserData = SetWindowLongPtrA(sheet, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
    record->previousProcedure = ExchangeProcedure(sheet, &HookProcedure);
    return S_OK;
}

void RemoveHelpHook(HWND page) {
    const HWND sheet = GetParent(page);
    if (HelpHookRecord* const record = sheet ? FindRecord(sheet) : nullptr) {
        Unhook(sheet, record);
    }
}
