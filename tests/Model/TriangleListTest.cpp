#include "Model/Automaton/TriangleList.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <new>

using Model::Automaton::Triangle;
using Model::Automaton::TriangleList;

TEST(TriangleListTest, StartsEmpty)
{
    const TriangleList list;
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.begin(), list.end());
}

TEST(TriangleListTest, KeepsItsMemoryForWhatIsNotLonger)
{
    TriangleList list;
    list.reset(5);
    const Triangle *place = list.data();
    for (const std::size_t size : {3u, 0u, 5u}) {
        list.reset(size);
        EXPECT_EQ(list.size(), size);
        EXPECT_EQ(list.data(), place);
    }
    list.reset(6);
    EXPECT_EQ(list.size(), 6u);
    EXPECT_EQ(list.end() - list.begin(), 6);
}

TEST(TriangleListTest, WithoutMemoryForMoreItIsEmpty)
{
    TriangleList list;
    list.reset(5);
    // Read when it runs, so that no compiler sees a length that cannot be.
    const volatile std::size_t tooMany = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(list.reset(tooMany), std::bad_alloc);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.begin(), list.end());
    list.reset(2);
    EXPECT_EQ(list.size(), 2u);
}
