#include "tests/support/ListModel.h"
#include "ui/rules/SegmentRecords.h"

namespace {

TEST(SegmentRecords, FollowAVector) {
    RandomBytes random(TestSeed());
    for (int round = 0; round < 40; ++round) {
        PageSegmentList list;
        FollowAVector(list, &PageSegmentList::Insert, random, [&](ListModel& model, std::int32_t index, bool) {
            const bool pair = index >= 0 && static_cast<std::size_t>(index) + 1 < model.size();
            ASSERT_EQ(pair, list.ExchangeWithNext(index));
            if (pair) {
                std::swap(model[static_cast<std::size_t>(index)], model[static_cast<std::size_t>(index) + 1]);
            }
        });
    }
}

} // namespace
