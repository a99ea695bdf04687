// The arithmetic and the text of elapsed time.
#pragma once

#include <cstddef>
#include <cstdint>

// What a stopwatch stores.
struct StopwatchStart {
    std::int64_t frequency = 0;   // counts per second; 0 without a performance counter
    std::int64_t start = -1;      // the counter at the start; -1 when it couldn't be read
    std::int64_t accumulated = 0; // added to every reading. Kept: set by nothing. Test: ElapsedTime.CountsAndTicks
    std::uint32_t startTick = 0;  // the tick count at the start, in milliseconds
};

// Milliseconds since the start, 0x7FFFFFFF at most. Without frequency or start count the tick count is used.
std::int32_t ElapsedMilliseconds(const StopwatchStart& start, std::int64_t counterNow, std::uint32_t tickNow);

// "1.234s" from one second on, else "056ms".
void FormatElapsed(std::int32_t milliseconds, char* text, std::size_t size);
