// The checks that the verify verb makes, one after another.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace host {

// What there is to check.
struct VerifySubject {
    std::wstring registered; // the file that serves the transform's class; may be empty
    std::wstring beside;     // the file to compare it with; may be empty
};

enum class Verdict { Fine, NotLookedAt, Wrong };

struct Finding {
    Verdict verdict = Verdict::Fine;
    std::string text; // what was seen
    std::string cure; // what to do when it is wrong
};

struct VerifyCheck {
    std::string_view name;
    Finding (*look)(const VerifySubject& subject, std::size_t row); // does not throw for what it finds
    std::size_t row = 0; // of the table that the check goes by, a ClassRow or CategoryRow
};

// In an order in which the first thing that is wrong explains those that follow. COM and Media Foundation must be
// started.
std::span<const VerifyCheck> VerifyChecks();

} // namespace host
