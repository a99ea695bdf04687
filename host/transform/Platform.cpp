#include "host/transform/Platform.h"

#include "host/console/Text.h"

#include <mfapi.h>
#include <objbase.h>

namespace host {

CPlatform::CPlatform() {
    Check(CoInitializeEx(nullptr, COINIT_MULTITHREADED), ExitCode::Transform, "COM cannot be started");
    if (const HRESULT result = MFStartup(MF_VERSION, MFSTARTUP_LITE); FAILED(result)) {
        CoUninitialize();
        Check(result, ExitCode::Transform, "Media Foundation cannot be started");
    }
}

CPlatform::~CPlatform() {
    MFShutdown();
    CoUninitialize();
}

} // namespace host
