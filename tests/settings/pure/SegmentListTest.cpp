#include "settings/rules/SegmentList.h"
#include "tests/support/ListModel.h"

namespace {

TEST(SegmentList, FollowsAVector) {
    RandomBytes random(TestSeed());
    for (int round = 0; round < 40; ++round) {
        SegmentList list;
        std::uint32_t appends = 0;
        FollowAVector(list, &SegmentList::Add, random, [&](ListModel&, std::int32_t, bool appended) {
            appends += appended;
            ASSERT_EQ(appends, list.Appends());
        });
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
