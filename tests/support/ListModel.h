// A list of segments against a vector.
#pragma once

#include "tests/support/RandomBytes.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <vector>

// What a list must hold: the data of its segments. Each is a number of its own, so one in the wrong place shows.
using ListModel = std::vector<std::uint32_t>;

template <typename List>
void ExpectList(const ListModel& model, const List& list) {
    const auto size = static_cast<std::int32_t>(model.size());
    ASSERT_EQ(size, list.Count());
    const auto* segment = list.Find(0);
    for (std::int32_t i = 0; i < size; ++i, segment = segment->next) {
        ASSERT_TRUE(segment) << i;
        ASSERT_EQ(i, segment->index);
        ASSERT_EQ(model[static_cast<std::size_t>(i)], segment->segmentData) << i;
        ASSERT_EQ(segment, list.Find(i));
    }
    ASSERT_FALSE(segment);
    for (const std::int32_t outside : {-1, size, size + 1, INT_MIN, INT_MAX}) {
        ASSERT_FALSE(list.Find(outside)) << outside;
    }
}

// Fills and empties a new list at random. `after` each turn, with its index and whether it added at the end, may change
// both once more.
template <typename List, typename Record>
void FollowAVector(List& list, bool (List::*add)(std::int32_t, const Record&), RandomBytes& random,
                   const std::function<void(ListModel& model, std::int32_t index, bool appended)>& after) {
    ListModel model;
    const std::int32_t limit = 1 + random.Below(60);
    for (std::uint32_t turn = 1; turn <= 500 && !testing::Test::HasFatalFailure(); ++turn) {
        SCOPED_TRACE(testing::Message() << "turn " << turn << " seed=" << TestSeed());
        const auto size = static_cast<std::int32_t>(model.size());
        const std::int32_t index = random.Edge(size);
        const bool within = index >= 0 && index < size;
        const bool adds = random.Below(limit) + random.Below(2) > size;
        if (adds) {
            Record record;
            record.index = 4711; // the list gives its own
            record.segmentData = turn;
            ASSERT_TRUE((list.*add)(index, record));
            model.insert(within ? model.begin() + index : model.end(), turn);
        } else {
            ASSERT_EQ(within, list.Remove(index)) << index << " of " << size;
            model.erase(model.begin() + (within ? index : 0), model.begin() + (within ? index + 1 : 0));
        }
        after(model, index, adds && !within);
        ExpectList(model, list);
    }
}
