// Calls that fail on demand: those that a module makes of the platform by its import table, allocations among them, and
// those of the methods of single objects. One at a time.
#pragma once

#include <string>

#include <unknwn.h>
#include <windows.h>

// What a failing method, and a failing function that returns an HRESULT, returns. Other functions return 0, or
// ERROR_OUTOFMEMORY where that is how they fail.
constexpr HRESULT kInjected = static_cast<HRESULT>(0x87FF0001);

class Faults {
public:
    // Until this goes the module's imports are counted. Message boxes and the shell stay closed.
    explicit Faults(HMODULE module);
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;
    ~Faults();

    // Counts an object's methods too, as long as it lives: `methods` are in its table, those of IUnknown included.
    static void Watch(IUnknown* object, int methods);

    // Lets this thread's nth call from now on fail.
    static void Arm(int nth);
    // No call fails any more. False when none has failed.
    static bool Disarm();
    // The call that failed.
    static std::string Failed();

    // Blocks that the module has allocated and not given back, by its C run-time, and open registry keys.
    static int Held();
};
