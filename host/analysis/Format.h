#pragma once

#include <cstdio>
#include <string>

namespace host {

// As snprintf; what is longer than 400 characters is cut off.
template <class... Values>
std::string Format(const char* format, Values... values) {
    char text[400];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

} // namespace host
