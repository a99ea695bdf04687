#include "host/console/Console.h"

#include "host/command/ProgressText.h"
#include "host/files/Files.h"
#include "host/console/Text.h"

#include <string>

namespace host {

namespace {

constexpr auto kInterval = std::chrono::milliseconds(250);
constexpr auto kLineInterval = std::chrono::seconds(10);
constexpr std::size_t kLineWidth = 70;

bool IsTerminal(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

bool WriteToTerminal(HANDLE handle, std::string_view text) {
    if (!IsTerminal(handle)) {
        return false;
    }
    const std::wstring wide = ToWide(text);
    DWORD written = 0;
    return WriteConsoleW(handle, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr) != 0;
}

} // namespace

void Say(std::string_view text) {
    const HANDLE handle = GetStdHandle(STD_ERROR_HANDLE);
    if (!WriteToTerminal(handle, text)) {
        DWORD written = 0;
        WriteFile(handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    }
}

void Print(std::string_view text) {
    if (!WriteToTerminal(GetStdHandle(STD_OUTPUT_HANDLE), text)) {
        static const std::unique_ptr<IOutput> output = OpenOutput("-", false); // one, as it counts the bytes
        output->Write(text.data(), text.size());
    }
}

CProgressLine::CProgressLine(bool quiet, std::optional<std::uint64_t> total)
    : m_shown(!quiet)
    , m_terminal(IsTerminal(GetStdHandle(STD_ERROR_HANDLE)))
    , m_total(total)
    , m_next(m_terminal ? m_start : m_start + kLineInterval) {}

CProgressLine::~CProgressLine() {
    Clear();
}

void CProgressLine::Clear() {
    if (m_dirty) {
        host::Say("\r" + std::string(kLineWidth, ' ') + "\r");
        m_dirty = false;
    }
}

void CProgressLine::Say(std::string_view text) {
    if (!text.empty()) {
        Clear();
        host::Say(text);
    }
}

void CProgressLine::Update(std::uint64_t frames) {
    if (!m_shown || Clock::now() < m_next) {
        return;
    }
    std::string line = ProgressText(frames, m_total, Seconds());
    if (!m_terminal) {
        m_next = Clock::now() + kLineInterval;
        host::Say(line + "\n");
        return;
    }
    m_next = Clock::now() + kInterval;
    line.resize(kLineWidth, ' ');
    host::Say("\r" + line);
    m_dirty = true;
}

double CProgressLine::Seconds() const {
    return std::chrono::duration<double>(Clock::now() - m_start).count();
}

} // namespace host
