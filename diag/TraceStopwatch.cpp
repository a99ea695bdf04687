#include "diag/TraceStopwatch.h"

#include "diag/Trace.h"

#include <cstring>

#include <windows.h>

namespace {

// -1 when there is no performance counter.
std::int64_t ReadCounter() {
    LARGE_INTEGER counter = {};
    return QueryPerformanceCounter(&counter) ? counter.QuadPart : -1;
}

// Null for null, or without memory.
char* CopyOnProcessHeap(const char* text) {
    if (!text) {
        return nullptr;
    }
    const std::size_t bytes = std::strlen(text) + 1;
    void* const copy = HeapAlloc(GetProcessHeap(), 0, bytes);
    return copy ? static_cast<char*>(std::memcpy(copy, text, bytes)) : nullptr;
}

} // namespace

TraceStopwatch::TraceStopwatch(const char* name, std::int32_t threshold)
    : m_name(CopyOnProcessHeap(name))
    , m_threshold(threshold) {
    LARGE_INTEGER frequency = {};
    m_frequency = QueryPerformanceFrequency(&frequency) ? frequency.QuadPart : 0;
    Restart();
}

TraceStopwatch::~TraceStopwatch() {
    if (!m_name) {
        return;
    }
    if (const std::int32_t elapsed = Elapsed(); elapsed > m_threshold) {
        char text[16];
        FormatElapsed(elapsed, text, sizeof(text));
        Trace(m_name, text);
    }
    HeapFree(GetProcessHeap(), 0, m_name);
}

void TraceStopwatch::Restart() {
    m_startTick = GetTickCount();
    m_start = ReadCounter();
}

std::int32_t TraceStopwatch::Elapsed() const {
    return ElapsedMilliseconds({m_frequency, m_start, m_accumulated, m_startTick}, ReadCounter(), GetTickCount());
}
