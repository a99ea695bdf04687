// The settings page's copy of the settings, from the object and to it.
#pragma once

#include "ui/rules/PageSettings.h"

#include "NMFVDeinterlace.h"

// Reads everything; what the object does not report stays as it was. Of each segment's two start points the one that
// the object's time format names counts, and the other is converted from it, so that both forms of an entry agree.
// E_OUTOFMEMORY without memory for a segment: the segments are then as they were.
HRESULT ReadSettings(INMFVDeinterlace* control, PageSettings* settings);

// Writes everything and replaces the object's segments. What the object refuses is skipped.
void WriteSettings(INMFVDeinterlace* control, const PageSettings& settings);
