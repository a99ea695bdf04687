// Code that takes bytes or numbers from outside, each behind one function that takes any bytes. A fault ends the
// program: a sanitizer's report, an exception that nobody promised, or a Require that does not hold.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <span>
#include <string>
#include <vector>

using FuzzBytes = std::vector<std::uint8_t>;

struct FuzzTarget {
    const char* name;
    void (*run)(std::span<const std::uint8_t> input);
    std::vector<FuzzBytes> (*seeds)(); // small inputs that reach what mutations would be long in reaching
};

// All of them; each file has its own.
std::vector<FuzzTarget> ClipTargets();
std::vector<FuzzTarget> FrameTargets();
std::vector<FuzzTarget> RuleTargets();

inline std::vector<FuzzTarget> FuzzTargets() {
    std::vector<FuzzTarget> all;
    for (const auto& some : {ClipTargets(), FrameTargets(), RuleTargets()}) {
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

inline void Require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "fuzz: does not hold: %s\n", what);
        std::abort();
    }
}

// Numbers and texts out of the input, from its front; zeros once it is used up.
class FuzzInput {
public:
    explicit FuzzInput(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes) {}

    bool IsEmpty() const { return m_bytes.empty(); }

    template <typename Number>
    Number Any() {
        Number number{};
        const std::size_t size = std::min(sizeof(Number), m_bytes.size());
        if (size) {
            std::memcpy(&number, m_bytes.data(), size);
        }
        m_bytes = m_bytes.subspan(size);
        return number;
    }

    // 0 to limit - 1.
    std::int32_t Below(std::int32_t limit) { return Any<std::uint8_t>() % limit; }
    bool Flag() { return Below(2) != 0; }

    // A number that is often near one of a frame of `size`, often an extreme, else anything.
    std::int32_t Edge(std::int32_t size) {
        constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
        constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
        const std::int32_t extremes[] = {kLeast, kLeast + 1, kMost - 1, kMost};
        const int kind = Below(8);
        return kind == 0   ? Any<std::int32_t>()
               : kind == 1 ? extremes[Below(4)]
                           : Below(std::clamp(size, 0, 250) + 4) - 2;
    }

    // Up to the next 0, or all that is left.
    std::string Text() {
        const auto end = std::find(m_bytes.begin(), m_bytes.end(), 0);
        const std::string text(m_bytes.begin(), end);
        m_bytes = m_bytes.subspan(std::min(text.size() + 1, m_bytes.size()));
        return text;
    }

    std::span<const std::uint8_t> Rest() const { return m_bytes; }

private:
    std::span<const std::uint8_t> m_bytes;
};
