// Automation's own boolean.
#pragma once

#include <wtypes.h>

// -1 for true.
constexpr VARIANT_BOOL AutomationBool(bool value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}
