#include "engine/detector/InterlaceDetector.h"
#include "host/analysis/Sensitivity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace host {
namespace {

std::vector<FrameScore> ScoresOf(std::initializer_list<double> ratios) {
    std::vector<FrameScore> scores;
    for (const double ratio : ratios) {
        scores.push_back({static_cast<std::uint32_t>(ratio * 100000 + 0.5), 100000});
    }
    return scores;
}

TEST(Sensitivity, LiesInTheMiddleOfTheGap) {
    struct Case {
        std::initializer_list<double> ratios;
        double sensitivity;
        std::uint64_t below, above;
    };
    const Case cases[] = {
        {{0.02, 0.5, 0.02, 0.5}, 0.1, 2, 2}, {{0.03, 0.01, 1.4, 0.49, 0.6}, 0.12, 2, 3}, // camera: clean, then panned
        {{0, 0, 0.3}, 0.039, 2, 1},                                                      // nothing counts as 0.005
        {{0.5, 15, 0.6, 15.8}, 3, 2, 2},     {{7, 15.9, 1.5}, 3.2, 1, 2},
    };
    for (const Case& c : cases) {
        const auto found = FindSeparation(ScoresOf(c.ratios));
        ASSERT_TRUE(found) << *c.ratios.begin();
        EXPECT_NEAR(found->sensitivity, c.sensitivity, 1e-9);
        EXPECT_EQ(found->below, c.below);
        EXPECT_EQ(found->above, c.above);
    }
}

TEST(Sensitivity, HonestWhereThereAreNoTwoGroups) {
    for (const auto& ratios : {std::initializer_list<double>{},
                               {0.5},
                               {0.1, 0.2, 0.4, 0.8},
                               {0, 0, 0.001, 0.004},
                               {9, 9.5, 10},
                               {2, 2, 2}}) {
        const auto scores = ScoresOf(ratios);
        EXPECT_FALSE(FindSeparation(scores)) << scores.size();
        EXPECT_EQ(DescribeScores(scores, 1, 0).find("--sensitivity"), std::string::npos);
    }
}

// Whatever is recommended does what is said of it, by the detector's own rule.
TEST(Sensitivity, TheDetectorAgrees) {
    const unsigned seed = 1711;
    std::mt19937 random(seed);
    int found = 0;
    for (int round = 0; round < 500; ++round) {
        const std::int32_t width = 16 + static_cast<std::int32_t>(random() % 1900);
        const std::int32_t height = 16 + static_cast<std::int32_t>(random() % 1060);
        const std::uint32_t normal = InterlaceThreshold(width, height, 1.0);
        std::vector<FrameScore> scores(1 + random() % 20);
        for (FrameScore& score : scores) {
            const std::uint32_t most = random() % 2 ? normal * 4 : normal / 20 + 1;
            score = {static_cast<std::uint32_t>(random() % most), normal};
        }
        const auto separation = FindSeparation(scores);
        if (!separation) {
            continue;
        }
        ++found;
        const std::uint32_t threshold = InterlaceThreshold(width, height, separation->sensitivity);
        const auto above = std::ranges::count_if(scores, [&](const auto& score) { return score.count > threshold; });
        ASSERT_EQ(static_cast<std::uint64_t>(above), separation->above) << "seed " << seed << " round " << round;
        ASSERT_TRUE(above > 0 && separation->below > 0);
        ASSERT_TRUE(separation->sensitivity >= 0.001 && separation->sensitivity <= 8.0);
    }
    EXPECT_GT(found, 100);
}

} // namespace
} // namespace host
