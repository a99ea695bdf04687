// What a clip's fields are, from how they fit each other over time.
#pragma once

#include "host/analysis/FieldMeter.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace host {

enum class Fields { Still, Progressive, TopFirst, BottomFirst, Film };

enum class Verdict { Progressive, TopFirst, BottomFirst, Telecined, Mixed, Undecided };

struct FieldOrder {
    Verdict verdict = Verdict::Undecided;
    double confidence = 0;      // 0 to 1; 0 for Undecided
    std::vector<Fields> frames; // one for each reading; Still where too little moved to tell
    std::uint64_t moving = 0;   // frames that are not Still

    // Which field of a frame is the earlier one, where any frame told; progressive frames tell nothing.
    bool BottomComesFirst() const;
    std::uint64_t Count(Fields fields) const;
};

// Looks at all readings of a clip, in their order.
FieldOrder FindFieldOrder(std::span<const FieldReading> readings);

// "progressive", "top-field-first", "bottom-field-first", "telecined", "mixed", "undecided"
std::string_view NameOf(Verdict verdict);

// Whether the frame has combs where it moves.
constexpr bool HasCombs(Fields fields) {
    return fields == Fields::TopFirst || fields == Fields::BottomFirst || fields == Fields::Film;
}

} // namespace host
