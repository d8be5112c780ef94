#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDepositionOperation.h"

#include "UndoableProcessSuite.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtchingOperation.h"
#include "Support/Volumes.h"

#include <cstdint>
#include <string>
#include <vector>

using Core::Operations::MooreNeighborhoodDepositionOperation;
using Core::Operations::MooreNeighborhoodEtchingOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};

/// Two layers of the floor, then some of a film.
std::vector<std::uint32_t> layers(std::uint32_t film, std::uint32_t count)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z < 2 ? 2U : z < 2 + count ? film : 0U;
    });
}

class MooreNeighborhoodDepositionOperationTest
    : public Fakes::UndoableProcessSuite<MooreNeighborhoodDepositionOperation>
{
protected:
    MooreNeighborhoodDepositionOperationTest()
        : UndoableProcessSuite(
              {"Moore film deposition", 18, "Moore film deposition: Cell volume selected.",
               "Moore film deposition: Select a cell volume and press "
               "Enter/Return.",
               "Moore film deposition: Operation finished.",
               "Moore film deposition: Operation canceled.", grid, layers(0, 0), layers(oxide, 3)},
              "MooreFilmDep", accept(oxide, 3))
    {}

    static Answer accept(std::uint32_t material, std::int32_t steps)
    {
        return [=](MooreNeighborhoodDepositionOperation &operation) {
            operation.setMaterial(material);
            operation.setSteps(steps);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(MooreNeighborhoodDepositionOperationTest)
UNDOABLE_PROCESS_TESTS(MooreNeighborhoodDepositionOperationTest)

TEST_F(MooreNeighborhoodDepositionOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const MooreNeighborhoodDepositionOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Moore film deposition");
    EXPECT_EQ(operation.id(), 18U);
}

TEST_F(MooreNeighborhoodDepositionOperationTest, EndNeedsTheVolumeTheMaterialAndTheSteps)
{
    expectAllNeeded({[](auto &operation) { operation.setMaterial(oxide); },
                     [](auto &operation) { operation.setSteps(2); }});
}

TEST_F(MooreNeighborhoodDepositionOperationTest, LaterValueWins)
{
    expectResult(
        [](MooreNeighborhoodDepositionOperation &operation) {
            operation.setSteps(5);
            operation.setMaterial(silicon);
            accept(oxide, 1)(operation);
        },
        layers(oxide, 1));
}

TEST_F(MooreNeighborhoodDepositionOperationTest, StepsAreCellsWhateverTheirSize)
{
    const Support::Grid flat{3, 4, 8, 1.0f, 2.0f, 0.35f};
    const auto volume = Support::makeVolume(flat, layers(0, 0));
    run(volume, accept(oxide, 4));
    Fakes::expectMaterials(*volume, layers(oxide, 4));
}

TEST_F(MooreNeighborhoodDepositionOperationTest, OneStepGoesRoundEdgesAndCorners)
{
    const Support::Grid cube{5, 5, 5};
    const auto volume = Support::makeVolume(
        cube, [](auto x, auto y, auto z) { return x == 2 && y == 2 && z == 2 ? 2U : 0U; });
    run(volume, accept(oxide, 1));
    Fakes::expectMaterials(*volume, Support::materialsBy(cube, [](auto x, auto y, auto z) {
        const auto isNear = [](auto at) { return at >= 1 && at <= 3; };
        if (x == 2 && y == 2 && z == 2)
            return 2U;
        return isNear(x) && isNear(y) && isNear(z) ? oxide : 0U;
    }));
}

TEST_F(MooreNeighborhoodDepositionOperationTest, StepsBeyondTheVolumeFillIt)
{
    expectResult(accept(oxide, 20), layers(oxide, 6));
}

TEST_F(MooreNeighborhoodDepositionOperationTest, NoStepsChangeNoCellAndCanBeUndone)
{
    for (const std::int32_t steps : {0, -1}) {
        workspace().history().clear();
        expectResult(accept(oxide, steps), layers(0, 0));
        EXPECT_EQ(workspace().history().undoName(), "Moore film deposition");
    }
}

// What the dialog hands over when there is no material to choose.
TEST_F(MooreNeighborhoodDepositionOperationTest, MaterialOfNothingChangesNoCell)
{
    expectResult(accept(0, 3), layers(0, 0));
}

TEST_F(MooreNeighborhoodDepositionOperationTest, SiliconAloneMakesTheLatticeStale)
{
    for (const std::uint32_t material : {0U, 2U, oxide, 11U})
        expectLattice(accept(material, 1), false);
    expectLattice(accept(silicon, 1), true);
}

TEST_F(MooreNeighborhoodDepositionOperationTest, IsCountedApartFromEtching)
{
    const std::uint32_t first = nextNumber();
    {
        const MooreNeighborhoodEtchingOperation ofAnotherClass(&workspace());
    }
    EXPECT_EQ(nextNumber(), first + 1);
}
