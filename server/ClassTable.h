// The classes that the module creates.
#pragma once

#include <span>

#include <unknwn.h>

// Makes an object and hands out `riid` of it with one reference.
using CreateInstanceFn = HRESULT (*)(IUnknown* outer, REFIID riid, void** ppv);

struct ClassEntry {
    const CLSID* clsid;
    CreateInstanceFn create;
};

// In the order of searching. A row more is a class more.
std::span<const ClassEntry> ClassTable();
