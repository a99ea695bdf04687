#include "host/console/Text.h"

#include "diag/text/ResultCodes.h"

#include <cstdint>
#include <cstdio>

namespace host {

namespace {

std::string SystemText(DWORD code) {
    wchar_t text[256];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                        text, ARRAYSIZE(text), nullptr);
    std::string out = ToUtf8({text, length});
    while (!out.empty() && (out.back() == '\n' || out.back() == '\r' || out.back() == ' ')) {
        out.pop_back();
    }
    return out.empty() ? out : out + " ";
}

} // namespace

std::wstring ToWide(std::string_view utf8) {
    const int bytes = static_cast<int>(utf8.size());
    std::wstring out(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0)), 0);
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, out.data(), static_cast<int>(out.size()));
    return out;
}

std::string ToUtf8(std::wstring_view wide) {
    const int units = static_cast<int>(wide.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(bytes), 0);
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, out.data(), bytes, nullptr, nullptr);
    return out;
}

std::string Printable(std::string_view text) {
    std::wstring wide = ToWide(text);
    for (wchar_t& c : wide) {
        if (c == L'\t' || c == L'\n' || c == L'\r') {
            c = L' ';
        } else if (c < L' ' || (c >= 0x7F && c < 0xA0)) {
            c = L'?';
        }
    }
    return ToUtf8(wide);
}

std::string ErrorText(DWORD error) {
    return SystemText(error) + "(error " + std::to_string(error) + ")";
}

std::string ResultText(HRESULT result) {
    const auto code = static_cast<std::uint32_t>(result);
    char number[16];
    std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned>(code));
    // A code without a name comes back as its number.
    const std::string name = ResultCodeLookup(code);
    return SystemText(code) + "(" + (name == number ? "" : name + ", ") + number + ")";
}

void Check(HRESULT result, ExitCode code, const std::string& what) {
    if (FAILED(result)) {
        throw HostError(code, what + ": " + ResultText(result));
    }
}

} // namespace host
