// What this process sends to a debugger while this lives. One at a time.
#pragma once

#include <string>

#include <windows.h>

class DebuggerTexts {
public:
    DebuggerTexts() { s_text.clear(); }
    DebuggerTexts(const DebuggerTexts&) = delete;
    DebuggerTexts& operator=(const DebuggerTexts&) = delete;
    ~DebuggerTexts() { RemoveVectoredExceptionHandler(m_handler); }

    const std::string& All() const { return s_text; }

private:
    static LONG CALLBACK Keep(EXCEPTION_POINTERS* pointers) {
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode != DBG_PRINTEXCEPTION_C) {
            return EXCEPTION_CONTINUE_SEARCH;
        }
        s_text += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    static inline std::string s_text;
    void* m_handler = AddVectoredExceptionHandler(1, &Keep);
};
