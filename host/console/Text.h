// UTF-8 inside, UTF-16 at the platform, and what the platform says of its failures.
#pragma once

#include "host/HostError.h"

#include <string>
#include <string_view>
#include <windows.h>

namespace host {

std::wstring ToWide(std::string_view utf8);
std::string ToUtf8(std::wstring_view wide);

// The text in one line: line ends and tabs are blanks, other control characters '?'. For what comes from files and
// other programs, and might have a terminal do as it says.
std::string Printable(std::string_view text);

// "Access is denied. (error 5)", "Access is denied. (E_ACCESSDENIED, 0x80070005)"
std::string ErrorText(DWORD error);
std::string ResultText(HRESULT result);

// Throws `what`, a colon and the result's text unless the result is a success.
void Check(HRESULT result, ExitCode code, const std::string& what);

} // namespace host
