// The one place that defines the identifiers of the control interface and its settings.
#include <initguid.h>

#include "NMFVDeinterlace.h"
#include "NMFVDeinterlaceKeys.h"
