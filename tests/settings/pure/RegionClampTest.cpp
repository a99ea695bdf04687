// How edges are limited before they are stored: four rules that differ on purpose, and those of the protected area.
#include "settings/rules/RegionClamp.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

// What each rule reads beside the new value: its own stored edge, the stored opposite edge, the frame's size.
struct EdgeCase {
    const char* edge;
    std::int32_t value;
    std::uint32_t own, opposite;
    std::int32_t size, stored;
};

std::int32_t Clamped(const EdgeCase& c) {
    switch (c.edge[0]) {
    case 'L':
        return ClampRoiLeft(c.value, c.opposite);
    case 'T':
        return ClampRoiTop(c.value, c.own, c.opposite);
    case 'R':
        return ClampRoiRight(c.value, c.opposite, c.size);
    default:
        return ClampRoiBottom(c.value, c.opposite, c.own, c.size);
    }
}

constexpr std::uint32_t kNegative = 0xFFFFFFF0u; // -16, as stored by a client

TEST(RegionClamp, RegionEdges) {
    constexpr EdgeCase kCases[] = {
        {"Left", 100, 0, 100, 1600, 99},
        {"Left", 99, 0, 100, 1600, 99},
        {"Left", -5, 0, 100, 1600, 0},
        {"Left", 5000, 0, 6000, 1600, 5000},            // the width doesn't matter
        {"Left", 0, 0, 0, 1600, -1},                    // no room before the right edge
        {"Left", INT_MAX, 0, kNegative, 1600, INT_MAX}, // unsigned: far to the right
        {"Top", 500, 10, 20, 480, 500},                 // the old top is asked, not the new one
        {"Top", 3, 20, 20, 480, 19},
        {"Top", 3, 19, 20, 480, 3},
        {"Top", -1, 500, 20, 480, 0},
        {"Top", INT_MAX, 0, 1, 480, INT_MAX},
        {"Top", 3, 0, 0, 480, -1},
        {"Top", 3, kNegative, 20, 480, 19},
        {"Right", 2000, 1, 0, 1600, 1600},
        {"Right", 1600, 1, 0, 1600, 1600},
        {"Right", 10, 1, 10, 1600, 11},
        {"Right", 11, 1, 10, 1600, 11},
        {"Right", -1, 1, 10, 1600, -1}, // beyond the left edge unsigned, below the width signed
        {"Right", 5, 1, 0xFFFFFFFFu, 1600, 0},
        {"Bottom", 900, 100, 0, 480, 900}, // the old bottom is asked, not the new one
        {"Bottom", 200, 480, 0, 480, 200},
        {"Bottom", 200, 481, 0, 480, 480},
        {"Bottom", 50, 900, 50, 480, 51},
        {"Bottom", 51, 100, 50, 480, 51},
        {"Bottom", -1, 100, 0, 480, -1},
        {"Bottom", 5, 100, 0xFFFFFFFFu, 480, 0},
        {"Bottom", 200, kNegative, 0, 480, 480},
    };
    for (const EdgeCase& c : kCases) {
        EXPECT_EQ(c.stored, Clamped(c)) << c.edge << " " << c.value << " own " << c.own << " opposite " << c.opposite;
    }
}

TEST(RegionClamp, ProtectedEdges) {
    constexpr struct {
        std::int32_t nearEdge, farEdge, size, storedNear, storedFar;
    } kCases[] = {
        {10, 200, 720, 10, 200},   {10, 2000, 720, 10, 720},    {-7, 200, 720, 0, 200},
        {200, 200, 720, 199, 200}, {300, 200, 720, 199, 200},   {1000, 2000, 720, 719, 720},
        {0, 0, 720, -1, 0},        {5, -3, 720, -4, -3},        {5, INT_MIN, 720, INT_MAX, INT_MIN},
        {-9, 1, 720, 0, 1},        {INT_MAX, INT_MAX, 1, 0, 1}, {0, 9, INT_MIN, INT_MAX, INT_MIN},
    };
    for (const auto& c : kCases) {
        const ProtectedEdges got = ClampProtectedEdges(c.nearEdge, c.farEdge, c.size);
        EXPECT_EQ(c.storedNear, got.nearEdge) << c.nearEdge << " to " << c.farEdge << " in " << c.size;
        EXPECT_EQ(c.storedFar, got.farEdge) << c.nearEdge << " to " << c.farEdge << " in " << c.size;
    }
}

} // namespace
