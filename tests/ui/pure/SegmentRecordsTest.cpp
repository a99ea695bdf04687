// The settings page's list of segments against a plain vector.
#include "ui/rules/SegmentRecords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

PageSegment Marked(std::uint32_t mark) {
    PageSegment segment;
    segment.segmentData = mark;
    return segment;
}

// What the list holds, or nothing when its indices have gaps.
std::vector<std::uint32_t> Marks(const PageSegmentList& list) {
    std::vector<std::uint32_t> marks;
    for (const PageSegment* segment = list.First(); segment; segment = segment->next) {
        if (segment->index != static_cast<std::int32_t>(marks.size())) {
            return {};
        }
        marks.push_back(segment->segmentData);
    }
    return marks;
}

TEST(SegmentRecords, BehaveLikeAVector) {
    PageSegmentList list;
    std::vector<std::uint32_t> model;
    std::mt19937 random(20261121);
    for (std::uint32_t step = 1; step <= 5000; ++step) {
        const auto index = static_cast<std::int32_t>(random() % 24) - 2;
        const bool inside = index >= 0 && static_cast<std::size_t>(index) < model.size();
        switch (random() % 5) {
        case 0:
        case 1:
            ASSERT_TRUE(list.Insert(index, Marked(step)));
            model.insert(inside ? model.begin() + index : model.end(), step);
            break;
        case 2:
        case 3:
            ASSERT_EQ(inside, list.Remove(index));
            if (inside) {
                model.erase(model.begin() + index);
            }
            break;
        default: {
            const bool pair = inside && static_cast<std::size_t>(index) + 1 < model.size();
            ASSERT_EQ(pair, list.ExchangeWithNext(index));
            if (pair) {
                std::swap(model[index], model[index + 1]);
            }
        }
        }
        ASSERT_EQ(model, Marks(list)) << "step " << step;
        ASSERT_EQ(model.size(), static_cast<std::size_t>(list.Count()));
    }
}

} // namespace
