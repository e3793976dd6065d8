#include "core/base/statsdeque.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

typedef Tavo::StatsDeque<INT32, 4> Ring;

std::vector<INT32> ContentOf(const Ring& rRing)
{
    std::vector<INT32> content;
    for (UINT32 position = 0; position < rRing.size(); ++position)
    {
        content.push_back(rRing[position]);
    }
    return content;
}

TEST(StatsDeque, KeepsOrderAcrossTheSeam)
{
    Ring ring;
    ring.push_back(1);
    ring.push_front(2);  // wraps to the last slot
    ring.push_back(3);
    EXPECT_EQ(ContentOf(ring), (std::vector<INT32>{2, 1, 3}));
    ring.pop_front();
    ring.push_back(4);
    ring.push_back(5);
    EXPECT_EQ(ContentOf(ring), (std::vector<INT32>{1, 3, 4, 5}));
    ring.pop_back();
    EXPECT_EQ(ContentOf(ring), (std::vector<INT32>{1, 3, 4}));
}

TEST(StatsDeque, RefusesWhatDoesNotFit)
{
    Ring ring;
    ring.pop_front();
    ring.pop_back();
    EXPECT_TRUE(ring.empty());
    for (INT32 value = 0; value < 4; ++value)
    {
        ring.push_front(value);
    }
    EXPECT_TRUE(ring.full());
    ring.push_front(8);
    ring.push_back(9);
    EXPECT_EQ(ContentOf(ring), (std::vector<INT32>{3, 2, 1, 0}));
    EXPECT_EQ(ring[5], 2) << "an index is taken modulo the capacity";
    ring.clear();
    ring.push_back(7);
    EXPECT_EQ(ContentOf(ring), (std::vector<INT32>{7}));
}

}  // namespace
