#include "Core/Operations/SpinCoating/SpinCoatingOperation.h"

#include "PlainProcessSuite.h"

#include "Support/Volumes.h"

#include <cstdint>
#include <vector>

using Core::Operations::SpinCoatingOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};

/// Two layers of the floor, then a liquid below a height.
std::vector<std::uint32_t> poured(std::uint32_t liquid, std::uint32_t height)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z < 2 ? 2U : z < height ? liquid : 0U;
    });
}

class SpinCoatingOperationTest : public Fakes::PlainProcessSuite<SpinCoatingOperation>
{
protected:
    SpinCoatingOperationTest()
        : PlainProcessSuite({"Spin Coating", 23, "Spin Coating: Cell volume selected.",
                             "Spin Coating: Select a cell volume and press Enter/Return.",
                             "Spin Coating: Operation finished.",
                             "Spin Coating: Operation canceled.", grid, poured(0, 0),
                             poured(oxide, 5)},
                            accept(oxide, 5))
    {}

    static Answer accept(std::uint32_t material, std::uint32_t height)
    {
        return [=](SpinCoatingOperation &operation) {
            operation.setMaterial(material);
            operation.setDepositionHeight(height);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(SpinCoatingOperationTest)
PLAIN_PROCESS_TESTS(SpinCoatingOperationTest)

TEST_F(SpinCoatingOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const SpinCoatingOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Spin Coating");
    EXPECT_EQ(operation.id(), 23U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(SpinCoatingOperationTest, AllOfTheClassTellTheObserverThatWasSetLast)
{
    ASSERT_TRUE(isObserverClassWide);
    observerTold();
}

TEST_F(SpinCoatingOperationTest, ObserverStaysWithTheClassUntilItIsReplaced)
{
    replacedObserverIsReleased();
}

TEST_F(SpinCoatingOperationTest, EndNeedsTheVolumeTheMaterialAndTheHeight)
{
    expectAllNeeded({[](auto &operation) { operation.setMaterial(oxide); },
                     [](auto &operation) { operation.setDepositionHeight(3); }});
}

TEST_F(SpinCoatingOperationTest, LaterValueWins)
{
    expectResult(
        [](SpinCoatingOperation &operation) {
            operation.setDepositionHeight(7);
            operation.setMaterial(silicon);
            accept(oxide, 4)(operation);
        },
        poured(oxide, 4));
}

TEST_F(SpinCoatingOperationTest, HeightLimitIsThatOfTheVolume)
{
    activate();
    EXPECT_EQ(current()->heightLimit(), 0U);
    workspace().cancelCurrent();
    for (const std::uint32_t sizeZ : {1U, 8U, 300U}) {
        std::uint32_t limit = 0;
        activateOn(Support::makeVolume({2, 3, sizeZ}, [](auto, auto, auto) { return 2U; }),
                   [&limit](SpinCoatingOperation &operation) {
                       limit = operation.heightLimit();
                       operation.cancel();
                   });
        EXPECT_EQ(limit, sizeZ);
    }
}

TEST_F(SpinCoatingOperationTest, VolumeIsFilledUpToTheHeight)
{
    for (std::uint32_t height = 0; height <= grid.sizeZ; ++height)
        expectResult(accept(oxide, height), poured(oxide, height));
}

TEST_F(SpinCoatingOperationTest, HeightOfNothingChangesNoCellAndFinishes)
{
    expectResult(accept(oxide, 0), poured(0, 0));
    EXPECT_EQ(countOf(m_facts.finished), 1);
}

TEST_F(SpinCoatingOperationTest, HeightAboveTheVolumeFillsIt)
{
    for (const std::uint32_t height : {9U, 0x80000000U, 0xFFFFFFFFU})
        expectResult(accept(oxide, height), poured(oxide, 8));
}

// What the dialog hands over when there is no material to choose.
TEST_F(SpinCoatingOperationTest, MaterialOfNothingChangesNoCell)
{
    expectResult(accept(0, 5), poured(0, 0));
}

TEST_F(SpinCoatingOperationTest, LatticeNeverBecomesStale)
{
    for (const std::uint32_t material : {0U, silicon, 2U, oxide})
        expectLattice(accept(material, 5), false);
}
