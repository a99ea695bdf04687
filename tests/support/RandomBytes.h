// Random test data that is the same on every platform.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <span>

// NMFV_TEST_SEED in the environment, or a fixed number.
inline std::uint32_t TestSeed() {
    const char* chosen = std::getenv("NMFV_TEST_SEED");
    return chosen ? static_cast<std::uint32_t>(std::strtoul(chosen, nullptr, 10)) : 20261121u;
}

class RandomBytes {
public:
    explicit RandomBytes(std::uint32_t seed)
        : m_engine(seed) {}

    std::uint32_t Any() { return static_cast<std::uint32_t>(m_engine()); }

    // 0 to limit - 1.
    std::int32_t Below(std::int32_t limit) {
        return static_cast<std::int32_t>(Any() % static_cast<std::uint32_t>(limit));
    }

    std::uint8_t Byte() { return static_cast<std::uint8_t>(m_engine() >> 11); }

    void Fill(std::span<std::uint8_t> bytes) {
        std::generate(bytes.begin(), bytes.end(), [this] { return Byte(); });
    }

private:
    std::mt19937 m_engine;
};
