// The transform's property pages in the platform's frame for pages of any object.
#pragma once

#include "host/transform/HeldTransform.h"

namespace host {

// Shows the pages that the transform names, and returns when the frame is closed. The pages come from where
// PageFactory has them. The calling thread must be a CUserInterface's. Throws HostError with ExitCode::Transform or
// ExitCode::Display.
void ShowPropertyFrame(CHeldTransform& transform);

// False where the platform's frame shows pages but never tells them to apply.
bool PropertyFrameApplies();

} // namespace host
