// Checks of COM objects that name the caller's line.
#pragma once

#include "com/ComRef.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <ostream>
#include <source_location>

#include <unknwn.h>

// A result code that prints itself in hexadecimal.
struct Hr {
    HRESULT code;
    bool operator==(const Hr&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Hr& hr) {
        return out << "0x" << std::hex << std::setw(8) << std::setfill('0') << static_cast<unsigned>(hr.code);
    }
};

#define EXPECT_HR(expected, call) EXPECT_EQ(Hr{static_cast<HRESULT>(expected)}, Hr{(call)})
#define ASSERT_HR(expected, call) ASSERT_EQ(Hr{static_cast<HRESULT>(expected)}, Hr{(call)})

inline ULONG ReferencesOf(IUnknown* object) {
    object->AddRef();
    return object->Release();
}

inline void ExpectRefs(IUnknown* object, ULONG expected, std::source_location at = std::source_location::current()) {
    EXPECT_EQ(expected, ReferencesOf(object)) << "called from line " << at.line();
}

inline void ExpectInterface(IUnknown* object, REFIID riid, HRESULT expected,
                            std::source_location at = std::source_location::current()) {
    CComRef<IUnknown> found;
    EXPECT_EQ(Hr{expected}, Hr{object->QueryInterface(riid, found.PutVoid())}) << "called from line " << at.line();
    EXPECT_EQ(SUCCEEDED(expected), static_cast<bool>(found)) << "called from line " << at.line();
}
