#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtchingOperation.h"

#include "UndoableProcessSuite.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDepositionOperation.h"
#include "Support/Volumes.h"

#include <cstdint>
#include <string>
#include <vector>

using Core::Operations::MooreNeighborhoodDepositionOperation;
using Core::Operations::MooreNeighborhoodEtchingOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};
constexpr std::uint32_t film = 3;

/// Two layers of the floor, then some of the film.
std::vector<std::uint32_t> layers(std::uint32_t count)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z < 2 ? 2U : z < 2 + count ? film : 0U;
    });
}

// It bears the name of the deposition.
class MooreNeighborhoodEtchingOperationTest
    : public Fakes::UndoableProcessSuite<MooreNeighborhoodEtchingOperation>
{
protected:
    MooreNeighborhoodEtchingOperationTest()
        : UndoableProcessSuite(
              {"Moore film deposition", 19, "Moore film deposition: Cell volume selected.",
               "Moore film deposition: Select a cell volume and press "
               "Enter/Return.",
               "Moore film deposition: Operation finished.",
               "Moore film deposition: Operation canceled.", grid, layers(5), layers(2)},
              "MooreFilmDep", accept(film, 3))
    {}

    static Answer accept(std::uint32_t material, std::int32_t steps)
    {
        return [=](MooreNeighborhoodEtchingOperation &operation) {
            operation.setMaterial(material);
            operation.setSteps(steps);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(MooreNeighborhoodEtchingOperationTest)
UNDOABLE_PROCESS_TESTS(MooreNeighborhoodEtchingOperationTest)

TEST_F(MooreNeighborhoodEtchingOperationTest, HasTheNameOfTheDepositionAndItsOwnId)
{
    const MooreNeighborhoodEtchingOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Moore film deposition");
    EXPECT_EQ(operation.id(), 19U);
}

TEST_F(MooreNeighborhoodEtchingOperationTest, EndNeedsTheVolumeTheMaterialAndTheSteps)
{
    expectAllNeeded({[](auto &operation) { operation.setMaterial(film); },
                     [](auto &operation) { operation.setSteps(2); }});
}

TEST_F(MooreNeighborhoodEtchingOperationTest, LaterValueWins)
{
    expectResult(
        [](MooreNeighborhoodEtchingOperation &operation) {
            operation.setSteps(5);
            operation.setMaterial(2);
            accept(film, 1)(operation);
        },
        layers(4));
}

TEST_F(MooreNeighborhoodEtchingOperationTest, StepsAreCellsWhateverTheirSize)
{
    const Support::Grid flat{3, 4, 8, 1.0f, 2.0f, 0.35f};
    const auto volume = Support::makeVolume(flat, layers(5));
    run(volume, accept(film, 4));
    Fakes::expectMaterials(*volume, layers(1));
}

TEST_F(MooreNeighborhoodEtchingOperationTest, OtherMaterialStopsTheEtching)
{
    expectResult(accept(film, 20), layers(0));
}

TEST_F(MooreNeighborhoodEtchingOperationTest, BuriedMaterialStays)
{
    expectResult(accept(2, 5), layers(5));
}

TEST_F(MooreNeighborhoodEtchingOperationTest, NoStepsChangeNoCellAndCanBeUndone)
{
    for (const std::int32_t steps : {0, -1}) {
        workspace().history().clear();
        expectResult(accept(film, steps), layers(5));
        EXPECT_EQ(workspace().history().undoName(), "Moore film deposition");
    }
}

TEST_F(MooreNeighborhoodEtchingOperationTest, MaterialThatIsNotThereChangesNoCell)
{
    expectResult(accept(7, 3), layers(5));
}

// What the dialog hands over when there is no material to choose.
TEST_F(MooreNeighborhoodEtchingOperationTest, MaterialOfNothingChangesNoCell)
{
    expectResult(accept(0, 3), layers(5));
}

TEST_F(MooreNeighborhoodEtchingOperationTest, SiliconAloneMakesTheLatticeStale)
{
    for (const std::uint32_t material : {0U, 2U, film, 11U})
        expectLattice(accept(material, 1), false);
    // Whether or not there is any.
    expectLattice(accept(silicon, 1), true);
}

TEST_F(MooreNeighborhoodEtchingOperationTest, IsCountedApartFromDeposition)
{
    const std::uint32_t first = nextNumber();
    {
        const MooreNeighborhoodDepositionOperation ofAnotherClass(&workspace());
    }
    EXPECT_EQ(nextNumber(), first + 1);
}
