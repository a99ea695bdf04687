// The base of every COM object of the module, and the count that tells whether the module may be unloaded.
#pragma once

#include <windows.h>

namespace MediaFoundationSamples {

// Objects alive, plus locks that class factories hold. Changed by interlocked operations only.
inline volatile LONG g_ObjectCount = 0;

class BaseObject {
public:
    BaseObject() { InterlockedIncrement(&g_ObjectCount); }
    BaseObject(const BaseObject&) = delete;
    BaseObject& operator=(const BaseObject&) = delete;
    virtual ~BaseObject() { InterlockedDecrement(&g_ObjectCount); }
};

} // namespace MediaFoundationSamples
