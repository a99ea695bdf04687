// Text for the user.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>
#include <windows.h>

namespace host {

// Writes UTF-8 text to standard error; failures are ignored, there is nobody left to tell.
void Say(std::string_view text);
// Writes UTF-8 text to standard output. Throws HostError with ExitCode::Output.
void Print(std::string_view text);

// One line on standard error that is written over as the work goes on; where that is no terminal, a line every ten
// seconds.
class CProgressLine {
public:
    CProgressLine(bool quiet, std::optional<std::uint64_t> total);
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;
    ~CProgressLine();

    void Update(std::uint64_t frames);
    void Clear();
    // Other text on standard error, for which the line makes room; nothing for none.
    void Say(std::string_view text);
    double Seconds() const;

private:
    using Clock = std::chrono::steady_clock;

    bool m_shown;
    bool m_terminal;
    bool m_dirty = false;
    std::optional<std::uint64_t> m_total;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_next;
};

} // namespace host
