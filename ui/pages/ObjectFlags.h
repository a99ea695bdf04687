// The object's booleans.
#pragma once

#include "com/AutomationBool.h"

#include "NMFVDeinterlace.h"

using FlagGetter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(VARIANT_BOOL*);
using FlagSetter = HRESULT (STDMETHODCALLTYPE INMFVDeinterlace::*)(VARIANT_BOOL);

// Some of the object's booleans are 1 when true. One that the object does not report stays as it was.
inline void ReadFlag(INMFVDeinterlace* control, FlagGetter get, bool* flag) {
    VARIANT_BOOL value = AutomationBool(*flag);
    (control->*get)(&value);
    *flag = value != VARIANT_FALSE;
}
