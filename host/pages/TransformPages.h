// Which property pages the transform has, and what makes them.
#pragma once

#include "host/transform/TransformModule.h"

#include <vector>

namespace host {

// The class identifiers of the transform's pages, in their order. Throws HostError with ExitCode::Transform.
std::vector<CLSID> PagesOf(IMFTransform& transform);

// The transform's DLL makes its pages when it was loaded as a file, registered or not; else the registered one does.
// Throws HostError with ExitCode::Transform.
Microsoft::WRL::ComPtr<IClassFactory> PageFactory(const CTransformModule& module, const CLSID& id);

} // namespace host
