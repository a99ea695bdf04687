// The segment list against a vector.
#include "settings/SegmentList.h"
#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <vector>

namespace {

// Both lists, changed alike; segmentData tells the segments apart.
class SegmentModel {
public:
    void Add(std::int32_t index) {
        SegmentRecord record;
        record.index = 4711; // the list gives its own
        record.segmentData = ++m_last;
        ASSERT_TRUE(m_list->Add(index, record));
        const bool within = index >= 0 && index < Size();
        m_model.insert(within ? m_model.begin() + index : m_model.end(), m_last);
    }

    void Remove(std::int32_t index) {
        const bool within = index >= 0 && index < Size();
        ASSERT_EQ(within, m_list->Remove(index)) << index << " of " << Size();
        if (within) {
            m_model.erase(m_model.begin() + index);
        }
    }

    void Compare() const {
        ASSERT_EQ(Size(), m_list->Count());
        const SegmentRecord* record = m_list->Find(0);
        for (std::int32_t i = 0; i < Size(); ++i, record = record->next) {
            ASSERT_TRUE(record) << i;
            ASSERT_EQ(i, record->index);
            ASSERT_EQ(m_model[static_cast<std::size_t>(i)], record->segmentData) << i;
            ASSERT_EQ(record, m_list->Find(i));
        }
        ASSERT_FALSE(record);
        for (const std::int32_t outside : {-1, Size(), Size() + 1, INT_MIN, INT_MAX}) {
            ASSERT_FALSE(m_list->Find(outside)) << outside;
        }
    }

    void StartAnew() {
        m_list = std::make_unique<SegmentList>();
        m_model.clear();
    }

    std::int32_t Size() const { return static_cast<std::int32_t>(m_model.size()); }

private:
    std::unique_ptr<SegmentList> m_list = std::make_unique<SegmentList>();
    std::vector<std::uint32_t> m_model;
    std::uint32_t m_last = 0;
};

TEST(SegmentList, FollowsAVector) {
    SegmentModel lists;
    RandomBytes random(TestSeed());
    for (int turn = 0; turn < 20'000; ++turn) {
        SCOPED_TRACE(testing::Message() << "turn " << turn << " seed=" << TestSeed());
        const std::int32_t index = random.Edge(lists.Size());
        const bool growing = turn / 500 % 2 == 0;
        if (random.Below(3) == (growing ? 0 : 1)) {
            lists.Remove(index);
        } else if (growing || random.Below(4) == 0) {
            lists.Add(index);
        } else {
            lists.Remove(random.Below(lists.Size() + 1));
        }
        ASSERT_NO_FATAL_FAILURE(lists.Compare());
        if (random.Below(1000) == 0 || lists.Size() > 60) {
            lists.StartAnew();
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
