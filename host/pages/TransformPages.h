// The transform's property pages: which there are, what makes them, and the two windows that show them.
#pragma once

#include "host/transform/HeldTransform.h"

#include <vector>

namespace host {

// The class identifiers of the transform's pages, in their order. Throws HostError with ExitCode::Transform.
std::vector<CLSID> PagesOf(IMFTransform& transform);

// The transform's DLL makes its pages when it was loaded as a file, registered or not; else the registered one does.
// Throws HostError with ExitCode::Transform.
Microsoft::WRL::ComPtr<IClassFactory> PageFactory(const CTransformModule& module, const CLSID& id);

// Both show the pages that the transform names, and return when the window is closed: in the platform's frame for pages
// of any object, and in its property sheet. The calling thread must be a CUserInterface's. Both throw HostError with
// ExitCode::Transform or ExitCode::Display.
void ShowPropertyFrame(CHeldTransform& transform);
void ShowPropertySheet(CHeldTransform& transform);

// False where the platform's frame shows pages but never tells them to apply.
bool PropertyFrameApplies();

} // namespace host
