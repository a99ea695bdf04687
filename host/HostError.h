// How the tool fails: one exception that carries the exit code and a text for the user.
#pragma once

#include <stdexcept>
#include <string>

namespace host {

// The tool's exit codes; HelpText.cpp documents them.
enum class ExitCode {
    Ok = 0,
    Usage = 1,
    Input = 2,
    Output = 3,
    Transform = 4,
    Interrupted = 5,
    Registration = 6,
    Display = 7,
};

// `what()` is UTF-8 and names the file, the position where there is one, and what to do.
class HostError : public std::runtime_error {
public:
    HostError(ExitCode code, const std::string& text)
        : std::runtime_error(text)
        , m_code(code) {}

    ExitCode Code() const { return m_code; }

private:
    ExitCode m_code;
};

// The input is cut off or damaged where its frames are; the frames before that place were whole. The text does not say
// what to do: that depends on whether they are to be kept.
class DamagedError : public HostError {
public:
    explicit DamagedError(const std::string& text)
        : HostError(ExitCode::Input, text) {}
};

// The file is whole, but in a format that its reader here does not know; another may.
class UnknownFormatError : public HostError {
public:
    explicit UnknownFormatError(const std::string& text)
        : HostError(ExitCode::Input, text) {}
};

// The output takes no more; what it has taken is whole once it is finished.
class OutputFullError : public HostError {
public:
    explicit OutputFullError(const std::string& text)
        : HostError(ExitCode::Output, text) {}
};

} // namespace host
