#include "diag/text/TraceDecoration.h"

#include "diag/RangeCheck.h"
#include "diag/Trace.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

constexpr std::uint32_t kNoTime = 0xFFFFFFFF;
constexpr std::uint32_t kMillisecondsOfDay = 86'400'000;
constexpr std::int64_t kPause = 100; // a longer one shows as an empty line

// The text before a line.
class Prefix {
public:
    const char* Text() const { return m_text; }

    void Restart() {
        m_length = 0;
        m_text[0] = 0;
    }

    void AddLineEnd(const char* characters) {
        const std::size_t count = std::strlen(characters);
        if (count >= sizeof(m_text) - m_length) {
            FailRangeCheck();
        }
        std::memcpy(m_text + m_length, characters, count + 1);
        m_length += count;
    }

    // Cut where the area ends.
    void Add(const char* format, ...) {
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(m_text + m_length, sizeof(m_text) - m_length, format, arguments);
        va_end(arguments);
        m_length += std::strlen(m_text + m_length);
    }

private:
    char m_text[50] = "";
    std::size_t m_length = 0;
};

std::uint32_t Total(const TraceTime& time) {
    const std::int64_t seconds = (std::int64_t{time.hour} * 60 + time.minute) * 60 + time.second;
    return static_cast<std::uint32_t>(seconds * 1000 + time.millisecond);
}

void AddTime(Prefix& prefix, std::uint32_t total) {
    const auto ms = static_cast<int>(total % 1000);
    const auto second = static_cast<int>(total / 1000 % 60);
    const auto minute = static_cast<int>(total / 60'000 % 60);
    const auto hour = static_cast<int>(total / 3'600'000);
    if (total > kMillisecondsOfDay) {
        // Kept: a process that has run past two midnights shows days. Test: Decoration.TimeOfDay.
        prefix.Add("+%dd %02d:%02d:%02d.%03d: ", hour / 24, hour % 24, minute, second, ms);
    } else {
        prefix.Add("%02d:%02d:%02d.%03d: ", hour, minute, second, ms);
    }
}

} // namespace

std::uint32_t AddElapsed(const TraceTime& base, std::int32_t elapsed) {
    TraceTime time = base;
    const std::int64_t ms = std::int64_t{base.millisecond} + elapsed;
    time.millisecond = static_cast<std::int32_t>(ms % 1000);
    time.second += static_cast<std::int32_t>(ms / 1000);
    time.minute += time.second / 60;
    time.second %= 60;
    time.hour += time.minute / 60;
    time.minute %= 60;
    if (time.hour > 23) {
        time.hour -= 24;
    }
    return Total(time);
}

// No thread waits for the one that reads the base time: until it is known, the local time itself is shown.
std::uint32_t TraceDecorator::TimeOfDay() {
    if (m_baseState.load(std::memory_order_acquire) == Base::Known) {
        return AddElapsed(m_base, m_sources.elapsedMilliseconds());
    }
    const TraceTime now = m_sources.localTime();
    Base expected = Base::None;
    if (m_baseState.compare_exchange_strong(expected, Base::BeingRead)) {
        m_sources.restartStopwatch();
        m_base = now;
        m_baseState.store(Base::Known, std::memory_order_release);
    }
    return Total(now);
}

void TraceDecorator::Decorate(std::uint32_t flags, const char* text, char* line, std::size_t size) {
    if (*text != '\n') {
        std::snprintf(line, size, "%s", text);
        return;
    }
    Prefix prefix;
    for (; *text == '\n'; ++text) {
        prefix.AddLineEnd("\r\n");
    }
    if (flags & kTraceTime) {
        const std::uint32_t total = TimeOfDay();
        const std::uint32_t previous = m_previous.exchange(total);
        if (previous != kNoTime && std::int64_t{total} - previous > kPause) {
            prefix.Add("\n");
        }
        AddTime(prefix, total);
    }
    if (flags & kTraceHandles) {
        // Kept: the count replaces line ends and time. Test: Decoration.Prefixes.
        prefix.Restart();
        prefix.Add("%4d ", static_cast<int>(m_sources.handleCount()));
    }
    if (flags & kTraceThread) {
        prefix.Add("%08x: ", static_cast<unsigned>(m_sources.threadId()));
    }
    std::snprintf(line, size, "%s%s", prefix.Text(), text);
}
