// The classes that the module registers and creates.
#pragma once

#include <span>

#include <unknwn.h>

// Makes an object and hands out `riid` of it with one reference.
using CreateInstanceFn = HRESULT (*)(IUnknown* outer, REFIID riid, void** ppv);

struct ClassEntry {
    const CLSID* clsid;
    const char* name; // as registered
    CreateInstanceFn create;
};

// In the order of searching and registering. To add a class, add a row.
std::span<const ClassEntry> ClassTable();
