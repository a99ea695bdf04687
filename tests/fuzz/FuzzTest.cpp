// Without a fuzzer: every target's seeds, and some thousand mutations of them. NMFV_TEST_SEED gives others.
#include "tests/fuzz/Fuzz.h"
#include "tests/support/RandomBytes.h"
#include "tests/support/Threads.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const FuzzTarget& target, std::ostream* out) {
    *out << target.name;
}

namespace {

constexpr int kMutations = 10000, kThreads = 2; // which share only what the code keeps for all

// Bytes changed, cut out, doubled or taken from another seed.
void Mutate(FuzzBytes& bytes, const std::vector<FuzzBytes>& seeds, RandomBytes& random) {
    const auto place = [&](auto& in) { return in.begin() + random.Below(std::int32_t(in.size()) + 1); };
    for (int change = 1 + random.Below(4); change > 0; --change) {
        const auto at = place(bytes);
        const auto end = at + std::min<std::ptrdiff_t>(random.Below(9), bytes.end() - at);
        const FuzzBytes& other = seeds[std::size_t(random.Below(std::int32_t(seeds.size())))];
        const auto from = place(other);
        const FuzzBytes some(from, from + std::min<std::ptrdiff_t>(random.Below(40), other.end() - from));
        switch (random.Below(4)) {
        case 0:
            bytes.erase(at, end);
            break;
        case 1:
            bytes.insert(at, some.begin(), some.end());
            break;
        default:
            std::for_each(at, end, [&](std::uint8_t& byte) {
                constexpr std::uint8_t kOften[] = {0, 1, 0x7F, 0x80, 0xFF};
                byte = random.Below(2) ? kOften[random.Below(5)] : random.Byte();
            });
        }
    }
}

class Fuzz : public testing::TestWithParam<FuzzTarget> {};

TEST_P(Fuzz, SeedsAndMutations) {
    const std::vector<FuzzBytes> seeds = GetParam().seeds();
    for (const FuzzBytes& seed : seeds) {
        GetParam().run(seed);
    }
    InThreads(kThreads, [&](int thread) {
        RandomBytes random(TestSeed() + static_cast<std::uint32_t>(thread));
        for (int turn = 0; turn < kMutations / kThreads; ++turn) {
            FuzzBytes input = seeds[std::size_t(turn) % seeds.size()];
            Mutate(input, seeds, random);
            GetParam().run(FuzzBytes(input)); // of no more capacity than it has bytes
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Targets, Fuzz, testing::ValuesIn(FuzzTargets()),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
