// The pages' calls that open windows and libraries of other programs, in one place so that tests can replace them.
#pragma once

#include <windows.h>
#include <shellapi.h>

struct ShellCalls {
    decltype(&ShellExecuteA) execute;
    decltype(&MessageBoxA) messageBox;
    decltype(&LoadLibraryExA) loadLibrary;
    decltype(&GetProcAddress) getProcAddress;
};

extern ShellCalls g_Shell;

// Opens an address with the program that is registered for it; false when the shell refuses.
bool OpenAddress(const char* address);
