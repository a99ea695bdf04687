// The dialog messages that the settings page and the ROI page answer alike.
#pragma once

#include "ui/pages/HoverText.h"

// Hover help in the description line, the line's colours, and F1. True when `result` is the dialog procedure's answer.
bool AnswerPageMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam, const char* helpTopic,
                       CHoverText* hover, INT_PTR* result);
