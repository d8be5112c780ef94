#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <random>

using Model::ModelExtraction::RectangularCuboidEnvelope;

namespace {

RectangularCuboidEnvelope cell()
{
    return {0, 0, 0, 1, 1, 1, 1};
}

TEST(RectangularCuboidEnvelopeTest, KeepsWhatItIsGivenAndHasNoNeighbours)
{
    const RectangularCuboidEnvelope envelope(1, 2, 3, 40, 50, 60, 7);
    EXPECT_EQ(envelope.x(), 1);
    EXPECT_EQ(envelope.y(), 2);
    EXPECT_EQ(envelope.z(), 3);
    EXPECT_EQ(envelope.width(), 40);
    EXPECT_EQ(envelope.depth(), 50);
    EXPECT_EQ(envelope.height(), 60);
    EXPECT_EQ(envelope.material(), 7);
    EXPECT_EQ(envelope.neighbourCount(), 0U);
    for (unsigned face = 0; face < 6; ++face)
        EXPECT_EQ(envelope.neighbour(face), nullptr);
}

TEST(RectangularCuboidEnvelopeTest, TakesAnyNumber)
{
    const std::int32_t low = std::numeric_limits<std::int32_t>::min();
    const std::int32_t high = std::numeric_limits<std::int32_t>::max();
    const RectangularCuboidEnvelope envelope(low, high, -1, high, low, 0, -1);
    EXPECT_EQ(envelope.x(), low);
    EXPECT_EQ(envelope.y(), high);
    EXPECT_EQ(envelope.z(), -1);
    EXPECT_EQ(envelope.width(), high);
    EXPECT_EQ(envelope.depth(), low);
    EXPECT_EQ(envelope.height(), 0);
    EXPECT_EQ(envelope.material(), -1);
}

TEST(RectangularCuboidEnvelopeTest, CountRisesWhenAnEmptyEntryIsFilled)
{
    RectangularCuboidEnvelope envelope = cell();
    RectangularCuboidEnvelope other = cell();
    for (unsigned face = 0; face < 6; ++face) {
        envelope.setNeighbour(face, &other);
        EXPECT_EQ(envelope.neighbour(face), &other);
        EXPECT_EQ(envelope.neighbourCount(), face + 1);
    }
    // The other side is not told.
    EXPECT_EQ(other.neighbourCount(), 0U);
}

TEST(RectangularCuboidEnvelopeTest, CountFallsWhenAFilledEntryIsEmptied)
{
    RectangularCuboidEnvelope envelope = cell();
    RectangularCuboidEnvelope other = cell();
    envelope.setNeighbour(2, &other);
    envelope.setNeighbour(5, &other);
    envelope.setNeighbour(2, nullptr);
    EXPECT_EQ(envelope.neighbour(2), nullptr);
    EXPECT_EQ(envelope.neighbour(5), &other);
    EXPECT_EQ(envelope.neighbourCount(), 1U);
    envelope.setNeighbour(5, nullptr);
    EXPECT_EQ(envelope.neighbourCount(), 0U);
}

TEST(RectangularCuboidEnvelopeTest, CountStaysWhenAFilledEntryIsOverwritten)
{
    RectangularCuboidEnvelope envelope = cell();
    RectangularCuboidEnvelope first = cell();
    RectangularCuboidEnvelope second = cell();
    envelope.setNeighbour(3, &first);
    envelope.setNeighbour(3, &second);
    EXPECT_EQ(envelope.neighbour(3), &second);
    EXPECT_EQ(envelope.neighbourCount(), 1U);
    envelope.setNeighbour(3, &second);
    EXPECT_EQ(envelope.neighbourCount(), 1U);
}

TEST(RectangularCuboidEnvelopeTest, CountStaysWhenAnEmptyEntryIsEmptied)
{
    RectangularCuboidEnvelope envelope = cell();
    RectangularCuboidEnvelope other = cell();
    envelope.setNeighbour(0, nullptr);
    EXPECT_EQ(envelope.neighbourCount(), 0U);
    envelope.setNeighbour(1, &other);
    envelope.setNeighbour(0, nullptr);
    EXPECT_EQ(envelope.neighbourCount(), 1U);
}

TEST(RectangularCuboidEnvelopeTest, CountIsThatOfTheFilledEntriesAfterAnyChanges)
{
    const std::uint32_t seed = 21;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    RectangularCuboidEnvelope envelope = cell();
    std::array<RectangularCuboidEnvelope, 2> others = {cell(), cell()};
    std::array<RectangularCuboidEnvelope *, 6> expected{};
    for (int i = 0; i < 2000; ++i) {
        const unsigned face = random() % 6;
        const unsigned choice = random() % 3;
        expected[face] = choice == 2 ? nullptr : &others[choice];
        envelope.setNeighbour(face, expected[face]);
        std::uint32_t count = 0;
        for (unsigned other = 0; other < 6; ++other) {
            ASSERT_EQ(envelope.neighbour(other), expected[other]);
            count += expected[other] ? 1 : 0;
        }
        ASSERT_EQ(envelope.neighbourCount(), count);
    }
}

} // namespace
