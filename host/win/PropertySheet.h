// The transform's property pages in the platform's property sheet.
#pragma once

#include "host/win/HeldTransform.h"

namespace host {

// Shows the pages that the transform names, and returns when the sheet is closed. The pages come from the transform's
// own DLL when it was loaded as a file, else from the registry. The calling thread must be a CUserInterface's. When the
// run is interrupted the sheet closes as by Cancel. Throws HostError with
// ExitCode::Transform or ExitCode::Display.
void ShowPropertySheet(CHeldTransform& transform);

} // namespace host
