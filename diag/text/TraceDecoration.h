// The text of a trace line: what stands before it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

struct TraceTime {
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
    std::int32_t millisecond = 0;
};

// What a decorator reads; each is called only for lines that need it, on the tracing thread.
struct TraceSources {
    TraceTime (*localTime)();
    void (*restartStopwatch)();
    std::int32_t (*elapsedMilliseconds)(); // since restartStopwatch
    std::int32_t (*handleCount)();         // of the process; -1 when it cannot be read
    std::uint32_t (*threadId)();
};

// A time of day in milliseconds: `base` with `elapsed` milliseconds added. A carry out of the hours takes off one day
// and no more, so that from the second midnight on the sum exceeds a day.
std::uint32_t AddElapsed(const TraceTime& base, std::int32_t elapsed);

// Prefixes lines with what the trace flags ask for. May be used by several threads at a time.
class TraceDecorator {
public:
    explicit constexpr TraceDecorator(const TraceSources& sources)
        : m_sources(sources) {}

    // Writes the line for `text`, terminated and cut to `size` bytes. A text without a leading "\n" stays as it is.
    // Others get their leading line ends as "\r\n" and then the prefix. More than 24 leading line ends end the process.
    void Decorate(std::uint32_t flags, const char* text, char* line, std::size_t size);

private:
    enum class Base : int { None, BeingRead, Known };

    std::uint32_t TimeOfDay();

    TraceSources m_sources;
    std::atomic<Base> m_baseState{Base::None};
    TraceTime m_base;
    std::atomic<std::uint32_t> m_previous{0xFFFFFFFF}; // the last line's time; all bits set: none yet
};
