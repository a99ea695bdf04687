// Frame rates and aspect ratios as two whole numbers.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

struct Rational {
    std::uint32_t numerator = 0;
    std::uint32_t denominator = 1;

    double Value() const { return static_cast<double>(numerator) / denominator; }
    bool operator==(const Rational&) const = default;
};

// A frame rate in its lowest terms; nothing unless it lies between one frame an hour and 10000 frames a second. Within
// these limits the time of a frame fits whatever a file says it in.
std::optional<Rational> UsableRate(Rational rate);

// a / b in its lowest terms; nothing when either is 0 or does not fit.
std::optional<Rational> ReducedRatio(std::uint64_t a, std::uint64_t b);

// "25", "29.97", "30000/1001" or "30000:1001"; nothing unless the rate is usable. The decimals that stand for NTSC
// rates (23.976, 29.97, 59.94, ...) become their exact fraction over 1001.
std::optional<Rational> ParseRate(std::string_view text);

// A whole number of decimal digits only, at most `limit`.
std::optional<std::uint64_t> ParseWhole(std::string_view text, std::uint64_t limit);

// A decimal number such as "0.25"; nothing when anything else stands in the text, or when it is not finite.
std::optional<double> ParseDecimal(std::string_view text);

} // namespace host
