#include "Util/QtRandom.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <vector>

namespace {

std::vector<int> sequence(unsigned seed)
{
    Util::seedRandom(seed);
    std::vector<int> numbers;
    for (int i = 0; i < 100; ++i) {
        numbers.push_back(Util::nextRandom());
    }
    return numbers;
}

} // namespace

TEST(QtRandomTest, EqualSeedsGiveEqualSequences)
{
    EXPECT_EQ(sequence(7), sequence(7));
}

TEST(QtRandomTest, DifferentSeedsGiveDifferentSequences)
{
    EXPECT_NE(sequence(7), sequence(8));
}

TEST(QtRandomTest, NumbersVaryWithinTheRange)
{
    const std::vector<int> numbers = sequence(1);
    for (const int number : numbers) {
        EXPECT_GE(number, 0);
        EXPECT_LE(number, RAND_MAX);
    }
    EXPECT_GT(std::set<int>(numbers.begin(), numbers.end()).size(), 90U);
}
