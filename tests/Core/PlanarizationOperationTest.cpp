#include "Core/Operations/Planarization/PlanarizationOperation.h"

#include "PlainProcessSuite.h"

#include "Support/Volumes.h"

#include <cstdint>
#include <vector>

using Core::Operations::PlanarizationOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};

/// What is left between two heights of a block that is seven layers high.
std::vector<std::uint32_t> block(std::uint32_t minimum, std::uint32_t maximum)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z < 7 && z >= minimum && z < maximum ? z < 3 ? 1U : 2U : 0U;
    });
}

class PlanarizationOperationTest : public Fakes::PlainProcessSuite<PlanarizationOperation>
{
protected:
    PlanarizationOperationTest()
        : PlainProcessSuite({"Planarization", 22, "Planarization: Cell volume selected.",
                             "Planarization: Select a cell volume and press Enter/Return.",
                             "Planarization: Operation finished.",
                             "Planarization: Operation canceled!", grid, block(0, 8), block(2, 5)},
                            accept(2, 5))
    {}

    static Answer accept(std::uint32_t minimum, std::uint32_t maximum)
    {
        return [=](PlanarizationOperation &operation) {
            operation.setMaximumHeight(maximum);
            operation.setMinimumHeight(minimum);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(PlanarizationOperationTest)
PLAIN_PROCESS_TESTS(PlanarizationOperationTest)

TEST_F(PlanarizationOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const PlanarizationOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Planarization");
    EXPECT_EQ(operation.id(), 22U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(PlanarizationOperationTest, AllOfTheClassTellTheObserverThatWasSetLast)
{
    ASSERT_TRUE(isObserverClassWide);
    observerTold();
}

TEST_F(PlanarizationOperationTest, ObserverStaysWithTheClassUntilItIsReplaced)
{
    replacedObserverIsReleased();
}

TEST_F(PlanarizationOperationTest, EndNeedsTheVolumeAndBothHeights)
{
    expectAllNeeded({[](auto &operation) { operation.setMaximumHeight(5); },
                     [](auto &operation) { operation.setMinimumHeight(2); }});
}

TEST_F(PlanarizationOperationTest, HeightsMayComeInEitherOrder)
{
    expectResult(
        [](PlanarizationOperation &operation) {
            operation.setMinimumHeight(1);
            operation.setMaximumHeight(6);
            operation.end();
        },
        block(1, 6));
}

TEST_F(PlanarizationOperationTest, LaterHeightWins)
{
    expectResult(
        [](PlanarizationOperation &operation) {
            operation.setMinimumHeight(5);
            operation.setMaximumHeight(5);
            accept(3, 6)(operation);
        },
        block(3, 6));
}

TEST_F(PlanarizationOperationTest, VolumeHeightIsThatOfTheVolume)
{
    activate();
    EXPECT_EQ(current()->volumeHeight(), 0U);
    workspace().cancelCurrent();
    for (const std::uint32_t sizeZ : {1U, 8U, 300U}) {
        std::uint32_t height = 0;
        activateOn(Support::makeVolume({2, 3, sizeZ}, [](auto, auto, auto) { return 2U; }),
                   [&height](PlanarizationOperation &operation) {
                       height = operation.volumeHeight();
                       operation.cancel();
                   });
        EXPECT_EQ(height, sizeZ);
    }
}

TEST_F(PlanarizationOperationTest, WhatIsBetweenTheHeightsIsLeft)
{
    for (std::uint32_t minimum = 0; minimum <= grid.sizeZ; ++minimum)
        for (std::uint32_t maximum = minimum; maximum <= grid.sizeZ; ++maximum)
            expectResult(accept(minimum, maximum), block(minimum, maximum));
}

TEST_F(PlanarizationOperationTest, WholeRangeChangesNoCellAndFinishes)
{
    expectResult(accept(0, 8), block(0, 8));
    EXPECT_EQ(countOf(m_facts.finished), 1);
}

TEST_F(PlanarizationOperationTest, HeightsBeyondTheVolumeAreCutOff)
{
    for (const std::uint32_t beyond : {9U, 0x80000000U, 0xFFFFFFFFU}) {
        expectResult(accept(2, beyond), block(2, 8));
        expectResult(accept(beyond, beyond), block(8, 8));
    }
}

TEST_F(PlanarizationOperationTest, MinimumAboveTheMaximumEmptiesTheVolume)
{
    expectResult(accept(5, 3), block(8, 8));
}

TEST_F(PlanarizationOperationTest, LatticeBecomesStaleWhateverIsCut)
{
    // Silicon and other materials, others alone, nothing.
    expectLattice(accept(2, 5), true);
    expectLattice(accept(0, 4), true);
    expectLattice(accept(0, 8), true);
}
