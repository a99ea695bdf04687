#include "diag/text/ElapsedTime.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

std::int64_t Milliseconds(const StopwatchStart& start, std::int64_t counterNow, std::uint32_t tickNow) {
    if (start.frequency <= 0 || start.start == -1) {
        // The tick count wraps after 49 days, and the difference with it.
        return static_cast<std::int64_t>(tickNow - start.startTick) + start.accumulated;
    }
    const std::int64_t counts = counterNow - start.start + start.accumulated;
    // In two steps: where the counter counts processor cycles, counts times 1000 overflow 64 bits within weeks.
    const std::int64_t seconds = std::min(counts / start.frequency, kMost);
    return seconds * 1000 + counts % start.frequency * 1000 / start.frequency;
}

} // namespace

std::int32_t ElapsedMilliseconds(const StopwatchStart& start, std::int64_t counterNow, std::uint32_t tickNow) {
    return static_cast<std::int32_t>(std::min(Milliseconds(start, counterNow, tickNow), kMost));
}

void FormatElapsed(std::int32_t milliseconds, char* text, std::size_t size) {
    if (milliseconds >= 1000) {
        std::snprintf(text, size, "%d.%03ds", milliseconds / 1000, milliseconds % 1000);
    } else {
        std::snprintf(text, size, "%03dms", milliseconds);
    }
}
