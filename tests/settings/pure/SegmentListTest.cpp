// The segment list against a vector.
#include "settings/rules/SegmentList.h"
#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace {

// Each contents is a number of its own, so a segment that went to another place shows.
void ExpectEqual(const std::vector<std::uint32_t>& model, const SegmentList& list) {
    const auto size = static_cast<std::int32_t>(model.size());
    ASSERT_EQ(size, list.Count());
    const SegmentRecord* record = list.Find(0);
    for (std::int32_t i = 0; i < size; ++i, record = record->next) {
        ASSERT_TRUE(record) << i;
        ASSERT_EQ(i, record->index);
        ASSERT_EQ(model[static_cast<std::size_t>(i)], record->segmentData) << i;
        ASSERT_EQ(record, list.Find(i));
    }
    ASSERT_FALSE(record);
    for (const std::int32_t outside : {-1, size, size + 1, INT_MIN, INT_MAX}) {
        ASSERT_FALSE(list.Find(outside)) << outside;
    }
}

TEST(SegmentList, FollowsAVector) {
    RandomBytes random(TestSeed());
    for (int round = 0; round < 40; ++round) {
        SegmentList list;
        std::vector<std::uint32_t> model;
        std::uint32_t appends = 0;
        const std::int32_t limit = 1 + random.Below(60);
        for (std::uint32_t turn = 1; turn <= 500; ++turn) {
            SCOPED_TRACE(testing::Message() << "round " << round << " turn " << turn << " seed=" << TestSeed());
            const auto size = static_cast<std::int32_t>(model.size());
            const std::int32_t index = random.Edge(size);
            const bool within = index >= 0 && index < size;
            if (random.Below(limit) + random.Below(2) > size) {
                SegmentRecord record;
                record.index = 4711; // the list gives its own
                record.segmentData = turn;
                ASSERT_TRUE(list.Add(index, record));
                appends += within ? 0 : 1;
                model.insert(within ? model.begin() + index : model.end(), turn);
            } else {
                ASSERT_EQ(within, list.Remove(index)) << index << " of " << size;
                model.erase(model.begin() + (within ? index : 0), model.begin() + (within ? index + 1 : 0));
            }
            ASSERT_NO_FATAL_FAILURE(ExpectEqual(model, list));
            ASSERT_EQ(appends, list.Appends());
        }
    }
}

TEST(SegmentList, LinksAreItsOwn) {
    SegmentRecord stray;
    SegmentRecord contents;
    contents.next = &stray;
    SegmentList list;
    ASSERT_TRUE(list.Add(0, contents));
    ASSERT_TRUE(list.Add(0, contents));
    EXPECT_EQ(list.Find(1), list.Find(0)->next);
    EXPECT_EQ(nullptr, list.Find(1)->next);
}

} // namespace
