#include "host/command/Json.h"

#include <cstdio>

namespace host {

namespace {

template <class Value>
std::string Formatted(const char* format, Value value) {
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

} // namespace

std::string JsonText(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            (out += '\\') += c;
        } else {
            out += static_cast<unsigned char>(c) < 0x20 ? Formatted("\\u%04x", static_cast<unsigned>(c))
                                                        : std::string(1, c);
        }
    }
    return out + "\"";
}

void CJsonObject::Number(std::string_view name, double value) {
    Add(name, Formatted("%.4g", value));
}

} // namespace host
