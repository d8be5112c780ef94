#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDepositionOperation.h"

#include "UndoableProcessSuite.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"
#include "Support/Volumes.h"

#include <cstdint>
#include <vector>

using Core::Operations::AnisotropicFilmDepositionOperation;
using Core::Operations::IsotropicFilmDepositionOperation;

namespace {

constexpr Support::Grid grid{3, 4, 8};

/// Two layers of the floor, then some of a film.
std::vector<std::uint32_t> layers(std::uint32_t film, std::uint32_t count)
{
    return Support::materialsBy(grid, [=](auto, auto, auto z) {
        return z < 2 ? 2U : z < 2 + count ? film : 0U;
    });
}

// It has name, id and tag of the isotropic deposition, and says the name twice when it has its
// volume.
class AnisotropicFilmDepositionOperationTest
    : public Fakes::UndoableProcessSuite<AnisotropicFilmDepositionOperation>
{
protected:
    AnisotropicFilmDepositionOperationTest()
        : UndoableProcessSuite(
              {"Isotropic Deposition", 13,
               "Isotropic Deposition: Isotropic Deposition: Cell volume selected.",
               "Isotropic Deposition: Select a cell volume and press Enter/Return.",
               "Isotropic Deposition: Operation finished.",
               "Isotropic Deposition: Operation canceled.", grid, layers(0, 0), layers(oxide, 3)},
              "IsotropicDeposition", accept(3.0F, oxide, 0.5F, 1))
    {}

    static Answer accept(float thickness, std::uint32_t material, float ratio, std::uint32_t mode)
    {
        return [=](AnisotropicFilmDepositionOperation &operation) {
            operation.setThickness(thickness);
            operation.setMaterial(material);
            operation.setHorizontalRatio(ratio);
            operation.setDepositionMode(mode);
            operation.end();
        };
    }
};

} // namespace

PROCESS_OPERATION_TESTS(AnisotropicFilmDepositionOperationTest)
UNDOABLE_PROCESS_TESTS(AnisotropicFilmDepositionOperationTest)

TEST_F(AnisotropicFilmDepositionOperationTest, HasTheNameAndIdOfTheIsotropicOne)
{
    const AnisotropicFilmDepositionOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Isotropic Deposition");
    EXPECT_EQ(operation.id(), 13U);
}

TEST_F(AnisotropicFilmDepositionOperationTest, EndRunsFromTheThirdStepOnAndCancelsBefore)
{
    expectStepsNeeded(3, {[](auto &operation) { operation.setThickness(1.0F); },
                          [](auto &operation) { operation.setMaterial(oxide); },
                          [](auto &operation) { operation.setHorizontalRatio(0.5F); },
                          [](auto &operation) { operation.setDepositionMode(1); }});
}

TEST_F(AnisotropicFilmDepositionOperationTest, ValuesGivenAtThePromptAreStepsToo)
{
    activate();
    current()->setThickness(1.0F);
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), Fakes::Log{});
    current()->setMaterial(oxide);
    expectEnd(m_volume, false);
}

TEST_F(AnisotropicFilmDepositionOperationTest, ValuesMayComeInAnyOrder)
{
    expectResult(
        [](AnisotropicFilmDepositionOperation &operation) {
            operation.setDepositionMode(1);
            operation.setHorizontalRatio(0.5F);
            operation.setMaterial(oxide);
            operation.setThickness(2.0F);
            operation.end();
        },
        layers(oxide, 2));
}

TEST_F(AnisotropicFilmDepositionOperationTest, LaterValueWins)
{
    expectResult(
        [](AnisotropicFilmDepositionOperation &operation) {
            operation.setThickness(5.0F);
            operation.setMaterial(silicon);
            accept(1.0F, oxide, 0.5F, 1)(operation);
        },
        layers(oxide, 1));
}

TEST_F(AnisotropicFilmDepositionOperationTest, FilmIsAlwaysOnTopWhateverTheMode)
{
    const auto membrane = [](std::uint32_t film) {
        return Support::materialsBy(grid, [=](auto, auto, auto z) {
            return z == 3 || z == 4 ? 2U : z == 5 || z == 6 ? film : 0U;
        });
    };
    for (const std::uint32_t mode : {0U, 1U, 2U, 3U, 4U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(mode);
        const auto volume = Support::makeVolume(grid, membrane(0));
        run(volume, accept(2.0F, oxide, 0.5F, mode));
        Fakes::expectMaterials(*volume, membrane(oxide));
    }
}

TEST_F(AnisotropicFilmDepositionOperationTest, ModeNeedsNotBeGiven)
{
    expectResult(
        [](AnisotropicFilmDepositionOperation &operation) {
            operation.setThickness(2.0F);
            operation.setMaterial(oxide);
            operation.setHorizontalRatio(0.5F);
            operation.end();
        },
        layers(oxide, 2));
}

TEST_F(AnisotropicFilmDepositionOperationTest, RatioTellsHowFarTheFilmGrowsSideways)
{
    const Support::Grid step{6, 1, 10};
    const auto film = [](std::uint32_t material) -> Support::MaterialRule {
        return [=](auto x, auto, auto z) {
            const std::uint32_t height = x == 0 ? 5U : 1U;
            return z < height ? 2U : z < height + 3 ? material : 0U;
        };
    };
    // A cell to the side is ten units away.
    const auto narrow = Support::makeVolume(step, film(0));
    run(narrow, accept(3.0F, oxide, 0.1F, 1));
    Fakes::expectMaterials(*narrow, Support::materialsBy(step, film(oxide)));

    const auto wide = Support::makeVolume(step, film(0));
    run(wide, accept(3.0F, oxide, 1.0F, 1));
    const Materials materials = Support::materialsOf(*wide);
    EXPECT_EQ(materials[step.index(1, 0, 5)], oxide);
    EXPECT_EQ(materials[step.index(1, 0, 8)], 0U);
}

TEST_F(AnisotropicFilmDepositionOperationTest, ThicknessOfNothingChangesNoCellAndCanBeUndone)
{
    expectResult(accept(0.0F, oxide, 0.5F, 1), layers(0, 0));
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Deposition");
}

// What the dialog hands over when there is no material to choose.
TEST_F(AnisotropicFilmDepositionOperationTest, MaterialOfNothingChangesNoCell)
{
    expectResult(accept(3.0F, 0, 0.5F, 1), layers(0, 0));
}

TEST_F(AnisotropicFilmDepositionOperationTest, SiliconAloneMakesTheLatticeStale)
{
    for (const std::uint32_t material : {0U, 2U, oxide, 11U})
        expectLattice(accept(1.0F, material, 0.5F, 1), false);
    expectLattice(accept(1.0F, silicon, 0.5F, 1), true);
    expectLattice(accept(1.0F, silicon, 0.5F, 2), true);
}

TEST_F(AnisotropicFilmDepositionOperationTest, IsCountedApartFromTheIsotropicOne)
{
    const std::uint32_t first = nextNumber();
    {
        const IsotropicFilmDepositionOperation ofAnotherClass(&workspace());
    }
    EXPECT_EQ(nextNumber(), first + 1);
}
