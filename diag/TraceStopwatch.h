// Measures elapsed time, and traces it when it has a name.
#pragma once

#include "diag/text/ElapsedTime.h"

// Starts at construction. Not thread-safe. Stands inside the writer that modules share, so its layout is fixed.
class TraceStopwatch {
public:
    // A stopwatch with a name traces its running time when it is destroyed, if that exceeds the threshold in
    // milliseconds. The name is the format of that line and holds one %s for the time; it is copied.
    explicit TraceStopwatch(const char* name = nullptr, std::int32_t threshold = -1);
    TraceStopwatch(const TraceStopwatch&) = delete;
    TraceStopwatch& operator=(const TraceStopwatch&) = delete;
    ~TraceStopwatch();

    void Restart();

    // Milliseconds since construction or the last restart, 0x7FFFFFFF at most.
    std::int32_t Elapsed() const;

private:
    char* m_name = nullptr; // on the process heap
    std::int64_t m_frequency = 0;
    std::int64_t m_start = -1;
    std::int64_t m_accumulated = 0;
    std::uint32_t m_startTick = 0;
    std::int32_t m_threshold;
};
