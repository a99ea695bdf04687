// The transform's property pages in the platform's property sheet.
#pragma once

#include "host/transform/HeldTransform.h"

namespace host {

// Shows the pages that the transform names, and returns when the sheet is closed. The pages come from where
// PageFactory has them. The calling thread must be a CUserInterface's. Throws HostError with ExitCode::Transform or
// ExitCode::Display.
void ShowPropertySheet(CHeldTransform& transform);

} // namespace host
