// The values of options. All throw HostError with ExitCode::Usage for a text that they do not take.
#pragma once

#include "host/command/Options.h"

#include <span>
#include <string>
#include <string_view>

namespace host {

[[noreturn]] void BadValue(std::string_view option, std::string_view value, std::string_view expected);

template <class T>
struct Word {
    std::string_view word;
    T meaning;
};

template <class T>
T PickWord(std::string_view option, std::string_view value, std::span<const Word<T>> words) {
    std::string expected;
    for (const Word<T>& known : words) {
        if (value == known.word) {
            return known.meaning;
        }
        expected += (expected.empty() ? "" : ", ") + std::string(known.word);
    }
    BadValue(option, value, "one of " + expected);
}

// "L,T,R,B" with L < R and T < B.
Area ParseArea(std::string_view option, std::string_view value);
// "P,N,D,on|off"
Pattern ParsePattern(std::string_view option, std::string_view value);
// "START,MODE" and, where wanted, ",P,N,D,on|off"
Segment ParseSegment(std::string_view option, std::string_view value);

} // namespace host
