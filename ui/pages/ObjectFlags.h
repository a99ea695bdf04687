// The object's booleans.
#pragma once

#include "NMFVDeinterlace.h"

using FlagGetter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(VARIANT_BOOL*);
using FlagSetter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(VARIANT_BOOL);

constexpr VARIANT_BOOL AutomationBool(bool value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

// Some of the object's booleans are 1 when true. One that the object doesn't tell stays as it was.
inline void ReadFlag(INMFVDeinterlace* control, FlagGetter get, bool* flag) {
    VARIANT_BOOL value = AutomationBool(*flag);
    (control->*get)(&value);
    *flag = value != VARIANT_FALSE;
}
