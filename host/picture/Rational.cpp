#include "host/picture/Rational.h"

#include <charconv>
#include <cmath>
#include <numeric>

namespace host {

namespace {

constexpr double kMinRate = 1.0 / 3600;
constexpr double kMaxRate = 10000;

std::optional<Rational> FromDecimal(double value) {
    if (!(value > 0) || value > kMaxRate) {
        return std::nullopt;
    }
    const double ntsc = std::round(value * 1001 / 1000) * 1000;
    if (value != std::round(value) && std::abs(ntsc / 1001 - value) < 0.006) {
        return UsableRate({static_cast<std::uint32_t>(ntsc), 1001});
    }
    return UsableRate({static_cast<std::uint32_t>(std::llround(value * 1000)), 1000});
}

} // namespace

std::optional<Rational> UsableRate(Rational rate) {
    if (rate.denominator == 0 || rate.Value() < kMinRate || rate.Value() > kMaxRate) {
        return std::nullopt;
    }
    const std::uint32_t common = std::gcd(rate.numerator, rate.denominator);
    return Rational{rate.numerator / common, rate.denominator / common};
}

std::optional<std::uint64_t> ParseWhole(std::string_view text, std::uint64_t limit) {
    std::uint64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end || value > limit) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> ParseDecimal(std::string_view text) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<Rational> ReducedRatio(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t common = std::gcd(a, b);
    if (a == 0 || b == 0 || a / common > UINT32_MAX || b / common > UINT32_MAX) {
        return std::nullopt;
    }
    return Rational{static_cast<std::uint32_t>(a / common), static_cast<std::uint32_t>(b / common)};
}

std::optional<Rational> ParseRate(std::string_view text) {
    const std::size_t mark = text.find_first_of("/:");
    if (mark == std::string_view::npos) {
        const auto value = ParseDecimal(text);
        return value ? FromDecimal(*value) : std::nullopt;
    }
    const auto numerator = ParseWhole(text.substr(0, mark), UINT32_MAX);
    const auto denominator = ParseWhole(text.substr(mark + 1), UINT32_MAX);
    if (!numerator || !denominator) {
        return std::nullopt;
    }
    return UsableRate({static_cast<std::uint32_t>(*numerator), static_cast<std::uint32_t>(*denominator)});
}

} // namespace host
