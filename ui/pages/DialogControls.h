// Controls of a dialog by their ids. Text is bounded, and no call fails for a control that is missing.
#pragma once

#include "ui/rules/PageSettings.h"

#include <cstdint>

#include <windows.h>

// The number at the start of a control's text, up to the first character that isn't part of it. 0 for a text without
// one, the nearest representable number for one that is too long; an unsigned number is 0 for a negative one.
std::uint32_t ReadUnsigned(HWND dialog, int control);
std::int64_t ReadFrame(HWND dialog, int control);

void ShowUnsigned(HWND dialog, int control, std::uint32_t number);

// Puts the caret behind it, with nothing selected: for an edit whose text is replaced while someone types.
void ReplaceNumber(HWND dialog, int control, std::int64_t number);

bool IsChecked(HWND dialog, int control);
void Check(HWND dialog, int control, bool checked);

// A control that is about to be disabled hands the focus to the next one, so that the keyboard isn't lost.
void Enable(HWND dialog, int control, bool enabled);

// Enables and disables the settings page's controls by their rules. `selected` is null when no segment is selected.
void EnableByRules(HWND dialog, const PageSettings& settings, const PageSegment* selected);
